#include <overviewdisplay/waterfallreading_p.h>

#include <mapwidgets/timeticks.h>
#include <overviewdisplay/frequencytext_p.h>
#include <overviewdisplay/timerows_p.h>

#include <cmath>

namespace SPECTRUM_OVERVIEW {

QStringList WaterfallReading::levelAndFrequency() const
{
    QStringList texts;
    if (std::isfinite(cursor.frequency)) {
        texts << FrequencyText(low, high).text(cursor.frequency, distance);
    }
    texts << (std::isfinite(cursor.level) ? WaterfallView::tr("%1 dBFS").arg(cursor.level, 0, 'f', 1)
                                          : WaterfallView::tr("no data"));
    return texts;
}

QString WaterfallReading::text() const
{
    return (QStringList(timeticks::dateAndTime(heldTime(cursor.time))) + levelAndFrequency()).join(QLatin1String(", "));
}

QStringList WaterfallReading::shortTexts(bool hasDate) const
{
    const long long time = heldTime(cursor.time);
    const QStringList rest = levelAndFrequency();
    QStringList times = timeticks::timesOfDay(time);
    if (hasDate) {
        times.prepend(timeticks::dateAndTime(time));
    }
    QStringList texts;
    for (const QString& shown : times) {
        texts << (QStringList(shown) + rest).join(QLatin1String("   "));
    }
    return texts << rest.constLast();
}

} // namespace SPECTRUM_OVERVIEW
