#pragma once

#include <valuecore/valuebase.h>
#include <valuecore/valuecore_export.h>

#include <memory>
#include <string>
#include <string_view>

/// Makes values by the name of their type, for whoever keeps a copy of a tree and learns of its values from a peer.
/// The types of ValueCore are known; a room that has others registers them (any thread, before they are asked for).
namespace valuefactory {

using Maker = std::unique_ptr<ValueBase> (*)();

/// Makes `maker` known as the maker of what ValueBase::GetTypeName calls `typeName`; the first one stays.
VALUECORE_EXPORT void registerType(const std::string& typeName, Maker maker);

/// A fresh value without a name; null when the type is not known.
VALUECORE_EXPORT std::unique_ptr<ValueBase> create(std::string_view typeName);

} // namespace valuefactory
