#include "fixedrecordmodel.h"
#include "sigmfpair.h"
#include "testrecords.h"

#include <console/demo/expectedrecord.h>

#include <QTest>

using ZelkoConsole::ExpectedRecord;
using Record = ZELKO_XML::ZELKO_RecordData;

namespace {

constexpr quint64 start = 1'700'000'000'000'000;

// What the records of these tests are, until one thing of them is changed.
const ExpectedRecord wanted{QStringLiteral("pass"), start, 145'000'000, 4096, std::chrono::milliseconds(1000)};

std::shared_ptr<Record> recordLike(const ExpectedRecord& expected)
{
    auto record = makeRecord(QStringLiteral("r"), 5, expected.size);
    record->SetRecordName(expected.name);
    record->SetStartTime(expected.startTime);
    ZELKO_XML::IndexEntry entry;
    entry.SetTunerFrequency(expected.frequency);
    record->SetIndexEntry({entry});
    return record;
}

} // namespace

class TestExpectedRecord : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsWhatACaptureWillBecome()
    {
        const QTemporaryDir folder;
        ZelkoTest::SigmfPair pair;
        pair.samples = QByteArray(8000, 'x');
        QVERIFY(pair.write(folder.filePath(QStringLiteral("pass"))));
        QString error;
        const auto record = ExpectedRecord::ofSource(folder.filePath(QStringLiteral("pass.sigmf-meta")), &error);
        QVERIFY2(record, qPrintable(error));
        QCOMPARE(record->name, QStringLiteral("pass"));
        QCOMPARE(record->startTime, quint64{1624058271163959}); // 2021-06-18T23:17:51.163959Z
        QCOMPARE(record->frequency, quint64{145'000'000});
        QCOMPARE(record->size, quint64{8000});
        QCOMPARE(record->length, std::chrono::milliseconds(2000)); // 2000 frames of 4 bytes at 1000 Hz
    }

    void readsWhatAGeneratorWillMake()
    {
        QString error;
        const auto record = ExpectedRecord::ofSource(
            QStringLiteral("generator:fm,name=Voice,rate=48000,frequency=145500000,seconds=4"), &error);
        QVERIFY2(record, qPrintable(error));
        QCOMPARE(record->name, QStringLiteral("Voice"));
        QCOMPARE(record->startTime, quint64{0});
        QCOMPARE(record->frequency, quint64{145'500'000});
        QCOMPARE(record->length, std::chrono::milliseconds(4000));
    }

    void refusesWhatHasNoEnd_data()
    {
        QTest::addColumn<QString>("source");
        QTest::newRow("a capture that is not there") << QStringLiteral("/nowhere/pass.sigmf-meta");
        QTest::newRow("a generator without an end") << QStringLiteral("generator:fm,rate=48000");
        QTest::newRow("no source at all") << QStringLiteral("pass");
    }

    void refusesWhatHasNoEnd()
    {
        QFETCH(QString, source);
        QString error;
        QVERIFY(!ExpectedRecord::ofSource(source, &error));
        QVERIFY(!error.isEmpty());
    }

    void countsTheRecordsThatAreIt_data()
    {
        QTest::addColumn<ExpectedRecord>("expected");
        QTest::addColumn<int>("status");
        QTest::addColumn<int>("count");
        const auto row = [](const char* name, auto change, int status, int count) {
            ExpectedRecord expected = wanted;
            change(expected);
            QTest::newRow(name) << expected << status << count;
        };
        row(
            "the record", [](ExpectedRecord&) {}, 5, 2);
        row(
            "one that is still being recorded", [](ExpectedRecord&) {}, 2, 0);
        row(
            "one that is damaged", [](ExpectedRecord&) {}, 8, 0);
        row(
            "one of another name", [](ExpectedRecord& r) { r.name = QStringLiteral("Pass"); }, 5, 0);
        row(
            "one of another time", [](ExpectedRecord& r) { r.startTime += 1; }, 5, 0);
        row(
            "one of another frequency", [](ExpectedRecord& r) { r.frequency += 1; }, 5, 0);
        row(
            "one that is cut short", [](ExpectedRecord& r) { r.size += 4; }, 5, 0);
        row(
            "one of any time", [](ExpectedRecord& r) { r.startTime = 0; }, 5, 2);
    }

    void countsTheRecordsThatAreIt()
    {
        QFETCH(ExpectedRecord, expected);
        QFETCH(int, status);
        const auto record = recordLike(wanted);
        record->SetRecordStatus(static_cast<Record::RecordStatus>(status));
        const FixedRecordModel list({{QStringLiteral("a"), makeRecord(QStringLiteral("a"))},
                                     {QStringLiteral("b"), record},
                                     {QStringLiteral("c"), nullptr},
                                     {QStringLiteral("d"), record}});
        QTEST(expected.countIn(list), "count");
    }
};

QTEST_GUILESS_MAIN(TestExpectedRecord)
#include "tst_expectedrecord.moc"
