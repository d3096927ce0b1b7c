#include "microseconds.h"
#include "tiedbar.h"

#include <controlwidgets/guicentral.h>
#include <valuecore/node.h>

#include <QSignalSpy>
#include <QtTest>

namespace {

constexpr long long begin = TiedBar::begin;
constexpr long long perPixel = TiedBar::perPixel;

using Bar = TiedBar;
using Bookmarks = std::vector<BookmarkType>;

QStringList textsOf(const Bookmarks& bookmarks)
{
    QStringList all;
    for (const BookmarkType& bookmark : bookmarks) {
        all << QStringLiteral("%1 %2").arg((bookmark.time - begin) / perPixel).arg(bookmark.text);
    }
    return all;
}

std::size_t guiValues()
{
    const auto* const node = dynamic_cast<const Node*>(Tree::Instance()->GetItem(QStringLiteral("/GuiCentral")));
    return node == nullptr ? 0 : node->GetTreeItems().size();
}

} // namespace

Q_DECLARE_METATYPE(Bookmarks)

class VCReplayBarTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void followsStartAndStop();
    void aBarWithoutValuesIsEmpty();
    void startsWithThePositionAndTwoMarkersMore();
    void draggingThePositionWritesItsValue();
    void aMarkerThatMayNotMoveStays_data();
    void aMarkerThatMayNotMoveStays();
    void draggingEndsAtTheRecordingsEnds();
    void keysMoveTheCurrentMarker();
    void keysChooseAnotherMarker();
    void setsBookmarksSilentlyOrNot();
    void bookmarksAreMarkersWithValuesOfTheirOwn();
    void draggingABookmarkIsTold();
    void aBookmarkFollowsAnEditor();
    void aBookmarkThatStaysKeepsItsValue();
    void theCurrentBookmarkIsFoundAgain_data();
    void theCurrentBookmarkIsFoundAgain();
    void aDoubleClickSetsABookmarkWhereItIsAllowed();
    void aDoubleClickOnAMarkerSetsNone();
    void insertSetsABookmarkAtThePosition();
    void deleteTakesTheCurrentBookmarkAway();
    void deleteLeavesWhatMayNotBeChanged();
    void aDragEndsWhenTheBookmarksBecomeOthers_data();
    void aDragEndsWhenTheBookmarksBecomeOthers();
    void aDragEndsWhenItsBookmarkIsDeleted();
    void aDragOutlastsTheSameBookmarks();
    void aRecordingThatIsGoneHasNoRange_data();
    void aRecordingThatIsGoneHasNoRange();
    void keepsTheRanges();
    void leavesNoValuesBehind();
    void drawsWhateverItHolds_data();
    void drawsWhateverItHolds();
};

void VCReplayBarTest::followsStartAndStop()
{
    Bar b;
    QCOMPARE(b.bar.objectName(), QStringLiteral("ZelkoReplayBar"));
    QCOMPARE(microseconds(b.bar.GetRecordingStart()), begin);
    QCOMPARE(microseconds(b.bar.GetRecordingStop()), begin + 100 * perPixel);
    Bar::set(b.stop.path(), begin + 200 * perPixel);
    QCOMPARE(microseconds(b.bar.axisStop()), begin + 200 * perPixel);
    QCOMPARE(b.bar.pixelAt(b.bar.axisStop()), 110);
}

void VCReplayBarTest::aBarWithoutValuesIsEmpty()
{
    VCReplayBar bar(nullptr, "bar", true);
    QCOMPARE(bar.GetRecordingStart(), 0.0);
    QCOMPARE(bar.GetRecordingStop(), 0.0);
    bar.SetRecordingStart_ValuePath(QStringLiteral("/missing"));
    bar.AllowCreationOfBookMarks(true);
    QTest::mouseDClick(&bar, Qt::LeftButton, {}, {50, 30});
    QTest::keyClick(&bar, Qt::Key_Insert);
    QVERIFY(bar.GetBookmarks().empty());
}

void VCReplayBarTest::startsWithThePositionAndTwoMarkersMore()
{
    const VCReplayBar bar(nullptr, "bar", true);
    QCOMPARE(bar.GetMarkerNumbers(), (std::vector<int>{1, 2, 3}));
    QCOMPARE(bar.GetCurrentMarker(), 1);
}

