#include <console/demo/demowalk.h>

#include <console/demo/appearance.h>
#include <console/demo/shownrecords.h>
#include <console/devices/devicelistview.h>
#include <console/hands/dialoganswer.h>
#include <console/hands/operatorhands.h>
#include <console/records/devicerecords.h>
#include <console/records/recordactions.h>
#include <console/records/recordpane.h>
#include <console/session/consolesession.h>
#include <console/window/consolewindow.h>
#include <console/window/usermessages.h>

#include <overviewdisplay/spectrumoverviewwidget.h>
#include <zelkobase/models/abstractrecordlistmodel.h>
#include <zelkoguibase/bookmarks/bookmarkmodel.h>
#include <zelkoguibase/controller/zelkoserverguicontroller.h>
#include <zelkoguibase/editrecord/editrecorddialog.h>

#include <QApplication>
#include <QDateTimeEdit>
#include <QDialogButtonBox>
#include <QDir>
#include <QHeaderView>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTableView>
#include <QTest>
#include <QToolBar>
#include <QToolButton>

#include <algorithm>
#include <csignal>
#include <numeric>

namespace ZelkoConsole {

using Controller = ZelkoGUI::IZelkoGUIController;
using ZelkoCommon::AbstractRecordListModel;
using ZelkoGUI::EditRecordDialog;
using Status = ZELKO_XML::ZELKO_RecordData::RecordStatus;

namespace {

// For what takes no time by itself, on a machine that is busy.
constexpr std::chrono::milliseconds patience{60'000};

std::chrono::milliseconds lengthOf(const QList<ExpectedRecord>& records)
{
    return std::accumulate(
        records.begin(), records.end(), std::chrono::milliseconds(0),
        [](std::chrono::milliseconds sum, const ExpectedRecord& record) { return sum + record.length; });
}

quint64 sizeOf(const QModelIndex& index)
{
    return index.siblingAtColumn(AbstractRecordListModel::SizeColumn)
        .data(AbstractRecordListModel::SortRole)
        .toULongLong();
}

} // namespace

DemoWalk::DemoWalk(ConsoleSession& session, ConsoleWindow& window, const QString& pictureFolder,
                   const QList<ExpectedRecord>& expected)
    : m_session(session)
    , m_window(window)
    , m_table(*window.records()->table())
    , m_folder(pictureFolder)
    , m_expected(expected)
{}

bool DemoWalk::run()
{
    if (!QDir().mkpath(m_folder)) {
        return fail(QStringLiteral("the folder %1 cannot be made").arg(m_folder));
    }
    m_window.show();
    m_window.activateWindow();
    return seeLiveRecord() && seeRecordGrow() && seeFinishedRecords() && sortBySize() && selectTwo() &&
           killRecorder() && seeListRestored() && chooseRecord() && renameRecord() && commentRecord() &&
           bookmarkRecord() && copyRecord() && seeSpectrum() && keepRecord() && deleteRecord();
}

bool DemoWalk::seeLiveRecord()
{
    return waitFor(QStringLiteral("a record that is being recorded"),
                   [this] { return recordWithStatus(static_cast<int>(Status::Recording)).isValid(); });
}

bool DemoWalk::seeRecordGrow()
{
    const QPersistentModelIndex record = recordWithStatus(static_cast<int>(Status::Recording));
    const quint64 before = sizeOf(record);
    return waitFor(QStringLiteral("the size of a record growing"), [&] { return sizeOf(record) > before; }) &&
           takePicture("01-growing-record");
}

bool DemoWalk::seeFinishedRecords()
{
    return std::all_of(m_expected.begin(), m_expected.end(),
                       [this](const ExpectedRecord& record) { return seeFinished(record); }) &&
           waitFor(QStringLiteral("the recording that follows"), [this] {
               return m_table.model()->rowCount() > m_expected.size() &&
                      recordWithStatus(static_cast<int>(Status::Recording)).isValid();
           });
}

// The recordings are made in turn, so all of them may have to be waited for. A source that is given twice is to be seen
// twice.
bool DemoWalk::seeFinished(const ExpectedRecord& record)
{
    const auto wanted = m_expected.count(record);
    return waitFor(
        QStringLiteral("the finished recording \"%1\"").arg(record.name),
        [&] { return record.countIn(*m_table.model()) == wanted; }, lengthOf(m_expected));
}

bool DemoWalk::sortBySize()
{
    operatorhands::clickHeader(m_table, AbstractRecordListModel::SizeColumn);
    if (m_table.horizontalHeader()->sortIndicatorSection() != AbstractRecordListModel::SizeColumn ||
        !isSortedBySize()) {
        return fail(QStringLiteral("a click on the header did not sort the list by size"));
    }
    return true;
}

bool DemoWalk::selectTwo()
{
    operatorhands::clickRow(m_table, 0);
    QTest::keyClick(&m_table, Qt::Key_Down, Qt::ShiftModifier);
    m_selected = shownrecords::selectedIds(m_table);
    m_rowsBefore = m_table.model()->rowCount();
    if (m_selected.size() != 2) {
        return fail(QStringLiteral("a click and Shift+Down selected %1 records instead of 2").arg(m_selected.size()));
    }
    return takePicture("02-finished-records");
}

bool DemoWalk::killRecorder()
{
    ::kill(static_cast<pid_t>(m_session.recorder()->processId()), SIGKILL);
    const QString subSystem = m_session.subSystems().constFirst();
    return waitFor(QStringLiteral("that the recorder is gone"),
                   [&] {
                       return m_session.status(subSystem).state == LinkState::Unreachable &&
                              m_table.model()->rowCount() == 0;
                   }) &&
           takePicture("03-recorder-killed");
}

bool DemoWalk::seeListRestored()
{
    const bool restored = waitFor(QStringLiteral("the list with its selection again"), [this] {
        return m_window.records()->records()->isComplete() && m_table.model()->rowCount() >= m_rowsBefore &&
               shownrecords::selectedIds(m_table) == m_selected && isSortedBySize();
    });
    return restored && takePicture("04-restored-list");
}

// The first of those that are expected: it is finished, and nobody records it again.
bool DemoWalk::chooseRecord()
{
    const QAbstractItemModel& model = *m_table.model();
    const QModelIndexList found = model.match(model.index(0, AbstractRecordListModel::NameColumn), Qt::DisplayRole,
                                              m_expected.constFirst().name, 1, Qt::MatchExactly);
    if (found.isEmpty()) {
        return fail(QStringLiteral("the recording \"%1\" is not there any more").arg(m_expected.constFirst().name));
    }
    m_chosen = shownrecords::id(found.constFirst());
    operatorhands::clickRow(m_table, found.constFirst().row());
    return waitFor(QStringLiteral("the actions on a recording"), [this] {
        return m_window.records()->controller()->recordAction(Controller::UserActionRename)->isEnabled();
    });
}

bool DemoWalk::renameRecord()
{
    const QString name = QStringLiteral("Renamed by the operator");
    const DialogAnswer answer([&](QWidget* dialog) {
        takePicture(*dialog, "05-rename");
        auto* const field = dialog->findChild<QLineEdit*>();
        QTest::keyClick(field, Qt::Key_A, Qt::ControlModifier);
        QTest::keyClicks(field, name);
        QTest::keyClick(field, Qt::Key_Return);
    });
    QTest::keyClick(&m_table, Qt::Key_R, Qt::ControlModifier);
    return (answer.wasGiven() || fail(QStringLiteral("Ctrl+R did not ask for a name"))) &&
           waitFor(QStringLiteral("the new name of a recording"),
                   [&] { return chosenText(AbstractRecordListModel::NameColumn) == name; }) &&
           takePicture("06-renamed");
}

// Typed into the empty row at the end, and added by the key that begins one as well.
bool DemoWalk::commentRecord()
{
    const QDialog* const dialog = openWindow(Controller::UserActionHistory, "HistoryTableView");
    if (!dialog) {
        return false;
    }
    auto* const table = dialog->findChild<QTableView*>(QStringLiteral("HistoryTableView"));
    QTest::keyClick(table, Qt::Key_Insert);
    const auto editor = [table] { return table->indexWidget(table->currentIndex()); };
    if (!editor()) {
        return fail(QStringLiteral("no comment can be typed"));
    }
    QTest::keyClicks(editor(), QStringLiteral("A strong signal, to be looked at again"));
    QTest::keyClick(editor(), Qt::Key_Return);
    return waitFor(QStringLiteral("the comment that was typed"), [&] { return !editor(); }) && addComment(*table) &&
           closeWindow(dialog->window(), "07-comments");
}

bool DemoWalk::addComment(QTableView& table)
{
    const int rows = table.model()->rowCount();
    QTest::keyClick(&table, Qt::Key_Insert);
    return waitFor(QStringLiteral("the comment on a recording"), [&] { return table.model()->rowCount() > rows; });
}

bool DemoWalk::bookmarkRecord()
{
    const QDialog* const dialog = openWindow(Controller::UserActionBookmarks, "BookmarkTableView");
    if (!dialog) {
        return false;
    }
    const auto& bookmarks = *qobject_cast<const EditRecordDialog*>(dialog)->bookmarkModel();
    const auto isInSync = [&] { return bookmarks.getSynchState() == ZelkoGUI::BookmarkModel::SynchInSync; };
    if (!waitFor(QStringLiteral("bookmarks to be edited"), isInSync)) {
        return false;
    }
    QTest::keyClick(dialog->findChild<QTableView*>(QStringLiteral("BookmarkTableView")), Qt::Key_Insert);
    QTest::mouseClick(dialog->findChild<QToolButton*>(QStringLiteral("ApplyBookmarks")), Qt::LeftButton);
    return waitFor(QStringLiteral("the bookmark of a recording"),
                   [&] { return isInSync() && bookmarks.entryCount() == 1; }) &&
           closeWindow(dialog->window(), "08-bookmarks");
}

// All but its first second.
bool DemoWalk::copyRecord()
{
    const QDialog* const dialog = openWindow(Controller::UserActionCopy, "StartPosition");
    if (!dialog) {
        return false;
    }
    auto* const start = dialog->findChild<QWidget*>(QStringLiteral("StartPosition"))->findChild<QDateTimeEdit*>();
    start->setSelectedSection(QDateTimeEdit::SecondSection);
    QTest::keyClick(start, Qt::Key_Up);
    const int rows = m_table.model()->rowCount();
    QTest::mouseClick(dialog->findChild<QToolButton*>(QStringLiteral("SaveButton")), Qt::LeftButton);
    return waitFor(QStringLiteral("the copy of a recording"), [&] { return m_table.model()->rowCount() > rows; }) &&
           closeWindow(dialog->window(), "09-copy");
}

bool DemoWalk::seeSpectrum()
{
    if (!clickAction(Controller::UserActionOverview)) {
        return false;
    }
    const QWidgetList windows = QApplication::topLevelWidgets();
    const auto found = std::find_if(windows.begin(), windows.end(), [](const QWidget* window) {
        return qobject_cast<const SPECTRUM_OVERVIEW::SpectrumOverviewWidget*>(window);
    });
    if (found == windows.end()) {
        return fail(QStringLiteral("the spectrum of a recording was not opened"));
    }
    const auto* const progress = (*found)->findChild<QWidget*>(QStringLiteral("ProgressBar"));
    const auto* const save = (*found)->findChild<QAction*>(QStringLiteral("ActionSavePicture"));
    return waitFor(QStringLiteral("the spectrum of a recording"),
                   [&] { return save->isEnabled() && !progress->isVisible(); }) &&
           closeWindow(*found, "10-spectrum");
}

bool DemoWalk::keepRecord()
{
    const QAction& remove = *m_window.records()->controller()->recordAction(Controller::UserActionDelete);
    const QString deletable = chosenText(AbstractRecordListModel::DeletableColumn);
    const auto isDeletable = [&] { return chosenText(AbstractRecordListModel::DeletableColumn) == deletable; };
    return clickAction(Controller::UserActionDeletable) &&
           waitFor(QStringLiteral("a recording that cannot be deleted"),
                   [&] { return !isDeletable() && !remove.isEnabled(); }) &&
           takePicture("11-not-deletable") && clickAction(Controller::UserActionDeletable) &&
           waitFor(QStringLiteral("a recording that can be deleted again"),
                   [&] { return isDeletable() && remove.isEnabled(); });
}

bool DemoWalk::deleteRecord()
{
    const DialogAnswer answer([this](QWidget* dialog) {
        takePicture(*dialog, "12-delete");
        QTest::mouseClick(dialog->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Yes), Qt::LeftButton);
    });
    return clickAction(Controller::UserActionDelete) &&
           (answer.wasGiven() || fail(QStringLiteral("the recording was deleted without a question"))) &&
           waitFor(QStringLiteral("the list without the deleted recording"), [this] { return !chosen().isValid(); }) &&
           takePicture("13-deleted");
}

bool DemoWalk::clickAction(Controller::enUserAction action)
{
    RecordPane& pane = *m_window.records();
    QAction* const wanted = pane.controller()->recordAction(action);
    QTest::mouseClick(pane.toolBar()->widgetForAction(wanted), Qt::LeftButton);
    const QMessageBox* const message = m_window.messages()->box();
    return !message || fail(QStringLiteral("\"%1\" ended with: %2").arg(wanted->toolTip(), message->text()));
}

QDialog* DemoWalk::openWindow(Controller::enUserAction action, const char* part)
{
    if (!clickAction(action)) {
        return nullptr;
    }
    for (QDialog* const dialog : m_window.findChildren<QDialog*>(QString(), Qt::FindDirectChildrenOnly)) {
        if (dialog->isVisible() && dialog->findChild<QWidget*>(QLatin1String(part))) {
            return dialog;
        }
    }
    fail(QStringLiteral("no window with %1 was opened").arg(QLatin1String(part)));
    return nullptr;
}

bool DemoWalk::closeWindow(QWidget* window, const char* name)
{
    return takePicture(*window, name) &&
           (window->close() || fail(QStringLiteral("the window of %1 was not closed").arg(QLatin1String(name))));
}

QModelIndex DemoWalk::chosen() const
{
    const QAbstractItemModel& model = *m_table.model();
    const QModelIndex first = model.index(0, AbstractRecordListModel::RecordIDColumn);
    return model.match(first, Qt::DisplayRole, m_chosen, 1, Qt::MatchExactly).value(0);
}

QString DemoWalk::chosenText(int column) const
{
    return chosen().siblingAtColumn(column).data().toString();
}

bool DemoWalk::waitFor(const QString& what, const std::function<bool()>& condition, std::chrono::milliseconds longest)
{
    const auto limit = std::chrono::ceil<std::chrono::seconds>(longest + patience);
    return QTest::qWaitFor(condition, static_cast<int>(std::chrono::milliseconds(limit).count())) ||
           fail(QStringLiteral("the console did not show %1 within %2 s").arg(what).arg(limit.count()));
}

// Offscreen no window becomes the active one when a dialog is closed, which every desktop sees to.
bool DemoWalk::takePicture(const char* name)
{
    m_window.activateWindow();
    return waitFor(QStringLiteral("itself as the active window"), [this] { return m_window.isActiveWindow(); }) &&
           takePicture(m_window, name);
}

bool DemoWalk::takePicture(QWidget& widget, const char* name)
{
    const QString file = QDir(m_folder).filePath(QLatin1String(name) + QLatin1String(".png"));
    if (!savePicture(widget, file)) {
        return fail(QStringLiteral("the picture %1 cannot be written").arg(file));
    }
    m_pictures.append(file);
    return true;
}

bool DemoWalk::fail(const QString& text)
{
    m_failure = text;
    return false;
}

QModelIndex DemoWalk::recordWithStatus(int status) const
{
    const QAbstractItemModel& model = *m_table.model();
    const QModelIndex first = model.index(0, AbstractRecordListModel::StatusColumn);
    return model.match(first, AbstractRecordListModel::SortRole, status, 1, Qt::MatchExactly).value(0);
}

bool DemoWalk::isSortedBySize() const
{
    const bool ascending = m_table.horizontalHeader()->sortIndicatorOrder() == Qt::AscendingOrder;
    const QAbstractItemModel& model = *m_table.model();
    for (int row = 1; row < model.rowCount(); ++row) {
        const quint64 above = sizeOf(model.index(row - 1, 0));
        const quint64 below = sizeOf(model.index(row, 0));
        if (ascending ? above > below : above < below) {
            return false;
        }
    }
    return true;
}

} // namespace ZelkoConsole
