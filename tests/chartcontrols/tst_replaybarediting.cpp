#include "tiedbar.h"

#include <valuecore/value.h>

#include <QMenu>
#include <QSignalSpy>
#include <QToolTip>
#include <QtTest>

#include <cmath>
#include <functional>

namespace {

constexpr long long begin = TiedBar::begin;
constexpr long long second = TiedBar::perPixel;
constexpr int first = VCReplayBar::FirstBookmarkMarker;

/// A bar whose position can be moved and whose bookmarks can be edited, with a count of what it tells.
struct Edited : TiedBar
{
    Edited()
    {
        bar.GetMarker(VCReplayBar::PositionMarker)->SetMoveable(true);
        bar.AllowCreationOfBookMarks(true);
    }
    explicit Edited(std::initializer_list<int> seconds)
        : Edited()
    {
        bar.SetBookmarks(bookmarks(seconds), false);
    }

    double place(int marker) const { return (bar.GetMarker(marker)->GetPosition() - double(begin)) / second; }
    QList<int> seconds() const
    {
        QList<int> all;
        for (const BookmarkType& bookmark : bar.GetBookmarks()) {
            all << static_cast<int>((bookmark.time - begin) / second);
        }
        return all;
    }
    int takeTold()
    {
        const auto count = static_cast<int>(told.size());
        told.clear();
        return count;
    }

    QMenu* openMenu(QPoint place, QContextMenuEvent::Reason reason = QContextMenuEvent::Mouse)
    {
        QContextMenuEvent event(reason, place, bar.mapToGlobal(place));
        QCoreApplication::sendEvent(&bar, &event);
        return bar.findChild<QMenu*>();
    }

    QSignalSpy told{&bar, &VCReplayBar::signalBookmarksChanged};
};

QStringList offered(const QMenu& menu)
{
    QStringList names;
    for (const QAction* const action : menu.actions()) {
        names << action->objectName() + QLatin1String(action->isEnabled() ? "" : " off");
    }
    return names;
}

void choose(QMenu& menu, const char* name)
{
    auto* const action = menu.findChild<QAction*>(QLatin1String(name));
    QVERIFY(action);
    QTest::mouseClick(&menu, Qt::LeftButton, {}, menu.actionGeometry(action).center());
}

using Prepare = std::function<void(Edited&)>;

} // namespace

Q_DECLARE_METATYPE(Prepare)

/// What a user does to position and bookmarks with keys, mouse and menu.
class ReplayBarEditingTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void keysMoveThePosition_data();
    void keysMoveThePosition();
    void aUsersMovesOfThePositionAreTold();
    void keysEndAtTheEnds_data();
    void keysEndAtTheEnds();
    void keysMoveABookmarkAndTellIt();
    void returnTakesThePositionToTheBookmark();
    void choosingRevealsWhatIsNotShown();
    void choosingBeginsWhereTheCurrentMarkerIs_data();
    void choosingBeginsWhereTheCurrentMarkerIs();
    void deletingGoesOnToTheNeighbour();

    void aDragIsToldWhenItEnds();
    void aDragBackIsNoChange();
    void aClickThatTremblesMovesNoBookmark();
    void escapeTakesADragBack();
    void aReleaseThatGotLostTakesADragBack();
    void aBookmarkThatIsLockedGoesBack();
    void aDragOutlastsTheBookmarksAsTheyWere();
    void theCursorTellsWhatCanBeDragged();
    void theHandleIsBelowTheFlags();

    void aTimeThatADoubleCannotHoldIsKept();
    void aValueThatIsNoWholeNumberIsRounded();
    void aUserMovesByWholeMicroseconds();
    void aLockedValueIsNotMoved();
    void aValueThatIsLockedWhileItIsDraggedStays();

    void theMenuOffersWhatCanBeDone_data();
    void theMenuOffersWhatCanBeDone();
    void theMenuRemovesABookmark();
    void theMenuSetsABookmark();
    void theMenuMovesThePosition();
    void theMenuOpensAtTheCurrentMarker();
    void aMenuRemovesNoOtherBookmark();
    void aMenuLeavesAnotherBookmarkTheCurrentOne();
    void anEmptyBarHasNoMenu();

    void theToolTipTellsTheMoment();
    void theToolTipTellsAllOnOnePixel();
};

