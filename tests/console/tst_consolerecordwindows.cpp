#include "commenttable.h"
#include "menuanswer.h"
#include "ownrecorderconsole.h"
#include "positionhands.h"
#include "shownoverview.h"

#include <console/hands/dialoganswer.h>
#include <console/records/recordactions.h>
#include <console/window/usermenu.h>

#include <zelkoguibase/bookmarks/bookmarkmodel.h>
#include <zelkoguibase/editrecord/editrecorddialog.h>
#include <zelkoguibase/history/historydialog.h>

#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QSignalSpy>
#include <QToolBar>

#include <csignal>
#include <optional>

using namespace ZelkoConsole;
using namespace Qt::StringLiterals;
using Controller = ZelkoGUI::IZelkoGUIController;
using ZelkoGUI::BookmarkModel;
using ZelkoGUI::EditRecordDialog;
using ZelkoGUI::HistoryDialog;

Q_DECLARE_METATYPE(ZelkoGUI::IZelkoGUIController::enUserAction)

namespace {

const QString record = u"R1"_s;

/// Of ten seconds, in which there is room for some spectra.
ZELKO_XML::ZELKO_RecordData tenSeconds()
{
    ZELKO_XML::ZELKO_RecordData data = ZelkoTest::finishedRecord(record);
    data.SetStopTime(20'000'000);
    data.SetSize(40'000);
    data.SetStopPosition(40'000);
    data.SetIndexEntry({ZelkoTest::indexEntry(10'000'000, 0), ZelkoTest::indexEntry(20'000'000, 40'000)});
    return data;
}

struct Console : OwnRecorderConsole
{
    explicit Console(ZelkoCommon::Orb& orb)
        : OwnRecorderConsole(orb, tenSeconds())
    {}
    using OneRecordStore::stored;

    QAction& action(Controller::enUserAction flag) const { return *controller().recordAction(flag); }

    /// Selects the record, once it can be worked on.
    bool choose() const
    {
        const auto isListed = [this] { return rowOf(record) >= 0; };
        if (!QTest::qWaitFor(isListed, patience)) {
            return false;
        }
        operatorhands::clickRow(table(), rowOf(record));
        return QTest::qWaitFor([this] { return action(Controller::UserActionEdit).isEnabled(); }, patience);
    }

    /// By the button of the list.
    void open(Controller::enUserAction flag) const
    {
        QTest::mouseClick(window.records()->toolBar()->widgetForAction(&action(flag)), Qt::LeftButton);
    }

    /// The window that an action has opened; null if there is none to be seen.
    QDialog* opened(Controller::enUserAction flag) const
    {
        QDialog* const dialog = flag == Controller::UserActionHistory ? window.findChild<HistoryDialog*>()
                                                                      : window.findChild<QDialog*>(nameOf(flag));
        return dialog && dialog->isVisible() ? dialog : nullptr;
    }
    EditRecordDialog* edit(Controller::enUserAction flag) const
    {
        return qobject_cast<EditRecordDialog*>(opened(flag));
    }

    QWidget* openOverview() const
    {
        open(Controller::UserActionOverview);
        return shownOverview();
    }

    void killRecorder() const { ::kill(static_cast<pid_t>(session.recorder()->processId()), SIGKILL); }

    /// Opens the window of the bookmarks, and sets one there that is not sent.
    EditRecordDialog* bookmark() const
    {
        open(Controller::UserActionBookmarks);
        EditRecordDialog* const dialog = edit(Controller::UserActionBookmarks);
        if (!dialog || !QTest::qWaitFor([=] { return isIn(*dialog, BookmarkModel::SynchInSync); }, patience)) {
            return nullptr;
        }
        QTest::keyClick(dialog->findChild<QTableView*>(u"BookmarkTableView"_s), Qt::Key_Insert);
        return isIn(*dialog, BookmarkModel::SynchLocalChange) ? dialog : nullptr;
    }

    void become(int number)
    {
        QMenu& menu = *window.userMenu();
        menu.popup(window.mapToGlobal(QPoint(0, 0)));
        MenuAnswer::click(menu, menu.actions().at(number));
    }

    static bool isIn(const EditRecordDialog& dialog, BookmarkModel::enSynchState state)
    {
        return dialog.bookmarkModel()->getSynchState() == state;
    }

private:
    static QString nameOf(Controller::enUserAction flag)
    {
        switch (flag) {
        case Controller::UserActionBookmarks:
            return u"EditBookmarksDialog"_s;
        case Controller::UserActionCopy:
            return u"CopyRecordDialog"_s;
        default:
            return u"EditRecordDialog"_s;
        }
    }
};

/// What the window says which record it shows.
QString shownRecord(const QDialog& dialog)
{
    const char* const name = qobject_cast<const HistoryDialog*>(&dialog) ? "RecordLabel" : "RecordInfoLabel";
    return dialog.findChild<QLabel*>(QLatin1String(name), Qt::FindDirectChildrenOnly)->text();
}

/// Whether spectra have come.
bool hasPicture(const QWidget& overview)
{
    return overview.findChild<QAction*>(u"ActionSavePicture"_s)->isEnabled();
}

const QList<std::pair<const char*, Controller::enUserAction>> windows{
    {"comments", Controller::UserActionHistory},
    {"bookmarks", Controller::UserActionBookmarks},
    {"a copy", Controller::UserActionCopy},
    {"all of it", Controller::UserActionEdit},
};

void addWindows()
{
    QTest::addColumn<Controller::enUserAction>("flag");
    for (const auto& [name, flag] : windows) {
        QTest::newRow(name) << flag;
    }
}

void answerWith(QWidget* box, QMessageBox::StandardButton button)
{
    auto* const question = qobject_cast<QMessageBox*>(box);
    QVERIFY(question && question->button(button));
    QTest::mouseClick(question->button(button), Qt::LeftButton);
}

} // namespace

// The windows on a record as an operator opens them from the console, on the recorder as it is built.
class TestConsoleRecordWindows : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { m_orb = std::make_unique<ZelkoCommon::Orb>(ZelkoCommon::OrbOptions()); }
    void cleanupTestCase() { m_orb.reset(); }
    void init() { m_console = std::make_unique<Console>(*m_orb); }
    void cleanup() { m_console.reset(); }
    void opensByButtonAndKeysInFrontOfItself_data() { addWindows(); }
    void opensByButtonAndKeysInFrontOfItself();
    void storesACommentThatIsAdded();
    void storesTheBookmarksThatAreSent();
    void listsTheCopyOfAPart();
    void showsTheSpectrumThatTheRecorderSends();
    void keepsTheSpectrumOfARecorderThatWasKilled();
    void leavesToAViewerOnlyToLook();
    void emptiesTheWindowsOfARecordThatIsDeleted_data() { addWindows(); }
    void emptiesTheWindowsOfARecordThatIsDeleted();
    void opensThemAgainWhenTheRecorderWasKilled_data() { addWindows(); }
    void opensThemAgainWhenTheRecorderWasKilled();
    void staysOpenForTheBookmarksInAWindow();
    void sendsTheBookmarksInAWindowBeforeItCloses();
    void goesWithItsWindowsOpen();

private:
    std::unique_ptr<ZelkoCommon::Orb> m_orb;
    std::unique_ptr<Console> m_console;
};

void TestConsoleRecordWindows::opensByButtonAndKeysInFrontOfItself()
{
    QFETCH(const Controller::enUserAction, flag);
    QVERIFY(m_console->choose());
    m_console->open(flag);
    QDialog* const dialog = m_console->opened(flag);
    QVERIFY(dialog);
    QCOMPARE(dialog->parentWidget(), &m_console->window);
    QVERIFY(!dialog->isModal());
    QCOMPARE(shownRecord(*dialog), u"Record: Name of R1"_s);
    QTRY_COMPARE_WITH_TIMEOUT(QApplication::activeWindow(), dialog, patience);
    QVERIFY(dialog->close());
    m_console->window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&m_console->window, patience));
    const QKeyCombination keys = m_console->action(flag).shortcut()[0];
    QTest::keyClick(&m_console->table(), keys.key(), keys.keyboardModifiers());
    QCOMPARE(m_console->opened(flag), dialog);
}

void TestConsoleRecordWindows::storesACommentThatIsAdded()
{
    QVERIFY(m_console->choose());
    m_console->open(Controller::UserActionHistory);
    auto* const dialog = qobject_cast<HistoryDialog*>(m_console->opened(Controller::UserActionHistory));
    QVERIFY(dialog);
    const CommentTable table(*dialog);
    QTest::keyClick(&table.view, Qt::Key_Insert);
    QVERIFY(table.editor());
    table.typeAndEnter(u"heard twice"_s);
    QTRY_VERIFY_WITH_TIMEOUT(!table.editor(), patience);
    table.clickHeader(0);
    const ZELKO_XML::ZELKO_RecordData stored = m_console->stored(record);
    QCOMPARE(stored.GetHistoryEntry().size(), 1);
    QCOMPARE(stored.GetHistoryEntry().constFirst().GetHistoryEntry(), u"heard twice"_s);
    QTRY_COMPARE_WITH_TIMEOUT(table.lastRow(), 1, patience);
    QCOMPARE(table.text(0), u"heard twice"_s);
}

void TestConsoleRecordWindows::storesTheBookmarksThatAreSent()
{
    QVERIFY(m_console->choose());
    const EditRecordDialog* const dialog = m_console->bookmark();
    QVERIFY(dialog);
    QTest::mouseClick(dialog->findChild<QToolButton*>(u"ApplyBookmarks"_s), Qt::LeftButton);
    QCOMPARE(m_console->stored(record).GetBookmarkEntry().size(), 1);
    QTRY_VERIFY_WITH_TIMEOUT(Console::isIn(*dialog, BookmarkModel::SynchInSync), patience);
    QCOMPARE(dialog->bookmarkModel()->entryCount(), 1);
}

void TestConsoleRecordWindows::listsTheCopyOfAPart()
{
    QVERIFY(m_console->choose());
    m_console->open(Controller::UserActionCopy);
    const EditRecordDialog* const dialog = m_console->edit(Controller::UserActionCopy);
    QVERIFY(dialog);
    const PositionHands start(*dialog->findChild<PositionHands::Widget*>(u"StartPosition"_s));
    start.type(QDateTimeEdit::MSecSection, u"500"_s);
    auto* const save = dialog->findChild<QToolButton*>(u"SaveButton"_s);
    QTRY_VERIFY_WITH_TIMEOUT(save->isEnabled(), patience);
    QTest::mouseClick(save, Qt::LeftButton);
    QTRY_COMPARE_WITH_TIMEOUT(m_console->table().model()->rowCount(), 2, patience);
    QStringList ids = shownrecords::ids(*m_console->table().model());
    ids.removeOne(record);
    const auto copy = m_console->records().getRecordData(ids.constFirst());
    QVERIFY(copy);
    QCOMPARE(copy->GetRecordName(), u"Name of R1_Copy"_s);
    QCOMPARE(copy->GetStartTime(), quint64{10'500'000});
    QCOMPARE(copy->GetStopTime(), quint64{20'000'000});
}

// In a window of its own beside that of the console, which it is closed with.
void TestConsoleRecordWindows::showsTheSpectrumThatTheRecorderSends()
{
    QVERIFY(m_console->choose());
    const QPointer<QWidget> overview = m_console->openOverview();
    QVERIFY(overview);
    QVERIFY(!overview->parentWidget());
    QCOMPARE(overview->windowTitle(), u"Spectrum Overview: Name of R1"_s);
    QTRY_VERIFY_WITH_TIMEOUT(hasPicture(*overview), patience);
    QVERIFY(m_console->window.close());
    QTRY_VERIFY_WITH_TIMEOUT(!overview, patience);
}

void TestConsoleRecordWindows::keepsTheSpectrumOfARecorderThatWasKilled()
{
    QVERIFY(m_console->choose());
    const QPointer<QWidget> overview = m_console->openOverview();
    QVERIFY(overview);
    QTRY_VERIFY_WITH_TIMEOUT(hasPicture(*overview), patience);
    m_console->killRecorder();
    QTRY_VERIFY_WITH_TIMEOUT(m_console->rowOf(record) < 0, patience);
    QVERIFY(overview && overview->isVisible());
    QVERIFY(m_console->choose());
    QTRY_VERIFY_WITH_TIMEOUT(hasPicture(*overview), patience);
    m_console.reset();
    QVERIFY(!overview);
}

void TestConsoleRecordWindows::leavesToAViewerOnlyToLook()
{
    QVERIFY(m_console->choose());
    const QSignalSpy refused(&m_console->session, &Session::writeRefused);
    for (const auto& [name, flag] : windows) {
        m_console->open(flag);
        QVERIFY2(m_console->opened(flag), name);
    }
    const QPointer<QWidget> overview = m_console->openOverview();
    QVERIFY(overview);
    m_console->become(0);
    QTRY_COMPARE_WITH_TIMEOUT(m_console->user.name(), u"viewer"_s, patience);
    QTRY_VERIFY_WITH_TIMEOUT(!overview, patience);
    QTRY_VERIFY_WITH_TIMEOUT(m_console->controller().isConnected() && m_console->rowOf(record) >= 0, patience);
    operatorhands::clickRow(m_console->table(), m_console->rowOf(record));
    const QStringList chosen{record};
    QTRY_COMPARE_WITH_TIMEOUT(m_console->controller().selectedRecords(), chosen, patience);
    for (const auto& [name, flag] : windows) {
        QVERIFY2(!m_console->action(flag).isEnabled(), name);
        m_console->open(flag);
        QVERIFY2(!m_console->opened(flag), name);
    }
    QVERIFY(!m_console->action(Controller::UserActionOverview).isEnabled());
    QVERIFY(!m_console->openOverview());
    m_console->become(1);
    QTRY_VERIFY_WITH_TIMEOUT(m_console->action(Controller::UserActionEdit).isEnabled(), patience);
    QCOMPARE(refused.size(), 0);
}

// That of the comments says so in a box of its own.
void TestConsoleRecordWindows::emptiesTheWindowsOfARecordThatIsDeleted()
{
    QFETCH(const Controller::enUserAction, flag);
    QVERIFY(m_console->choose());
    m_console->open(flag);
    const QDialog* const dialog = m_console->opened(flag);
    QVERIFY(dialog);
    std::optional<DialogAnswer> deleted;
    const DialogAnswer yes([&](QWidget* box) {
        if (flag == Controller::UserActionHistory) {
            deleted.emplace([](QWidget* told) { answerWith(told, QMessageBox::Ok); });
        }
        answerWith(box, QMessageBox::Yes);
    });
    m_console->open(Controller::UserActionDelete);
    QVERIFY(yes.wasGiven());
    QTRY_COMPARE_WITH_TIMEOUT(shownRecord(*dialog).trimmed(), u"Record:"_s, patience);
    QVERIFY(!deleted || deleted->wasGiven());
    QCOMPARE(m_console->rowOf(record), -1);
    QVERIFY(dialog->isVisible());
}

// Nobody is told that the record was deleted, and the window that is there shows it again by itself.
void TestConsoleRecordWindows::opensThemAgainWhenTheRecorderWasKilled()
{
    QFETCH(const Controller::enUserAction, flag);
    QVERIFY(m_console->choose());
    m_console->open(flag);
    QDialog* const dialog = m_console->opened(flag);
    QVERIFY(dialog);
    const DialogAnswer told([](QWidget*) {});
    m_console->killRecorder();
    QTRY_VERIFY_WITH_TIMEOUT(m_console->rowOf(record) < 0, patience);
    QTRY_VERIFY_WITH_TIMEOUT(!m_console->action(flag).isEnabled(), patience);
    QCOMPARE(shownRecord(*dialog).trimmed(), u"Record:"_s);
    QVERIFY(m_console->choose());
    QTRY_COMPARE_WITH_TIMEOUT(shownRecord(*dialog), u"Record: Name of R1"_s, patience);
    m_console->open(flag);
    QCOMPARE(m_console->opened(flag), dialog);
    QCOMPARE(shownRecord(*dialog), u"Record: Name of R1"_s);
    QVERIFY(!told.wasGiven());
}

void TestConsoleRecordWindows::staysOpenForTheBookmarksInAWindow()
{
    QVERIFY(m_console->choose());
    const EditRecordDialog* const dialog = m_console->bookmark();
    QVERIFY(dialog);
    const DialogAnswer stay([](QWidget* box) { answerWith(box, QMessageBox::Cancel); });
    QVERIFY(!m_console->window.close());
    QVERIFY(stay.wasGiven());
    QVERIFY(m_console->window.isVisible() && dialog->isVisible());
    QVERIFY(Console::isIn(*dialog, BookmarkModel::SynchLocalChange));
    const DialogAnswer discard([](QWidget* box) { answerWith(box, QMessageBox::No); });
    QVERIFY(m_console->window.close());
    QCOMPARE(m_console->stored(record).GetBookmarkEntry().size(), 0);
}

void TestConsoleRecordWindows::sendsTheBookmarksInAWindowBeforeItCloses()
{
    QVERIFY(m_console->choose());
    const EditRecordDialog* const dialog = m_console->bookmark();
    QVERIFY(dialog);
    const DialogAnswer save([](QWidget* box) { answerWith(box, QMessageBox::Yes); });
    QVERIFY(m_console->window.close());
    QVERIFY(save.wasGiven());
    QVERIFY(!dialog->isVisible());
    QCOMPARE(m_console->stored(record).GetBookmarkEntry().size(), 1);
}

void TestConsoleRecordWindows::goesWithItsWindowsOpen()
{
    QVERIFY(m_console->choose());
    QList<QPointer<QDialog>> opened;
    for (const auto& [name, flag] : windows) {
        m_console->open(flag);
        opened.append(m_console->opened(flag));
        QVERIFY2(opened.constLast(), name);
    }
    m_console.reset();
    for (const QPointer<QDialog>& dialog : opened) {
        QVERIFY(!dialog);
    }
}

QTEST_MAIN(TestConsoleRecordWindows)
#include "tst_consolerecordwindows.moc"
