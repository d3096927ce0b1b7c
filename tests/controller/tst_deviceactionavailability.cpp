#include <zelkoguibase/controller/zelkoserverguicontroller.h>

#include "controllersite.h"
#include "patience.h"
#include "testrecords.h"

#include <resources/zelkoicons.h>

#include <QAction>
#include <QtTest>

#include <optional>

using namespace Qt::StringLiterals;
using ZelkoGUI::IZelkoGUIController;
using ZelkoGUI::ZelkoServerGUIController;
using Record = ZELKO_XML::ZELKO_RecordData;

namespace {

// Of a record at rest that is not deletable, on an extended device, everything but its deletion.
constexpr int everything = 1023;
constexpr int atRest = everything - 2;

struct RecordState
{
    int status = 5;
    int dataFormat = 1;
    int dataRate = 0;
    bool deletable = false;
    std::optional<bool> finished = std::nullopt;
};

std::shared_ptr<Record> recordIn(const QString& id, const RecordState& state)
{
    auto record = makeRecord(id, state.status);
    record->SetDataFormat(static_cast<Record::DataFormat>(state.dataFormat));
    record->SetDataRate(static_cast<Record::DataRate>(state.dataRate));
    record->SetDeletable(state.deletable);
    if (state.finished) {
        record->SetFinished(*state.finished);
    }
    return record;
}

} // namespace

Q_DECLARE_METATYPE(RecordState)

/// Which actions a device's records allow, to a user with all rights.
class DeviceActionAvailabilityTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { registerZelkoIcons(); }
    void init()
    {
        m_site.emplace();
        m_branch.emplace(*m_site->data, u"D1"_s);
        m_branch->putAll();
        m_controller = std::make_unique<ZelkoServerGUIController>(
            m_site->handler, nullptr, QString(), IZelkoGUIController::UserActions(QFlag(everything)), nullptr);
        m_controller->sl_activeDeviceChanged(u"D1"_s);
        QTRY_VERIFY_WITH_TIMEOUT(m_controller->isConnected(), patience);
    }
    void cleanup()
    {
        m_controller.reset();
        m_branch.reset();
        m_site.reset();
    }

    void theStateOfARecordDecides_data();
    void theStateOfARecordDecides();
    void theValuesOfTheDeviceDecide_data();
    void theValuesOfTheDeviceDecide();
    void severalRecordsAllowLess_data();
    void severalRecordsAllowLess();

    void aDeviceThatIsNotExtendedAllowsNeitherRenameNorOverview()
    {
        m_branch->set("Extended", false);
        m_branch->setRecord(recordIn(u"A"_s, {}));
        QCOMPARE(enabledFor({u"A"_s}), atRest - 32 - 512);
    }

    void aRecordThatIsNotInTheListCanBeDownloadedOnly() { QCOMPARE(enabledFor({u"X"_s}), 4); }

    void aRecordWithoutDataCanBeDownloadedOnly()
    {
        m_branch->setRecord(recordIn(u"A"_s, {}));
        m_branch->map()->SetAt(u"N"_s, zelko::recordmap::RecordMapData(), nullptr);
        QCOMPARE(enabledFor({u"N"_s}), 4);
    }

private:
    /// The numbers of the actions that are enabled for a selection, added up.
    int enabledFor(const QStringList& selection)
    {
        m_controller->sl_selectedRecordsChanged(selection);
        int flags = 0;
        for (int flag = 1; flag < everything; flag *= 2) {
            if (m_controller->recordAction(static_cast<IZelkoGUIController::enUserAction>(flag))->isEnabled()) {
                flags += flag;
            }
        }
        return flags;
    }

    std::optional<ControllerSite> m_site;
    std::optional<DeviceBranch> m_branch;
    std::unique_ptr<ZelkoServerGUIController> m_controller;
};

