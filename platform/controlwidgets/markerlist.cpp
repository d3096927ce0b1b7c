#include <controlwidgets/markerlist.h>

MarkerList::MarkerList() = default;
MarkerList::~MarkerList() = default;

Marker* MarkerList::GetMarker(int number) const
{
    const auto found = m_markers.find(number);
    return found == m_markers.end() ? nullptr : found->second.get();
}

std::vector<int> MarkerList::GetMarkerNumbers() const
{
    std::vector<int> numbers;
    for (const auto& [number, marker] : m_markers) {
        numbers.push_back(number);
    }
    return numbers;
}

void MarkerList::SetMarkerName(int number, const QString& name)
{
    if (Marker* const marker = GetMarker(number)) {
        marker->SetName(name);
    }
}

void MarkerList::SetEnableMarker(int number, bool enable)
{
    if (Marker* const marker = GetMarker(number)) {
        marker->SetEnabled(enable);
    }
}

QString MarkerList::GetValueTreePath(int number) const
{
    const Marker* const marker = GetMarker(number);
    return marker == nullptr ? QString() : marker->GetValueTreePath();
}

void MarkerList::SetCurrentMarker(int number)
{
    if (GetMarker(number) == nullptr || number == m_currentMarker) {
        return;
    }
    m_currentMarker = number;
    markerChanged(number, false);
}

Marker& MarkerList::addMarker(int number)
{
    auto& marker = m_markers[number];
    if (marker == nullptr) {
        marker = std::make_unique<Marker>([this, number](bool moved) { markerChanged(number, moved); });
    }
    if (m_currentMarker == 0) {
        m_currentMarker = number;
    }
    return *marker;
}

void MarkerList::removeMarker(int number)
{
    if (m_markers.erase(number) == 0) {
        return;
    }
    if (m_currentMarker == number) {
        m_currentMarker = m_markers.empty() ? 0 : m_markers.begin()->first;
    }
    markerChanged(number, false);
}
