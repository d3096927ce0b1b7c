#pragma once

#include <controlwidgets/controlwidgets_export.h>

#include <observerbase/iobserver.h>
#include <valuecore/value.h>
#include <valuecore/valueptr.h>

#include <QString>

#include <functional>

/// A mark on an axis. It is tied to a float value of the tree: it stands where the value says, and moving it writes the
/// value.
class CONTROLWIDGETS_EXPORT Marker final : public IObserver
{
public:
    /// `changed` is called when the marker looks different, with true when it stands in another place; it must not
    /// destroy the marker.
    explicit Marker(std::function<void(bool moved)> changed);
    ~Marker() override;

    /// Shown at first.
    void SetShowMarker(bool show);
    bool IsShown() const { return m_isShown; }

    /// Whether the user may move it; not at first.
    void SetMoveable(bool moveable);
    bool IsMoveable() const { return m_isMoveable; }

    /// A marker that is disabled cannot be moved either, and looks so. Enabled at first.
    void SetEnabled(bool enabled);
    bool IsEnabled() const { return m_isEnabled; }

    void SetName(const QString& name);
    const QString& GetName() const { return m_name; }

    /// Ties the marker to the value at `path`; to none where no such value stands.
    void SetValueTreePath(const QString& path);

    /// Of the value that it is tied to; empty without one.
    QString GetValueTreePath() const;

    /// Whether its value is locked against changes by users; not without a value.
    bool IsLocked() const { return m_value && m_value->GetState() == TValueState::Locked; }

    /// Tied to a value, and shown.
    bool IsVisible() const { return m_isShown && m_value; }

    /// 0 without a value.
    double GetPosition() const { return m_value ? m_value->GetValue() : 0; }

    /// Writes the position to the value, rounded to the grain that the value has. False if the value is locked or
    /// refuses it.
    bool MoveTo(double position);

    void Update(Observable* source, TChangeCode code) override;

private:
    const std::function<void(bool moved)> m_changed;
    ValueObservingPtr<Value<double>> m_value{this};
    QString m_name;
    bool m_isShown = true;
    bool m_isMoveable = false;
    bool m_isEnabled = true;
};
