#include <console/demo/paintedbar.h>
#include <console/demo/scenepainter.h>
#include <console/demo/scenes.h>

#include <array>

namespace ZelkoConsole {
namespace {

constexpr long long hour = 3600;

// Bookmarks as users set them: some alone, some close together.
std::vector<BookmarkType> marks(int count, long long seconds)
{
    static constexpr std::array names{"Tower", "Answer", "Carrier up", "Ground, second voice", "End of talk"};
    std::vector<BookmarkType> bookmarks;
    for (int i = 0; i < count; ++i) {
        const long long at = (i * 2 + 1) * seconds * PaintedBar::second / (count * 2);
        const long long aside = i % 3 * seconds * PaintedBar::second / (count * 4);
        bookmarks.emplace_back(PaintedBar::begin + at - aside, QLatin1String(names[static_cast<std::size_t>(i) % 5]));
    }
    return bookmarks;
}

std::vector<std::pair<long long, long long>> range(long long from, long long to)
{
    return {{PaintedBar::begin + from * PaintedBar::second, PaintedBar::begin + to * PaintedBar::second}};
}

void paintWidth(ScenePainter& painter, int width, const QByteArray& name)
{
    for (const int count : {0, 5, 500}) {
        PaintedBar painted(hour, width);
        painted.bar().SetBookmarks(marks(count, hour), false);
        const QByteArray scene = "bar-" + name + "-bookmarks-" + QByteArray::number(count);
        painter.paint(painted.bar(), scene.constData());
    }
}

void paintInUse(ScenePainter& painter)
{
    PaintedBar painted(hour);
    VCReplayBar& bar = painted.bar();
    bar.SetBookmarks(marks(5, hour), false);
    bar.SetRangeVector(range(600, 1500));
    bar.SetCurrentMarker(VCReplayBar::FirstBookmarkMarker + 3);
    bar.activateWindow();
    bar.setFocus();
    painter.paint(bar, "bar-with-focus-and-range");
    bar.SetBookmarks(marks(500, hour), false);
    painter.paint(bar, "bar-current-among-many");
    PaintedBar night(20 * hour);
    night.bar().SetBookmarks(marks(5, 20 * hour), false);
    painter.paint(night.bar(), "bar-over-midnight");
    PaintedBar days(9 * 24 * hour);
    days.bar().SetBookmarks(marks(5, 9 * 24 * hour), false);
    painter.paint(days.bar(), "bar-of-days");
}

void paintAtTheLimits(ScenePainter& painter)
{
    PaintedBar moment(0);
    moment.bookmark({{0, "Tower"}});
    painter.paint(moment.bar(), "bar-of-one-moment");

    PaintedBar named(hour, 240);
    named.bookmark(
        {{600, "Tower"}, {1500, "Ground, second voice, with a very long name that has no room"}, {3000, "End"}});
    named.bar().SetCurrentMarker(VCReplayBar::FirstBookmarkMarker + 1);
    painter.paint(named.bar(), "bar-narrow-long-name");

    PaintedBar crowded(hour, 240);
    crowded.bar().SetBookmarks(marks(500, hour), false);
    crowded.bar().SetRangeVector(range(600, 1500));
    painter.paint(crowded.bar(), "bar-narrow-many-and-range");

    PaintedBar outside(hour);
    outside.bar().SetBookmarks(marks(5, hour), false);
    outside.bar().GetMarker(VCReplayBar::PositionMarker)->MoveTo(double(PaintedBar::begin - hour * PaintedBar::second));
    painter.paint(outside.bar(), "bar-position-outside");
}

} // namespace

void paintReplayBarScenes(ScenePainter& painter)
{
    paintWidth(painter, 240, "narrow");
    paintWidth(painter, 720, "middle");
    paintWidth(painter, 1600, "wide");
    paintInUse(painter);
    paintAtTheLimits(painter);
}

} // namespace ZelkoConsole
