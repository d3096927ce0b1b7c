#pragma once

#include <QMenu>

class VCReplayBar;

/// The context menu of a replay bar: on a bookmark it removes that, elsewhere it sets one, and it moves the position
/// there. It is gone once it is closed. While it is open the bookmarks may become others, so the bar is asked again
/// whether what was chosen may be done.
class ReplayBarMenu final : public QMenu
{
public:
    /// `number` is that of the marker on which it opens, 0 where there is none; `moment` is what stands in that place.
    ReplayBarMenu(VCReplayBar& bar, int number, double moment);

private:
    void offerRemoval(int number);
    void offerCreation(double moment);
    void offerPosition(double moment);
    template <typename Function>
    void offer(const char* name, const QString& text, bool isEnabled, Function&& chosen);

    VCReplayBar& m_bar; // is the parent
};
