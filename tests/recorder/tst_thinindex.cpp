#include <recorder/store/thinindex.h>

#include <storedrecord.h>

#include <QTest>

using namespace ZelkoRecorder;
using ZelkoTest::indexEntry;

class TestThinIndex : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void leavesOutEveryOtherEntry_data();
    void leavesOutEveryOtherEntry();
    void halvesWhateverItSays_data();
    void halvesWhateverItSays();
};

void TestThinIndex::leavesOutEveryOtherEntry_data()
{
    // An entry is written as its tuning; the places that are kept follow.
    QTest::addColumn<QVector<int>>("tunings");
    QTest::addColumn<QVector<int>>("kept");
    QTest::newRow("none") << QVector<int>() << QVector<int>();
    QTest::newRow("first and last only") << QVector<int>{1, 1} << QVector<int>{0, 1};
    QTest::newRow("odd number") << QVector<int>{1, 1, 1, 1, 1} << QVector<int>{0, 2, 4};
    QTest::newRow("even number") << QVector<int>{1, 1, 1, 1} << QVector<int>{0, 2, 3};
    QTest::newRow("a new tuning stays") << QVector<int>{1, 2, 2, 2, 2} << QVector<int>{0, 1, 3, 4};
    QTest::newRow("nothing but new tunings") << QVector<int>{1, 2, 3, 4} << QVector<int>{0, 1, 2, 3};
}

void TestThinIndex::leavesOutEveryOtherEntry()
{
    QFETCH(const QVector<int>, tunings);
    QFETCH(const QVector<int>, kept);
    QVector<ZELKO_XML::IndexEntry> index;
    for (qsizetype i = 0; i < tunings.size(); ++i) {
        index.append(indexEntry(static_cast<quint64>(i), static_cast<quint64>(i), static_cast<quint64>(tunings.at(i))));
    }
    const bool thinner = thinIndex(index);
    QVector<int> places;
    for (const auto& entry : index) {
        places.append(static_cast<int>(entry.GetTimestamp()));
    }
    QCOMPARE(places, kept);
    QCOMPARE(thinner, kept.size() < tunings.size());
}

void TestThinIndex::halvesWhateverItSays_data()
{
    QTest::addColumn<quint64>("entries");
    QTest::addColumn<QVector<quint64>>("kept");
    QTest::newRow("none") << quint64{0} << QVector<quint64>();
    QTest::newRow("one") << quint64{1} << QVector<quint64>{0};
    QTest::newRow("odd number") << quint64{5} << QVector<quint64>{0, 2, 4};
    QTest::newRow("even number") << quint64{4} << QVector<quint64>{0, 2, 3};
}

void TestThinIndex::halvesWhateverItSays()
{
    QFETCH(const quint64, entries);
    QVector<ZELKO_XML::IndexEntry> index;
    for (quint64 i = 0; i < entries; ++i) {
        index.append(indexEntry(i, i, i));
    }
    halveIndex(index);
    QVector<quint64> places;
    for (const auto& entry : index) {
        places.append(entry.GetTimestamp());
    }
    QTEST(places, "kept");
}

QTEST_GUILESS_MAIN(TestThinIndex)
#include "tst_thinindex.moc"
