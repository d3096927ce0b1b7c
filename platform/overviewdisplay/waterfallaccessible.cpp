#include <overviewdisplay/waterfallaccessible_p.h>

#include <mapwidgets/timeticks.h>
#include <overviewdisplay/timerows_p.h>

namespace SPECTRUM_OVERVIEW {
namespace {

QAccessibleInterface* createFor(const QString&, QObject* object)
{
    auto* const view = qobject_cast<WaterfallView*>(object);
    return view == nullptr ? nullptr : new WaterfallAccessible(view);
}

} // namespace

WaterfallAccessible::WaterfallAccessible(WaterfallView* view)
    : QAccessibleWidget(view, QAccessible::Chart)
{}

void WaterfallAccessible::install()
{
    static const bool isInstalled = [] {
        QAccessible::installFactory(createFor);
        return true;
    }();
    Q_UNUSED(isInstalled)
}

QString WaterfallAccessible::selectionText() const
{
    const auto selection = static_cast<const WaterfallView*>(widget())->selection();
    return selection ? WaterfallView::tr("Selected: %1 to %2")
                           .arg(timeticks::dateAndTime(heldTime(selection->start)),
                                timeticks::dateAndTime(heldTime(selection->stop)))
                     : QString();
}

QString WaterfallAccessible::text(QAccessible::Text type) const
{
    switch (type) {
    case QAccessible::Value:
        return static_cast<const WaterfallView*>(widget())->cursorText();
    case QAccessible::Description:
        return selectionText();
    default:
        return QAccessibleWidget::text(type);
    }
}

} // namespace SPECTRUM_OVERVIEW
