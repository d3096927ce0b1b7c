#include <zelkoguibase/controller/zelkoserverguicontroller.h>

#include "controllersite.h"
#include "patience.h"
#include "testrecords.h"
#include "tracemask.h"

#include <resources/zelkoicons.h>

#include <QAction>
#include <QtTest>

#include <optional>

using namespace Qt::StringLiterals;
using ZelkoGUI::IZelkoGUIController;
using ZelkoGUI::ZelkoServerGUIController;

/// What a connected controller makes of changes of its device's values and records.
class DeviceValueUpdatesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { registerZelkoIcons(); }
    void init()
    {
        m_site.emplace();
        m_branch.emplace(*m_site->data, u"D1"_s);
        m_branch->putAll();
        m_branch->setRecord(makeRecord(u"A"_s));
        m_branch->setRecord(makeRecord(u"B"_s));
        m_controller = std::make_unique<ZelkoServerGUIController>(
            m_site->handler, IZelkoGUIController::UserActions(QFlag(1023)), nullptr);
        m_log.emplace(m_controller.get());
        m_controller->sl_activeDeviceChanged(u"D1"_s);
        QTRY_VERIFY_WITH_TIMEOUT(m_controller->isConnected(), patience);
        m_log->take();
    }
    void cleanup()
    {
        m_controller.reset();
        m_log.reset();
        m_branch.reset();
        m_site.reset();
    }

    // Load progress; there are two records

    void progressIsToldWhenItsValuesChange_data()
    {
        QTest::addColumn<int>("total");
        QTest::addColumn<bool>("complete");
        QTest::addColumn<QString>("progress");
        QTest::newRow("some are missing") << 5 << false << u"progress 2/5"_s;
        QTest::newRow("some are missing of a list that is complete") << 5 << true << u"progress 0/0"_s;
        QTest::newRow("as many as there are") << 2 << false << u"progress 0/0"_s;
        QTest::newRow("more than there are") << 1 << false << u"progress 0/0"_s;
        QTest::newRow("one is missing") << 3 << false << u"progress 2/3"_s;
    }
    void progressIsToldWhenItsValuesChange()
    {
        QFETCH(const int, total);
        QFETCH(const bool, complete);
        QFETCH(const QString, progress);
        m_branch->set("LoadedCompletly", !complete);
        m_log->take();
        m_branch->set("LoadCount", total);
        QCOMPARE(m_log->take().size(), 1);
        m_branch->set("LoadedCompletly", complete);
        QCOMPARE(m_log->take(), QStringList{progress});
    }

    void theListIsCompleteAsLongAsTheDeviceSaysSoAndIsThere()
    {
        QVERIFY(m_controller->isLoadedCompletely());
        m_branch->set("LoadedCompletly", false);
        QVERIFY(!m_controller->isLoadedCompletely());
        m_branch->set("LoadedCompletly", true);
        QVERIFY(m_controller->isLoadedCompletely());
        m_branch->remove(u"Extended"_s);
        QVERIFY(!m_controller->isLoadedCompletely());
    }

    void progressIsToldWhenRecordsCome()
    {
        m_branch->set("LoadedCompletly", false);
        m_branch->set("LoadCount", 4);
        m_log->take();
        m_branch->setRecord(makeRecord(u"C"_s));
        m_branch->setRecord(makeRecord(u"D"_s));
        QCOMPARE(m_log->take(), (QStringList{u"progress 3/4"_s, u"progress 0/0"_s}));
    }

    void progressIsToldWhenAllRecordsGo()
    {
        m_branch->set("LoadedCompletly", false);
        m_branch->set("LoadCount", 4);
        m_log->take();
        m_branch->map()->Clear(nullptr);
        QCOMPARE(m_log->take(), QStringList{u"progress 0/4"_s});
    }

    // Availability

    void theValuesOfTheRulesHaveAvailabilityLookedAt_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<int>("looks");
        QTest::newRow("whether the device is an extended one") << u"Extended"_s << 1;
        QTest::newRow("the address") << u"IpAddress"_s << 1;
        QTest::newRow("the number of records") << u"LoadCount"_s << 0;
        QTest::newRow("whether all are loaded") << u"LoadedCompletly"_s << 0;
        QTest::newRow("a command") << u"Synchronize"_s << 0;
    }
    void theValuesOfTheRulesHaveAvailabilityLookedAt()
    {
        QFETCH(const QString, name);
        QFETCH(const int, looks);
        QCOMPARE(looksDuring([&] { valueOf(name)->HasChanged(TChangeCode::ValueChanged, nullptr); }), looks);
    }

    void eachChangeIsALookOfItsOwn_data()
    {
        QTest::addColumn<QStringList>("selection");
        QTest::newRow("without a selection") << QStringList{};
        QTest::newRow("with a selection") << QStringList{u"A"_s};
    }
    void eachChangeIsALookOfItsOwn()
    {
        QFETCH(const QStringList, selection);
        m_controller->sl_selectedRecordsChanged(selection);
        QCOMPARE(looksDuring([&] {
                     valueOf(u"Extended"_s)->HasChanged(TChangeCode::ValueChanged, nullptr);
                     valueOf(u"IpAddress"_s)->HasChanged(TChangeCode::ValueChanged, nullptr);
                     valueOf(u"Extended"_s)->HasChanged(TChangeCode::ValueChanged, nullptr);
                 }),
                 3);
    }

    void otherChangesOfTheValuesAreIgnored_data()
    {
        QTest::addColumn<int>("code");
        for (const int code : {2, 16, 18, 23, 99}) {
            QTest::addRow("code %d", code) << code;
        }
    }
    void otherChangesOfTheValuesAreIgnored()
    {
        QFETCH(const int, code);
        const TraceTexts traces;
        QCOMPARE(looksDuring([&] {
                     for (const char* const name : {"Extended", "IpAddress", "LoadCount", "LoadedCompletly"}) {
                         valueOf(QLatin1String(name))->NotifyObservers(static_cast<TChangeCode>(code), nullptr);
                     }
                     QCoreApplication::processEvents();
                 }),
                 0);
        QCOMPARE(m_log->take(), QStringList());
        QVERIFY(m_controller->isConnected());
        QCOMPARE(traces.withSources(), QStringList());
    }

    void aLockedValueIsNoDeletedOne()
    {
        const TraceTexts traces;
        m_branch->value<bool>("Extended")->SetState(TValueState::Locked, nullptr);
        QVERIFY(m_controller->isConnected());
        QCOMPARE(traces.withSources(), QStringList());
    }

    void extendedSwitchesRename()
    {
        m_controller->sl_selectedRecordsChanged({u"A"_s});
        QVERIFY(isEnabled(IZelkoGUIController::UserActionRename));
        m_branch->set("Extended", false);
        QVERIFY(!isEnabled(IZelkoGUIController::UserActionRename));
    }

    void aChangeOfASelectedRecordHasAvailabilityLookedAt()
    {
        m_controller->sl_selectedRecordsChanged({u"A"_s});
        auto changed = makeRecord(u"A"_s);
        changed->SetDeletable(true);
        QVERIFY(!isEnabled(IZelkoGUIController::UserActionDelete));
        m_branch->setRecord(changed);
        QVERIFY(isEnabled(IZelkoGUIController::UserActionDelete));
        QCOMPARE(looksDuring([&] { m_branch->setRecord(makeRecord(u"A"_s)); }), 1);
    }

    void aChangeOfAnotherRecordHasNot()
    {
        m_controller->sl_selectedRecordsChanged({u"A"_s});
        QCOMPARE(looksDuring([&] { m_branch->setRecord(makeRecord(u"B"_s, 2)); }), 0);
    }

    void aListThatIsEmptiedDisablesTheSelection()
    {
        m_controller->sl_selectedRecordsChanged({u"A"_s});
        QVERIFY(isEnabled(IZelkoGUIController::UserActionBookmarks));
        m_branch->map()->Clear(nullptr);
        QVERIFY(!isEnabled(IZelkoGUIController::UserActionBookmarks));
        QCOMPARE(m_controller->selectedRecords(), QStringList{u"A"_s});
    }

    void aListThatIsEmptiedWithoutASelectionIsNotLookedAt()
    {
        QCOMPARE(looksDuring([&] { m_branch->map()->Clear(nullptr); }), 0);
    }

    // Deletion

    void aDeletedValueIsTracedAndLookedAtLater_data()
    {
        QTest::addColumn<QString>("name");
        for (const char* const name : {"LoadCount", "LoadedCompletly", "Extended", "IpAddress"}) {
            QTest::newRow(name) << QString::fromLatin1(name);
        }
    }
    void aDeletedValueIsTracedAndLookedAtLater()
    {
        QFETCH(const QString, name);
        const TraceTexts traces;
        QCOMPARE(looksDuring([&] { m_branch->remove(name); }), 0);
        QCOMPARE(
            traces.withSources(),
            QStringList{
                u"zelkoserverguicontroller: ZelkoServerGUIController: VT element <%1> has been deleted."_s.arg(name)});
        QVERIFY(!m_controller->isConnected());
        QCOMPARE(looksDuring([&] { QCoreApplication::processEvents(); }), 1);
    }

    void aDeletedValueIsNotTracedIfWarningsAreNotWanted()
    {
        const TraceTexts traces;
        const TraceMask errorsOnly(ErrorHandler::TraceError);
        m_branch->remove(u"Extended"_s);
        QCOMPARE(traces.withSources(), QStringList());
    }

    // The list itself and the commands are not observed.
    void anotherThatIsDeletedIsNotTraced_data()
    {
        QTest::addColumn<QString>("name");
        for (const char* const name : {"Map", "Synchronize", "SyncOneRecord", "DeleteRecordingList", "SetRecordIdle"}) {
            QTest::newRow(name) << QString::fromLatin1(name);
        }
    }
    void anotherThatIsDeletedIsNotTraced()
    {
        QFETCH(const QString, name);
        const TraceTexts traces;
        m_branch->remove(name);
        QCoreApplication::processEvents();
        QCOMPARE(traces.withSources(), QStringList());
        QVERIFY(m_controller->isConnected());
    }

    void aDeletedCommandIsNotWritten()
    {
        m_branch->remove(u"SyncOneRecord"_s);
        m_branch->remove(u"Synchronize"_s);
        m_site->client->take();
        m_controller->sl_resyncRecord(u"A"_s);
        m_controller->sl_resyncRecordList();
        QCOMPARE(m_site->client->take(), QStringList());
        m_controller->sl_selectedRecordsChanged({u"A"_s});
        QVERIFY(!isEnabled(IZelkoGUIController::UserActionBookmarks));
    }

    void aCommandThatWentWithAnotherValueIsFoundAgain()
    {
        m_branch->remove(u"SetRecordIdle"_s);
        m_branch->remove(u"IpAddress"_s);
        QVERIFY(!m_controller->isConnected());
        m_branch->put(u"SetRecordIdle"_s);
        m_branch->put(u"IpAddress"_s);
        m_site->client->take();
        QTRY_VERIFY_WITH_TIMEOUT(m_controller->isConnected(), patience);
        QVERIFY(m_site->client->take().contains(u"added SetRecordIdle 0"_s));
    }

    void aLostConnectionIsTracedOncePerObservedValue()
    {
        const TraceTexts traces;
        m_branch->removeAll();
        QCOMPARE(traces.withSources().size(), 4);
    }

    void whatRestsOnADeletedValueIsDisabled()
    {
        m_controller->sl_selectedRecordsChanged({u"A"_s});
        m_branch->remove(u"IpAddress"_s);
        QVERIFY(isEnabled(IZelkoGUIController::UserActionDownload));
        QCoreApplication::processEvents();
        QVERIFY(!isEnabled(IZelkoGUIController::UserActionDownload));
        QVERIFY(isEnabled(IZelkoGUIController::UserActionRename));
    }

    void theLaterLookIsAtTheSelectionOfThatMoment()
    {
        m_controller->sl_selectedRecordsChanged({u"A"_s});
        m_branch->remove(u"IpAddress"_s);
        m_controller->sl_selectedRecordsChanged({u"B"_s});
        m_log->take();
        QCoreApplication::processEvents();
        QCOMPARE(m_controller->selectedRecords(), QStringList{u"B"_s});
        QVERIFY(!m_log->take().join('|').contains(u"selected"_s));
    }

    void aValueThatComesBackIsFound()
    {
        m_controller->sl_selectedRecordsChanged({u"A"_s});
        m_branch->remove(u"IpAddress"_s);
        QCoreApplication::processEvents();
        m_branch->put(u"IpAddress"_s);
        QTRY_VERIFY_WITH_TIMEOUT(m_controller->isConnected(), patience);
        QVERIFY(isEnabled(IZelkoGUIController::UserActionDownload));
    }

