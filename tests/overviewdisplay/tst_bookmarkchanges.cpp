#include <overviewdisplay/bookmarkchanges_p.h>

#include <QtTest>

using namespace SPECTRUM_OVERVIEW;
using ZELKO_XML::BookmarkEntry;

namespace {

BookmarkEntry entry(quint64 time, const char* text)
{
    BookmarkEntry one;
    one.SetTimestamp(time);
    one.SetBookmark(QLatin1String(text));
    return one;
}

QString text(const Bookmarks& bookmarks)
{
    QStringList all;
    for (const BookmarkEntry& bookmark : bookmarks) {
        all << QStringLiteral("%1%2").arg(bookmark.GetTimestamp()).arg(bookmark.GetBookmark());
    }
    return all.join(QLatin1Char(' '));
}

const Bookmarks three{entry(10, "a"), entry(20, "b"), entry(30, "c")};

} // namespace

class BookmarkChangesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aNewOneStandsAtItsTime_data();
    void aNewOneStandsAtItsTime();
    void bookmarksOutOfOrderComeIntoOrder();
    void oneIsTakenAway();
    void ofTwoThatAreAlikeOneStays();
    void whatIsNotThereIsNotTakenAway();
    void theNearestIsFound_data();
    void theNearestIsFound();
};

void BookmarkChangesTest::aNewOneStandsAtItsTime_data()
{
    QTest::addColumn<quint64>("time");
    QTest::addColumn<QString>("list");
    QTest::newRow("in front") << quint64(1) << "1x 10a 20b 30c";
    QTest::newRow("between") << quint64(25) << "10a 20b 25x 30c";
    QTest::newRow("behind one of the same time") << quint64(20) << "10a 20b 20x 30c";
    QTest::newRow("at the end") << std::numeric_limits<quint64>::max() << "10a 20b 30c 18446744073709551615x";
}

void BookmarkChangesTest::aNewOneStandsAtItsTime()
{
    QFETCH(quint64, time);
    QTEST(text(withBookmark(three, time, QStringLiteral("x"))), "list");
}

void BookmarkChangesTest::bookmarksOutOfOrderComeIntoOrder()
{
    QCOMPARE(text(withBookmark({entry(30, "c"), entry(10, "a")}, 20, QString())), "10a 20 30c");
}

void BookmarkChangesTest::oneIsTakenAway()
{
    QCOMPARE(text(withoutBookmark(three, entry(20, "b"))), "10a 30c");
}

void BookmarkChangesTest::ofTwoThatAreAlikeOneStays()
{
    QCOMPARE(text(withoutBookmark({entry(20, "b"), entry(20, "b")}, entry(20, "b"))), "20b");
}

void BookmarkChangesTest::whatIsNotThereIsNotTakenAway()
{
    QCOMPARE(text(withoutBookmark(three, entry(20, "x"))), "10a 20b 30c");
    QCOMPARE(text(withoutBookmark({}, entry(20, "x"))), "");
}

void BookmarkChangesTest::theNearestIsFound_data()
{
    QTest::addColumn<quint64>("time");
    QTest::addColumn<quint64>("reach");
    QTest::addColumn<QString>("found");
    QTest::newRow("at its time") << quint64(20) << quint64(0) << "b";
    QTest::newRow("before it") << quint64(16) << quint64(5) << "b";
    QTest::newRow("behind it") << quint64(24) << quint64(5) << "b";
    QTest::newRow("out of reach") << quint64(24) << quint64(3) << "";
    QTest::newRow("behind the last") << quint64(40) << quint64(10) << "c";
    QTest::newRow("before the first") << quint64(0) << quint64(10) << "a";
}

void BookmarkChangesTest::theNearestIsFound()
{
    QFETCH(quint64, time);
    QFETCH(quint64, reach);
    const auto found = nearestBookmark(three, time, reach);
    QTEST(found ? found->GetBookmark() : QString(), "found");
    QVERIFY(!nearestBookmark({}, time, reach));
}

QTEST_APPLESS_MAIN(BookmarkChangesTest)

#include "tst_bookmarkchanges.moc"
