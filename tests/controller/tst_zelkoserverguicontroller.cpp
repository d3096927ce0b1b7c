#include <zelkoguibase/controller/zelkoserverguicontroller.h>

#include "controllersite.h"
#include "patience.h"
#include "recordsignallog.h"
#include "testrecords.h"
#include "tracemask.h"

#include <host/activedevicecontrol.h>
#include <resources/zelkoicons.h>
#include <zelkobase/models/abstractrecordlistmodel.h>

#include <QAction>
#include <QtTest>

#include <optional>

using namespace Qt::StringLiterals;
using ZelkoGUI::IZelkoGUIController;
using ZelkoGUI::ZelkoServerGUIController;

namespace {

const QString missingText =
    u"zelkoserverguicontroller: ZelkoServerGUIController::connectVT: not all elements are available for VT-Path: "
    u"/SubSystems/north/ZELKO/Device/D1"_s;

bool isAnythingEnabled(const IZelkoGUIController& controller)
{
    const QList<QAction*> actions = controller.recordActions();
    return std::any_of(actions.begin(), actions.end(), [](const QAction* action) { return action->isEnabled(); });
}

} // namespace

/// How a controller comes to its device, and loses it.
class ZelkoServerGUIControllerTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { registerZelkoIcons(); }
    void init()
    {
        m_site.emplace();
        m_control.emplace();
        m_branch.emplace(*m_site->data, u"D1"_s);
        make();
    }
    void cleanup()
    {
        m_controller.reset();
        m_log.reset();
        m_branch.reset();
        m_control.reset();
        m_site.reset();
    }

    // Before there is a device

    void startsWithoutADevice()
    {
        QCOMPARE(m_controller->activeDevice(), QString());
        QCOMPARE(m_controller->activeDeviceID(), QString());
        QCOMPARE(m_controller->activeSubsystem(), u"north"_s);
        QCOMPARE(m_controller->recordListModel()->rowCount(), 0);
        QCOMPARE(m_controller->recordListModel()->parent(), m_controller.get());
        QVERIFY(!m_controller->isConnected());
        QVERIFY(!isAnythingEnabled(*m_controller));
        QCOMPARE(m_controller->recordActions().size(), 10);
    }

    void theShortFormDoesNotOfferTheSpectrumOverview()
    {
        const ZelkoServerGUIController controller(m_site->handler, IZelkoGUIController::UserActions(QFlag(1023)),
                                                  nullptr);
        QCOMPARE(controller.recordActions().size(), 9);
        QCOMPARE(controller.recordAction(IZelkoGUIController::UserActionOverview), nullptr);
        QVERIFY(controller.recordAction(IZelkoGUIController::UserActionEdit));
    }

    void theShortFormDoesNotOfferTheSpectrumOverviewLaterEither()
    {
        ZelkoServerGUIController controller(m_site->handler, IZelkoGUIController::UserActionCopy, nullptr);
        IZelkoGUIController& base = controller;
        base.setUserActions(IZelkoGUIController::UserActions(QFlag(1023)));
        QCOMPARE(controller.recordActions().size(), 9);
        QCOMPARE(controller.recordAction(IZelkoGUIController::UserActionOverview), nullptr);
        m_controller->setUserActions(IZelkoGUIController::UserActionOverview);
        QVERIFY(m_controller->recordAction(IZelkoGUIController::UserActionOverview));
    }

    void theShortFormIsToldItsDevice()
    {
        m_branch->putAll();
        ZelkoServerGUIController controller(m_site->handler, IZelkoGUIController::UserActionEdit, nullptr);
        controller.sl_activeDeviceChanged(u"D1"_s);
        QTRY_VERIFY_WITH_TIMEOUT(controller.isConnected(), patience);
        QCOMPARE(controller.activeDevice(), u"D1"_s);
    }

    // Coming to a device

    void connectsToTheActiveDevice()
    {
        m_branch->putAll();
        m_branch->setRecord(makeRecord(u"A"_s));
        m_branch->setRecord(makeRecord(u"B"_s));
        m_branch->set("LoadCount", 2);
        m_control->setActiveDevice(u"D1"_s, u"north"_s);
        QCOMPARE(m_log->take(), (QStringList{u"progress 0/0"_s, u"device D1 in north"_s}));
        QVERIFY(!m_controller->isConnected());
        QTRY_VERIFY_WITH_TIMEOUT(m_controller->isConnected(), patience);
        // The rows are told before there is a count to compare them with.
        QCOMPARE(m_log->take(), (QStringList{u"progress 0/0"_s, u"progress 0/0"_s, u"established D1"_s}));
        QCOMPARE(m_controller->recordListModel()->rowCount(), 2);
        QCOMPARE(m_site->client->take(), (QStringList{u"added Synchronize 0"_s, u"added SyncOneRecord 0"_s,
                                                      u"added DeleteRecordingList 0"_s, u"added SetRecordIdle 0"_s}));
        QCOMPARE(m_site->data->lastAsked, u"north 1"_s);
    }

    void isConnectedWhenItSaysSo()
    {
        m_branch->putAll();
        bool connected = false;
        const QObject untilHere;
        connect(m_controller.get(), &IZelkoGUIController::si_connectionEstablished, &untilHere,
                [&] { connected = m_controller->isConnected(); });
        activate();
        QVERIFY(connected);
    }

    void enablesTheActionsOfASelectionThatWasThereBefore()
    {
        m_branch->putAll();
        m_branch->setRecord(makeRecord(u"A"_s));
        m_control->setActiveDevice(u"D1"_s, u"north"_s);
        m_controller->sl_selectedRecordsChanged({u"A"_s});
        QVERIFY(!isAnythingEnabled(*m_controller));
        QTRY_VERIFY_WITH_TIMEOUT(m_controller->isConnected(), patience);
        QVERIFY(isAnythingEnabled(*m_controller));
    }

    void waitsForEachItem_data()
    {
        QTest::addColumn<QString>("missing");
        for (const QString& name : DeviceBranch::names()) {
            QTest::addRow("%s", qPrintable(name)) << name;
        }
    }
    void waitsForEachItem()
    {
        QFETCH(const QString, missing);
        const TraceTexts traces;
        m_branch->putAllBut(missing);
        m_control->setActiveDevice(u"D1"_s, u"north"_s);
        QTRY_VERIFY_WITH_TIMEOUT(traces.withSources().size() >= 2, patience);
        QCOMPARE(traces.withSources().mid(0, 2), (QStringList{missingText, missingText}));
        QVERIFY(!m_controller->isConnected());
        QCOMPARE(m_site->data->timesAsked, 0);
        QCOMPARE(m_site->client->take(), QStringList());
        m_branch->put(missing);
        QTRY_VERIFY_WITH_TIMEOUT(m_controller->isConnected(), patience);
        QVERIFY(m_log->take().contains(u"established D1"_s));
    }

    void waitsQuietlyIfWarningsAreNotTraced()
    {
        const TraceTexts traces;
        const TraceMask errorsOnly(ErrorHandler::TraceError);
        m_control->setActiveDevice(u"D1"_s, u"north"_s);
        const QSignalSpy ticks(connectTimer(), &QTimer::timeout); // told behind the controller
        QTRY_VERIFY_WITH_TIMEOUT(ticks.size() >= 3, patience);
        QCOMPARE(traces.withSources(), QStringList());
    }

    void keepsTheRowsThatItHasWhileItWaitsForTheRest()
    {
        const TraceTexts traces;
        m_branch->putAllBut(u"SetRecordIdle"_s);
        m_branch->setRecord(makeRecord(u"A"_s));
        RecordSignalLog rows(m_controller->recordListModel());
        m_control->setActiveDevice(u"D1"_s, u"north"_s);
        QTRY_VERIFY_WITH_TIMEOUT(traces.withSources().size() >= 3, patience);
        QCOMPARE(rows.take(), (QStringList{u"begin insert 0-0"_s, u"end insert 0-0"_s, u"record changed A"_s}));
    }

    void waitsForTheWritingEnd()
    {
        const TraceTexts traces;
        m_branch->putAll();
        m_site->data->client.reset();
        m_control->setActiveDevice(u"D1"_s, u"north"_s);
        QTRY_VERIFY_WITH_TIMEOUT(m_site->data->timesAsked >= 2, patience);
        QVERIFY(!m_controller->isConnected());
        QCOMPARE(traces.withSources(), QStringList());
        m_site->data->client = m_site->client;
        QTRY_VERIFY_WITH_TIMEOUT(m_controller->isConnected(), patience);
    }

    void doesNotLookAnyMoreOnceItIsConnected()
    {
        m_branch->putAll();
        activate();
        QCOMPARE(m_site->data->timesAsked, 1);
        QVERIFY(!connectTimer()->isActive());
    }

    void looksEvery100Milliseconds()
    {
        const QTimer* const timer = connectTimer();
        QVERIFY(!timer->isActive());
        m_control->setActiveDevice(u"D1"_s, u"north"_s);
        QVERIFY(timer->isActive());
        QVERIFY(!timer->isSingleShot());
        QCOMPARE(timer->interval(), 100);
        m_control->setActiveDevice(QString(), QString());
        QVERIFY(!timer->isActive());
    }

    // Another device, or none

    void theSameDeviceStaysConnected()
    {
        m_branch->putAll();
        activate();
        m_controller->sl_activeDeviceChanged(u"D1"_s, u"north"_s);
        QVERIFY(m_controller->isConnected());
        QCOMPARE(m_log->take(), QStringList{u"device D1 in north"_s});
    }

    void theSameDeviceOfAnotherSubSystemIsAnotherOne()
    {
        m_branch->putAll();
        activate();
        m_site->data->configuration->SetCurrentSubSystem(u"south"_s);
        m_controller->sl_activeDeviceChanged(u"D1"_s, u"south"_s);
        QVERIFY(!m_controller->isConnected());
        QCOMPARE(m_log->take(), (QStringList{u"progress 0/0"_s, u"device D1 in south"_s}));
    }

    void anotherDeviceTakesTheOldOneAway()
    {
        m_branch->putAll();
        m_branch->setRecord(makeRecord(u"A"_s));
        DeviceBranch other(*m_site->data, u"D2"_s);
        other.putAll();
        other.setRecord(makeRecord(u"Z"_s));
        activate();
        m_controller->sl_selectedRecordsChanged({u"A"_s});
        m_log->take();

        m_control->setActiveDevice(u"D2"_s, u"north"_s);
        // The first is for the rows that went.
        QCOMPARE(m_log->take(),
                 (QStringList{u"progress 0/0"_s, u"selected "_s, u"progress 0/0"_s, u"device D2 in north"_s}));
        QVERIFY(!m_controller->isConnected());
        QCOMPARE(m_controller->recordListModel()->rowCount(), 0);
        QTRY_VERIFY_WITH_TIMEOUT(m_controller->isConnected(), patience);
        QCOMPARE(m_log->take(), (QStringList{u"progress 0/0"_s, u"progress 0/0"_s, u"established D2"_s}));
        QVERIFY(m_controller->recordListModel()->hasRecord(u"Z"_s));
    }

    void actionsAreOffBeforeTheDeviceIsTold()
    {
        m_branch->putAll();
        m_branch->setRecord(makeRecord(u"A"_s));
        activate();
        m_controller->sl_selectedRecordsChanged({u"A"_s});
        QVERIFY(isAnythingEnabled(*m_controller));
        QList<bool> enabled;
        const QObject untilHere;
        connect(m_controller.get(), &IZelkoGUIController::si_activeDeviceChanged, &untilHere,
                [&] { enabled << isAnythingEnabled(*m_controller); });
        m_control->setActiveDevice(QString(), QString());
        QCOMPARE(enabled, QList<bool>{false});
        QCOMPARE(m_controller->selectedRecords(), QStringList());
    }

    void noDeviceLooksForNothing()
    {
        m_branch->putAll();
        activate();
        m_control->setActiveDevice(QString(), QString());
        QCOMPARE(m_log->take(), (QStringList{u"progress 0/0"_s, u"device  in north"_s}));
        QVERIFY(!m_controller->isConnected());
        QCOMPARE(m_controller->activeDevice(), QString());
        activate();
        QVERIFY(m_controller->isConnected());
    }

    void aDeviceThatIsDeletedElsewhereIsNoMatter_data()
    {
        QTest::addColumn<QString>("device");
        QTest::addColumn<QString>("subSystem");
        QTest::newRow("another device") << u"D2"_s << u"north"_s;
        QTest::newRow("a device of the same name in another sub system") << u"D1"_s << u"south"_s;
    }
    void aDeviceThatIsDeletedElsewhereIsNoMatter()
    {
        QFETCH(const QString, device);
        QFETCH(const QString, subSystem);
        m_branch->putAll();
        activate();
        m_control->deleteDevice(device, subSystem);
        QCOMPARE(m_log->take(), QStringList());
        QVERIFY(m_controller->isConnected());
    }

    void aDeletedDeviceIsLetGo()
    {
        m_branch->putAll();
        m_branch->setRecord(makeRecord(u"A"_s));
        activate();
        m_controller->sl_selectedRecordsChanged({u"A"_s});
        m_log->take();
        m_control->deleteDevice(u"D1"_s, u"north"_s);
        QCOMPARE(m_log->take(),
                 (QStringList{u"progress 0/0"_s, u"selected "_s, u"progress 0/0"_s, u"device  in north"_s}));
        QCOMPARE(m_controller->activeDevice(), QString());
        QVERIFY(!m_controller->isConnected());
    }

    void aDeletedDeviceCanBecomeTheActiveOneAgain()
    {
        m_branch->putAll();
        activate();
        m_control->deleteDevice(u"D1"_s, u"north"_s);
        activate();
        QVERIFY(m_controller->isConnected());
    }

    void theEndLetsGoOfTheDevice()
    {
        m_branch->putAll();
        m_branch->setRecord(makeRecord(u"A"_s));
        activate();
        m_controller->sl_selectedRecordsChanged({u"A"_s});
        m_log->take();
        m_controller.reset();
        QCOMPARE(m_log->take(),
                 (QStringList{u"progress 0/0"_s, u"selected "_s, u"progress 0/0"_s, u"device D1 in north"_s}));
        // Nobody is left to be told of changes.
        m_branch->set("LoadCount", 7);
        QCOMPARE(m_branch->value<int>("LoadCount")->ObserverCount(), std::size_t{0});
    }

    // The connection of the device

    void aConnectionIsToldForTheCurrentSubSystemOnly_data()
    {
        QTest::addColumn<QString>("subSystem");
        QTest::addColumn<bool>("connected");
        QTest::addColumn<QStringList>("signalTexts");
        QTest::newRow("the current one") << u"north"_s << true << QStringList{u"device D1 in north"_s};
        QTest::newRow("the current one, but gone already") << u"north"_s << false << QStringList();
        QTest::newRow("another one") << u"south"_s << true << QStringList();
    }
    void aConnectionIsToldForTheCurrentSubSystemOnly()
    {
        QFETCH(const QString, subSystem);
        QFETCH(const bool, connected);
        m_branch->putAll();
        activate();
        m_site->data->connected = {u"south"_s};
        if (connected) {
            m_site->data->connected.insert(u"north"_s);
        }
        Q_EMIT m_site->data->si_allTicsConnected(subSystem);
        QTEST(m_log->take(), "signalTexts");
    }

    void aConnectionThatComesLateIsFound()
    {
        m_site->data->setConnected(u"north"_s, false);
        m_control->setActiveDevice(u"D1"_s, u"north"_s);
        m_branch->putAll();
        m_log->take();
        m_site->data->setConnected(u"north"_s, true);
        QCOMPARE(m_log->take(), QStringList{u"device D1 in north"_s});
        QTRY_VERIFY_WITH_TIMEOUT(m_controller->isConnected(), patience);
    }

    void aConnectionOfTheSubSystemThatBecameTheCurrentOneIsUsed()
    {
        m_branch->putAll();
        m_branch->setRecord(makeRecord(u"A"_s));
        activate();
        m_site->data->configuration->SetCurrentSubSystem(u"south"_s);
        DeviceBranch south(*m_site->data, u"D1"_s);
        south.putAll();
        south.setRecord(makeRecord(u"S"_s));
        QVERIFY(m_controller->isConnected());
        QVERIFY(m_controller->recordListModel()->hasRecord(u"A"_s));

        m_site->data->setConnected(u"south"_s, true);
        QCOMPARE(m_log->take(), (QStringList{u"progress 0/0"_s, u"progress 0/0"_s, u"device D1 in south"_s}));
        QVERIFY(!m_controller->isConnected());
        QTRY_VERIFY_WITH_TIMEOUT(m_controller->isConnected(), patience);
        QVERIFY(m_controller->recordListModel()->hasRecord(u"S"_s));
        QVERIFY(!m_controller->recordListModel()->hasRecord(u"A"_s));
        QCOMPARE(m_site->data->lastAsked, u"south 1"_s);
    }

    void aConnectionThatIsBackUnderTheSamePathIsUsed()
    {
        m_branch->putAll();
        m_branch->setRecord(makeRecord(u"A"_s));
        activate();
        m_controller->sl_selectedRecordsChanged({u"A"_s});
        m_site->client->take();

        m_branch->removeAll();
        m_site->data->setConnected(u"north"_s, false);
        QVERIFY(!m_controller->isConnected());
        QTRY_VERIFY_WITH_TIMEOUT(!isAnythingEnabled(*m_controller), patience);
        QCOMPARE(m_controller->selectedRecords(), QStringList{u"A"_s});

        m_branch->putAll();
        m_branch->setRecord(makeRecord(u"A"_s));
        m_log->take();
        m_site->data->setConnected(u"north"_s, true);
        QTRY_VERIFY_WITH_TIMEOUT(m_controller->isConnected(), patience);
        const QStringList signalTexts = m_log->take();
        QCOMPARE(signalTexts.count(u"device D1 in north"_s), 1);
        QCOMPARE(signalTexts.last(), u"established D1"_s);
        QVERIFY(isAnythingEnabled(*m_controller));
        QCOMPARE(m_site->client->take().size(), 4);
    }

    void valuesThatCameBackBeforeTheLossWasLookedAtAreUsed()
    {
        m_branch->putAll();
        activate();
        m_branch->removeAll();
        m_branch->putAll();
        QVERIFY(!m_controller->isConnected());
        QTRY_VERIFY_WITH_TIMEOUT(m_controller->isConnected(), patience);
        m_branch->set("LoadCount", 5);
        m_branch->set("LoadedCompletly", false);
        QCOMPARE(m_log->take().last(), u"progress 0/5"_s);
    }

    void aLossWhileRecordsAreLoadedEndsTheirProgress()
    {
        m_branch->putAll();
        m_branch->setRecord(makeRecord(u"A"_s));
        m_branch->set("LoadedCompletly", false);
        m_branch->set("LoadCount", 10);
        activate();
        m_branch->remove(u"Map"_s);
        QCOMPARE(m_log->take(), QStringList{u"progress 0/10"_s});
        m_branch->removeAll();
        QStringList signalTexts;
        QTRY_VERIFY_WITH_TIMEOUT(!(signalTexts += m_log->take()).isEmpty(), patience);
        QCOMPARE(signalTexts, QStringList{u"progress 0/0"_s});
    }

    void anObservedValueThatGoesStartsTheSearch_data()
    {
        QTest::addColumn<QString>("missing");
        for (const char* const name : {"LoadCount", "LoadedCompletly", "Extended", "IpAddress"}) {
            QTest::newRow(name) << QString::fromLatin1(name);
        }
    }
    void anObservedValueThatGoesStartsTheSearch()
    {
        QFETCH(const QString, missing);
        m_branch->putAll();
        activate();
        m_site->client->take();
        const TraceTexts traces;
        m_branch->remove(missing);
        QVERIFY(!m_controller->isConnected());
        QVERIFY(traces.contain(u"VT element <%1> has been deleted."_s.arg(missing)));
        QTRY_VERIFY_WITH_TIMEOUT(connectTimer()->isActive(), patience);
        QCOMPARE(connectTimer()->interval(), 100);
        m_branch->put(missing);
        QTRY_VERIFY_WITH_TIMEOUT(m_controller->isConnected(), patience);
        QCOMPARE(m_site->client->take().size(), 4);
    }

    void theSearchForALostDeviceIsTracedOnce()
    {
        m_branch->putAll();
        activate();
        const TraceTexts traces;
        for (int loss = 1; loss <= 2; ++loss) {
            m_branch->removeAll();
            QSignalSpy ticks(connectTimer(), &QTimer::timeout);
            QTRY_VERIFY_WITH_TIMEOUT(ticks.size() >= 3, patience);
            QCOMPARE(traces.withSources().count(missingText), loss);
            m_branch->putAll();
            QTRY_VERIFY_WITH_TIMEOUT(m_controller->isConnected(), patience);
        }
    }

    void theSearchForANewDeviceIsTracedAgainAfterALoss()
    {
        m_branch->putAll();
        activate();
        m_branch->removeAll();
        QTRY_VERIFY_WITH_TIMEOUT(connectTimer()->isActive(), patience);
        m_control->setActiveDevice(QString(), QString());
        const TraceTexts traces;
        m_control->setActiveDevice(u"D1"_s, u"north"_s);
        QTRY_VERIFY_WITH_TIMEOUT(traces.withSources().count(missingText) >= 3, patience);
    }

private:
    QTimer* connectTimer() const { return m_controller->findChild<QTimer*>(u"connectTimer"_s); }

    void make()
    {
        m_controller = std::make_unique<ZelkoServerGUIController>(
            m_site->handler, &*m_control, u"records"_s, IZelkoGUIController::UserActions(QFlag(1023)), nullptr);
        m_log.emplace(m_controller.get());
    }

    /// Makes D1 the active device and waits until it is connected; nothing is left in the log.
    void activate()
    {
        m_control->setActiveDevice(u"D1"_s, u"north"_s);
        QTRY_VERIFY_WITH_TIMEOUT(m_controller->isConnected(), patience);
        m_log->take();
    }

    std::optional<ControllerSite> m_site;
    std::optional<DeviceBranch> m_branch;
    std::optional<ActiveDeviceControl> m_control;
    std::optional<ControllerLog> m_log;
    std::unique_ptr<ZelkoServerGUIController> m_controller;
};

QTEST_MAIN(ZelkoServerGUIControllerTest)
#include "tst_zelkoserverguicontroller.moc"
