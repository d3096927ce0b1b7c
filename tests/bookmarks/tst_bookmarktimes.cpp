#include <zelkoguibase/bookmarks/bookmarktimes_p.h>

#include "testbookmarks.h"
#include "tracemask.h"
#include "tracetexts.h"

#include <QtTest>

using ZelkoGUI::BookmarkTimes;

namespace {

/// A record from second 0 to 90, each end so many microseconds later.
BookmarkTimes timesOf(quint64 laterStart = 0, quint64 laterStop = 0)
{
    BookmarkTimes times;
    times.setExtent({recordBegin + laterStart, recordBegin + 90'000'000 + laterStop});
    return times;
}

QDateTime atMillisecond(qint64 milliseconds)
{
    return QDateTime::fromMSecsSinceEpoch(static_cast<qint64>(recordBegin / 1000) + milliseconds);
}

} // namespace

class BookmarkTimesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void withoutARecordBothEndsAreTheEpoch();
    void theEndsAreCutToTheMillisecond();
    void whatIsBeforeTheRecordIsKnownToTheMicrosecond();
    void timesWithinTheRecordAreAccepted_data();
    void timesWithinTheRecordAreAccepted();
    void aPositionOutsideTheRecordIsTheStart_data();
    void aPositionOutsideTheRecordIsTheStart();
    void theDateIsLeftOutWithinOneDay_data();
    void theDateIsLeftOutWithinOneDay();
    void aTimeIsWrittenAsTheRecordWantsIt();
    void aRefusalIsTracedIfWanted_data();
    void aRefusalIsTracedIfWanted();
};

void BookmarkTimesTest::withoutARecordBothEndsAreTheEpoch()
{
    const BookmarkTimes times;
    QCOMPARE(times.first().toMSecsSinceEpoch(), 0);
    QCOMPARE(times.last().toMSecsSinceEpoch(), 0);
    QCOMPARE(times.startUnlessWithin(recordBegin), quint64{0});
}

