#include <console/demo/paintedbar.h>
#include <console/demo/scenepainter.h>
#include <console/demo/scenes.h>

#include <valuecore/tree.h>
#include <zelkobase/maps/recorditemmap.h>
#include <zelkoguibase/bookmarks/bookmarkmodel.h>
#include <zelkoguibase/recordlist/recorditemmapmodel.h>
#include <zelkoguibase/replaybar/replaybarwidget.h>

namespace ZelkoConsole {
namespace {

using zelko::recordmap::RecordItemMap;
using ZelkoGUI::BookmarkModel;

constexpr auto branch = QLatin1String("/Painted");

BookmarkModel::Entry mark(int minute, const char* text)
{
    BookmarkModel::Entry entry;
    entry.SetTimestamp(static_cast<quint64>(PaintedBar::begin + minute * 60 * PaintedBar::second));
    entry.SetBookmark(QLatin1String(text));
    return entry;
}

/// A replay bar by itself, with a record of an hour.
class PaintedWidget
{
public:
    PaintedWidget()
    {
        m_records.connect(branch + QStringLiteral("/Map"));
        store({mark(6, "Tower"), mark(14, "Answer"), mark(41, "Ground, second voice")});
        m_widget.setRecord(QStringLiteral("R"), &m_records, QStringLiteral("Recorder1"));
        m_widget.resize(720, m_widget.sizeHint().height());
        m_widget.show();
    }
    ~PaintedWidget() { Tree::Instance()->Remove(branch); }
    PaintedWidget(const PaintedWidget&) = delete;
    PaintedWidget& operator=(const PaintedWidget&) = delete;

    /// From now on the recorder has these bookmarks.
    void store(const BookmarkModel::Entries& bookmarks)
    {
        auto record = std::make_shared<ZELKO_XML::ZELKO_RecordData>();
        record->SetRecordID(QStringLiteral("R"));
        record->SetStartTime(static_cast<quint64>(PaintedBar::begin));
        record->SetStopTime(static_cast<quint64>(PaintedBar::begin + 3600 * PaintedBar::second));
        record->SetBookmarkEntry(bookmarks);
        m_map.Add(zelko::recordmap::RecordMapData(record), nullptr);
    }

    ZelkoGUI::ReplayBarWidget& widget() { return m_widget; }
    BookmarkModel& bookmarks() { return m_bookmarks; }

private:
    RecordItemMap& m_map =
        *Tree::Instance()->Emplace(branch, std::make_unique<RecordItemMap>(QStringLiteral("Map"), TValueState::Open));
    ZelkoGUI::RecordItemMapModel m_records{nullptr};
    BookmarkModel m_bookmarks{false};
    ZelkoGUI::ReplayBarWidget m_widget{&m_bookmarks};
};

} // namespace

void paintReplayWidgetScenes(ScenePainter& painter)
{
    PaintedWidget painted;
    painter.paint(painted.widget(), "bar-in-step-with-the-recorder");
    painted.store({mark(6, "Tower"), mark(20, "From elsewhere")});
    painter.paint(painted.widget(), "bar-changed-elsewhere");
    painted.bookmarks().changeEntry(1, mark(25, "Answer"));
    painted.widget().setRelativeRange(600 * PaintedBar::second, 1500 * PaintedBar::second);
    painter.paint(painted.widget(), "bar-changed-here");
    painted.bookmarks().sl_synchronize();
    painter.paint(painted.widget(), "bar-sent");
    painted.widget().resetRecord();
    painter.paint(painted.widget(), "bar-without-a-record");
}

} // namespace ZelkoConsole
