#pragma once

#include <valuecore/commandreader.h>

#include <QString>

#include <concepts>
#include <limits>
#include <string>

namespace valueitemmap {

/// How a key stands in a command, and which key is none.
template <typename K>
struct KeyFormat;

/// Text keys are written in binary: a count of UTF-16 code units, then the code units. The empty text is no key.
template <>
struct KeyFormat<QString>
{
    static QString invalid() { return {}; }
    static void write(std::string& out, const QString& key) { commandwriter::string(out, key); }
    static QString read(CommandReader& reader) { return reader.string(); }
};

/// Numbers are written in the machine's byte order. The largest one is no key.
template <std::unsigned_integral K>
struct KeyFormat<K>
{
    static constexpr K invalid() { return std::numeric_limits<K>::max(); }
    static void write(std::string& out, K key) { commandwriter::number(out, key); }
    static K read(CommandReader& reader) { return reader.number<K>(); }
};

} // namespace valueitemmap
