#include <controlwidgets/marker.h>

#include <controlwidgets/guicentral.h>

#include <cmath>

Marker::Marker(std::function<void(bool moved)> changed)
    : m_changed(std::move(changed))
{}

Marker::~Marker() = default;

void Marker::SetShowMarker(bool show)
{
    if (m_isShown != show) {
        m_isShown = show;
        m_changed(false);
    }
}

void Marker::SetMoveable(bool moveable)
{
    if (m_isMoveable != moveable) {
        m_isMoveable = moveable;
        m_changed(false);
    }
}

void Marker::SetEnabled(bool enabled)
{
    if (m_isEnabled != enabled) {
        m_isEnabled = enabled;
        m_changed(false);
    }
}

void Marker::SetName(const QString& name)
{
    if (m_name != name) {
        m_name = name;
        m_changed(false);
    }
}

void Marker::SetValueTreePath(const QString& path)
{
    m_value.GetFromTree(path);
    m_changed(true);
}

QString Marker::GetValueTreePath() const
{
    return m_value ? m_value->GetPathName() : QString();
}

// The origin is null, and not this marker: it hears of its own doing like everybody else.
bool Marker::MoveTo(double position)
{
    if (!m_value || IsLocked()) {
        return false;
    }
    const double step = GuiCentral::Instance().GetStep(m_value->GetPathName());
    return m_value->SetValue(step > 0 ? std::round(position / step) * step : position, nullptr);
}

void Marker::Update(Observable*, TChangeCode code)
{
    const bool isContent = code == TChangeCode::ValueChanged || code == TChangeCode::ValueRefreshed;
    if (isContent || code == TChangeCode::StateChanged) {
        m_changed(isContent);
    }
}
