#include <console/demo/paintedbar.h>

namespace ZelkoConsole {

PaintedBar::PaintedBar(long long seconds, int width)
    : m_start(begin)
    , m_stop(begin + seconds * second)
    , m_position(begin + seconds * second * 2 / 5)
    , m_bar(nullptr, "ReplayBar", true)
{
    m_bar.SetPixOffset(12, 12);
    m_bar.resize(width, m_bar.sizeHint().height());
    m_bar.SetRecordingStart_ValuePath(m_start.path());
    m_bar.SetRecordingStop_ValuePath(m_stop.path());
    m_bar.SetCurrentPosition_ValuePath(m_position.path());
    m_bar.GetMarker(2)->SetShowMarker(false);
    m_bar.GetMarker(3)->SetShowMarker(false);
    m_bar.show();
}

PaintedBar::~PaintedBar() = default;

void PaintedBar::bookmark(std::initializer_list<std::pair<int, const char*>> marks)
{
    std::vector<BookmarkType> bookmarks;
    for (const auto& [at, text] : marks) {
        bookmarks.emplace_back(begin + at * second, QLatin1String(text));
    }
    m_bar.SetBookmarks(bookmarks, false);
}

} // namespace ZelkoConsole