void VCReplayBarTest::draggingThePositionWritesItsValue()
{
    Bar b;
    b.bar.GetMarker(1)->SetMoveable(true);
    b.drag(50, 70);
    QCOMPARE(microseconds(Bar::value(b.position.path()).GetValue()), begin + 70 * perPixel);
    b.drag(50, 90);
    QCOMPARE(b.secondOf(1), 70);
}

void VCReplayBarTest::aMarkerThatMayNotMoveStays_data()
{
    QTest::addColumn<bool>("moveable");
    QTest::addColumn<bool>("enabled");
    QTest::addColumn<bool>("shown");
    QTest::newRow("fixed") << false << true << true;
    QTest::newRow("disabled") << true << false << true;
    QTest::newRow("not shown") << true << true << false;
}

void VCReplayBarTest::aMarkerThatMayNotMoveStays()
{
    QFETCH(bool, moveable);
    QFETCH(bool, enabled);
    QFETCH(bool, shown);
    Bar b;
    b.bar.GetMarker(1)->SetMoveable(moveable);
    b.bar.GetMarker(1)->SetEnabled(enabled);
    b.bar.GetMarker(1)->SetShowMarker(shown);
    b.drag(50, 70);
    QTest::keyClick(&b.bar, Qt::Key_Right);
    QCOMPARE(b.secondOf(1), 50);
}

void VCReplayBarTest::draggingEndsAtTheRecordingsEnds()
{
    Bar b;
    b.bar.GetMarker(1)->SetMoveable(true);
    b.drag(50, 500);
    QCOMPARE(b.secondOf(1), 100);
    b.drag(100, -500);
    QCOMPARE(b.secondOf(1), 0);
}

void VCReplayBarTest::keysMoveTheCurrentMarker()
{
    Bar b;
    b.bar.GetMarker(1)->SetMoveable(true);
    QTest::keyClick(&b.bar, Qt::Key_Right);
    QTest::keyClick(&b.bar, Qt::Key_Right);
    QTest::keyClick(&b.bar, Qt::Key_Left);
    QCOMPARE(b.secondOf(1), 51);
}

void VCReplayBarTest::keysChooseAnotherMarker()
{
    Bar b;
    b.bar.SetBookmarks(Bar::bookmarks({70, 20}), false);
    QTest::keyClick(&b.bar, Qt::Key_Right, Qt::ControlModifier);
    QCOMPARE(b.bar.GetCurrentMarker(), 6);
    QTest::keyClick(&b.bar, Qt::Key_Right, Qt::ControlModifier);
    QCOMPARE(b.bar.GetCurrentMarker(), 6);
    QTest::keyClick(&b.bar, Qt::Key_Left, Qt::ControlModifier);
    QTest::keyClick(&b.bar, Qt::Key_Left, Qt::ControlModifier);
    QCOMPARE(b.bar.GetCurrentMarker(), 7);
}

void VCReplayBarTest::setsBookmarksSilentlyOrNot()
{
    Bar b;
    QSignalSpy told(&b.bar, &VCReplayBar::signalBookmarksChanged);
    const Bookmarks bookmarks = Bar::bookmarks({30, 20, 40});
    b.bar.SetBookmarks(bookmarks, false);
    QCOMPARE(told.size(), 0);
    QCOMPARE(b.bar.GetBookmarks(), bookmarks);
    b.bar.SetBookmarks({}, true);
    QCOMPARE(told.size(), 1);
    QVERIFY(b.bar.GetBookmarks().empty());
}

void VCReplayBarTest::bookmarksAreMarkersWithValuesOfTheirOwn()
{
    Bar b;
    b.bar.SetBookmarks(Bar::bookmarks({30, 20}), false);
    QCOMPARE(b.bar.GetMarkerNumbers(), (std::vector<int>{1, 2, 3, 6, 7}));
    QCOMPARE(b.secondOf(6), 30);
    QCOMPARE(b.secondOf(7), 20);
    QCOMPARE(b.bar.GetMarker(7)->GetName(), QStringLiteral("b20"));
    QCOMPARE(microseconds(Bar::value(b.bar.GetValueTreePath(7)).GetValue()), begin + 20 * perPixel);
    QVERIFY(b.bar.GetValueTreePath(6) != b.bar.GetValueTreePath(7));
}