private:
    bool isEnabled(IZelkoGUIController::enUserAction action) const
    {
        return m_controller->recordAction(action)->isEnabled();
    }
    ValueBase* valueOf(const QString& name) const
    {
        ValueBase* const text = m_branch->value<QString>(qPrintable(name));
        ValueBase* const number = m_branch->value<int>(qPrintable(name));
        return text ? text : number ? number : m_branch->value<bool>(qPrintable(name));
    }

    /// How often availability is looked at: an enabled action is disabled each time. Where nothing is selected it stays
    /// so, and is enabled here for the next look; otherwise its record is there, and the look enables it.
    int looksDuring(const std::function<void()>& change)
    {
        QAction* const action = m_controller->recordAction(IZelkoGUIController::UserActionBookmarks);
        const bool staysDisabled = m_controller->selectedRecords().isEmpty();
        action->setEnabled(action->isEnabled() || staysDisabled);
        int looks = 0;
        const QObject untilHere;
        connect(action, &QAction::enabledChanged, &untilHere, [&](bool enabled) {
            looks += enabled ? 0 : 1;
            action->setEnabled(enabled || staysDisabled);
        });
        change();
        return looks;
    }

    std::optional<ControllerSite> m_site;
    std::optional<DeviceBranch> m_branch;
    std::optional<ControllerLog> m_log;
    std::unique_ptr<ZelkoServerGUIController> m_controller;
};

QTEST_MAIN(DeviceValueUpdatesTest)
#include "tst_devicevalueupdates.moc"