void DeviceActionAvailabilityTest::theStateOfARecordDecides_data()
{
    QTest::addColumn<RecordState>("state");
    QTest::addColumn<int>("enabled");
    const auto row = [](const char* name, const RecordState& state, int enabled) {
        QTest::newRow(name) << state << enabled;
    };
    row("at rest", {}, atRest);
    row("deletable", {.deletable = true}, everything);
    row("a raw stream is neither copied nor edited", {.dataRate = 9}, atRest - 1 - 8);
    row("the data rate before that", {.dataRate = 8}, atRest);
    row("being recorded", {.status = 2}, atRest - 128 - 512);
    row("being recorded in a loop", {.status = 3}, atRest - 128 - 512);
    row("stopping", {.status = 4}, atRest - 128);
    row("being replayed", {.status = 6}, atRest - 128);
    row("of unknown status and deletable", {.status = 0, .deletable = true}, everything - 128);
    row("said to be finished", {.finished = true}, atRest);
    row("said not to be finished", {.finished = false}, atRest - 32 - 512);
    row("a format without a spectrum", {.dataFormat = 2}, atRest - 512);
    row("an unknown format", {.dataFormat = 0}, atRest - 512);
    row("the other format with a spectrum", {.dataFormat = 21}, atRest);
    row("the format behind that", {.dataFormat = 22}, atRest - 512);
}

void DeviceActionAvailabilityTest::theStateOfARecordDecides()
{
    QFETCH(const RecordState, state);
    m_branch->setRecord(recordIn(u"A"_s, state));
    QTEST(enabledFor({u"A"_s}), "enabled");
}

void DeviceActionAvailabilityTest::theValuesOfTheDeviceDecide_data()
{
    QTest::addColumn<QString>("missing");
    QTest::addColumn<int>("enabled");
    QTest::newRow("no address") << u"IpAddress"_s << everything - 4 - 512;
    QTest::newRow("not said whether it is extended") << u"Extended"_s << everything - 32 - 512;
    QTest::newRow("no command to ask for a record") << u"SyncOneRecord"_s << everything - 1 - 8 - 64 - 256 - 512;
    QTest::newRow("no command to reset") << u"SetRecordIdle"_s << everything - 16;
    QTest::newRow("no command to delete") << u"DeleteRecordingList"_s << everything - 2;
    QTest::newRow("no command to ask for the list") << u"Synchronize"_s << everything;
    QTest::newRow("no records") << u"Map"_s << 4;
}

void DeviceActionAvailabilityTest::theValuesOfTheDeviceDecide()
{
    QFETCH(const QString, missing);
    m_branch->setRecord(recordIn(u"A"_s, {.deletable = true}));
    QCOMPARE(enabledFor({u"A"_s}), everything);
    m_branch->remove(missing);
    QTEST(enabledFor({u"A"_s}), "enabled");
}

void DeviceActionAvailabilityTest::severalRecordsAllowLess_data()
{
    QTest::addColumn<QStringList>("selection");
    QTest::addColumn<int>("enabled");
    QTest::newRow("all protected") << QStringList{u"P"_s, u"Q"_s} << 4 + 128;
    QTest::newRow("all deletable") << QStringList{u"D"_s, u"E"_s} << 2 + 4 + 128;
    QTest::newRow("of both kinds") << QStringList{u"P"_s, u"D"_s} << 2 + 4;
    QTest::newRow("one of them is being recorded") << QStringList{u"D"_s, u"R"_s} << 2 + 4;
    QTest::newRow("one of them is not known") << QStringList{u"D"_s, u"X"_s} << 2 + 4;
    QTest::newRow("none of them is known") << QStringList{u"X"_s, u"Y"_s} << 4;
    QTest::newRow("none at all") << QStringList{} << 0;
}

void DeviceActionAvailabilityTest::severalRecordsAllowLess()
{
    QFETCH(const QStringList, selection);
    for (const QString& id : {u"P"_s, u"Q"_s}) {
        m_branch->setRecord(recordIn(id, {}));
    }
    for (const QString& id : {u"D"_s, u"E"_s}) {
        m_branch->setRecord(recordIn(id, {.deletable = true}));
    }
    m_branch->setRecord(recordIn(u"R"_s, {.status = 2, .deletable = true}));
    QTEST(enabledFor(selection), "enabled");
}

QTEST_MAIN(DeviceActionAvailabilityTest)
#include "tst_deviceactionavailability.moc"
