#pragma once

#include <reportcore/bytereader.h>
#include <reportcore/enuminfo.h>
#include <reportcore/rgobject.h>

#include <QDateTime>
#include <QString>
#include <QVector>

#include <algorithm>
#include <bit>
#include <concepts>
#include <string>
#include <type_traits>

namespace REPORTGENERATOR {

/// How values stand in the binary form of an object. Everything in it is little endian.
///
// clang-format off
/// | value       | form                                                                                           |
/// |-------------|------------------------------------------------------------------------------------------------|
/// | integer     | its bytes                                                                                      |
/// | bool        | one byte, 0 or 1                                                                               |
/// | double      | its 8 bytes; finite                                                                            |
/// | enumeration | 4 bytes: the number of an enumerator                                                           |
/// | QString     | 4 bytes: its length in code units, times two, plus one if it is UTF-16 and not Latin-1; then the units |
/// | QDateTime   | 8 bytes: milliseconds since the epoch, of a year with four digits                              |
/// | object      | 4 bytes: one bit for each field, by number, that is set; then those fields                     |
/// | list        | 4 bytes: the number of items, at least one; then the items                                     |
// clang-format on
///
/// Appending never fails. Reading gives false for bytes that are not such a value, and may leave it half filled then.
class REPORTCORE_EXPORT BinaryForm
{
public:
    template <std::integral Number>
    static void append(std::string& out, Number number)
    {
        appendNumber(out, number);
    }
    static void append(std::string& out, bool value) { appendNumber(out, quint8{value}); }
    static void append(std::string& out, double value) { appendNumber(out, std::bit_cast<quint64>(value)); }
    static void append(std::string& out, const QString& text);
    static void append(std::string& out, const QDateTime& time) { appendNumber(out, qint64{time.toMSecsSinceEpoch()}); }
    static void append(std::string& out, const RGObject& object) { object.appendBinaryFields(out); }

    template <typename Enum>
    requires std::is_enum_v<Enum>
    static void append(std::string& out, Enum value) { appendNumber(out, qint32{static_cast<int>(value)}); }

    template <typename T>
    static void append(std::string& out, const QVector<T>& list)
    {
        appendNumber(out, static_cast<quint32>(list.size()));
        for (const T& item : list) {
            append(out, item);
        }
    }

    template <std::integral Number>
    static bool read(ByteReader& reader, Number& number)
    {
        return reader.read(number);
    }
    static bool read(ByteReader& reader, bool& value);
    static bool read(ByteReader& reader, double& value);
    static bool read(ByteReader& reader, QString& text);
    static bool read(ByteReader& reader, QDateTime& time);
    static bool read(ByteReader& reader, RGObject& object) { return object.readBinaryFields(reader); }

    template <typename Enum>
    requires std::is_enum_v<Enum>
    static bool read(ByteReader& reader, Enum& value)
    {
        qint32 number = -1;
        if (!reader.read(number) || !rgEnumInfo(Enum{}).contains(number)) {
            return false;
        }
        value = static_cast<Enum>(number);
        return true;
    }

    template <typename T>
    static bool read(ByteReader& reader, QVector<T>& list)
    {
        quint32 count = 0;
        if (!readCount(reader, leastSize<T>(), count)) {
            return false;
        }
        list.reserve(static_cast<qsizetype>(std::min(count, promisedAtMost)));
        bool complete = true;
        for (quint32 i = 0; complete && i < count; ++i) {
            complete = read(reader, list.emplaceBack());
        }
        return complete;
    }

    // The steps of which RG_DEFINE_OBJECT makes the form of an object

    /// The bit of a field that is a list, which has none among `presentFields`; 0 for every other field.
    template <typename T>
    static constexpr quint32 listBit(unsigned, const T&)
    {
        return 0;
    }
    template <typename T>
    static constexpr quint32 listBit(unsigned field, const QVector<T>&)
    {
        return 1U << field;
    }

    template <typename T>
    static quint32 listBitIfSet(unsigned, const T&)
    {
        return 0;
    }
    template <typename T>
    static quint32 listBitIfSet(unsigned field, const QVector<T>& list)
    {
        return list.isEmpty() ? 0 : 1U << field;
    }

    template <typename T>
    static void appendField(std::string& out, quint32 mask, unsigned field, const T& value)
    {
        if (((mask >> field) & 1U) != 0) {
            append(out, value);
        }
    }

    /// False if there is a bit that no field has.
    static bool readMask(ByteReader& reader, unsigned fieldCount, quint32& mask)
    {
        return reader.read(mask) && (quint64{mask} >> fieldCount) == 0;
    }

    template <typename T>
    static bool readField(ByteReader& reader, quint32 mask, unsigned field, T& value)
    {
        return ((mask >> field) & 1U) == 0 || read(reader, value);
    }

private:
    // An item takes more room in memory than in the bytes of a peer. So a peer that promises many gets room for a few,
    // and more only as they come.
    static constexpr quint32 promisedAtMost = 1024;

    /// No value of the type takes fewer bytes than this.
    template <typename T>
    static constexpr std::size_t leastSize()
    {
        if constexpr (std::is_arithmetic_v<T>) {
            return sizeof(T);
        } else if constexpr (std::same_as<T, QDateTime>) {
            return sizeof(qint64);
        } else {
            return sizeof(quint32);
        }
    }

    // A count that the bytes left cannot hold is refused before memory is asked for.
    static bool readCount(ByteReader& reader, std::size_t leastSizeOfItem, quint32& count)
    {
        return reader.read(count) && count > 0 && count <= reader.left() / leastSizeOfItem;
    }
};

} // namespace REPORTGENERATOR
