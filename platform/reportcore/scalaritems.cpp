#include <reportcore/itemtype.h>

#include <reportcore/xmltext_p.h>

#include <algorithm>
#include <bit>
#include <charconv>
#include <cmath>

namespace REPORTGENERATOR {

namespace {

template <typename Number>
bool parseNumber(std::string_view text, Number& number)
{
    const std::string_view digits = trimmed(text);
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    return error == std::errc() && end == digits.data() + digits.size();
}

template <typename Number>
QString numberText(Number number)
{
    char digits[32];
    const auto end = std::to_chars(digits, digits + sizeof digits, number).ptr;
    return QString::fromLatin1(digits, end - digits);
}

/// What types have in common whose values are T.
template <typename T>
class PlainItem : public ScalarItem
{
public:
    bool equal(const void* a, const void* b) const override { return value(a) == value(b); }
    QString problem(const void*) const override { return {}; }

protected:
    static const T& value(const void* item) { return *static_cast<const T*>(item); }
    static T& value(void* item) { return *static_cast<T*>(item); }
};

template <typename Number>
class IntegerItem final : public PlainItem<Number>
{
public:
    QString toText(const void* item) const override { return numberText(this->value(item)); }
    void appendBinary(const void* item, std::string& out) const override { appendNumber(out, this->value(item)); }
    bool readBinary(ByteReader& reader, void* item) const override { return reader.read(this->value(item)); }
    std::size_t leastBinarySize() const override { return sizeof(Number); }

protected:
    bool fromText(std::string_view text, void* item) const override { return parseNumber(text, this->value(item)); }
};

class BoolItem final : public PlainItem<bool>
{
public:
    QString toText(const void* item) const override { return QLatin1String(value(item) ? "true" : "false"); }
    void appendBinary(const void* item, std::string& out) const override { appendNumber(out, quint8{value(item)}); }

    bool readBinary(ByteReader& reader, void* item) const override
    {
        quint8 byte = 0;
        if (!reader.read(byte) || byte > 1) {
            return false;
        }
        value(item) = byte == 1;
        return true;
    }

    std::size_t leastBinarySize() const override { return sizeof(quint8); }

protected:
    bool fromText(std::string_view text, void* item) const override
    {
        const std::string_view word = trimmed(text);
        value(item) = word == "true" || word == "1";
        return value(item) || word == "false" || word == "0";
    }
};

class DoubleItem final : public PlainItem<double>
{
public:
    QString problem(const void* item) const override
    {
        return std::isfinite(value(item)) ? QString() : QStringLiteral("is not a finite number");
    }
    QString toText(const void* item) const override { return numberText(value(item)); }
    void appendBinary(const void* item, std::string& out) const override
    {
        appendNumber(out, std::bit_cast<quint64>(value(item)));
    }

    bool readBinary(ByteReader& reader, void* item) const override
    {
        quint64 bits = 0;
        if (!reader.read(bits)) {
            return false;
        }
        value(item) = std::bit_cast<double>(bits);
        return std::isfinite(value(item));
    }

    std::size_t leastBinarySize() const override { return sizeof(quint64); }

protected:
    bool fromText(std::string_view text, void* item) const override
    {
        return parseNumber(text, value(item)) && std::isfinite(value(item));
    }
};

/// In binary form a length in code units, times two, plus one if the units are UTF-16 and not Latin-1, and then the
/// units.
class TextItem final : public PlainItem<QString>
{
public:
    QString toText(const void* item) const override { return escaped(value(item)); }

    void appendBinary(const void* item, std::string& out) const override
    {
        const QString& text = value(item);
        const bool wide = !isLatin1(text);
        appendNumber(out, static_cast<quint32>(text.size()) * 2 + (wide ? 1 : 0));
        if (wide) {
            appendWide(text, out);
        } else {
            appendNarrow(text, out);
        }
    }

    bool readBinary(ByteReader& reader, void* item) const override
    {
        quint32 header = 0;
        if (!reader.read(header)) {
            return false;
        }
        const quint32 length = header / 2;
        const bool wide = header % 2 == 1;
        const char* const units = reader.take(std::size_t{length} * (wide ? 2 : 1));
        if (units == nullptr) {
            return false;
        }
        value(item) = wide ? wideText(units, length) : QString::fromLatin1(units, static_cast<qsizetype>(length));
        return true;
    }

    std::size_t leastBinarySize() const override { return sizeof(quint32); }

protected:
    bool fromText(std::string_view text, void* item) const override
    {
        value(item) = unescaped(text);
        return true;
    }

private:
    static bool isLatin1(QStringView text)
    {
        char16_t all = 0;
        for (const QChar c : text) {
            all |= c.unicode();
        }
        return all < 0x100;
    }

