#include <console/demo/paintedbar.h>
#include <console/demo/paintedrecords.h>
#include <console/demo/scenepainter.h>
#include <console/demo/scenes.h>
#include <console/demo/windowscene.h>
#include <console/hands/dialoganswer.h>
#include <console/hands/operatorhands.h>
#include <console/records/recordpane.h>
#include <console/window/consolewindow.h>

#include <vornappstartup/cfgcenter.h>
#include <zelkoguibase/bookmarks/bookmarkmodel.h>
#include <zelkoguibase/controller/zelkoserverguicontroller.h>
#include <zelkoguibase/editrecord/editrecorddialog.h>
#include <zelkoguibase/history/historydialog.h>

#include <QApplication>
#include <QHeaderView>
#include <QTableView>
#include <QTemporaryDir>

namespace ZelkoConsole {
namespace {

using ZelkoGUI::EditRecordDialog;
using ZelkoGUI::HistoryDialog;
using Record = ZELKO_XML::ZELKO_RecordData;

constexpr auto ordinary = QLatin1String("R");
constexpr auto empty = QLatin1String("E");
constexpr auto overlong = QLatin1String("L");

quint64 momentAt(int minute)
{
    return static_cast<quint64>(PaintedBar::begin + minute * 60 * PaintedBar::second);
}

ZELKO_XML::BookmarkEntry mark(int minute, const QString& text)
{
    ZELKO_XML::BookmarkEntry entry;
    entry.SetTimestamp(momentAt(minute));
    entry.SetBookmark(text);
    return entry;
}

ZELKO_XML::HistoryEntry comment(int minute, const QString& text)
{
    ZELKO_XML::HistoryEntry entry;
    entry.SetTimestamp(momentAt(minute));
    entry.SetHistoryEntry(text);
    return entry;
}

/// A user's configuration that goes with the pictures: windows keep the layout of their columns there.
class PaintedConfiguration
{
public:
    PaintedConfiguration() { CfgCenter::SetFile(ICfg::UserView, m_folder.filePath(QStringLiteral("user.ini"))); }
    ~PaintedConfiguration() { CfgCenter::SetFile(ICfg::UserView, QString()); }
    PaintedConfiguration(const PaintedConfiguration&) = delete;
    PaintedConfiguration& operator=(const PaintedConfiguration&) = delete;

private:
    const QTemporaryDir m_folder;
};

void store(PaintedRecords& records, const QString& id, const QString& name,
           const QVector<ZELKO_XML::HistoryEntry>& comments, const QVector<ZELKO_XML::BookmarkEntry>& bookmarks)
{
    auto record = std::make_shared<Record>();
    record->SetRecordID(id);
    record->SetRecordName(name);
    record->SetStartTime(momentAt(0));
    record->SetStopTime(momentAt(id == empty ? 0 : 60));
    record->SetStopPosition(id == empty ? 0 : 1'200'000'000);
    record->SetRecordStatus(Record::RecordStatus::Finished);
    record->SetHistoryEntry(comments);
    record->SetBookmarkEntry(bookmarks);
    records.store(record);
}

// An ordinary one of an hour, one with nothing in it, and one whose texts are too long.
void fill(PaintedRecords& records)
{
    store(records, ordinary, QStringLiteral("Airport tower"),
          {comment(62, QStringLiteral("Second voice from minute 41 on")),
           comment(95, QStringLiteral("Heard again by the night shift, see the log of the 5th of May")),
           comment(240, QStringLiteral("To be kept"))},
          {mark(6, QStringLiteral("Tower")), mark(14, QStringLiteral("Answer")),
           mark(41, QStringLiteral("Ground, second voice"))});
    store(records, empty, QString(), {}, {});
    const QString text = QStringLiteral("a text that goes on and on ").repeated(20);
    store(records, overlong, text, {comment(62, text)}, {mark(6, text), mark(14, QStringLiteral("Answer"))});
}

// With a comment that is being deleted, and one that was typed and not sent.
void paintHistoryInUse(ScenePainter& painter, HistoryDialog& dialog)
{
    auto* const table = dialog.findChild<QTableView*>(QStringLiteral("HistoryTableView"));
    Q_EMIT table->verticalHeader()->sectionClicked(1);
    table->model()->setData(table->model()->index(3, 1), QStringLiteral("Checked on the 6th of May"));
    painter.paint(dialog, "history-in-use");
}

void paintHistory(ScenePainter& painter)
{
    PaintedRecords records;
    fill(records);
    HistoryDialog dialog;
    dialog.show();
    painter.paint(dialog, "history-without-a-record");
    dialog.setRecord(ordinary, records.model());
    painter.paint(dialog, "history");
    paintHistoryInUse(painter, dialog);
    dialog.setRecord(empty, records.model());
    painter.paint(dialog, "history-of-an-empty-record");
    dialog.setRecord(overlong, records.model());
    painter.paint(dialog, "history-overlong");
    const DialogAnswer answer([&](QWidget* box) { painter.paint(*box, "history-deleted-box"); });
    records.remove(overlong);
}

void paintEdit(ScenePainter& painter, int options, const char* scene)
{
    PaintedRecords records;
    fill(records);
    EditRecordDialog dialog(EditRecordDialog::Options(QFlag(options)), nullptr);
    const auto paint = [&](const QString& id, const char* state) {
        dialog.setRecord(id, records.model(), false, QString());
        painter.paint(dialog, qPrintable(QLatin1String(scene) + QLatin1String(state)));
    };
    dialog.show();
    paint(ordinary, "");
    paint(empty, "-of-an-empty-record");
    paint(overlong, "-overlong");
    dialog.resetRecord();
    painter.paint(dialog, qPrintable(QLatin1String(scene) + QLatin1String("-without-a-record")));
}

// Out of order and out of range, with part of the record chosen.
void paintEditInUse(ScenePainter& painter)
{
    PaintedRecords records;
    fill(records);
    EditRecordDialog dialog(EditRecordDialog::Options(QFlag(255)), nullptr);
    dialog.show();
    dialog.setRecord(ordinary, records.model(), false, QString());
    dialog.bookmarkModel()->appendEntry(mark(75, QStringLiteral("Behind the end")));
    dialog.bookmarkModel()->changeEntry(0, mark(20, QStringLiteral("Moved")));
    painter.paint(dialog, "edit-record-in-use");
    const DialogAnswer answer([&](QWidget* box) { painter.paint(*box, "edit-record-box"); });
    dialog.accept();
}

// The one window in front of the console, which is closed then.
void paintShown(ScenePainter& painter, const ConsoleWindow& window, const char* scene)
{
    for (QDialog* const dialog : window.findChildren<QDialog*>(QString(), Qt::FindDirectChildrenOnly)) {
        if (dialog->isVisible()) {
            painter.paint(*dialog, scene);
            dialog->close();
        }
    }
}

// As an operator opens them, on a record of the list.
void paintOfConsole(ScenePainter& painter, WindowScene& scene)
{
    using Controller = ZelkoGUI::IZelkoGUIController;
    ConsoleWindow& window = scene.openFilled(12);
    operatorhands::clickRow(*window.records()->table(), 1);
    QApplication::processEvents();
    for (const auto& [flag, name] : {std::pair(Controller::UserActionHistory, "console-history"),
                                     std::pair(Controller::UserActionBookmarks, "console-edit-bookmarks"),
                                     std::pair(Controller::UserActionCopy, "console-copy-record"),
                                     std::pair(Controller::UserActionEdit, "console-edit-record")}) {
        window.records()->controller()->recordAction(flag)->trigger();
        paintShown(painter, window, name);
    }
}

} // namespace

void paintRecordWindowScenes(ScenePainter& painter)
{
    const PaintedConfiguration configuration;
    paintHistory(painter);
    paintEdit(painter, 30, "edit-bookmarks");
    paintEdit(painter, 29, "copy-record");
    paintEdit(painter, 255, "edit-record");
    paintEditInUse(painter);
    paintWaterfallScenes(painter);
    paintOverviewScenes(painter);
    WindowScene scene;
    paintOfConsole(painter, scene);
}

} // namespace ZelkoConsole
