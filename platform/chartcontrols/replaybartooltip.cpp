#include <chartcontrols/replaybartooltip_p.h>

#include <chartcontrols/vcreplaybar.h>
#include <mapwidgets/timeticks.h>

#include <algorithm>

namespace {

constexpr qsizetype mostLines = 10;

QString lineOf(const Marker& marker)
{
    return (timeticks::dateAndTime(timeticks::whole(marker.GetPosition())) + ' ' + marker.GetName()).toHtmlEscaped();
}

} // namespace

QString replayBarToolTip(const XMarkerTop& markers, int number)
{
    const std::vector<int> numbers = markers.markersBeside(number);
    const auto count = static_cast<qsizetype>(numbers.size());
    QStringList lines;
    for (qsizetype i = 0; i < std::min(count, mostLines); ++i) {
        lines << lineOf(*markers.GetMarker(numbers[static_cast<std::size_t>(i)]));
    }
    if (count > mostLines) {
        lines << VCReplayBar::tr("and %1 more").arg(count - mostLines);
    }
    return QLatin1String("<p style='white-space:pre'>") + lines.join(QLatin1String("<br>")) + QLatin1String("</p>");
}