void BookmarkTimesTest::theEndsAreCutToTheMillisecond()
{
    const BookmarkTimes times = timesOf(123'999, 1'001);
    QCOMPARE(times.first(), atMillisecond(123));
    QCOMPARE(times.last(), atMillisecond(90'001));
}

void BookmarkTimesTest::whatIsBeforeTheRecordIsKnownToTheMicrosecond()
{
    const BookmarkTimes times = timesOf(123);
    QVERIFY(times.isBefore(recordBegin + 122));
    QVERIFY(!times.isBefore(recordBegin + 123));
}

void BookmarkTimesTest::timesWithinTheRecordAreAccepted_data()
{
    QTest::addColumn<QDateTime>("time");
    QTest::addColumn<bool>("accepted");
    QTest::newRow("the start") << atMillisecond(0) << true;
    QTest::newRow("the start in another zone") << atMillisecond(0).toUTC() << true;
    QTest::newRow("a millisecond before the start") << atMillisecond(-1) << false;
    QTest::newRow("the stop") << atMillisecond(90'000) << true;
    QTest::newRow("a millisecond behind the stop") << atMillisecond(90'001) << false;
    QTest::newRow("no time") << QDateTime() << false;
}

void BookmarkTimesTest::timesWithinTheRecordAreAccepted()
{
    QFETCH(const QDateTime, time);
    QTEST(timesOf(123, 999).accepts(time), "accepted");
}

void BookmarkTimesTest::aPositionOutsideTheRecordIsTheStart_data()
{
    QTest::addColumn<qint64>("position"); // all in microseconds behind the start of an even record
    QTest::addColumn<quint64>("start");
    QTest::addColumn<quint64>("laterStop");
    QTest::addColumn<quint64>("result");
    const auto row = [](const char* name, qint64 position, quint64 start, quint64 laterStop, quint64 result) {
        QTest::newRow(name) << position << start << laterStop << result;
    };
    row("before the start", -1, 0, 0, 0);
    row("the start", 0, 0, 0, 0);
    row("within", 1'234'567, 0, 0, 1'234'567);
    row("the stop", 90'000'000, 0, 0, 90'000'000);
    row("past the stop", 90'000'001, 0, 0, 0);
    row("the start of a record that begins within a millisecond", 123, 123, 0, 123);
    row("past the stop of a record that begins within a millisecond", 90'000'001, 123, 0, 123);
}

void BookmarkTimesTest::aPositionOutsideTheRecordIsTheStart()
{
    QFETCH(const qint64, position);
    QFETCH(const quint64, start);
    QFETCH(const quint64, laterStop);
    QFETCH(const quint64, result);
    const BookmarkTimes times = timesOf(start, laterStop);
    const quint64 time = times.startUnlessWithin(recordBegin + static_cast<quint64>(position));
    QCOMPARE(time - recordBegin, result);
    QVERIFY(!times.isBefore(time));
}

void BookmarkTimesTest::theDateIsLeftOutWithinOneDay_data()
{
    QTest::addColumn<QString>("first");
    QTest::addColumn<QString>("last");
    QTest::addColumn<QString>("format");
    const QString timeOfDay = QStringLiteral("hh:mm:ss:zzz");
    const QString dateAndTime = QStringLiteral("yyyy-MM-dd hh:mm:ss:zzz");
    QTest::newRow("one moment") << "2023-11-14T12:00:00"
                                << "2023-11-14T12:00:00" << timeOfDay;
    QTest::newRow("a whole day") << "2023-11-14T00:00:00"
                                 << "2023-11-14T23:59:59.999" << timeOfDay;
    QTest::newRow("to the next day") << "2023-11-14T23:59:59.999"
                                     << "2023-11-15T00:00:00" << dateAndTime;
    QTest::newRow("the same time of another day") << "2023-11-14T12:00:00"
                                                  << "2023-11-15T12:00:00" << dateAndTime;
}

void BookmarkTimesTest::theDateIsLeftOutWithinOneDay()
{
    QFETCH(const QString, first);
    QFETCH(const QString, last);
    const auto time = [](const QString& text) { return QDateTime::fromString(text, Qt::ISODateWithMs); };
    QTEST(BookmarkTimes::timeFormat(time(first), time(last)), "format");
}

void BookmarkTimesTest::aTimeIsWrittenAsTheRecordWantsIt()
{
    const QString dateAndTime = QStringLiteral("2023-11-14 23:13:20:045");
    QCOMPARE(BookmarkTimes::longTime(atMillisecond(45)), dateAndTime);
    QCOMPARE(timesOf().shortTime(atMillisecond(45)), QStringLiteral("23:13:20:045"));
    QCOMPARE(timesOf(0, 3'600'000'000).shortTime(atMillisecond(45)), dateAndTime);
}

void BookmarkTimesTest::aRefusalIsTracedIfWanted_data()
{
    QTest::addColumn<unsigned int>("mask");
    QTest::addColumn<bool>("traced");
    QTest::newRow("warnings") << 64U << true;
    QTest::newRow("errors alone") << 32U << false;
}

void BookmarkTimesTest::aRefusalIsTracedIfWanted()
{
    QFETCH(const unsigned int, mask);
    QFETCH(const bool, traced);
    const TraceMask traceMask(mask);
    const TraceTexts traces;
    timesOf().traceRefused(atMillisecond(-1));
    QCOMPARE(traces.withSources().size(), traced ? 1 : 0);
    QCOMPARE(traces.contain(QStringLiteral("BookmarkModel::setTime(2023-11-14 23:13:19:999) - invalid "
                                           "(min=2023-11-14 23:13:20:000,max=2023-11-14 23:14:50:000)")),
             traced);
}

QTEST_GUILESS_MAIN(BookmarkTimesTest)
#include "tst_bookmarktimes.moc"
