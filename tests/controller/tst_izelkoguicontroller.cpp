#include <zelkoguibase/controller/izelkoguicontroller.h>

#include "fixedrecordmodel.h"
#include "iconpicture.h"
#include "scriptedcontroller.h"
#include "testrecords.h"
#include "userlogin.h"

#include <resources/zelkoicons.h>

#include <QAction>
#include <QFile>
#include <QSignalSpy>
#include <QWidget>
#include <QtTest>

#include <optional>

using namespace Qt::StringLiterals;
using Controller = ZelkoGUI::IZelkoGUIController;

namespace {

QStringList objectNames(const QList<QAction*>& actions)
{
    QStringList result;
    for (const QAction* const action : actions) {
        result << action->objectName();
    }
    return result;
}

} // namespace

class IZelkoGUIControllerTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { registerZelkoIcons(); }
    void init()
    {
        m_login.emplace();
        m_controller = std::make_unique<ScriptedController>(&m_model);
    }
    void cleanup()
    {
        m_controller.reset();
        m_login.reset();
    }

    // The actions

    void anActionLooksAsItsTableSays_data();
    void anActionLooksAsItsTableSays();

    void actionsAreMadeInAnOrderOfTheirOwn()
    {
        QCOMPARE(objectNames(m_controller->findChildren<QAction*>(Qt::FindDirectChildrenOnly)),
                 (QStringList{u"ActionReset"_s, u"ActionDownload"_s, u"ActionHistory"_s, u"ActionRecordingName"_s,
                              u"ActionEditBookmarks"_s, u"ActionCopyRecording"_s, u"ActionEditRecording"_s,
                              u"ActionSpectrumOverview"_s, u"ActionDelete"_s, u"ActionToggleDeletable"_s}));
    }

    void actionsAreListedByTheirNumbers()
    {
        QCOMPARE(
            objectNames(m_controller->recordActions()),
            (QStringList{u"ActionCopyRecording"_s, u"ActionDelete"_s, u"ActionDownload"_s, u"ActionEditRecording"_s,
                         u"ActionReset"_s, u"ActionRecordingName"_s, u"ActionEditBookmarks"_s,
                         u"ActionToggleDeletable"_s, u"ActionHistory"_s, u"ActionSpectrumOverview"_s}));
    }

    void allActionsStartDisabled()
    {
        for (const QAction* const action : m_controller->recordActions()) {
            QVERIFY2(!action->isEnabled(), qPrintable(action->objectName()));
        }
    }

    void onlyWantedActionsAreMade()
    {
        const ScriptedController controller(&m_model, Controller::UserActionEdit | Controller::UserActionHistory);
        QCOMPARE(objectNames(controller.findChildren<QAction*>()),
                 (QStringList{u"ActionHistory"_s, u"ActionEditRecording"_s}));
        QCOMPARE(controller.recordAction(Controller::UserActionCopy), nullptr);
    }

    void aSmallerSetDropsActionsAndLeavesThemAlone()
    {
        QAction* const dropped = m_controller->recordAction(Controller::UserActionCopy);
        QAction* const kept = m_controller->recordAction(Controller::UserActionRename);
        m_controller->sl_selectedRecordsChanged({u"A"_s});
        QVERIFY(dropped->isEnabled());

        m_controller->setUserActions(Controller::UserActionRename);
        QCOMPARE(m_controller->recordAction(Controller::UserActionCopy), nullptr);
        QCOMPARE(m_controller->recordActions(), QList<QAction*>{kept});
        QCOMPARE(dropped->parent(), m_controller.get());

        m_controller->sl_selectedRecordsChanged({});
        QVERIFY(dropped->isEnabled());
        QVERIFY(!kept->isEnabled());
    }

    void aDroppedActionIsMadeAnewWhenItIsWantedAgain()
    {
        QAction* const dropped = m_controller->recordAction(Controller::UserActionCopy);
        QAction* const kept = m_controller->recordAction(Controller::UserActionRename);
        m_controller->sl_selectedRecordsChanged({u"A"_s});
        m_controller->setUserActions(Controller::UserActionRename);
        m_controller->setUserActions(ScriptedController::allActions);

        QAction* const made = m_controller->recordAction(Controller::UserActionCopy);
        QVERIFY(made && made != dropped);
        QCOMPARE(m_controller->recordAction(Controller::UserActionRename), kept);
        QVERIFY(kept->isEnabled());
        QVERIFY(!made->isEnabled());
        m_controller->sl_activeUserChanged({});
        QVERIFY(made->isEnabled());
    }

    void theNumbersOfTheActionsStand_data();
    void theNumbersOfTheActionsStand();

    // The selection

    void aSelectionIsKeptAndTold()
    {
        const QStringList ids{u"B"_s, u"A"_s};
        m_controller->sl_selectedRecordsChanged(ids);
        QCOMPARE(m_controller->selectedRecords(), ids);
        QCOMPARE(m_controller->take(), QStringList{u"signal selected B,A"_s});
    }

    void theSameSelectionIsLookedAtAgainButNotTold()
    {
        m_controller->sl_selectedRecordsChanged({u"A"_s});
        m_controller->take();
        m_controller->available = {};
        m_controller->sl_selectedRecordsChanged({u"A"_s});
        QCOMPARE(m_controller->take(), QStringList());
        QVERIFY(!m_controller->recordAction(Controller::UserActionCopy)->isEnabled());
    }

    void theSameRecordsInAnotherOrderAreAnotherSelection()
    {
        m_controller->sl_selectedRecordsChanged({u"A"_s, u"B"_s});
        m_controller->sl_selectedRecordsChanged({u"B"_s, u"A"_s});
        QCOMPARE(m_controller->take(), (QStringList{u"signal selected A,B"_s, u"signal selected B,A"_s}));
    }

    void actionsAreEnabledBeforeTheSelectionIsTold()
    {
        QList<bool> seen;
        connect(m_controller.get(), &Controller::si_selectedRecordsChanged, this,
                [&] { seen << m_controller->recordAction(Controller::UserActionOverview)->isEnabled(); });
        m_controller->sl_selectedRecordsChanged({u"A"_s});
        m_controller->sl_selectedRecordsChanged({});
        QCOMPARE(seen, (QList<bool>{true, false}));
    }

    void anActionIsDisabledWhileItsAvailabilityIsAsked()
    {
        m_controller->sl_selectedRecordsChanged({u"A"_s});
        QStringList enabled;
        m_controller->whenAsked = [&](Controller::enUserAction action, const QStringList&) {
            enabled << (m_controller->recordAction(action)->isEnabled() ? u"on"_s : u"off"_s);
        };
        m_controller->sl_selectedRecordsChanged({u"A"_s});
        QCOMPARE(enabled, QStringList(10, u"off"_s));
    }

    void withoutASelectionNothingIsAsked()
    {
        int questions = 0;
        m_controller->whenAsked = [&](auto&&...) { ++questions; };
        m_controller->sl_selectedRecordsChanged({});
        QCOMPARE(questions, 0);
    }

    void anotherUserChangesWhatIsEnabledForTheSelection()
    {
        m_controller->sl_selectedRecordsChanged({u"A"_s});
        m_controller->take();
        QVERIFY(m_controller->recordAction(Controller::UserActionHistory)->isEnabled());
        m_login->change(UserRights::Archiving);
        QVERIFY(!m_controller->recordAction(Controller::UserActionHistory)->isEnabled());
        QVERIFY(m_controller->recordAction(Controller::UserActionDownload)->isEnabled());
        m_login->change(UserRights::HistoryComment);
        QVERIFY(m_controller->recordAction(Controller::UserActionHistory)->isEnabled());
        QCOMPARE(m_controller->take(), QStringList());
        QCOMPARE(m_controller->selectedRecords(), QStringList{u"A"_s});
    }

    // Transfers

    void aSchedulerHasAvailabilityLookedAtAgain()
    {
        SilentScheduler scheduler;
        QCOMPARE(evaluations([&] { m_controller->setTransferScheduler(&scheduler); }), 1);
        QCOMPARE(m_controller->transferScheduler(), &scheduler);
        QCOMPARE(std::as_const(*m_controller).transferScheduler(), &scheduler);
        QCOMPARE(evaluations([&] { Q_EMIT scheduler.si_transferAvailable(true); }), 1);
        QCOMPARE(evaluations([&] { Q_EMIT scheduler.si_transferAvailable(true); }), 1);
    }

    void theSameSchedulerASecondTimeChangesNothing()
    {
        SilentScheduler scheduler;
        m_controller->setTransferScheduler(&scheduler);
        QCOMPARE(evaluations([&] { m_controller->setTransferScheduler(&scheduler); }), 0);
        QCOMPARE(evaluations([&] { Q_EMIT scheduler.si_transferAvailable(true); }), 1);
    }

    void theSchedulerBeforeIsNotHeardAnyMore()
    {
        SilentScheduler before;
        SilentScheduler after;
        m_controller->setTransferScheduler(&before);
        QCOMPARE(evaluations([&] { m_controller->setTransferScheduler(&after); }), 1);
        QCOMPARE(evaluations([&] { Q_EMIT before.si_transferAvailable(true); }), 0);
        QCOMPARE(evaluations([&] { m_controller->setTransferScheduler(nullptr); }), 1);
        QCOMPARE(evaluations([&] { Q_EMIT after.si_transferAvailable(true); }), 0);
    }

    void aSchedulerThatIsGoneIsNotTouched()
    {
        std::optional<SilentScheduler> scheduler(std::in_place);
        m_controller->setTransferScheduler(&*scheduler);
        scheduler.reset();
        QCOMPARE(m_controller->transferScheduler(), nullptr);
        SilentScheduler another;
        m_controller->setTransferScheduler(&another);
        QCOMPARE(m_controller->transferScheduler(), &another);
    }

    // The rest

    void theDialogParentMayGo()
    {
        QCOMPARE(m_controller->dialogParent(), nullptr);
        auto window = std::make_unique<QWidget>();
        m_controller->setDialogParent(window.get());
        QCOMPARE(m_controller->dialogParent(), window.get());
        window.reset();
        QCOMPARE(m_controller->dialogParent(), nullptr);
    }

    void theIdOfTheDeviceIsTheDevice() { QCOMPARE(m_controller->activeDeviceID(), u"device"_s); }

    void slotsCanBeConnectedWithoutTheirLastParameter_data();
    void slotsCanBeConnectedWithoutTheirLastParameter();
    void shorterCallsStandForAnEmptyLastParameter();

