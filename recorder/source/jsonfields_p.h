#pragma once

#include <QByteArray>
#include <QString>

#include <nlohmann/json.hpp>

namespace ZelkoRecorder {

using Json = nlohmann::json;

/// Throws the `Refusal` "`where` `what`".
[[noreturn]] void refuse(const QString& where, const QString& what);

/// Builds the document of `bytes`. Throws `Refusal` if they are no JSON, hold a number that no double can carry, or
/// nest objects and arrays deeper than `maximumDepth`; the nesting is measured before anything is built.
Json parseJson(const QByteArray& bytes, int maximumDepth);

/// The fields of one JSON object, taken by type and range. Each operation throws `Refusal`, with the name of the object
/// and of the field, if the field is missing, of another type, or out of the range. The object has to live longer.
class JsonFields
{
public:
    /// `name` is what a refusal calls the object. Throws `Refusal` if it is no object.
    JsonFields(const Json& object, const QString& name);

    bool has(const char* key) const { return m_object.contains(key); }
    [[noreturn]] void refuseField(const char* key, const QString& what) const;

    /// Bounds are inclusive, here and below.
    double number(const char* key, double minimum, double maximum) const;
    /// A number written without a fraction and an exponent. `minimum` is not negative.
    qint64 whole(const char* key, qint64 minimum, qint64 maximum) const;
    QString text(const char* key) const;
    bool flag(const char* key) const;
    const Json& list(const char* key) const;

private:
    const Json& value(const char* key) const;

    const Json& m_object;
    const QString m_name;
};

} // namespace ZelkoRecorder