void VCReplayBarTest::draggingABookmarkIsTold()
{
    Bar b;
    b.bar.SetBookmarks(Bar::bookmarks({30, 20}), false);
    QSignalSpy told(&b.bar, &VCReplayBar::signalBookmarksChanged);
    b.drag(20, 25);
    QVERIFY(told.size() >= 1);
    QCOMPARE(textsOf(b.bar.GetBookmarks()), (QStringList{"30 b30", "25 b20"}));
    QCOMPARE(b.bar.GetCurrentMarker(), 7);
    b.bar.SetEnableMarker(7, false);
    told.clear();
    b.drag(25, 60);
    QCOMPARE(told.size(), 0);
    QCOMPARE(textsOf(b.bar.GetBookmarks()), (QStringList{"30 b30", "25 b20"}));
}

void VCReplayBarTest::aBookmarkFollowsAnEditor()
{
    Bar b;
    b.bar.SetBookmarks(Bar::bookmarks({30}), false);
    QSignalSpy told(&b.bar, &VCReplayBar::signalBookmarksChanged);
    Bar::set(b.bar.GetValueTreePath(6), begin + 35 * perPixel);
    QCOMPARE(told.size(), 1);
    QCOMPARE(textsOf(b.bar.GetBookmarks()), QStringList{"35 b30"});
}

void VCReplayBarTest::aBookmarkThatStaysKeepsItsValue()
{
    Bar b;
    b.bar.SetBookmarks(Bar::bookmarks({30, 20}), false);
    const QString first = b.bar.GetValueTreePath(6);
    const QString second = b.bar.GetValueTreePath(7);
    b.bar.SetBookmarks(Bar::bookmarks({40}), false);
    QCOMPARE(b.bar.GetValueTreePath(6), first);
    QCOMPARE(microseconds(Bar::value(first).GetValue()), begin + 40 * perPixel);
    QVERIFY(!Tree::Instance()->GetItem(second));
}

void VCReplayBarTest::theCurrentBookmarkIsFoundAgain_data()
{
    QTest::addColumn<Bookmarks>("bookmarks");
    QTest::addColumn<int>("number");
    const BookmarkType current = Bar::bookmarks({40}).front();
    QTest::newRow("as they were") << Bar::bookmarks({70, 40, 20}) << 7;
    QTest::newRow("in order") << Bar::bookmarks({20, 40, 70}) << 7;
    QTest::newRow("behind the others") << Bar::bookmarks({20, 70, 40}) << 8;
    QTest::newRow("alone") << Bar::bookmarks({40}) << 6;
    QTest::newRow("among more") << Bar::bookmarks({10, 20, 30, 40}) << 9;
    QTest::newRow("twice") << Bookmarks{current, current} << 7;
    QTest::newRow("gone") << Bar::bookmarks({20, 30, 70}) << 1;
    QTest::newRow("with another text") << Bookmarks{{current.time, QStringLiteral("other")}} << 1;
    QTest::newRow("at another time") << Bookmarks{{begin, current.text}} << 1;
    QTest::newRow("none left") << Bookmarks{} << 1;
    const auto edited = [](const BookmarkType& bookmark) {
        return Bookmarks{Bar::bookmarks({70}).front(), bookmark, Bar::bookmarks({20}).front()};
    };
    QTest::newRow("its text edited") << edited({current.time, QStringLiteral("other")}) << 7;
    QTest::newRow("its time edited") << edited({begin, current.text}) << 7;
    QTest::newRow("one of that text in another recording") << edited({begin - 1, current.text}) << 1;
    QTest::newRow("another in its place") << edited({begin, QStringLiteral("other")}) << 1;
}

void VCReplayBarTest::theCurrentBookmarkIsFoundAgain()
{
    QFETCH(Bookmarks, bookmarks);
    Bar b;
    b.bar.SetBookmarks(Bar::bookmarks({70, 40, 20}), false);
    b.bar.SetCurrentMarker(7);
    b.bar.SetBookmarks(bookmarks, false);
    QTEST(b.bar.GetCurrentMarker(), "number");
}

void VCReplayBarTest::aDoubleClickSetsABookmarkWhereItIsAllowed()
{
    Bar b;
    QSignalSpy told(&b.bar, &VCReplayBar::signalBookmarksChanged);
    QTest::mouseDClick(&b.bar, Qt::LeftButton, {}, b.headOf(20));
    QCOMPARE(told.size(), 0);
    b.bar.AllowCreationOfBookMarks(true);
    QTest::mouseDClick(&b.bar, Qt::LeftButton, {}, b.headOf(20));
    QCOMPARE(told.size(), 1);
    QCOMPARE(textsOf(b.bar.GetBookmarks()), QStringList{"20 Bookmark 1"});
    QCOMPARE(b.bar.GetCurrentMarker(), 6);
}

