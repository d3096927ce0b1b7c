#include "deckhands.h"
#include "shownoverview.h"

#include <console/devices/devicelistview.h>
#include <console/records/openrecordwindows.h>
#include <console/widgets/connectionbadge.h>

#include <zelkoguibase/editrecord/editrecorddialog.h>

#include <QSignalSpy>
#include <QTimer>
#include <QToolBar>

using namespace deckhands;
using namespace ZelkoConsole;
using namespace Qt::StringLiterals;
using Controller = ZelkoGUI::IZelkoGUIController;
using SPECTRUM_OVERVIEW::SpectrumOverviewWidget;
using ZelkoGUI::BookmarkModel;
using ZelkoGUI::EditRecordDialog;

namespace {

const QString south = u"south"_s;
const QString otherDevice = u"A2"_s;

/// A console whose operator has a record chosen. There are another device, and another recorder.
struct Console : DeckConsole
{
    Console()
        : DeckConsole(2, {south})
    {
        site.addDevice(north, otherDevice);
        site.addDevice(south, device);
        site.connectTo(south);
        choose(*this, 1);
    }

    void open(Controller::enUserAction flag) const
    {
        const RecordPane& pane = *window->records();
        QAction* const action = pane.controller()->recordAction(flag);
        QTRY_VERIFY_WITH_TIMEOUT(action->isEnabled(), patience);
        QTest::mouseClick(pane.toolBar()->widgetForAction(action), Qt::LeftButton);
    }

    /// Opens the window of the bookmarks; where wanted, with one that is set and not sent.
    EditRecordDialog* openBookmarks(bool unsent = false) const
    {
        open(Controller::UserActionBookmarks);
        auto* const dialog = window->findChild<EditRecordDialog*>(u"EditBookmarksDialog"_s);
        if (dialog && unsent) {
            setOne(*dialog);
        }
        return dialog;
    }

    /// As the controller opens it; without a record it asks nobody for spectra.
    static QPointer<SpectrumOverviewWidget> openOverview()
    {
        auto* const overview = new SpectrumOverviewWidget(QString());
        overview->setAttribute(Qt::WA_DeleteOnClose);
        overview->show();
        return overview;
    }

    void go(const QString& subSystem, const QString& toDevice) const { window->devices()->choose(subSystem, toDevice); }

private:
    static void setOne(const EditRecordDialog& dialog)
    {
        const BookmarkModel& model = *dialog.bookmarkModel();
        QTRY_COMPARE_WITH_TIMEOUT(model.getSynchState(), BookmarkModel::SynchInSync, patience);
        QTest::keyClick(dialog.findChild<QTableView*>(u"BookmarkTableView"_s), Qt::Key_Insert);
        QCOMPARE(model.getSynchState(), BookmarkModel::SynchLocalChange);
    }
};

} // namespace

// What becomes of the windows on a record when what they stand on goes, with real events.
class TestOpenRecordWindows : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void closesNothingThatIsNotThere();
    void closesWithTheDeviceAllButTheSpectra();
    void closesTheSpectraWithTheirRecorder();
    void closesAllBeforeAnotherUserComes();
    void asksBeforeTheDeviceGoes();
    void staysAtTheDeviceWhenTheUserWantsThat();
    void staysWithItsUserWhenHeWantsThat();
    void staysOpenWhenTheUserWantsThat();
    void asksOnceAtATime();
    void showsTheConnectionThatChangedWhileItAsked();
    void endsTheProgramThoughSpectraAreShown();
    void takesTheSpectraAlong();
};

void TestOpenRecordWindows::closesNothingThatIsNotThere()
{
    QWidget owner;
    OpenRecordWindows windows(&owner);
    const QSignalSpy answered(&windows, &OpenRecordWindows::answered);
    QVERIFY(windows.close(OpenRecordWindows::Leaving::Everything));
    QVERIFY(!windows.isClosing());
    QCoreApplication::processEvents();
    QCOMPARE(answered.size(), 0);
}

void TestOpenRecordWindows::closesWithTheDeviceAllButTheSpectra()
{
    const Console console;
    const QPointer<SpectrumOverviewWidget> overview = Console::openOverview();
    const EditRecordDialog* const dialog = console.openBookmarks();
    QVERIFY(overview && dialog && dialog->isVisible());
    console.go(console.north, otherDevice);
    QTRY_COMPARE_WITH_TIMEOUT(console.window->records()->device(), otherDevice, patience);
    QVERIFY(!dialog->isVisible());
    QVERIFY(overview && overview->isVisible());
}

// What they ask for goes to the recorder that is chosen, which may have a device of the same name.
void TestOpenRecordWindows::closesTheSpectraWithTheirRecorder()
{
    const Console console;
    const QPointer<SpectrumOverviewWidget> overview = Console::openOverview();
    QVERIFY(overview);
    console.go(south, console.device);
    QTRY_COMPARE_WITH_TIMEOUT(console.window->records()->subSystem(), south, patience);
    QTRY_VERIFY_WITH_TIMEOUT(!overview, patience);
}

