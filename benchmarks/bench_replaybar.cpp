// The replay bar while a user drags on it: each frame is a move of the mouse and the repaint that it causes.

#include "threadwork.h"

#include <chartcontrols/vcreplaybar.h>
#include <controlwidgets/guicentral.h>
#include <valuecore/tree.h>
#include <valuecore/valuenumeric.h>

#include <QApplication>
#include <QMouseEvent>

#include <benchmark/benchmark.h>

#include <algorithm>

namespace {

constexpr long long begin = 1'700'000'000'000'000;
constexpr long long second = 1'000'000;
constexpr long long extent = 3600 * second;

QString valueAt(long long moment)
{
    return GuiCentral::Instance().CreateUniqueValueFloat(static_cast<double>(moment), 0, 1.8e19, 1);
}

/// A bar of an hour as wide as a large screen, with bookmarks at equal distances.
class DraggedBar
{
public:
    explicit DraggedBar(int bookmarks)
    {
        m_bar.SetPixOffset(10, 10);
        m_bar.resize(1920, m_bar.sizeHint().height());
        m_bar.SetRecordingStart_ValuePath(m_start);
        m_bar.SetRecordingStop_ValuePath(m_stop);
        m_bar.SetCurrentPosition_ValuePath(m_position);
        m_bar.GetMarker(VCReplayBar::PositionMarker)->SetMoveable(true);
        std::vector<BookmarkType> marks;
        for (int i = 0; i < bookmarks; ++i) {
            marks.emplace_back(begin + i * (extent / bookmarks), QStringLiteral("Bookmark %1").arg(i));
        }
        m_bar.SetBookmarks(marks, false);
        m_bar.show();
        QApplication::processEvents();
    }
    ~DraggedBar()
    {
        for (const QString& path : {m_start, m_stop, m_position}) {
            GuiCentral::Instance().RemoveValue(path);
        }
    }
    DraggedBar(const DraggedBar&) = delete;
    DraggedBar& operator=(const DraggedBar&) = delete;

    /// On the flags, or on the handle of the position, which stands in the middle.
    void press(bool isFlag)
    {
        m_y = isFlag ? m_bar.rulerHeight() + 6 : m_bar.height() - 4;
        send(QEvent::MouseButtonPress, isFlag ? 700 : m_bar.pixelAt(static_cast<double>(begin + extent / 2)));
    }
    void frame(int x)
    {
        send(QEvent::MouseMove, x);
        m_bar.repaint();
    }
    void release() { send(QEvent::MouseButtonRelease, 900); }

private:
    void send(QEvent::Type type, int x)
    {
        const QPoint place(x, m_y);
        const auto button = type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton;
        const auto buttons = type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton;
        QMouseEvent event(type, place, m_bar.mapToGlobal(place), button, buttons, {});
        QCoreApplication::sendEvent(&m_bar, &event);
    }

    const QString m_start = valueAt(begin);
    const QString m_stop = valueAt(begin + extent);
    const QString m_position = valueAt(begin + extent / 2);
    VCReplayBar m_bar{nullptr, "ReplayBar", true};
    int m_y = 0;
};

void drag(benchmark::State& state, bool isFlag)
{
    DraggedBar bar(10'000);
    bar.press(isFlag);
    int x = 500;
    double longest = 0;
    for (auto _ : state) {
        const double start = threadWorkMs();
        bar.frame(x);
        longest = std::max(longest, threadWorkMs() - start);
        x = x < 1400 ? x + 1 : 500;
    }
    bar.release();
    state.counters["longest_frame_ms"] = longest;
}

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    benchmark::RegisterBenchmark("drag_a_bookmark_of_10000", drag, true)->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark("drag_the_position_over_10000", drag, false)->Unit(benchmark::kMillisecond);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
