#pragma once

#include <valuecore/valuecore_export.h>

#include <QStringView>

#include <cstddef>

/// Hash of a text for tables in memory: XXH3 of its code units (https://github.com/Cyan4973/xxHash), which for an ID
/// takes a fraction of the time of `qHash`. Not meant to be kept: other machines may give another.
VALUECORE_EXPORT std::size_t textHash(QStringView text) noexcept;
