#include <reportcore/itemtype.h>

#include <reportcore/xmltext_p.h>

#include <charconv>
#include <cmath>
#include <cstring>

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

protected:
    bool fromText(std::string_view text, void* item) const override { return parseNumber(text, this->value(item)); }
};

class BoolItem final : public PlainItem<bool>
{
public:
    QString toText(const void* item) const override { return QLatin1String(value(item) ? "true" : "false"); }

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

protected:
    bool fromText(std::string_view text, void* item) const override
    {
        return parseNumber(text, value(item)) && std::isfinite(value(item));
    }
};

class TextItem final : public PlainItem<QString>
{
public:
    QString toText(const void* item) const override { return escaped(value(item)); }

protected:
    bool fromText(std::string_view text, void* item) const override
    {
        value(item) = unescaped(text);
        return true;
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

protected:
    bool fromText(std::string_view text, void* item) const override
    {
        const std::string_view word = trimmed(text);
        value(item) = QDateTime::fromString(QString::fromLatin1(word.data(), static_cast<qsizetype>(word.size())),
                                            Qt::ISODateWithMs)
                          .toUTC();
        return isWritable(value(item));
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