void VCReplayBarTest::aDoubleClickOnAMarkerSetsNone()
{
    Bar b;
    b.bar.AllowCreationOfBookMarks(true);
    b.bar.SetBookmarks(Bar::bookmarks({20}), false);
    QTest::mouseDClick(&b.bar, Qt::LeftButton, {}, b.headOf(20));
    QTest::mouseDClick(&b.bar, Qt::RightButton, {}, b.headOf(80));
    QCOMPARE(b.bar.GetBookmarks(), Bar::bookmarks({20}));
}

void VCReplayBarTest::insertSetsABookmarkAtThePosition()
{
    Bar b;
    QTest::keyClick(&b.bar, Qt::Key_Insert);
    QVERIFY(b.bar.GetBookmarks().empty());
    b.bar.AllowCreationOfBookMarks(true);
    QTest::keyClick(&b.bar, Qt::Key_Insert);
    QCOMPARE(textsOf(b.bar.GetBookmarks()), QStringList{"50 Bookmark 1"});
    Bar::set(b.position.path(), begin + 500 * perPixel);
    QTest::keyClick(&b.bar, Qt::Key_Insert);
    QCOMPARE(b.bar.GetBookmarks().size(), std::size_t{1});
}

void VCReplayBarTest::deleteTakesTheCurrentBookmarkAway()
{
    Bar b;
    b.bar.AllowCreationOfBookMarks(true);
    b.bar.SetBookmarks(Bar::bookmarks({30, 20, 40}), false);
    b.bar.SetCurrentMarker(7);
    QSignalSpy told(&b.bar, &VCReplayBar::signalBookmarksChanged);
    QTest::keyClick(&b.bar, Qt::Key_Delete);
    QCOMPARE(told.size(), 1);
    QCOMPARE(textsOf(b.bar.GetBookmarks()), (QStringList{"30 b30", "40 b40"}));
    QCOMPARE(b.secondOf(7), 40);
}

void VCReplayBarTest::deleteLeavesWhatMayNotBeChanged()
{
    Bar b;
    b.bar.SetBookmarks(Bar::bookmarks({30}), false);
    b.bar.SetCurrentMarker(6);
    QTest::keyClick(&b.bar, Qt::Key_Delete);
    b.bar.AllowCreationOfBookMarks(true);
    b.bar.SetEnableMarker(6, false);
    QTest::keyClick(&b.bar, Qt::Key_Delete);
    b.bar.SetCurrentMarker(1);
    QTest::keyClick(&b.bar, Qt::Key_Delete);
    QCOMPARE(b.bar.GetBookmarks(), Bar::bookmarks({30}));
}

void VCReplayBarTest::aDragEndsWhenTheBookmarksBecomeOthers_data()
{
    QTest::addColumn<QList<int>>("seconds");
    QTest::newRow("the dragged one removed") << QList<int>{40, 60};
    QTest::newRow("the dragged one moved up") << QList<int>{20, 40};
    QTest::newRow("all replaced") << QList<int>{80, 81, 82};
    QTest::newRow("none left") << QList<int>{};
}

void VCReplayBarTest::aDragEndsWhenTheBookmarksBecomeOthers()
{
    QFETCH(QList<int>, seconds);
    Bar b;
    b.bar.SetBookmarks(Bar::bookmarks({30, 20, 40}), false);
    QTest::mousePress(&b.bar, Qt::LeftButton, {}, b.headOf(20));
    Bookmarks others;
    for (const int second : seconds) {
        others.emplace_back(begin + second * perPixel, QStringLiteral("other"));
    }
    b.bar.SetBookmarks(others, false);
    QTest::mouseMove(&b.bar, b.headOf(25));
    QCOMPARE(b.bar.GetBookmarks(), others);
    b.bar.SetBookmarks(Bar::bookmarks({30, 20, 40}), false);
    QTest::mouseMove(&b.bar, b.headOf(26));
    QCOMPARE(b.bar.GetBookmarks(), Bar::bookmarks({30, 20, 40}));
}

