#include <recorder/service/devicedirectory.h>

#include <recorder/served/servedbranch.h>

#include <recordervalues.h>
#include <storedrecord.h>

#include <QSet>
#include <QTest>

using namespace ZelkoRecorder;
using namespace ZelkoTest;
using State = DeviceDirectory::DeviceState;
using Place = DeviceDirectory::Records::Place;
using zelko::recordmap::RecordItemMap;
using zelko::recordmap::RecordMapData;

namespace {

const QStringList noDevices{QStringLiteral("D4"), QString(), QStringLiteral("../D1"), QStringLiteral("D1/Admin"),
                            QStringLiteral("d1")};

const QString slicedDevice = QStringLiteral("D1");

struct Site
{
    explicit Site(int count) { add(0, count); }

    void add(int first, int count)
    {
        for (int i = first; i < first + count; ++i) {
            auto record = std::make_shared<ZELKO_XML::ZELKO_RecordData>();
            record->SetRecordID(QString::number(i));
            map->Add(RecordMapData(record), nullptr);
        }
    }

    Tree tree;
    RecordItemMap* map = tree.Emplace(QStringLiteral("/ZELKO/Device/D1/Records"),
                                      std::make_unique<RecordItemMap>(QStringLiteral("Map"), TValueState::Open));
    DeviceDirectory directory{tree, {slicedDevice}};
};

QStringList idsOf(const RecordPointers& records)
{
    QStringList ids;
    for (const RecordPointer& record : records) {
        ids << record->GetRecordID();
    }
    ids.sort();
    return ids;
}

QStringList numbers(int count)
{
    QStringList result;
    for (int i = 0; i < count; ++i) {
        result << QString::number(i);
    }
    result.sort();
    return result;
}

// All slices behind one another; `between` is done after each.
template <typename Between>
RecordPointers allOf(Site& site, std::size_t atOnce, Between between)
{
    RecordPointers all;
    std::optional<Place> next;
    do {
        const auto slice = site.directory.records(slicedDevice, atOnce, next);
        if (slice.isFromTheBeginning) {
            all.clear();
        }
        all += slice.records;
        next = slice.next;
        between();
    } while (next);
    return all;
}

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
    void givesRecordsInSlices_data();
    void givesRecordsInSlices();
    void givesLittleAtOnce();
    void beginsAfreshWhenTheMapIsLaidOutAfresh();
    void keepsItsPlaceWhileRecordsGo();

private:
    RecorderValues values(const QString& device) const { return {*m_tree, QString(), device}; }
    void show(const QString& device, const QString& recordID)
    {
        const auto record = std::make_shared<ZELKO_XML::ZELKO_RecordData>(finishedRecord(recordID));
        values(device).map()->SetAt(recordID, RecordMapData(record), nullptr);
    }

    RecordPointers recordsOf(const QString& device) const
    {
        const auto slice = m_directory->records(device, 100);
        return slice.next ? RecordPointers() : slice.records;
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
    QVERIFY(recordsOf(device).isEmpty());
    show(device, QStringLiteral("R1"));
    show(device, QStringLiteral("R2"));
    show(QStringLiteral("D2"), QStringLiteral("R3"));
    QCOMPARE(recordsOf(device).size(), 2);
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
        QVERIFY(recordsOf(device).isEmpty());
    }
}

void TestDeviceDirectory::givesRecordsInSlices_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<quint64>("atOnce");
    QTest::newRow("none") << 0 << quint64{10};
    QTest::newRow("one") << 1 << quint64{10};
    QTest::newRow("many, one place at a time") << 500 << quint64{1};
    QTest::newRow("many, some at a time") << 500 << quint64{64};
    QTest::newRow("many, all at once") << 500 << quint64{100'000};
}

void TestDeviceDirectory::givesRecordsInSlices()
{
    QFETCH(const int, count);
    QFETCH(const quint64, atOnce);
    Site site(count);
    QCOMPARE(idsOf(allOf(site, atOnce, [] {})), numbers(count));
}

void TestDeviceDirectory::givesLittleAtOnce()
{
    Site site(2000);
    const auto slice = site.directory.records(slicedDevice, 100);
    QVERIFY(slice.next);
    QVERIFY(slice.records.size() < 1000);
}

void TestDeviceDirectory::beginsAfreshWhenTheMapIsLaidOutAfresh()
{
    Site site(500);
    const auto first = site.directory.records(slicedDevice, 50);
    QVERIFY(first.isFromTheBeginning && first.next);
    site.add(500, 5000);
    const auto second = site.directory.records(slicedDevice, 50, first.next);
    QVERIFY(second.isFromTheBeginning);

    Site growing(10);
    int count = 10;
    const auto all = allOf(growing, 16, [&] {
        if (count < 1000) {
            growing.add(count, 10);
            count += 10;
        }
    });
    const QStringList ids = idsOf(all);
    QCOMPARE(QSet<QString>(ids.begin(), ids.end()).size(), ids.size()); // none twice
    for (const QString& id : numbers(10)) {
        QVERIFY2(ids.contains(id), qPrintable(id));
    }
}

void TestDeviceDirectory::keepsItsPlaceWhileRecordsGo()
{
    Site site(500);
    int removed = 0;
    const QStringList ids = idsOf(allOf(site, 32, [&] { site.map->EraseAt(QString::number(removed++), nullptr); }));
    for (int i = removed; i < 500; ++i) {
        QCOMPARE(ids.count(QString::number(i)), 1);
    }
}

QTEST_GUILESS_MAIN(TestDeviceDirectory)
#include "tst_devicedirectory.moc"
