#include <chartcontrols/replaybaraccessible_p.h>

#include <chartcontrols/vcreplaybar.h>

#include <QKeySequence>

#include <cmath>

namespace {

QAccessibleInterface* createFor(const QString&, QObject* object)
{
    auto* const bar = qobject_cast<VCReplayBar*>(object);
    return bar == nullptr ? nullptr : new ReplayBarAccessible(bar);
}

} // namespace

ReplayBarAccessible::ReplayBarAccessible(VCReplayBar* bar)
    : QAccessibleWidget(bar, QAccessible::Slider)
{}

void ReplayBarAccessible::install()
{
    static const bool isInstalled = [] {
        QAccessible::installFactory(createFor);
        return true;
    }();
    Q_UNUSED(isInstalled)
}

VCReplayBar& ReplayBarAccessible::bar() const
{
    return static_cast<VCReplayBar&>(*widget());
}

void* ReplayBarAccessible::interface_cast(QAccessible::InterfaceType type)
{
    return type == QAccessible::ValueInterface ? static_cast<QAccessibleValueInterface*>(this)
                                               : QAccessibleWidget::interface_cast(type);
}

QString ReplayBarAccessible::text(QAccessible::Text type) const
{
    switch (type) {
    case QAccessible::Value:
        return bar().positionText();
    case QAccessible::Description:
        return bar().GetMarker(bar().GetCurrentMarker())->GetName();
    default:
        return QAccessibleWidget::text(type);
    }
}

QVariant ReplayBarAccessible::currentValue() const
{
    return bar().GetMarker(bar().GetCurrentMarker())->GetPosition();
}

QVariant ReplayBarAccessible::maximumValue() const
{
    return bar().axisStop();
}

QVariant ReplayBarAccessible::minimumValue() const
{
    return bar().axisStart();
}

QVariant ReplayBarAccessible::minimumStepSize() const
{
    return 1.0;
}

// From another program, which may ask for anything.
void ReplayBarAccessible::setCurrentValue(const QVariant& value)
{
    bool isNumber = false;
    const double position = value.toDouble(&isNumber);
    if (isNumber && std::isfinite(position) && bar().isEnabled()) {
        bar().moveTo(bar().GetCurrentMarker(), position);
    }
}

QStringList ReplayBarAccessible::actionNames() const
{
    QStringList names = QAccessibleWidget::actionNames();
    if (bar().isEnabled()) {
        names << increaseAction() << decreaseAction();
    }
    return names;
}

void ReplayBarAccessible::doAction(const QString& name)
{
    if (name != increaseAction() && name != decreaseAction()) {
        QAccessibleWidget::doAction(name);
    } else if (bar().isEnabled()) {
        bar().moveBySteps(bar().GetCurrentMarker(), name == increaseAction() ? 1 : -1);
    }
}

QStringList ReplayBarAccessible::keyBindingsForAction(const QString& name) const
{
    if (name == increaseAction() || name == decreaseAction()) {
        return {QKeySequence(name == increaseAction() ? Qt::Key_Right : Qt::Key_Left).toString()};
    }
    return QAccessibleWidget::keyBindingsForAction(name);
}
