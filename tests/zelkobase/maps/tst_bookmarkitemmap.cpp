#include <zelkobase/maps/bookmarkitemmap.h>

#include "changelogtext.h"
#include "testbookmarks.h"

#include <valuecore/valuefactory.h>
#include <zelkobase/maps/itemmaptypes.h>

#include <QtTest>

#include <cstring>

using zelko::bookmarkmap::BookmarkItemMap;
using zelko::bookmarkmap::BookmarkMapData;
using Format = zelko::bookmarkmap::BookmarkMapData_ItemFormat;
using ZELKO_XML::BookmarkEntry;

namespace {

const BookmarkEntry first = makeBookmark(1700000000000000, QStringLiteral("first"));
const BookmarkEntry second = makeBookmark(1700000001000000, QStringLiteral("second"));

} // namespace

class TestBookmarkItemMap : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void addedBookmarkStandsUnderANewKey()
    {
        BookmarkItemMap map;
        const unsigned int one = map.AddEntry(first, nullptr);
        const unsigned int two = map.AddEntry(first, nullptr);
        QVERIFY(one != two);
        QVERIFY(map.contains(one));
        QVERIFY(map.At(two).toEntry() == first);
        QCOMPARE(map.At(two).GetKey(), two);
    }

    void newKeyAvoidsKeysSetByOthers()
    {
        BookmarkItemMap map;
        for (const unsigned int taken : {0U, 1U, 3U}) {
            map.SetAt(taken, BookmarkMapData(taken, first), nullptr);
        }
        QCOMPARE(map.AddEntry(second, nullptr), 2U);
        QCOMPARE(map.AddEntry(second, nullptr), 4U);
        QCOMPARE(map.Size(), std::uint64_t{5});
    }

    void keyOfAnErasedBookmarkIsNotGivenToTheNextOne()
    {
        BookmarkItemMap map;
        const unsigned int key = map.AddEntry(first, nullptr);
        map.EraseAt(key, nullptr);
        QVERIFY(!map.contains(key));
        QVERIFY(map.AddEntry(first, nullptr) != key);
    }

    void setWithoutAKeyMakesOne()
    {
        BookmarkItemMap map;
        const unsigned int key = map.SetAt(BookmarkItemMap::GetInvalidKey(), BookmarkMapData(), nullptr);
        QVERIFY(key != BookmarkItemMap::GetInvalidKey());
        QVERIFY(map.contains(key));
    }

    void equalBookmarkSetTwiceIsLoggedOnce()
    {
        BookmarkItemMap map;
        std::uint64_t cursor = 0;
        map.SetAt(7, BookmarkMapData(7, first), nullptr);
        map.SetAt(7, BookmarkMapData(7, first), nullptr);
        map.SetAt(7, BookmarkMapData(7, second), nullptr);
        map.EraseAt(7, nullptr);
        QCOMPARE(readChanges(map.GetChangeLog(), cursor).join(QLatin1Char(',')), QStringLiteral("1 7,1 7,2 7"));
    }

    void displayTextCountsTheBookmarks()
    {
        BookmarkItemMap map;
        QVERIFY(map.GetStringValue().isEmpty());
        map.AddEntry(first, nullptr);
        QCOMPARE(map.GetStringValue(), QStringLiteral("1 bookmark"));
        map.AddEntry(second, nullptr);
        QCOMPARE(map.GetStringValue(), QStringLiteral("2 bookmarks"));
    }

    void objectStateMakesACopy()
    {
        BookmarkItemMap map;
        map.AddEntry(first, nullptr);
        map.AddEntry(makeBookmark(0, QString()), nullptr);
        std::string state;
        map.AddObjectStateStringForTransmission(state, 0);
        BookmarkItemMap copy;
        QVERIFY(copy.SetCommandString(state, nullptr));
        QVERIFY(copy.data() == map.data());
    }

    void bytesThatAreNoBookmarkLeaveTheItemAsItWas_data()
    {
        QTest::addColumn<QByteArray>("content");
        const std::string whole = Format::toStandardString(BookmarkMapData(5, first)).substr(4);
        QTest::newRow("nothing") << QByteArray();
        QTest::newRow("half a key") << QByteArray::fromStdString(whole.substr(0, 2));
        QTest::newRow("a key alone") << QByteArray::fromStdString(whole.substr(0, 4));
        QTest::newRow("one byte missing") << QByteArray::fromStdString(whole.substr(0, whole.size() - 1));
        QTest::newRow("one byte too many") << QByteArray::fromStdString(whole + 'x');
    }
    void bytesThatAreNoBookmarkLeaveTheItemAsItWas()
    {
        QFETCH(const QByteArray, content);
        const auto size = static_cast<std::uint32_t>(content.size());
        std::string bytes(sizeof size, '\0');
        std::memcpy(bytes.data(), &size, sizeof size);
        bytes += content.toStdString();
        BookmarkMapData item(3, second);
        const char* stream = bytes.data();
        QVERIFY(!Format::fromCharStream(&stream, item));
        QCOMPARE(stream, bytes.data() + bytes.size());
        QVERIFY(item == BookmarkMapData(3, second));
    }

    void equalityComparesKeyAndBookmark()
    {
        QVERIFY(BookmarkMapData(1, first) == BookmarkMapData(1, first));
        QVERIFY(!(BookmarkMapData(1, first) == BookmarkMapData(2, first)));
        QVERIFY(!(BookmarkMapData(1, first) == BookmarkMapData(1, second)));
        QCOMPARE(BookmarkMapData().GetKey(), BookmarkItemMap::GetInvalidKey());
    }

    void shortTextTellsTimeAndText()
    {
        QCOMPARE(Format::GetString(BookmarkMapData(1, first)), QStringLiteral("2023-11-14 23:13:20 first"));
    }

    void valueIsMadeByTheNameOfItsType()
    {
        zelko::registerItemMapTypes();
        QVERIFY(dynamic_cast<BookmarkItemMap*>(valuefactory::create("BookmarkItemMap").get()));
    }
};

QTEST_GUILESS_MAIN(TestBookmarkItemMap)
#include "tst_bookmarkitemmap.moc"
