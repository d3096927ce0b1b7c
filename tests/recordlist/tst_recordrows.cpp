#include "testrecords.h"

#include <zelkoguibase/recordlist/recordrows_p.h>

#include <QtTest>

#include <random>

using namespace Qt::StringLiterals;
using ZelkoGUI::RecordRows;

namespace {

void queue(RecordRows& rows, const QString& id)
{
    rows.queue(id, rows.expect(id), makeRecord(id));
}

RecordRows rowsOf(const QStringList& ids)
{
    RecordRows rows;
    for (const QString& id : ids) {
        queue(rows, id);
    }
    rows.showQueued();
    return rows;
}

/// IDs in their order, of rows that can be found and that have the right data; what is wrong stands in brackets.
QString shown(const RecordRows& rows)
{
    QStringList ids;
    for (int row = 0; row < rows.count(); ++row) {
        const QString& id = rows.id(row);
        const bool isRight = rows.rowOf(id) == row && rows.data(row) && rows.data(row)->GetRecordID() == id;
        ids << (isRight ? id : u'(' + id + u')');
    }
    return ids.join(u' ');
}

} // namespace

class RecordRowsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void isEmptyAtFirst()
    {
        const RecordRows rows;
        QCOMPARE(rows.count(), 0);
        QCOMPARE(rows.queuedCount(), 0);
        QCOMPARE(rows.rowOf(u"A"_s), -1);
        QCOMPARE(rows.rowOf({}), -1);
    }

    void queuedRecordsAreNoRowsYet()
    {
        RecordRows rows = rowsOf({u"A"_s});
        queue(rows, u"B"_s);
        queue(rows, u"C"_s);
        QCOMPARE(shown(rows), u"A"_s);
        QCOMPARE(rows.queuedCount(), 2);
        QCOMPARE(rows.rowOf(u"B"_s), -1);
        rows.showQueued();
        QCOMPARE(shown(rows), u"A B C"_s);
        QCOMPARE(rows.queuedCount(), 0);
    }

    void keepsTheOrderInWhichRecordsCame()
    {
        RecordRows rows;
        rows.reserve(1000);
        QCOMPARE(rows.count(), 0);
        rows = rowsOf({u"C"_s, u"A"_s, u"B"_s});
        QCOMPARE(shown(rows), u"C A B"_s);
    }

    void replacesTheDataOfARow()
    {
        RecordRows rows = rowsOf({u"A"_s, u"B"_s});
        const RecordRows::Data before = rows.data(1);
        const RecordRows::Data after = makeRecord(u"B"_s, 5, 999);
        const auto found = rows.replace(u"B"_s, rows.expect(u"B"_s), after);
        QVERIFY(found.has_value());
        QCOMPARE(found->row, 1);
        QCOMPARE(found->before, before);
        QCOMPARE(rows.data(1), after);
        QCOMPARE(shown(rows), u"A B"_s);
    }

    void replacesTheDataOfAQueuedRecord()
    {
        RecordRows rows = rowsOf({u"A"_s});
        queue(rows, u"B"_s);
        const RecordRows::Data after = makeRecord(u"B"_s, 5, 999);
        const auto found = rows.replace(u"B"_s, rows.expect(u"B"_s), after);
        QVERIFY(found.has_value());
        QCOMPARE(found->row, -1);
        QVERIFY(!found->before);
        rows.showQueued();
        QCOMPARE(rows.data(1), after);
    }

    void replacesNothingThatIsNotHeld()
    {
        RecordRows rows = rowsOf({u"A"_s});
        QVERIFY(!rows.replace(u"B"_s, rows.expect(u"B"_s), makeRecord(u"B"_s)).has_value());
        QCOMPARE(shown(rows), u"A"_s);
    }

    void removesRunsFromTheLastToTheFirst_data()
    {
        QTest::addColumn<QList<int>>("runs"); // first, count, first, count ...
        QTest::addColumn<QString>("left");
        QTest::newRow("one in the midst") << QList<int>{2, 1} << u"A B D E F"_s;
        QTest::newRow("the first") << QList<int>{0, 1} << u"B C D E F"_s;
        QTest::newRow("the last") << QList<int>{5, 1} << u"A B C D E"_s;
        QTest::newRow("all") << QList<int>{0, 6} << QString();
        QTest::newRow("two runs") << QList<int>{4, 2, 1, 2} << u"A D"_s;
        QTest::newRow("adjacent runs") << QList<int>{3, 2, 1, 2} << u"A F"_s;
        QTest::newRow("every other one") << QList<int>{4, 1, 2, 1, 0, 1} << u"B D F"_s;
        QTest::newRow("none") << QList<int>{} << u"A B C D E F"_s;
    }

    void removesRunsFromTheLastToTheFirst()
    {
        QFETCH(QList<int>, runs);
        RecordRows rows = rowsOf({u"A"_s, u"B"_s, u"C"_s, u"D"_s, u"E"_s, u"F"_s});
        for (qsizetype run = 0; run < runs.size(); run += 2) {
            rows.removeRun(runs[run], runs[run + 1]);
            QVERIFY2(!shown(rows).contains(u'('), qPrintable(shown(rows)));
        }
        QTEST(shown(rows), "left");
        rows.closeGap();
        QTEST(shown(rows), "left");
    }

    void forgetsWhatWasRemoved()
    {
        RecordRows rows = rowsOf({u"A"_s, u"B"_s, u"C"_s});
        const std::weak_ptr<ZELKO_XML::ZELKO_RecordData> data = rows.data(1);
        rows.removeRun(1, 1);
        QCOMPARE(rows.rowOf(u"B"_s), -1);
        QVERIFY(data.expired());
        rows.closeGap();
        queue(rows, u"B"_s);
        rows.showQueued();
        QCOMPARE(shown(rows), u"A C B"_s);
    }

    void removesRunsInFrontOfTheQueue()
    {
        RecordRows rows = rowsOf({u"A"_s, u"B"_s, u"C"_s});
        queue(rows, u"D"_s);
        rows.removeRun(2, 1);
        rows.removeRun(0, 1);
        QCOMPARE(shown(rows), u"B"_s);
        QCOMPARE(rows.queuedCount(), 1);
        rows.closeGap();
        QCOMPARE(rows.queuedCount(), 1);
        rows.showQueued();
        QCOMPARE(shown(rows), u"B D"_s);
    }

    void clearsRowsAndKeepsTheQueue()
    {
        RecordRows rows = rowsOf({u"A"_s, u"B"_s});
        queue(rows, u"C"_s);
        rows.clearRows();
        QCOMPARE(rows.count(), 0);
        QCOMPARE(rows.rowOf(u"A"_s), -1);
        rows.showQueued();
        QCOMPARE(shown(rows), u"C"_s);
        rows.clearRows();
        QCOMPARE(rows.count(), 0);
        QCOMPARE(rows.queuedCount(), 0);
    }

    void clearsTheQueueAndKeepsRows()
    {
        RecordRows rows = rowsOf({u"A"_s});
        queue(rows, u"B"_s);
        rows.clearQueue();
        QCOMPARE(rows.queuedCount(), 0);
        rows.showQueued();
        QCOMPARE(shown(rows), u"A"_s);
        queue(rows, u"B"_s);
        rows.showQueued();
        QCOMPARE(shown(rows), u"A B"_s);
    }

    void equalsAPlainListWhateverHappens_data()
    {
        QTest::addColumn<unsigned>("seed");
        for (unsigned seed = 1; seed <= 8; ++seed) {
            QTest::addRow("seed %u", seed) << seed;
        }
    }

    void equalsAPlainListWhateverHappens()
    {
        QFETCH(unsigned, seed);
        std::mt19937 random(seed);
        const auto below = [&random](int end) { return static_cast<int>(random() % static_cast<unsigned>(end)); };
        RecordRows rows;
        QStringList plain;
        int next = 0;
        for (int step = 0; step < 300; ++step) {
            for (int added = below(20); added > 0; --added) {
                plain << QString::number(next++);
                queue(rows, plain.constLast());
            }
            rows.showQueued();
            for (auto end = static_cast<int>(plain.size()); end > 0 && below(3) > 0;) {
                const int first = below(end);
                const int count = 1 + below(end - first);
                rows.removeRun(first, count);
                plain.remove(first, count);
                end = first;
            }
            rows.closeGap();
            QCOMPARE(shown(rows), plain.join(u' '));
        }
    }
};

QTEST_MAIN(RecordRowsTest)
#include "tst_recordrows.moc"
