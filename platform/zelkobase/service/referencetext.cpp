#include <zelkobase/service/referencetext.h>

#include <zelkobase/orb/hostname.h>

#include <QRegularExpression>
#include <QStringList>

namespace ZelkoCommon {
namespace {

std::optional<ReferenceText::Place> placeOf(const QString& text)
{
    static const QRegularExpression form(
        QStringLiteral(R"(^((?:iiop|ssliop)?:(?:\d+\.\d+@)?)(?:\[([^\[\]]+)\]|([^:\[\]@]+))(:\d{1,5})?$)"));
    const QRegularExpressionMatch match = form.match(text);
    const QString host = match.captured(2) + match.captured(3); // one of them is empty
    return match.hasMatch() && canBeHost(host)
               ? std::optional(ReferenceText::Place{match.captured(1), host, match.captured(4)})
               : std::nullopt;
}

} // namespace

std::optional<ReferenceText> ReferenceText::parse(const QString& text)
{
    static const QRegularExpression form(QStringLiteral("^(corbaloc:|corbaname:)([^/#]+)(.*)$"));
    const QRegularExpressionMatch match = form.match(text);
    ReferenceText result{match.captured(1), {}, match.captured(3)};
    for (const QString& part : match.captured(2).split(QLatin1Char(','))) {
        const auto place = placeOf(part);
        if (!place) {
            return std::nullopt;
        }
        result.places.push_back(*place);
    }
    return result;
}

QString ReferenceText::text() const
{
    QStringList parts;
    for (const Place& place : places) {
        const bool isV6 = place.host.contains(QLatin1Char(':'));
        parts << place.head + (isV6 ? QLatin1Char('[') + place.host + QLatin1Char(']') : place.host) + place.port;
    }
    return scheme + parts.join(QLatin1Char(',')) + rest;
}

} // namespace ZelkoCommon
