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
    bar.SetRangeVector({{PaintedBar::begin + 600 * PaintedBar::second, PaintedBar::begin + 1500 * PaintedBar::second}});
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

} // namespace

void paintReplayBarScenes(ScenePainter& painter)
{
    paintWidth(painter, 240, "narrow");
    paintWidth(painter, 720, "middle");
    paintWidth(painter, 1600, "wide");
    paintInUse(painter);
}

} // namespace ZelkoConsole
