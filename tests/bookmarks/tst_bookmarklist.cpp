#include <zelkoguibase/bookmarks/bookmarklist_p.h>

#include "testbookmarks.h"

#include <QtTest>

#include <random>

using ZELKO_XML::RecordExtent;
using ZelkoGUI::BookmarkList;
using Entries = BookmarkList::Entries;

namespace {

const QString text = QStringLiteral("b");

Entries at(const QList<int>& seconds)
{
    Entries entries;
    for (const int second : seconds) {
        entries.append(bookmarkAt(second, text));
    }
    return entries;
}

RecordExtent extent(int first, int last)
{
    return {bookmarkAt(first, {}).GetTimestamp(), bookmarkAt(last, {}).GetTimestamp()};
}

bool isNormalized(const Entries& entries)
{
    for (int row = 1; row < entries.size(); ++row) {
        if (entries[row - 1].GetTimestamp() >= entries[row].GetTimestamp()) {
            return false;
        }
    }
    return true;
}

bool anyOutside(const Entries& entries, const std::optional<RecordExtent>& limits)
{
    return limits && std::any_of(entries.begin(), entries.end(), [&](const auto& entry) {
               return entry.GetTimestamp() < limits->start || entry.GetTimestamp() > limits->stop;
           });
}

} // namespace

class BookmarkListTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void ascendingTimesAreNormalized_data();
    void ascendingTimesAreNormalized();
    void textsOfOneTimeAreJoined_data();
    void textsOfOneTimeAreJoined();
    void normalizingPutsTimesIntoOrder();
    void aBookmarkAtTheEndsIsWithinRange();
    void nothingIsOutOfRangeWithoutLimits();
    void whatIsOutOfRangeCanBeLeftOut();
    void answersFollowEachChange();
};

void BookmarkListTest::ascendingTimesAreNormalized_data()
{
    QTest::addColumn<QList<int>>("seconds");
    QTest::addColumn<bool>("isNormalized");
    QTest::newRow("none") << QList<int>() << true;
    QTest::newRow("one") << QList<int>{7} << true;
    QTest::newRow("ascending") << QList<int>{1, 2, 9} << true;
    QTest::newRow("two of one time") << QList<int>{1, 2, 2} << false;
    QTest::newRow("descending") << QList<int>{3, 2, 1} << false;
    QTest::newRow("one before the others") << QList<int>{2, 3, 1} << false;
    QTest::newRow("a time that comes again later") << QList<int>{1, 2, 1} << false;
}

void BookmarkListTest::ascendingTimesAreNormalized()
{
    QFETCH(const QList<int>, seconds);
    BookmarkList list;
    list.assign(at(seconds));
    QTEST(list.isNormalized(), "isNormalized");
}

void BookmarkListTest::textsOfOneTimeAreJoined_data()
{
    QTest::addColumn<QStringList>("texts");
    QTest::addColumn<QString>("joined");
    QTest::newRow("two") << QStringList{"a", "b"} << "a b";
    QTest::newRow("in row order") << QStringList{"b", "a"} << "b a";
    QTest::newRow("the first empty") << QStringList{"", "b"} << "b";
    QTest::newRow("the second empty") << QStringList{"a", ""} << "a";
    QTest::newRow("both empty") << QStringList{"", ""} << "";
    QTest::newRow("an empty one between two") << QStringList{"a", "", "b"} << "a b";
    QTest::newRow("three") << QStringList{"a", "b", "c"} << "a b c";
    QTest::newRow("a blank alone") << QStringList{" ", "b"} << "  b";
}

void BookmarkListTest::textsOfOneTimeAreJoined()
{
    QFETCH(const QStringList, texts);
    QFETCH(const QString, joined);
    BookmarkList list;
    for (const QString& each : texts) {
        list.append(bookmarkAt(5, each));
    }
    QCOMPARE(bookmarkTexts(list.normalized()), QStringList{QStringLiteral("5000000 ") + joined});
}

void BookmarkListTest::normalizingPutsTimesIntoOrder()
{
    BookmarkList list;
    list.assign({bookmarkAt(3, "c"), bookmarkAt(1, "a"), bookmarkAt(3, "d"), bookmarkAt(2, "b")});
    QCOMPARE(bookmarkTexts(list.normalized()), QStringList({"1000000 a", "2000000 b", "3000000 c d"}));
    QCOMPARE(list.count(), 4);
}

void BookmarkListTest::aBookmarkAtTheEndsIsWithinRange()
{
    BookmarkList list;
    list.setLimits(extent(1, 3));
    list.assign(at({1, 3}));
    QVERIFY(!list.anyOutOfRange());
    Entries beside = at({1, 3});
    beside[0].SetTimestamp(beside[0].GetTimestamp() - 1);
    beside[1].SetTimestamp(beside[1].GetTimestamp() + 1);
    list.assign(beside);
    QVERIFY(list.isOutOfRange(0));
    QVERIFY(list.isOutOfRange(1));
}

void BookmarkListTest::nothingIsOutOfRangeWithoutLimits()
{
    BookmarkList list;
    list.assign(at({0, 1, 2}));
    QVERIFY(!list.anyOutOfRange());
    list.setLimits(extent(1, 1));
    QVERIFY(list.anyOutOfRange());
    list.setLimits(std::nullopt);
    QVERIFY(!list.anyOutOfRange());
}

void BookmarkListTest::whatIsOutOfRangeCanBeLeftOut()
{
    BookmarkList list;
    list.setLimits(extent(1, 3));
    list.assign(at({4, 2, 0, 3}));
    QCOMPARE(bookmarkTexts(list.withinRange()), QStringList({"2000000 b", "3000000 b"}));
    QCOMPARE(list.count(), 4);
}

// What is counted along is compared with what a walk over the whole list finds.
void BookmarkListTest::answersFollowEachChange()
{
    std::mt19937 random(1);
    const auto below = [&random](int end) { return static_cast<int>(random() % static_cast<unsigned int>(end)); };
    BookmarkList list;
    std::optional<RecordExtent> limits;
    for (int step = 0; step < 20'000; ++step) {
        const auto entry = bookmarkAt(below(12), text);
        const int choice = below(20);
        if (choice == 0) {
            limits = below(3) == 0 ? std::nullopt : std::optional(extent(below(4), 8 + below(4)));
            list.setLimits(limits);
        } else if (choice == 1) {
            list.assign(at({below(9), below(9)}));
        } else if (choice < 8 && list.count() < 6) {
            list.append(entry);
        } else if (choice < 14 && list.count() > 0) {
            list.replace(below(list.count()), entry);
        } else if (list.count() > 0) {
            list.remove(below(list.count()));
        }
        QCOMPARE(list.isNormalized(), isNormalized(list.entries()));
        QCOMPARE(list.anyOutOfRange(), anyOutside(list.entries(), limits));
    }
}

QTEST_GUILESS_MAIN(BookmarkListTest)
#include "tst_bookmarklist.moc"