private:
    /// How often `change` has availability looked at.
    int evaluations(const std::function<void()>& change)
    {
        m_controller->setUserActions(Controller::UserActionCopy);
        m_controller->sl_selectedRecordsChanged({u"A"_s});
        int questions = 0;
        m_controller->whenAsked = [&](auto&&...) { ++questions; };
        change();
        m_controller->whenAsked = {};
        return questions;
    }

    FixedRecordModel m_model{{{u"A"_s, makeRecord(u"A"_s)}, {u"B"_s, makeRecord(u"B"_s)}}};
    std::optional<UserLogin> m_login;
    std::unique_ptr<ScriptedController> m_controller;
};

void IZelkoGUIControllerTest::anActionLooksAsItsTableSays_data()
{
    QTest::addColumn<int>("flag");
    QTest::addColumn<QString>("icon");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("toolTip");
    QTest::addColumn<QString>("shortcut");
    QTest::newRow("reset") << 16 << u"Reset"_s << u"&Reset Record"_s << u"ActionReset"_s << u"Reset Record"_s << u"I"_s;
    QTest::newRow("download") << 4 << u"Download"_s << u"Down&load Record"_s << u"ActionDownload"_s
                              << u"Download Record"_s << u"D"_s;
    QTest::newRow("history") << 256 << u"History"_s << u"Edit &History Comments..."_s << u"ActionHistory"_s
                             << u"Edit History Comments..."_s << u"H"_s;
    QTest::newRow("rename") << 32 << u"Rename"_s << u"&Rename Record..."_s << u"ActionRecordingName"_s
                            << u"Rename Record..."_s << u"R"_s;
    QTest::newRow("bookmarks") << 64 << u"Bookmarks"_s << u"Edit &Bookmarks..."_s << u"ActionEditBookmarks"_s
                               << u"Edit Bookmarks..."_s << u"B"_s;
    QTest::newRow("copy") << 1 << u"EditCopy"_s << u"&Copy Record..."_s << u"ActionCopyRecording"_s
                          << u"Copy Record..."_s << u"C"_s;
    QTest::newRow("edit") << 8 << u"Edit"_s << u"&Edit Record..."_s << u"ActionEditRecording"_s << u"Edit Record..."_s
                          << u"E"_s;
    QTest::newRow("spectrum overview") << 512 << u"SpectrumOverview"_s << u"&Spectrum Overview..."_s
                                       << u"ActionSpectrumOverview"_s << u"Spectrum Overview..."_s << u"O"_s;
    QTest::newRow("delete") << 2 << u"Delete"_s << u"&Delete Record..."_s << u"ActionDelete"_s << u"Delete Record..."_s
                            << u"X"_s;
    QTest::newRow("deletable flag") << 128 << u"SetDeletable"_s << u"Toggle on/off Deletable Flag"_s
                                    << u"ActionToggleDeletable"_s << u"Toggle on/off Deletable Flag"_s << u"T"_s;
}