void VCReplayBarTest::aDragEndsWhenItsBookmarkIsDeleted()
{
    Bar b;
    b.bar.AllowCreationOfBookMarks(true);
    b.bar.SetBookmarks(Bar::bookmarks({30, 20, 40}), false);
    QTest::mousePress(&b.bar, Qt::LeftButton, {}, b.headOf(20));
    QTest::keyClick(&b.bar, Qt::Key_Delete);
    QTest::mouseMove(&b.bar, b.headOf(25));
    QCOMPARE(b.bar.GetBookmarks(), Bar::bookmarks({30, 40}));
}

void VCReplayBarTest::aDragOutlastsTheSameBookmarks()
{
    Bar b;
    b.bar.SetBookmarks(Bar::bookmarks({30, 20}), false);
    connect(&b.bar, &VCReplayBar::signalBookmarksChanged, &b.bar,
            [&b] { b.bar.SetBookmarks(b.bar.GetBookmarks(), false); });
    QTest::mousePress(&b.bar, Qt::LeftButton, {}, b.headOf(20));
    QTest::mouseMove(&b.bar, b.headOf(22));
    QTest::mouseMove(&b.bar, b.headOf(25));
    QCOMPARE(textsOf(b.bar.GetBookmarks()), (QStringList{"30 b30", "25 b20"}));
}

void VCReplayBarTest::aRecordingThatIsGoneHasNoRange_data()
{
    QTest::addColumn<bool>("isStart");
    QTest::newRow("without its start") << true;
    QTest::newRow("without its stop") << false;
}

void VCReplayBarTest::aRecordingThatIsGoneHasNoRange()
{
    QFETCH(bool, isStart);
    Bar b;
    b.bar.AllowCreationOfBookMarks(true);
    b.bar.GetMarker(1)->SetMoveable(true);
    GuiCentral::Instance().RemoveValue((isStart ? b.start : b.stop).path());
    QCOMPARE(isStart ? b.bar.GetRecordingStart() : b.bar.GetRecordingStop(), 0.0);
    QVERIFY(b.bar.axisStart() == b.bar.axisStop());
    QTest::mouseDClick(&b.bar, Qt::LeftButton, {}, b.headOf(20));
    QTest::keyClick(&b.bar, Qt::Key_Insert);
    QVERIFY(b.bar.GetBookmarks().empty());
    QTest::keyClick(&b.bar, Qt::Key_Right);
    QCOMPARE(b.secondOf(1), 50);
}

void VCReplayBarTest::keepsTheRanges()
{
    Bar b;
    b.bar.SetRangeVector({{begin, begin + perPixel}, {begin, begin}});
    QCOMPARE(b.bar.GetRangeVector().size(), std::size_t{2});
    b.bar.SetRangeVector({});
    QVERIFY(b.bar.GetRangeVector().empty());
}

void VCReplayBarTest::leavesNoValuesBehind()
{
    const std::size_t before = guiValues();
    {
        Bar b;
        b.bar.SetBookmarks(Bar::bookmarks({30, 20}), false);
        QVERIFY(guiValues() > before);
    }
    QCOMPARE(guiValues(), before);
}

void VCReplayBarTest::drawsWhateverItHolds_data()
{
    QTest::addColumn<long long>("start");
    QTest::addColumn<long long>("stop");
    QTest::newRow("nothing") << 0LL << 0LL;
    QTest::newRow("the wrong way round") << begin << 0LL;
    QTest::newRow("a single moment") << begin << begin;
    QTest::newRow("a microsecond") << begin << begin + 1;
    QTest::newRow("a minute") << begin << begin + 60'000'000;
    QTest::newRow("fifty years") << 0LL << begin;
    QTest::newRow("all times") << 0LL << std::numeric_limits<long long>::max();
}

void VCReplayBarTest::drawsWhateverItHolds()
{
    QFETCH(long long, start);
    QFETCH(long long, stop);
    Bar b;
    Bar::set(b.start.path(), start);
    Bar::set(b.stop.path(), stop);
    b.bar.SetBookmarks({{start, QString()}, {stop, QString()}, {std::numeric_limits<long long>::max(), QString()}},
                       false);
    b.bar.SetRangeVector({{start, stop}, {stop, start}, {0, std::numeric_limits<long long>::max()}});
    QVERIFY(!b.bar.grab().isNull());
    b.bar.resize(1, 1);
    QVERIFY(!b.bar.grab().isNull());
}

QTEST_MAIN(VCReplayBarTest)
#include "tst_vcreplaybar.moc"
