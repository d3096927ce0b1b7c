#include <recorder/served/bookmarkbounds.h>

#include <recorder/store/recordedits.h>

#include <patience.h>
#include <sentcommands.h>
#include <testbookmarks.h>

#include <QTest>

using namespace ZelkoRecorder;
using zelko::bookmarkmap::BookmarkItemMap;
using zelko::bookmarkmap::BookmarkMapData;
using Keys = QList<unsigned int>;

Q_DECLARE_METATYPE(BookmarkMapData)

namespace {

BookmarkMapData item(unsigned int key, qsizetype letters = 1)
{
    return {key, bookmarkAt(static_cast<int>(key), QString(letters, u'a'))};
}

/// A map that a client fills, and what holds it within bounds.
struct Fixture
{
    BookmarkItemMap map{QStringLiteral("Bookmarks"), TValueState::Open};
    BookmarkBounds bounds{&map};

    void fill(unsigned int count)
    {
        for (unsigned int key = 0; key < count; ++key) {
            map.SetAt(key, item(key), nullptr);
        }
    }
    Keys keys() const
    {
        const auto all = map.IndexVector();
        Keys result(all.begin(), all.end());
        std::sort(result.begin(), result.end());
        return result;
    }
    /// What is erased late is erased after a turn of the event loop.
    void settle() const { QCoreApplication::sendPostedEvents(); }
};

} // namespace

/// What becomes of bookmarks on the tree that no record could have.
class TestBookmarkBounds : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void looksAtWhatIsWritten_data();
    void looksAtWhatIsWritten();
    void erasesForEveryClient();
    void erasesOutsideOfTheNotification();
    void keepsAsManyAsARecordHas();
    void erasesWhatWasWrittenLast();
    void keepsAnOldBookmarkThatIsChanged_data();
    void keepsAnOldBookmarkThatIsChanged();
    void looksAtAllWhereMoreWasWrittenThanTheLogKeeps();
    void looksAtABookmarkThatIsWrittenAgain();
    void mayOutliveItsMap();
};

void TestBookmarkBounds::looksAtWhatIsWritten_data()
{
    QTest::addColumn<BookmarkMapData>("written");
    QTest::addColumn<bool>("stays");
    QTest::newRow("a text of the largest length") << item(2, longestRecordText) << true;
    QTest::newRow("a text that is longer") << item(2, longestRecordText + 1) << false;
    QTest::newRow("an item with the key of another") << item(3) << false;
    QTest::newRow("an item without a key") << BookmarkMapData() << false;
    QTest::newRow("no text and no time") << BookmarkMapData(2, {}) << true;
}

void TestBookmarkBounds::looksAtWhatIsWritten()
{
    QFETCH(const BookmarkMapData, written);
    QFETCH(const bool, stays);
    Fixture f;
    f.fill(2);
    f.map.SetAt(2, written, nullptr);
    f.settle();
    QCOMPARE(f.keys(), stays ? (Keys{0, 1, 2}) : (Keys{0, 1}));
}

void TestBookmarkBounds::erasesForEveryClient()
{
    Fixture f;
    SentCommands sent;
    f.map.SetTransmitter(&sent);
    f.map.SetAt(2, item(2, longestRecordText + 1), nullptr);
    f.settle();
    QCOMPARE(sent.ids(), (std::vector<int>{CommandIdMapSetAt, CommandIdMapEraseAt}));
}

void TestBookmarkBounds::erasesOutsideOfTheNotification()
{
    Fixture f;
    f.map.SetAt(2, item(2, longestRecordText + 1), nullptr);
    QVERIFY(f.map.contains(2));
    f.settle();
    QVERIFY(!f.map.contains(2));
}

void TestBookmarkBounds::keepsAsManyAsARecordHas()
{
    Fixture f;
    f.fill(mostBookmarks);
    f.settle();
    QCOMPARE(f.map.Size(), std::uint64_t{mostBookmarks});
}

void TestBookmarkBounds::erasesWhatWasWrittenLast()
{
    Fixture f;
    f.fill(mostBookmarks);
    f.settle();
    f.map.SetAt(mostBookmarks, item(mostBookmarks), nullptr);
    f.map.SetAt(mostBookmarks + 1, item(mostBookmarks + 1), nullptr);
    f.settle();
    QCOMPARE(f.map.Size(), std::uint64_t{mostBookmarks});
    QVERIFY(!f.map.contains(mostBookmarks) && !f.map.contains(mostBookmarks + 1));
}

void TestBookmarkBounds::keepsAnOldBookmarkThatIsChanged_data()
{
    QTest::addColumn<unsigned int>("old"); // behind the new one
    QTest::addColumn<unsigned int>("changes");
    QTest::newRow("by one change") << 7U << 1U;
    QTest::newRow("by more changes than the log keeps") << 0U << 300U;
}

void TestBookmarkBounds::keepsAnOldBookmarkThatIsChanged()
{
    QFETCH(const unsigned int, old);
    QFETCH(const unsigned int, changes);
    Fixture f;
    f.fill(mostBookmarks);
    f.settle();
    f.map.SetAt(mostBookmarks, item(mostBookmarks), nullptr);
    for (unsigned int i = 0; i < changes; ++i) {
        f.map.SetAt(old + i, item(old + i, 2), nullptr);
    }
    f.settle();
    QCOMPARE(f.map.Size(), std::uint64_t{mostBookmarks});
    QVERIFY(!f.map.contains(mostBookmarks));
}

void TestBookmarkBounds::looksAtAllWhereMoreWasWrittenThanTheLogKeeps()
{
    Fixture f;
    f.map.SetAt(mostBookmarks + 5, item(mostBookmarks + 5, longestRecordText + 1), nullptr);
    f.fill(mostBookmarks + 3);
    f.settle();
    QVERIFY(!f.map.contains(mostBookmarks + 5));
    QCOMPARE(f.map.Size(), std::uint64_t{mostBookmarks});
}

void TestBookmarkBounds::looksAtABookmarkThatIsWrittenAgain()
{
    Fixture f;
    f.fill(3);
    f.settle();
    f.map.SetAt(1, item(1, longestRecordText + 1), nullptr);
    f.settle();
    QCOMPARE(f.keys(), (Keys{0, 2}));
}

void TestBookmarkBounds::mayOutliveItsMap()
{
    auto map = std::make_unique<BookmarkItemMap>(QStringLiteral("Bookmarks"), TValueState::Open);
    const BookmarkBounds bounds(map.get());
    map->SetAt(2, item(2, longestRecordText + 1), nullptr);
    map.reset();
    QCoreApplication::sendPostedEvents();
}

QTEST_GUILESS_MAIN(TestBookmarkBounds)
#include "tst_bookmarkbounds.moc"