void ReplayBarEditingTest::keysMoveThePosition_data()
{
    QTest::addColumn<Qt::Key>("key");
    QTest::addColumn<bool>("isFine");
    QTest::addColumn<double>("place");
    QTest::newRow("a step back") << Qt::Key_Left << false << 49.0;
    QTest::newRow("a step on") << Qt::Key_Right << false << 51.0;
    QTest::newRow("a step down") << Qt::Key_Down << false << 49.0;
    QTest::newRow("a step up") << Qt::Key_Up << false << 51.0;
    QTest::newRow("a small step back") << Qt::Key_Left << true << 49.9;
    QTest::newRow("a small step on") << Qt::Key_Right << true << 50.1;
    QTest::newRow("a page back") << Qt::Key_PageDown << false << 40.0;
    QTest::newRow("a page on") << Qt::Key_PageUp << false << 60.0;
    QTest::newRow("to the start") << Qt::Key_Home << false << 0.0;
    QTest::newRow("to the end") << Qt::Key_End << false << 100.0;
}

void ReplayBarEditingTest::keysMoveThePosition()
{
    QFETCH(Qt::Key, key);
    QFETCH(bool, isFine);
    QFETCH(double, place);
    Edited b;
    b.key(key, isFine ? Qt::ShiftModifier : Qt::NoModifier);
    QCOMPARE(b.place(VCReplayBar::PositionMarker), place);
    QCOMPARE(b.takeTold(), 0);
}

// Of all that writes the value of the position, what a user does alone.
void ReplayBarEditingTest::aUsersMovesOfThePositionAreTold()
{
    Edited edited({20});
    const QSignalSpy moved(&edited.bar, &VCReplayBar::signalPositionMoved);
    TiedBar::set(edited.position.path(), begin + 30 * second);
    edited.drag(20, 25);
    QCOMPARE(moved.size(), 0);
    edited.key(Qt::Key_Return); // from the bookmark
    QCOMPARE(moved.size(), 1);
    QCOMPARE(moved.constLast().constFirst().toDouble(), double(begin + 25 * second));
    edited.bar.SetCurrentMarker(VCReplayBar::PositionMarker);
    edited.key(Qt::Key_Home);
    QCOMPARE(moved.constLast().constFirst().toDouble(), double(begin));
    TiedBar::value(edited.position.path()).SetState(TValueState::Locked, nullptr);
    edited.key(Qt::Key_End);
    QCOMPARE(moved.size(), 2);
}

void ReplayBarEditingTest::keysEndAtTheEnds_data()
{
    QTest::addColumn<Qt::Key>("to");
    QTest::addColumn<Qt::Key>("beyond");
    QTest::addColumn<double>("place");
    QTest::newRow("steps at the start") << Qt::Key_Home << Qt::Key_Left << 0.0;
    QTest::newRow("pages at the start") << Qt::Key_Home << Qt::Key_PageDown << 0.0;
    QTest::newRow("steps at the end") << Qt::Key_End << Qt::Key_Right << 100.0;
    QTest::newRow("pages at the end") << Qt::Key_End << Qt::Key_PageUp << 100.0;
}

void ReplayBarEditingTest::keysEndAtTheEnds()
{
    QFETCH(Qt::Key, to);
    QFETCH(Qt::Key, beyond);
    Edited b;
    b.key(to);
    b.key(beyond);
    QTEST(b.place(VCReplayBar::PositionMarker), "place");
}

void ReplayBarEditingTest::keysMoveABookmarkAndTellIt()
{
    Edited b{30, 20};
    b.key(Qt::Key_Left, Qt::ControlModifier);
    QCOMPARE(b.bar.GetCurrentMarker(), first);
    b.key(Qt::Key_Right);
    QCOMPARE(b.seconds(), (QList<int>{31, 20}));
    b.key(Qt::Key_End);
    QCOMPARE(b.seconds(), (QList<int>{100, 20}));
    QCOMPARE(b.takeTold(), 2);
}

