#include "../../zelkoguibase/editrecord/rangetexts_p.h"

#include "recordbegin.h"

#include <QtTest>

namespace {

constexpr quint64 second = 1'000'000;

} // namespace

/// How the range of a record, and its length, are written.
class RangeTextsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aRangeHasItsDatesOnlyIfTheyDiffer_data();
    void aRangeHasItsDatesOnlyIfTheyDiffer();
    void aDurationIsWritten_data();
    void aDurationIsWritten();
};

void RangeTextsTest::aRangeHasItsDatesOnlyIfTheyDiffer_data()
{
    QTest::addColumn<quint64>("length");
    QTest::addColumn<QString>("text");
    QTest::newRow("a moment") << quint64{0} << "23:13:20:000 ... 23:13:20:000";
    QTest::newRow("within a day") << quint64{90'500'999} << "23:13:20:000 ... 23:14:50:500";
    QTest::newRow("to the last millisecond of the day") << quint64{2'799'999'999} << "23:13:20:000 ... 23:59:59:999";
    QTest::newRow("over midnight") << quint64{2'800'000'000} << "2023-11-14 23:13:20:000 ... 2023-11-15 00:00:00:000";
    QTest::newRow("to the same time of another day")
        << 24 * 3600 * second << "2023-11-14 23:13:20:000 ... 2023-11-15 23:13:20:000";
}

void RangeTextsTest::aRangeHasItsDatesOnlyIfTheyDiffer()
{
    QFETCH(const quint64, length);
    QTEST(ZelkoGUI::rangeText(recordBegin, recordBegin + length), "text");
}

void RangeTextsTest::aDurationIsWritten_data()
{
    QTest::addColumn<quint64>("start");
    QTest::addColumn<quint64>("stop");
    QTest::addColumn<QString>("text");
    QTest::newRow("none") << recordBegin << recordBegin << "00:00:00.000";
    QTest::newRow("behind each other the wrong way") << recordBegin + 1 << recordBegin << "n/a";
    QTest::newRow("less than a millisecond") << recordBegin << recordBegin + 999 << "00:00:00.000";
    QTest::newRow("less than a millisecond, in two of them")
        << recordBegin + 999 << recordBegin + 1'000 << "00:00:00.001";
    QTest::newRow("all parts") << recordBegin << recordBegin + 3'723 * second + 45'000 << "01:02:03.045";
    QTest::newRow("a second less a millisecond") << recordBegin << recordBegin + 999'000 << "00:00:00.999";
    QTest::newRow("days") << recordBegin << recordBegin + (100 * 3600 + 59) * second << "100:00:59.000";
}

void RangeTextsTest::aDurationIsWritten()
{
    QFETCH(const quint64, start);
    QFETCH(const quint64, stop);
    QTEST(ZelkoGUI::durationText(start, stop), "text");
}

QTEST_MAIN(RangeTextsTest)
#include "tst_rangetexts.moc"
