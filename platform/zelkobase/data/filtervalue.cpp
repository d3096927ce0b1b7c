#include <zelkobase/data/filtervalue.h>

namespace ZELKO_XML {

static QString timeFormat()
{
    return QStringLiteral("HH:mm:ss.zzz");
}

QString filterValueText(double value)
{
    return QString::number(value, 'g', 6);
}

QString filterValueText(int value)
{
    return QString::number(value, 10);
}

QString filterValueText(const QTime& value)
{
    return value.toString(timeFormat());
}

// What Qt makes of an invalid moment is not specified.
QString filterValueText(const QDateTime& value)
{
    return QString::number(value.isValid() ? value.toMSecsSinceEpoch() : 0, 10);
}

bool parseFilterValue(const QString& text, double& value)
{
    bool isNumber = false;
    value = text.toDouble(&isNumber);
    return isNumber;
}

bool parseFilterValue(const QString& text, int& value)
{
    bool isNumber = false;
    value = text.toInt(&isNumber, 10);
    return isNumber;
}

bool parseFilterValue(const QString& text, QTime& value)
{
    value = QTime::fromString(text, timeFormat());
    return value.isValid() || text.isEmpty();
}

bool parseFilterValue(const QString& text, QDateTime& value)
{
    bool isNumber = false;
    value = QDateTime::fromMSecsSinceEpoch(text.toLongLong(&isNumber, 10));
    return isNumber && value.isValid();
}

} // namespace ZELKO_XML
