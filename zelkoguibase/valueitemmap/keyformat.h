#pragma once

#include <valuecore/commandreader.h>
#include <valuecore/texthash.h>

#include <QString>

#include <concepts>
#include <cstring>
#include <functional>
#include <limits>
#include <string>
#include <string_view>

namespace valueitemmap {

/// How a key stands in a command, and which key is none. An item mostly carries its key, too: `take` leaves a written
/// key where it stands, and `make` turns it into one that shares the memory of the item's where both are equal.
template <typename K>
struct KeyFormat;

/// Text keys are written in binary: a count of UTF-16 code units, then the code units. The empty text is no key.
template <>
struct KeyFormat<QString>
{
    static QString invalid() { return {}; }
    static void write(std::string& out, const QString& key) { commandwriter::string(out, key); }
    static QString read(CommandReader& reader) { return reader.string(); }
    static std::size_t hash(const QString& key) { return textHash(key); }

    using Written = std::string_view;
    static Written take(CommandReader& reader) { return reader.stringBytes(); }
    static QString make(Written written, const QString& ofItem)
    {
        const std::string_view unitsOfItem(reinterpret_cast<const char*>(ofItem.constData()),
                                           static_cast<std::size_t>(ofItem.size()) * sizeof(QChar));
        if (written == unitsOfItem) {
            return ofItem;
        }
        QString key(static_cast<qsizetype>(written.size() / sizeof(QChar)), Qt::Uninitialized);
        std::memcpy(key.data(), written.data(), written.size());
        return key;
    }
};

/// Numbers are written in the machine's byte order. The largest one is no key.
template <std::unsigned_integral K>
struct KeyFormat<K>
{
    static constexpr K invalid() { return std::numeric_limits<K>::max(); }
    static void write(std::string& out, K key) { commandwriter::number(out, key); }
    static K read(CommandReader& reader) { return reader.number<K>(); }
    static std::size_t hash(K key) { return std::hash<K>()(key); }

    using Written = K;
    static Written take(CommandReader& reader) { return read(reader); }
    static K make(Written written, K) { return written; }
};

} // namespace valueitemmap