void IZelkoGUIControllerTest::anActionLooksAsItsTableSays()
{
    QFETCH(const int, flag);
    QFETCH(const QString, icon);
    const QString path = u":/Zelko/RecordList/%1.svg"_s.arg(icon);
    const QAction* const action = m_controller->recordAction(static_cast<Controller::enUserAction>(flag));
    QVERIFY(action);
    QVERIFY2(QFile::exists(path), qPrintable(path));
    QVERIFY(!picture(action->icon()).isNull());
    QCOMPARE(picture(action->icon()), picture(QIcon(path)));
    QTEST(action->text(), "text");
    QTEST(action->objectName(), "name");
    QTEST(action->toolTip(), "toolTip");
    QFETCH(const QString, shortcut);
    QCOMPARE(action->shortcut(), QKeySequence(u"Ctrl+"_s + shortcut));
    QCOMPARE(action->parent(), m_controller.get());
}

void IZelkoGUIControllerTest::theNumbersOfTheActionsStand_data()
{
    QTest::addColumn<int>("value");
    QTest::addColumn<int>("number");
    QTest::newRow("copy") << int(Controller::UserActionCopy) << 1;
    QTest::newRow("delete") << int(Controller::UserActionDelete) << 2;
    QTest::newRow("download") << int(Controller::UserActionDownload) << 4;
    QTest::newRow("edit") << int(Controller::UserActionEdit) << 8;
    QTest::newRow("reset") << int(Controller::UserActionReset) << 16;
    QTest::newRow("rename") << int(Controller::UserActionRename) << 32;
    QTest::newRow("bookmarks") << int(Controller::UserActionBookmarks) << 64;
    QTest::newRow("deletable") << int(Controller::UserActionDeletable) << 128;
    QTest::newRow("history") << int(Controller::UserActionHistory) << 256;
    QTest::newRow("overview") << int(Controller::UserActionOverview) << 512;
}