void ReplayBarEditingTest::returnTakesThePositionToTheBookmark()
{
    Edited b{30};
    b.key(Qt::Key_Return);
    QCOMPARE(b.secondOf(VCReplayBar::PositionMarker), 50);
    b.bar.SetCurrentMarker(first);
    b.key(Qt::Key_Return);
    QCOMPARE(b.secondOf(VCReplayBar::PositionMarker), 30);
    b.bar.GetMarker(VCReplayBar::PositionMarker)->SetMoveable(false);
    b.bar.SetBookmarks(TiedBar::bookmarks({40}), false);
    b.key(Qt::Key_Enter);
    QCOMPARE(b.secondOf(VCReplayBar::PositionMarker), 30);
    QCOMPARE(b.takeTold(), 0);
}

void ReplayBarEditingTest::choosingRevealsWhatIsNotShown()
{
    Edited b{95};
    const QPointF place = b.headOf(20);
    QWheelEvent wheel(place, b.bar.mapToGlobal(place), {}, {0, 1200}, Qt::NoButton, {}, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(&b.bar, &wheel);
    const double bookmark = b.bar.GetMarker(first)->GetPosition();
    QVERIFY(b.bar.visibleStop() < bookmark);
    b.key(Qt::Key_Right, Qt::ControlModifier);
    QCOMPARE(b.bar.GetCurrentMarker(), first);
    QVERIFY(b.bar.visibleStart() <= bookmark && bookmark <= b.bar.visibleStop());
    QVERIFY(b.bar.visibleStop() <= b.bar.axisStop());
}

void ReplayBarEditingTest::choosingBeginsWhereTheCurrentMarkerIs_data()
{
    QTest::addColumn<Prepare>("prepare");
    QTest::addColumn<Qt::Key>("key");
    QTest::addColumn<int>("number");
    const auto hide = Prepare([](Edited& b) { b.bar.GetMarker(VCReplayBar::PositionMarker)->SetShowMarker(false); });
    const auto untie = Prepare([](Edited& b) { b.bar.SetCurrentPosition_ValuePath(QString()); });
    const auto behind = Prepare([](Edited& b) { TiedBar::set(b.position.path(), begin + 120 * second); });
    const auto before = Prepare([](Edited& b) { TiedBar::set(b.position.path(), begin - second); });
    QTest::newRow("on from a hidden one") << hide << Qt::Key_Right << first + 1;
    QTest::newRow("back from a hidden one") << hide << Qt::Key_Left << first;
    QTest::newRow("on from one without a value") << untie << Qt::Key_Right << first;
    QTest::newRow("back from behind the recording") << behind << Qt::Key_Left << first + 1;
    QTest::newRow("on from behind the recording") << behind << Qt::Key_Right << VCReplayBar::PositionMarker;
    QTest::newRow("on from before the recording") << before << Qt::Key_Right << first;
    QTest::newRow("back from before the recording") << before << Qt::Key_Left << VCReplayBar::PositionMarker;
}

void ReplayBarEditingTest::choosingBeginsWhereTheCurrentMarkerIs()
{
    QFETCH(Prepare, prepare);
    QFETCH(Qt::Key, key);
    Edited b{30, 70};
    prepare(b);
    b.key(key, Qt::ControlModifier);
    QTEST(b.bar.GetCurrentMarker(), "number");
}

void ReplayBarEditingTest::deletingGoesOnToTheNeighbour()
{
    Edited b{30, 20, 70, 60};
    b.bar.SetCurrentMarker(first);
    QStringList chosen;
    for (int i = 0; i < 4; ++i) {
        b.key(Qt::Key_Delete);
        chosen << b.bar.GetMarker(b.bar.GetCurrentMarker())->GetName();
    }
    QCOMPARE(chosen, QStringList({"b60", "b70", "b20", ""}));
    QCOMPARE(b.bar.GetCurrentMarker(), VCReplayBar::PositionMarker);
    QCOMPARE(b.takeTold(), 4);
}

void ReplayBarEditingTest::aDragIsToldWhenItEnds()
{
    Edited b{30, 20};
    b.press(20);
    b.moveTo(25);
    b.moveTo(60);
    QCOMPARE(b.takeTold(), 0);
    QCOMPARE(b.seconds(), (QList<int>{30, 60}));
    b.release(60);
    QCOMPARE(b.takeTold(), 1);
    b.moveTo(70);
    QCOMPARE(b.seconds(), (QList<int>{30, 60}));
}

void ReplayBarEditingTest::aDragBackIsNoChange()
{
    Edited b{20};
    b.press(20);
    b.moveTo(25);
    b.moveTo(20);
    b.release(20);
    QCOMPARE(b.takeTold(), 0);
    QCOMPARE(b.bar.GetBookmarks(), TiedBar::bookmarks({20}));
}

void ReplayBarEditingTest::aClickThatTremblesMovesNoBookmark()
{
    Edited b{20};
    b.drag(20, 22);
    QCOMPARE(b.takeTold(), 0);
    QCOMPARE(b.seconds(), QList<int>{20});
    QCOMPARE(b.bar.GetCurrentMarker(), first);
}

void ReplayBarEditingTest::escapeTakesADragBack()
{
    Edited b{20};
    b.press(20);
    b.moveTo(60);
    b.key(Qt::Key_Escape);
    b.moveTo(70);
    b.release(70);
    QCOMPARE(b.takeTold(), 0);
    QCOMPARE(b.bar.GetBookmarks(), TiedBar::bookmarks({20}));
    b.press(50);
    b.moveTo(80);
    b.key(Qt::Key_Escape);
    b.release(80);
    QCOMPARE(b.secondOf(VCReplayBar::PositionMarker), 50);
}

void ReplayBarEditingTest::aReleaseThatGotLostTakesADragBack()
{
    Edited b{20};
    const auto hover = [&b](int to) {
        const QPointF place = b.headOf(to);
        QMouseEvent move(QEvent::MouseMove, place, b.bar.mapToGlobal(place), Qt::NoButton, Qt::NoButton, {});
        QCoreApplication::sendEvent(&b.bar, &move);
    };
    b.press(20);
    b.moveTo(60);
    hover(70);
    QCOMPARE(b.seconds(), QList<int>{20});
    hover(80);
    b.release(80);
    QCOMPARE(b.seconds(), QList<int>{20});
    QCOMPARE(b.takeTold(), 0);
}

void ReplayBarEditingTest::aBookmarkThatIsLockedGoesBack()
{
    Edited b{20};
    b.press(20);
    b.moveTo(60);
    b.bar.SetEnableMarker(first, false);
    QCOMPARE(b.seconds(), QList<int>{20});
    b.moveTo(70);
    b.release(70);
    QCOMPARE(b.seconds(), QList<int>{20});
    QCOMPARE(b.takeTold(), 0);
}

void ReplayBarEditingTest::aDragOutlastsTheBookmarksAsTheyWere()
{
    Edited b{30, 20};
    b.press(20);
    b.moveTo(60);
    b.bar.SetBookmarks(TiedBar::bookmarks({30, 20}), false);
    QCOMPARE(b.seconds(), (QList<int>{30, 20}));
    b.moveTo(65);
    b.release(65);
    QCOMPARE(b.seconds(), (QList<int>{30, 65}));
    QCOMPARE(b.takeTold(), 1);
}

void ReplayBarEditingTest::theCursorTellsWhatCanBeDragged()
{
    Edited b{20};
    b.moveTo(20);
    QCOMPARE(b.bar.cursor().shape(), Qt::SizeHorCursor);
    b.moveTo(80);
    QCOMPARE(b.bar.cursor().shape(), Qt::ArrowCursor);
    b.bar.SetEnableMarker(first, false);
    b.moveTo(20);
    QCOMPARE(b.bar.cursor().shape(), Qt::ArrowCursor);
}

void ReplayBarEditingTest::theHandleIsBelowTheFlags()
{
    Edited b{50};
    QCOMPARE(b.bar.markerAt(b.headOf(50)), first);
    QCOMPARE(b.bar.markerAt(QPointF(60, b.bar.height() - 3)), VCReplayBar::PositionMarker);
    QCOMPARE(b.bar.markerAt(QPointF(60, b.bar.rulerHeight() - 3)), 0);
    QCOMPARE(b.bar.markerAt(QPointF(30, b.bar.height() - 3)), 0);
}

void ReplayBarEditingTest::aTimeThatADoubleCannotHoldIsKept()
{
    constexpr long long odd = 9'007'199'254'740'993; // two to the 53, and one
    Edited b;
    b.bar.SetBookmarks({{odd, QStringLiteral("far")}, {begin + 20 * second, QStringLiteral("near")}}, false);
    b.bar.SetEnableMarker(first, false);
    b.bar.SetEnableMarker(first, true);
    b.bar.SetMarkerName(first, QStringLiteral("other"));
    b.drag(20, 40);
    QCOMPARE(b.takeTold(), 1);
    QCOMPARE(b.bar.GetBookmarks().front().time, odd);
    b.bar.SetBookmarks({{odd + 2, QStringLiteral("far")}}, false);
    QCOMPARE(b.bar.GetBookmarks().front().time, odd + 2);
}

void ReplayBarEditingTest::aValueThatIsNoWholeNumberIsRounded()
{
    Edited b{20};
    TiedBar::value(b.bar.GetValueTreePath(first)).SetValue(double(begin) + 0.75, nullptr);
    QCOMPARE(b.bar.GetBookmarks().front().time, begin + 1);
}

// A value of the recorder has no grain.
void ReplayBarEditingTest::aUserMovesByWholeMicroseconds()
{
    Edited b;
    TiedBar::set(b.stop.path(), begin + 100 * second + 33);
    const auto& value = *Tree::Instance()->Emplace(QStringLiteral("/Recorder"),
                                                   std::make_unique<Value<double>>(QStringLiteral("Position")));
    const auto remove = qScopeGuard([] { Tree::Instance()->Remove(QStringLiteral("/Recorder")); });
    b.bar.SetCurrentPosition_ValuePath(value.GetPathName());
    QVERIFY(b.bar.moveTo(VCReplayBar::PositionMarker, double(begin + 50 * second) + 0.75));
    QVERIFY(value.GetValue() == double(begin + 50 * second + 1));
    for (int to = 51; to < 60; ++to) {
        b.drag(to - 1, to);
        QCOMPARE(b.secondOf(VCReplayBar::PositionMarker), to);
        QVERIFY(value.GetValue() == std::round(value.GetValue()));
    }
}

void ReplayBarEditingTest::aLockedValueIsNotMoved()
{
    Edited b;
    TiedBar::value(b.position.path()).SetState(TValueState::Locked, nullptr);
    b.key(Qt::Key_Right);
    b.drag(50, 60);
    QCOMPARE(b.secondOf(VCReplayBar::PositionMarker), 50);
    b.moveTo(50);
    QCOMPARE(b.bar.cursor().shape(), Qt::ArrowCursor);
    QCOMPARE(offered(*b.openMenu(b.headOf(80))), QStringList({"SetBookmark", "MovePosition off"}));
    TiedBar::value(b.position.path()).SetState(TValueState::Open, nullptr);
    b.key(Qt::Key_Right);
    QCOMPARE(b.secondOf(VCReplayBar::PositionMarker), 51);
}

void ReplayBarEditingTest::aValueThatIsLockedWhileItIsDraggedStays()
{
    Edited b;
    b.press(50);
    b.moveTo(60);
    TiedBar::value(b.position.path()).SetState(TValueState::Locked, nullptr);
    b.moveTo(70);
    b.release(70);
    QCOMPARE(b.secondOf(VCReplayBar::PositionMarker), 60);
}

void ReplayBarEditingTest::theMenuOffersWhatCanBeDone_data()
{
    QTest::addColumn<int>("second");
    QTest::addColumn<bool>("isOpen");
    QTest::addColumn<QStringList>("actions");
    QTest::newRow("on a bookmark") << 20 << true << QStringList({"RemoveBookmark", "MovePosition"});
    QTest::newRow("beside it") << 80 << true << QStringList({"SetBookmark", "MovePosition"});
    QTest::newRow("on a locked bookmark") << 20 << false << QStringList({"RemoveBookmark off", "MovePosition off"});
    QTest::newRow("on a locked bar") << 80 << false << QStringList({"SetBookmark off", "MovePosition off"});
}

void ReplayBarEditingTest::theMenuOffersWhatCanBeDone()
{
    QFETCH(int, second);
    QFETCH(bool, isOpen);
    Edited b{20};
    b.bar.AllowCreationOfBookMarks(isOpen);
    b.bar.GetMarker(VCReplayBar::PositionMarker)->SetMoveable(isOpen);
    QMenu* const menu = b.openMenu(b.headOf(second));
    QVERIFY(menu);
    QTEST(offered(*menu), "actions");
}

void ReplayBarEditingTest::theMenuRemovesABookmark()
{
    Edited b{20, 30};
    choose(*b.openMenu(b.headOf(20)), "RemoveBookmark");
    QCOMPARE(b.seconds(), QList<int>{30});
    QCOMPARE(b.takeTold(), 1);
}

void ReplayBarEditingTest::theMenuSetsABookmark()
{
    Edited b;
    choose(*b.openMenu(b.headOf(20)), "SetBookmark");
    QCOMPARE(b.seconds(), QList<int>{20});
    QCOMPARE(b.takeTold(), 1);
}

void ReplayBarEditingTest::theMenuMovesThePosition()
{
    Edited b{20};
    choose(*b.openMenu(b.headOf(20)), "MovePosition");
    QCOMPARE(b.secondOf(VCReplayBar::PositionMarker), 20);
    QCOMPARE(b.takeTold(), 0);
}

void ReplayBarEditingTest::theMenuOpensAtTheCurrentMarker()
{
    Edited b{20};
    b.bar.SetCurrentMarker(first);
    QMenu* const menu = b.openMenu({}, QContextMenuEvent::Keyboard);
    QCOMPARE(offered(*menu).constFirst(), QStringLiteral("RemoveBookmark"));
    choose(*menu, "RemoveBookmark");
    QCOMPARE(b.seconds(), QList<int>());
}

void ReplayBarEditingTest::aMenuRemovesNoOtherBookmark()
{
    Edited b{20};
    QMenu* const menu = b.openMenu(b.headOf(20));
    b.bar.SetBookmarks(TiedBar::bookmarks({40}), false);
    choose(*menu, "RemoveBookmark");
    QCOMPARE(b.seconds(), QList<int>{40});
    QMenu* const other = b.openMenu(b.headOf(40));
    b.bar.SetBookmarks({}, false);
    choose(*other, "RemoveBookmark");
    QCOMPARE(b.takeTold(), 0);
}

void ReplayBarEditingTest::aMenuLeavesAnotherBookmarkTheCurrentOne()
{
    Edited b{20, 30, 80};
    QMenu* const menu = b.openMenu(b.headOf(20));
    b.bar.SetCurrentMarker(first + 2);
    choose(*menu, "RemoveBookmark");
    QCOMPARE(b.seconds(), QList<int>({30, 80}));
    QCOMPARE(b.bar.GetMarker(b.bar.GetCurrentMarker())->GetName(), QStringLiteral("b80"));
}

void ReplayBarEditingTest::anEmptyBarHasNoMenu()
{
    Edited b;
    TiedBar::set(b.start.path(), 0);
    TiedBar::set(b.stop.path(), 0);
    QVERIFY(!b.openMenu(b.headOf(20)));
}

void ReplayBarEditingTest::theToolTipTellsTheMoment()
{
    Edited b;
    b.bar.SetBookmarks({{begin + 20 * second + 7, QStringLiteral("<b>Tower</b>")}}, false);
    QHelpEvent help(QEvent::ToolTip, b.headOf(20), b.bar.mapToGlobal(b.headOf(20)));
    QCoreApplication::sendEvent(&b.bar, &help);
    QVERIFY2(QToolTip::text().contains(QStringLiteral("2023-11-14 23:13:40.000007 CET &lt;b&gt;Tower&lt;/b&gt;")),
             qPrintable(QToolTip::text()));
}

void ReplayBarEditingTest::theToolTipTellsAllOnOnePixel()
{
    Edited b;
    std::vector<BookmarkType> bookmarks;
    for (int i = 0; i < 15; ++i) {
        bookmarks.emplace_back(begin + 20 * second + i, QStringLiteral("mark %1.").arg(i));
    }
    bookmarks.emplace_back(begin + 60 * second, QStringLiteral("elsewhere"));
    b.bar.SetBookmarks(bookmarks, false);
    QCOMPARE(b.bar.markersBeside(first).size(), std::size_t(15));
    QHelpEvent help(QEvent::ToolTip, b.headOf(20), b.bar.mapToGlobal(b.headOf(20)));
    QCoreApplication::sendEvent(&b.bar, &help);
    QVERIFY(QToolTip::text().contains(QStringLiteral("mark 9.")));
    QVERIFY(!QToolTip::text().contains(QStringLiteral("mark 10.")));
    QVERIFY(QToolTip::text().contains(QStringLiteral("and 5 more")));
    QVERIFY(!QToolTip::text().contains(QStringLiteral("elsewhere")));
}

QTEST_MAIN(ReplayBarEditingTest)
#include "tst_replaybarediting.moc"
