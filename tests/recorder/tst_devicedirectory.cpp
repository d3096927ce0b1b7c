#include <recorder/service/devicedirectory.h>

#include <recorder/served/servedbranch.h>

#include <recordervalues.h>
#include <storedrecord.h>

#include <QTest>

using namespace ZelkoRecorder;
using namespace ZelkoTest;
using State = DeviceDirectory::DeviceState;
using zelko::recordmap::RecordMapData;

namespace {

const QStringList noDevices{QStringLiteral("D4"), QString(), QStringLiteral("../D1"), QStringLiteral("D1/Admin"),
                            QStringLiteral("d1")};

} // namespace

// D1 and D2 at one address, D3 at none; D4 is on the tree but not served.
class TestDeviceDirectory : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void namesItsDevicesInOrder();
    void mapsDevicesAndAddresses();
    void tellsHowFarADeviceIs();
    void listsRecords();
    void knowsNothingOfOtherDevices();

private:
    RecorderValues values(const QString& device) const { return {*m_tree, QString(), device}; }
    void show(const QString& device, const QString& recordID)
    {
        const auto record = std::make_shared<ZELKO_XML::ZELKO_RecordData>(finishedRecord(recordID));
        values(device).map()->SetAt(recordID, RecordMapData(record), nullptr);
    }

    std::unique_ptr<Tree> m_tree;
    std::unique_ptr<DeviceDirectory> m_directory;
};

void TestDeviceDirectory::init()
{
    m_tree = std::make_unique<Tree>();
    for (const char* const device : {"D2", "D1", "D3", "D4"}) {
        const bool hasAddress = QLatin1String(device) < QLatin1String("D3");
        ServedBranch(*m_tree, {device, hasAddress ? QStringLiteral("192.0.2.1") : QString(), QStringLiteral("1.0")});
    }
    m_directory = std::make_unique<DeviceDirectory>(*m_tree, QStringList{"D3", "D2", "D1"});
}

void TestDeviceDirectory::namesItsDevicesInOrder()
{
    QCOMPARE(m_directory->devices(), QStringList({"D1", "D2", "D3"}));
    QVERIFY(m_directory->contains(QStringLiteral("D2")));
}

void TestDeviceDirectory::mapsDevicesAndAddresses()
{
    QCOMPARE(m_directory->address(QStringLiteral("D2")), QStringLiteral("192.0.2.1"));
    QCOMPARE(m_directory->address(QStringLiteral("D3")), QString());
    QCOMPARE(m_directory->deviceAt(QStringLiteral("192.0.2.1")), QStringLiteral("D1")); // the first one there
    QCOMPARE(m_directory->deviceAt(QStringLiteral("192.0.2.2")), QString());
    QCOMPARE(m_directory->deviceAt(QString()), QString()); // although one has no address
}

void TestDeviceDirectory::tellsHowFarADeviceIs()
{
    const QString device = QStringLiteral("D1");
    QCOMPARE(m_directory->state(device), State::Loading);
    values(device).find<Value<bool>>("/Records/LoadedCompletly")->SetValue(true, nullptr);
    QCOMPARE(m_directory->state(device), State::Ready);
    values(device).find<Value<bool>>("/ZelkoAvailable")->SetValue(false, nullptr);
    QCOMPARE(m_directory->state(device), State::NotAvailable);
}

void TestDeviceDirectory::listsRecords()
{
    const QString device = QStringLiteral("D1");
    QVERIFY(m_directory->records(device).isEmpty());
    show(device, QStringLiteral("R1"));
    show(device, QStringLiteral("R2"));
    show(QStringLiteral("D2"), QStringLiteral("R3"));
    QCOMPARE(m_directory->records(device).size(), 2);
    QCOMPARE(m_directory->record(device, QStringLiteral("R2")), values(device).record(QStringLiteral("R2")));
    QVERIFY(!m_directory->record(device, QStringLiteral("R3")));
    QVERIFY(!m_directory->record(device, QString()));
}

// Whatever a peer sends is no path, and a branch that is not served stays to itself.
void TestDeviceDirectory::knowsNothingOfOtherDevices()
{
    show(QStringLiteral("D4"), QStringLiteral("R1"));
    for (const QString& device : noDevices) {
        QVERIFY(!m_directory->contains(device));
        QCOMPARE(m_directory->address(device), QString());
        QCOMPARE(m_directory->state(device), State::NotAvailable);
        QVERIFY(!m_directory->record(device, QStringLiteral("R1")));
        QVERIFY(m_directory->records(device).isEmpty());
    }
}

QTEST_GUILESS_MAIN(TestDeviceDirectory)
#include "tst_devicedirectory.moc"