void TestOpenRecordWindows::closesAllBeforeAnotherUserComes()
{
    const Console console;
    const QPointer<SpectrumOverviewWidget> overview = Console::openOverview();
    const EditRecordDialog* const dialog = console.openBookmarks();
    QVERIFY(overview && dialog && dialog->isVisible());
    clickUser(console, 0);
    QTRY_COMPARE_WITH_TIMEOUT(console.user->name(), u"viewer"_s, patience);
    QVERIFY(!dialog->isVisible());
    QTRY_VERIFY_WITH_TIMEOUT(!overview, patience);
}

void TestOpenRecordWindows::asksBeforeTheDeviceGoes()
{
    const Console console;
    const EditRecordDialog* const dialog = console.openBookmarks(true);
    const QSignalSpy sent(dialog, &EditRecordDialog::si_setBookmarkEntries);
    QString device;
    const DialogAnswer discard([&](QWidget* box) {
        device = console.window->records()->device();
        press(box, u"No"_s);
    });
    console.go(console.north, otherDevice);
    QVERIFY(discard.wasGiven());
    QCOMPARE(device, console.device);
    QCOMPARE(console.window->records()->device(), otherDevice);
    QVERIFY(!dialog->isVisible());
    QCOMPARE(sent.size(), 0);
}

void TestOpenRecordWindows::staysAtTheDeviceWhenTheUserWantsThat()
{
    const Console console;
    const EditRecordDialog* const dialog = console.openBookmarks(true);
    const DialogAnswer stay(escape);
    console.go(console.north, otherDevice);
    QVERIFY(stay.wasGiven());
    QTRY_COMPARE_WITH_TIMEOUT(console.window->devices()->chosenDevice(), console.device, patience);
    QCOMPARE(console.window->records()->device(), console.device);
    QVERIFY(dialog->isVisible());
    QCOMPARE(dialog->bookmarkModel()->getSynchState(), BookmarkModel::SynchLocalChange);
}

void TestOpenRecordWindows::staysWithItsUserWhenHeWantsThat()
{
    const Console console;
    const EditRecordDialog* const dialog = console.openBookmarks(true);
    const DialogAnswer stay(escape);
    clickUser(console, 0);
    QTRY_VERIFY_WITH_TIMEOUT(stay.wasGiven(), patience);
    QCOMPARE(console.user->name(), u"operator"_s);
    QVERIFY(dialog->isVisible());
}

void TestOpenRecordWindows::staysOpenWhenTheUserWantsThat()
{
    const Console console;
    const EditRecordDialog* const dialog = console.openBookmarks(true);
    const DialogAnswer stay(escape);
    QVERIFY(!console.window->close());
    QVERIFY(stay.wasGiven());
    QVERIFY(console.window->isVisible() && dialog->isVisible());
}

void TestOpenRecordWindows::asksOnceAtATime()
{
    const Console console;
    const EditRecordDialog* const dialog = console.openBookmarks(true);
    bool wentOn = true;
    const DialogAnswer stay([&](QWidget* box) {
        wentOn = console.window->close();
        escape(box);
    });
    console.go(console.north, otherDevice);
    QVERIFY(stay.wasGiven());
    QVERIFY(!wentOn);
    QVERIFY(console.window->isVisible() && dialog->isVisible());
}

void TestOpenRecordWindows::showsTheConnectionThatChangedWhileItAsked()
{
    Console console;
    QVERIFY(console.openBookmarks(true));
    const DialogAnswer stay([&](QWidget* box) {
        console.site.setStatus(console.north, {LinkState::Unreachable, u"it was killed"_s});
        escape(box);
    });
    QVERIFY(!console.window->close());
    QVERIFY(stay.wasGiven());
    QTRY_COMPARE_WITH_TIMEOUT(console.window->badge()->text(), u"north: not reachable"_s, patience);
}

void TestOpenRecordWindows::endsTheProgramThoughSpectraAreShown()
{
    const Console console;
    QVERIFY(Console::openOverview());
    QTimer::singleShot(0, console.window.get(), &QWidget::close);
    QTimer::singleShot(patience, console.window.get(), [] { QCoreApplication::exit(1); });
    QCOMPARE(QApplication::exec(), 0);
    QVERIFY(!shownOverview());
}

// A console that goes without being closed, as at the end of a program.
void TestOpenRecordWindows::takesTheSpectraAlong()
{
    Console console;
    const QPointer<SpectrumOverviewWidget> overview = Console::openOverview();
    QVERIFY(overview);
    console.window.reset();
    QVERIFY(!overview);
}

QTEST_MAIN(TestOpenRecordWindows)
#include "tst_openrecordwindows.moc"
