#include "recordervalues.h"

#include <recorder/service/devicedirectory.h>

#include <QTest>

using namespace ZelkoRecorder;
using zelko::recordmap::RecordItemMap;
using zelko::recordmap::RecordMapData;

namespace {

using Place = DeviceDirectory::Records::Place;

const QString device = QStringLiteral("D1");

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
    DeviceDirectory directory{tree, {device}};
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
        const auto slice = site.directory.records(device, atOnce, next);
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

class TestDeviceDirectory : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void givesRecordsInSlices_data();
    void givesRecordsInSlices();
    void givesLittleAtOnce();
    void givesNothingOfWhatIsNone();
    void beginsAfreshWhenTheMapIsLaidOutAfresh();
    void keepsItsPlaceWhileRecordsGo();
};

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
    const auto slice = site.directory.records(device, 100);
    QVERIFY(slice.next);
    QVERIFY(slice.records.size() < 1000);
}

void TestDeviceDirectory::givesNothingOfWhatIsNone()
{
    Site site(3);
    const auto slice = site.directory.records(QStringLiteral("D2"), 100);
    QVERIFY(slice.records.isEmpty());
    QVERIFY(!slice.next);
}

void TestDeviceDirectory::beginsAfreshWhenTheMapIsLaidOutAfresh()
{
    Site site(500);
    const auto first = site.directory.records(device, 50);
    QVERIFY(first.isFromTheBeginning && first.next);
    site.add(500, 5000);
    const auto second = site.directory.records(device, 50, first.next);
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

QTEST_APPLESS_MAIN(TestDeviceDirectory)
#include "tst_devicedirectory.moc"
