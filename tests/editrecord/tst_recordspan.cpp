#include "../../zelkoguibase/editrecord/recordspan_p.h"

#include "copyablerecord.h"

#include <QtTest>

#include <limits>

using ZelkoGUI::RecordSpan;

namespace {

constexpr quint64 second = 1'000'000;

RecordSpan span(quint64 startTime, quint64 stopTime, quint64 startOffset, quint64 stopOffset)
{
    RecordSpan all;
    all.startTime = startTime;
    all.stopTime = stopTime;
    all.startOffset = startOffset;
    all.stopOffset = stopOffset;
    return all;
}

} // namespace

/// From when to when a record goes, and at which positions of the recording.
class RecordSpanTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aRecordSaysWhereItsEndsAre();
    void theIndexKnowsBetter_data();
    void theIndexKnowsBetter();
    void timesAndPositionsRise_data();
    void timesAndPositionsRise();
    void positionsAreSpreadEvenly_data();
    void positionsAreSpreadEvenly();
};

void RecordSpanTest::aRecordSaysWhereItsEndsAre()
{
    const RecordSpan all(*makeCopyable());
    QCOMPARE(all.startTime, recordBegin);
    QCOMPARE(all.stopTime, recordBegin + 90 * second);
    QCOMPARE(all.startOffset, 1'000);
    QCOMPARE(all.stopOffset, 901'000);
    QVERIFY(!RecordSpan().isRising());
}

void RecordSpanTest::theIndexKnowsBetter_data()
{
    using Index = QVector<ZELKO_XML::IndexEntry>;
    QTest::addColumn<Index>("index");
    QTest::addColumn<QList<quint64>>("ends"); // seconds and positions
    QTest::newRow("no entry") << Index() << QList<quint64>{0, 90, 1'000, 901'000};
    QTest::newRow("one entry") << Index{makeIndexEntry(recordBegin + second, 7)}
                               << QList<quint64>{0, 90, 1'000, 901'000};
    QTest::newRow("two entries") << Index{makeIndexEntry(recordBegin + second, 7),
                                          makeIndexEntry(recordBegin + 2 * second, 9)}
                                 << QList<quint64>{1, 2, 7, 9};
    QTest::newRow("out of order") << Index{makeIndexEntry(recordBegin + 5 * second, 7),
                                           makeIndexEntry(recordBegin + 2 * second, 3),
                                           makeIndexEntry(recordBegin + 4 * second, 9)}
                                  << QList<quint64>{2, 5, 3, 9};
    QTest::newRow("falling positions") << Index{makeIndexEntry(recordBegin + second, 9),
                                                makeIndexEntry(recordBegin + 2 * second, 7)}
                                       << QList<quint64>{1, 2, 7, 9};
}

void RecordSpanTest::theIndexKnowsBetter()
{
    QFETCH(const QVector<ZELKO_XML::IndexEntry>, index);
    const auto record = makeCopyable();
    record->SetIndexEntry(index);
    const RecordSpan all(*record);
    const QList<quint64> ends{(all.startTime - recordBegin) / second, (all.stopTime - recordBegin) / second,
                              all.startOffset, all.stopOffset};
    QTEST(ends, "ends");
}

void RecordSpanTest::timesAndPositionsRise_data()
{
    QTest::addColumn<QList<quint64>>("ends");
    QTest::addColumn<bool>("isRising");
    QTest::newRow("both") << QList<quint64>{1, 2, 3, 4} << true;
    QTest::newRow("no time") << QList<quint64>{1, 1, 3, 4} << false;
    QTest::newRow("falling times") << QList<quint64>{2, 1, 3, 4} << false;
    QTest::newRow("no positions") << QList<quint64>{1, 2, 3, 3} << false;
    QTest::newRow("falling positions") << QList<quint64>{1, 2, 4, 3} << false;
}

void RecordSpanTest::timesAndPositionsRise()
{
    QFETCH(const QList<quint64>, ends);
    const bool isRising = span(ends[0], ends[1], ends[2], ends[3]).isRising();
    QTEST(isRising, "isRising");
}

void RecordSpanTest::positionsAreSpreadEvenly_data()
{
    QTest::addColumn<QList<quint64>>("ends");
    QTest::addColumn<quint64>("time");
    QTest::addColumn<quint64>("offset");
    const QList<quint64> usual{recordBegin, recordBegin + 90 * second, 1'000, 901'000};
    QTest::newRow("the start") << usual << recordBegin << quint64{1'000};
    QTest::newRow("the stop") << usual << recordBegin + 90 * second << quint64{901'000};
    QTest::newRow("a third") << usual << recordBegin + 30 * second << quint64{301'000};
    QTest::newRow("cut off, not rounded")
        << QList<quint64>{recordBegin, recordBegin + 3, 0, 5} << recordBegin + 2 << quint64{3};
    QTest::newRow("behind the stop") << usual << recordBegin + 180 * second << quint64{1'801'000};
    QTest::newRow("before the first position of all") << usual << recordBegin - 90 * second << quint64{0};
    QTest::newRow("a record that takes no time")
        << QList<quint64>{recordBegin, recordBegin, 1'000, 901'000} << recordBegin + second << quint64{1'000};
    QTest::newRow("falling positions") << QList<quint64>{recordBegin, recordBegin + 2 * second, 900, 100}
                                       << recordBegin + second << quint64{500};
    QTest::newRow("more than there are numbers") << QList<quint64>{0, 1, 0, std::numeric_limits<quint64>::max()}
                                                 << quint64{5} << std::numeric_limits<quint64>::max();
}

void RecordSpanTest::positionsAreSpreadEvenly()
{
    QFETCH(const QList<quint64>, ends);
    QFETCH(const quint64, time);
    const quint64 offset = span(ends[0], ends[1], ends[2], ends[3]).offsetAt(time);
    QTEST(offset, "offset");
}

QTEST_MAIN(RecordSpanTest)
#include "tst_recordspan.moc"