    static void appendNarrow(QStringView text, std::string& out)
    {
        const std::size_t start = out.size();
        out.resize(start + static_cast<std::size_t>(text.size()));
        std::transform(text.begin(), text.end(), out.begin() + static_cast<std::ptrdiff_t>(start),
                       [](QChar c) { return static_cast<char>(c.unicode()); });
    }

    static void appendWide(QStringView text, std::string& out)
    {
        for (const QChar c : text) {
            appendNumber(out, static_cast<quint16>(c.unicode()));
        }
    }

    static QString wideText(const char* units, quint32 length)
    {
        QString text(static_cast<qsizetype>(length), Qt::Uninitialized);
        qFromLittleEndian<quint16>(units, static_cast<qsizetype>(length), text.data());
        return text;
    }
};

/// A moment to the millisecond, in UTC wherever it is written.
class DateTimeItem final : public PlainItem<QDateTime>
{
public:
    QString problem(const void* item) const override
    {
        return isWritable(value(item)) ? QString() : QStringLiteral("is not a valid time");
    }
    QString toText(const void* item) const override { return value(item).toUTC().toString(Qt::ISODateWithMs); }
    void appendBinary(const void* item, std::string& out) const override
    {
        appendNumber(out, qint64{value(item).toMSecsSinceEpoch()});
    }

    bool readBinary(ByteReader& reader, void* item) const override
    {
        qint64 milliseconds = 0;
        if (!reader.read(milliseconds)) {
            return false;
        }
        value(item) = QDateTime::fromMSecsSinceEpoch(milliseconds, Qt::UTC);
        return isWritable(value(item));
    }

    std::size_t leastBinarySize() const override { return sizeof(qint64); }

protected:
    bool fromText(std::string_view text, void* item) const override
    {
        const std::string_view word = trimmed(text);
        value(item) = QDateTime::fromString(QString::fromLatin1(word.data(), static_cast<qsizetype>(word.size())),
                                            Qt::ISODateWithMs)
                          .toUTC();
        return isWritable(value(item));
    }

private:
    // The text form has four digits for the year.
    static bool isWritable(const QDateTime& time)
    {
        return time.isValid() && time.date().year() >= 1 && time.date().year() <= 9999;
    }
};

int enumNumber(const void* item)
{
    int number = 0;
    std::memcpy(&number, item, sizeof number);
    return number;
}

} // namespace

bool EnumItem::equal(const void* a, const void* b) const
{
    return enumNumber(a) == enumNumber(b);
}

QString EnumItem::problem(const void* item) const
{
    const int number = enumNumber(item);
    return m_info.contains(number) ? QString() : QStringLiteral("%1 is no enumerator").arg(number);
}

QString EnumItem::toText(const void* item) const
{
    const int number = enumNumber(item);
    return m_info.contains(number) ? m_info.name(number) : QString::number(number);
}

void EnumItem::appendBinary(const void* item, std::string& out) const
{
    appendNumber(out, qint32{enumNumber(item)});
}

bool EnumItem::readBinary(ByteReader& reader, void* item) const
{
    qint32 number = -1;
    if (!reader.read(number) || !m_info.contains(number)) {
        return false;
    }
    std::memcpy(item, &number, sizeof number);
    return true;
}

std::size_t EnumItem::leastBinarySize() const
{
    return sizeof(qint32);
}

bool EnumItem::fromText(std::string_view text, void* item) const
{
    const int number = m_info.number(trimmed(text));
    if (number >= 0) {
        std::memcpy(item, &number, sizeof number);
    }
    return number >= 0;
}

template <typename Item>
static const ItemType& sharedItem()
{
    static const Item item;
    return item;
}

const ItemType& plainItem(const bool*)
{
    return sharedItem<BoolItem>();
}

const ItemType& plainItem(const int*)
{
    return sharedItem<IntegerItem<int>>();
}

const ItemType& plainItem(const unsigned int*)
{
    return sharedItem<IntegerItem<unsigned int>>();
}

const ItemType& plainItem(const qint64*)
{
    return sharedItem<IntegerItem<qint64>>();
}

const ItemType& plainItem(const quint64*)
{
    return sharedItem<IntegerItem<quint64>>();
}

const ItemType& plainItem(const double*)
{
    return sharedItem<DoubleItem>();
}

const ItemType& plainItem(const QString*)
{
    return sharedItem<TextItem>();
}

const ItemType& plainItem(const QDateTime*)
{
    return sharedItem<DateTimeItem>();
}

} // namespace REPORTGENERATOR
