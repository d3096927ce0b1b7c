#include <zelkobase/service/refusaltext.h>

namespace ZelkoCommon {
namespace {

constexpr QChar opening = u'[';
constexpr QStringView closing = u"] ";
constexpr qsizetype mostDigits = 3;

// 0 for a text that does not begin with the number of a status.
unsigned long numberOf(QStringView text, qsizetype end)
{
    const bool hasDigits = text.startsWith(opening) && end > 1 && end <= 1 + mostDigits;
    bool isNumber = hasDigits;
    for (qsizetype i = 1; isNumber && i < end; ++i) {
        isNumber = text[i] >= u'0' && text[i] <= u'9';
    }
    const unsigned long number = isNumber ? text.mid(1, end - 1).toULong() : 0;
    return isServiceStatus(number) ? number : 0;
}

} // namespace

QString toText(const RefusalText& refusal)
{
    const unsigned long number = statusCode(refusal.status);
    const QString words = refusal.words.isEmpty() ? serviceStatusText(number) : refusal.words;
    return QStringLiteral("[%1] %2").arg(QString::number(number), words);
}

RefusalText refusalOf(QStringView text)
{
    const qsizetype end = text.indexOf(closing);
    const unsigned long number = numberOf(text, end);
    if (number == 0) {
        return {ServiceStatus::InternalError, presentable(text)};
    }
    const QString words = presentable(text.mid(end + closing.size()));
    return {static_cast<ServiceStatus>(number), words == serviceStatusText(number) ? QString() : words};
}

} // namespace ZelkoCommon
