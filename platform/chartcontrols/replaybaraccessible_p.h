#pragma once

#include <QAccessibleWidget>

class VCReplayBar;

/// A replay bar as a slider, for programs that read the screen. Its value is the moment of the current marker in
/// microseconds since the epoch; the text of the value is that moment in words.
class ReplayBarAccessible final : public QAccessibleWidget, public QAccessibleValueInterface
{
public:
    explicit ReplayBarAccessible(VCReplayBar* bar);

    /// Has Qt use this class for replay bars; from the second call on nothing happens.
    static void install();

    void* interface_cast(QAccessible::InterfaceType type) override;
    QString text(QAccessible::Text type) const override;

    QVariant currentValue() const override;
    QVariant maximumValue() const override;
    QVariant minimumValue() const override;
    QVariant minimumStepSize() const override;

    /// Moves the current marker, if a user may.
    void setCurrentValue(const QVariant& value) override;

    /// To take the focus, and to move the current marker as the arrow keys do.
    QStringList actionNames() const override;
    void doAction(const QString& name) override;
    QStringList keyBindingsForAction(const QString& name) const override;

private:
    VCReplayBar& bar() const;
};
