#include <overviewdisplay/waterfallmenu_p.h>

#include <overviewdisplay/timerows_p.h>

#include <QAction>

namespace SPECTRUM_OVERVIEW {

WaterfallMenu::WaterfallMenu(WaterfallView& view, quint64 time)
    : QMenu(&view)
    , m_view(view)
{
    setAttribute(Qt::WA_DeleteOnClose);
    offerZoom(time);
    addSeparator();
    offer("SetBookmark", WaterfallView::tr("Set bookmark here"), Qt::Key_Insert,
          [this, time] { Q_EMIT m_view.si_bookmarkAsked(time); });
    if (m_view.selection()) {
        offer("ClearSelection", WaterfallView::tr("Clear selection"), Qt::Key_Escape,
              [this] { m_view.clearSelection(); });
    }
}

WaterfallMenu::~WaterfallMenu() = default;

// The keys are told and not bound: it is the view that hears them.
template <typename Function>
void WaterfallMenu::offer(const char* name, const QString& text, const QKeySequence& key, Function&& chosen)
{
    QAction* const added = addAction(text + QLatin1Char('\t') + key.toString(QKeySequence::NativeText), this,
                                     std::forward<Function>(chosen));
    added->setObjectName(QLatin1String(name));
}

void WaterfallMenu::offerZoom(quint64 time)
{
    if (const auto selection = m_view.selection()) {
        offer("ZoomToSelection", WaterfallView::tr("Zoom to selection"), Qt::Key_Return,
              [this, selection] { Q_EMIT m_view.si_zoomAsked(selection->start, selection->stop); });
    }
    const auto offerFactor = [&](const char* name, const QString& text, Qt::Key key, double factor) {
        const TimeRange wanted = zoomed(m_view.timeRange(), time, factor);
        offer(name, text, key, [this, wanted] { Q_EMIT m_view.si_zoomAsked(wanted.start, wanted.stop); });
    };
    offerFactor("ZoomIn", WaterfallView::tr("Zoom in here"), Qt::Key_Plus, 1 / zoomStep);
    offerFactor("ZoomOut", WaterfallView::tr("Zoom out"), Qt::Key_Minus, zoomStep);
    offer("ShowAll", WaterfallView::tr("Show the whole record"), Qt::Key_Home, [this] {
        m_view.showAllFrequencies();
        Q_EMIT m_view.si_zoomOutAsked();
    });
}

} // namespace SPECTRUM_OVERVIEW