void IZelkoGUIControllerTest::theNumbersOfTheActionsStand()
{
    QFETCH(const int, value);
    QTEST(value, "number");
}

void IZelkoGUIControllerTest::slotsCanBeConnectedWithoutTheirLastParameter_data()
{
    QTest::addColumn<QByteArray>("signature");
    for (const char* const signature :
         {"sl_activeDeviceChanged(QString)", "sl_copyRecord(QString,quint64,quint64,QString)",
          "sl_setBookmarkEntries(QString,QVector<ZELKO_XML::BookmarkEntry>)", "sl_setDeletableFlag(QString,bool)",
          "sl_overviewSpectrumStreamed(QString,qint64,qint64,uint,ulong,ZelkoDataTypes::eFFT_Window,QString,uint)",
          "sl_resyncRecord(QString)", "sl_copyRecord()"}) {
        QTest::newRow(signature) << QByteArray(signature);
    }
}

void IZelkoGUIControllerTest::slotsCanBeConnectedWithoutTheirLastParameter()
{
    QFETCH(const QByteArray, signature);
    const QByteArray normalized = QMetaObject::normalizedSignature(signature.constData());
    QVERIFY(Controller::staticMetaObject.indexOfSlot(normalized.constData()) >= 0);
}

void IZelkoGUIControllerTest::shorterCallsStandForAnEmptyLastParameter()
{
    Controller& controller = *m_controller;
    controller.sl_activeDeviceChanged(u"D2"_s);
    controller.sl_copyRecord(u"A"_s, 1, 2, u"copy"_s);
    controller.sl_setBookmarkEntries(u"A"_s, {});
    controller.sl_setDeletableFlag(u"A"_s, true);
    controller.sl_overviewSpectrumStreamed(u"A"_s, 1, 2, 3, 4, ZelkoDataTypes::eFFT_Window::Hann, u"::1"_s, 5);
    controller.sl_resyncRecord(u"A"_s);
    QCOMPARE(m_controller->take(),
             (QStringList{u"device D2 in "_s, u"copy A 1-2 copy on ''"_s, u"0 bookmarks of A on ''"_s,
                          u"flag A 1 delayed 0"_s, u"spectrum of A on ''"_s, u"resync A on ''"_s}));
}

QTEST_MAIN(IZelkoGUIControllerTest)
#include "tst_izelkoguicontroller.moc"
