#include "jsonfields_p.h"

#include <recorder/source/refusal.h>

#include <algorithm>
#include <cmath>

namespace ZelkoRecorder {

namespace {

/// How deep objects and arrays lie in each other, without building any of them.
int deepestNesting(const QByteArray& bytes)
{
    int depth = 0;
    int deepest = 0;
    bool isInText = false;
    bool isEscaped = false;
    for (const char byte : bytes) {
        if (isEscaped) {
            isEscaped = false;
        } else if (isInText && byte == '\\') {
            isEscaped = true;
        } else if (byte == '"') {
            isInText = !isInText;
        } else if (!isInText && (byte == '{' || byte == '[')) {
            deepest = std::max(deepest, ++depth);
        } else if (!isInText && (byte == '}' || byte == ']')) {
            --depth;
        }
    }
    return deepest;
}

} // namespace

void refuse(const QString& where, const QString& what)
{
    throw Refusal{QStringLiteral("%1 %2").arg(where, what)};
}

Json parseJson(const QByteArray& bytes, int maximumDepth)
{
    const QString where = QStringLiteral("the metadata");
    if (deepestNesting(bytes) > maximumDepth) {
        refuse(where, QStringLiteral("is nested deeper than %1 levels").arg(maximumDepth));
    }
    // The JSON reader takes a zero for the end and would not look at what follows.
    if (bytes.contains('\0')) {
        refuse(where, QStringLiteral("holds a zero byte"));
    }
    try {
        return Json::parse(bytes.begin(), bytes.end());
    } catch (const Json::parse_error& error) {
        refuse(where, QStringLiteral("is not JSON from byte %1 on").arg(error.byte));
    } catch (const Json::exception&) {
        refuse(where, QStringLiteral("holds a number beyond any range"));
    }
}

JsonFields::JsonFields(const Json& object, const QString& name)
    : m_object(object)
    , m_name(name)
{
    if (!object.is_object()) {
        refuse(name, QStringLiteral("must be an object"));
    }
}

void JsonFields::refuseField(const char* key, const QString& what) const
{
    refuse(QStringLiteral("%1: \"%2\"").arg(m_name, QLatin1StringView(key)), what);
}

const Json& JsonFields::value(const char* key) const
{
    const auto found = m_object.find(key);
    if (found == m_object.end()) {
        refuseField(key, QStringLiteral("is missing"));
    }
    return *found;
}

double JsonFields::number(const char* key, double minimum, double maximum) const
{
    const Json& field = value(key);
    const double number = field.is_number() ? field.get<double>() : std::nan("");
    // Written so that a NaN, which compares with nothing, is refused.
    const bool isInRange = number >= minimum && number <= maximum;
    if (!isInRange) {
        refuseField(key, QStringLiteral("must be a number from %1 to %2").arg(minimum).arg(maximum));
    }
    return number;
}

qint64 JsonFields::whole(const char* key, qint64 minimum, qint64 maximum) const
{
    const Json& field = value(key);
    // A number beyond 64 bits is no integer any more to the JSON reader; one beyond 63 bits is unsigned.
    const bool fits = field.is_number_integer() &&
                      (!field.is_number_unsigned() || field.get<quint64>() <= static_cast<quint64>(maximum));
    if (!fits || field.get<qint64>() < minimum || field.get<qint64>() > maximum) {
        refuseField(key, QStringLiteral("must be a whole number from %1 to %2").arg(minimum).arg(maximum));
    }
    return field.get<qint64>();
}

QString JsonFields::text(const char* key) const
{
    const Json& field = value(key);
    if (!field.is_string()) {
        refuseField(key, QStringLiteral("must be a text"));
    }
    return QString::fromStdString(field.get_ref<const std::string&>());
}

bool JsonFields::flag(const char* key) const
{
    const Json& field = value(key);
    if (!field.is_boolean()) {
        refuseField(key, QStringLiteral("must be true or false"));
    }
    return field.get<bool>();
}

const Json& JsonFields::list(const char* key) const
{
    const Json& field = value(key);
    if (!field.is_array()) {
        refuseField(key, QStringLiteral("must be an array"));
    }
    return field;
}

} // namespace ZelkoRecorder
