#include <recorder/store/recordid.h>

#include <QDateTime>
#include <QRandomGenerator>

#include <algorithm>

namespace ZelkoRecorder {

namespace {

bool isIdCharacter(QChar c)
{
    const char16_t code = c.unicode();
    return (code >= u'0' && code <= u'9') || (code >= u'a' && code <= u'z') || (code >= u'A' && code <= u'Z') ||
           code == u'_' || code == u'-' || code == u'.';
}

} // namespace

QString createRecordId(quint64 startTime)
{
    const QDateTime start = QDateTime::fromMSecsSinceEpoch(static_cast<qint64>(startTime / 1000), Qt::UTC);
    constexpr quint64 mask = (quint64{1} << 48) - 1;
    const quint64 random = QRandomGenerator::system()->generate64() & mask;
    return start.toString(QStringLiteral("yyyyMMdd-HHmmsszzz-")) +
           QStringLiteral("%1").arg(random, 12, 16, QLatin1Char('0'));
}

bool isRecordId(QStringView text)
{
    constexpr qsizetype maximumLength = 128;
    return !text.isEmpty() && text.size() <= maximumLength && text.front() != QLatin1Char('.') &&
           std::all_of(text.begin(), text.end(), isIdCharacter);
}

} // namespace ZelkoRecorder
