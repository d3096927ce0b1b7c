#pragma once

#include <controlwidgets/marker.h>

#include <map>
#include <memory>
#include <vector>

/// The markers of an axis by their numbers; one of them is the current one, which keys move.
class CONTROLWIDGETS_EXPORT MarkerList
{
public:
    MarkerList(const MarkerList&) = delete;
    MarkerList& operator=(const MarkerList&) = delete;
    virtual ~MarkerList();

    /// Null where there is none of that number. It lives until its number is taken away.
    Marker* GetMarker(int number) const;

    /// The numbers of all markers, ascending.
    std::vector<int> GetMarkerNumbers() const;

    /// Calls `function` with the number and each marker, ascending. It must not add or take away any.
    template <typename Function>
    void ForEachMarker(Function&& function) const
    {
        for (const auto& [number, marker] : m_markers) {
            function(number, *marker);
        }
    }

    /// What they say on GetMarker(number); a number without a marker is passed over.
    void SetMarkerName(int number, const QString& name);
    void SetEnableMarker(int number, bool enable);

    /// Path of the value that the marker is tied to; empty without a marker or a value.
    QString GetValueTreePath(int number) const;

    /// Makes a marker the current one; a number without a marker is passed over.
    virtual void SetCurrentMarker(int number);

    /// 0 as long as there is no marker.
    int GetCurrentMarker() const { return m_currentMarker; }

protected:
    MarkerList();

    /// The marker of that number, new if there was none.
    Marker& addMarker(int number);

    /// The current marker, if it is the one, is the one of the lowest number afterwards.
    void removeMarker(int number);

    /// A marker looks different, or with `moved` stands in another place, or there is none of that number any more. It
    /// must not take markers away.
    virtual void markerChanged(int number, bool moved) = 0;

private:
    std::map<int, std::unique_ptr<Marker>> m_markers;
    int m_currentMarker = 0;
};
