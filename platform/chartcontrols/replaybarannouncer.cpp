#include <chartcontrols/replaybarannouncer_p.h>

#include <chartcontrols/vcreplaybar.h>

#include <QAccessible>

#include <utility>

ReplayBarAnnouncer::ReplayBarAnnouncer(VCReplayBar& bar)
    : m_bar(bar)
{}

// What is told is remembered first: whoever hears of it may move the marker on.
void ReplayBarAnnouncer::tell()
{
    const Marker& marker = *m_bar.GetMarker(m_bar.GetCurrentMarker());
    const double position = marker.GetPosition();
    const QString name = marker.GetName();
    const bool hasMoved = std::exchange(m_position, position) != position;
    if (std::exchange(m_name, name) != name) {
        QAccessibleEvent event(&m_bar, QAccessible::DescriptionChanged);
        QAccessible::updateAccessibility(&event);
    }
    if (hasMoved) {
        QAccessibleValueChangeEvent event(&m_bar, position);
        QAccessible::updateAccessibility(&event);
    }
}
