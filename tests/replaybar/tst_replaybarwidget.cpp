#include <zelkoguibase/replaybar/replaybarwidget.h>

#include "bookmarksite.h"
#include "iconpicture.h"
#include "microseconds.h"
#include "patience.h"
#include "shownreplaybar.h"
#include "updatecounter.h"

#include <resources/zelkoicons.h>
#include <valuecore/node.h>
#include <zelkobase/data/indexentry.h>

#include <QApplication>
#include <QToolButton>
#include <QtTest>

#include <functional>
#include <limits>

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;
using ZelkoGUI::BookmarkModel;
using ZelkoGUI::ReplayBarWidget;
using Ranges = std::vector<std::pair<long long, long long>>;

namespace {

constexpr long long begin = ShownReplayBar::begin;
constexpr long long second = ShownReplayBar::second;
constexpr long long end = begin + 90 * second;
const auto momentAt = ShownReplayBar::momentAt;
const auto timeAt = ShownReplayBar::timeAt;
constexpr quint64 all = std::numeric_limits<quint64>::max();

/// By itself, with the bookmarks of records on the tree.
struct Dialog
{
    explicit Dialog(bool readOnly = false)
        : site(readOnly)
    {}

    void store(const QString& id, long long start, long long stop)
    {
        const BookmarkSite::RecordPtr record = BookmarkSite::record({}, id);
        record->SetStartTime(static_cast<quint64>(start));
        record->SetStopTime(static_cast<quint64>(stop));
        site.store(record);
    }
    void showRecord(const QString& id) { shown.widget->setRecord(id, site.records.get(), u"D"_s); }

    /// Stores and shows the record R of 90 seconds, and forgets the position that was told.
    void showRecord(const BookmarkSite::Entries& bookmarks = {})
    {
        site.store(bookmarks);
        showRecord(u"R"_s);
        shown.takePositions();
    }

    BookmarkSite site;
    ShownReplayBar shown{std::make_unique<ReplayBarWidget>(&site.model)};
};

std::size_t guiValues()
{
    const auto* const node = dynamic_cast<const Node*>(Tree::Instance()->GetItem(u"/GuiCentral"_s));
    return node == nullptr ? 0 : node->GetTreeItems().size();
}

void click(QToolButton* button)
{
    QTest::mouseClick(button, Qt::LeftButton);
}

ZELKO_XML::IndexEntry indexAt(long long seconds)
{
    ZELKO_XML::IndexEntry entry;
    entry.SetTimestamp(static_cast<quint64>(begin + seconds * second));
    return entry;
}

using Use = std::function<void(BookmarkSite&)>;

} // namespace

Q_DECLARE_METATYPE(Use)
Q_DECLARE_METATYPE(Ranges)

class ReplayBarWidgetTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { registerZelkoIcons(); }

    void isABarWithAPositionToMove();
    void theWheelDoesNotZoom();
    void showsARecordFromStartToStop();
    void anIndexTellsTheExtent_data();
    void anIndexTellsTheExtent();
    void thePositionBeginsAtTheStart();
    void theSameExtentLeavesThePosition();
    void aRecordThatGrowsTakesThePositionBack();
    void theListHasTheRecordBeforeThePositionIsTold();
    void followsItsRecordOnly();
    void aResetWritesZeros();
    void losesItsRecord_data();
    void losesItsRecord();
    void anotherModelIsFollowedAlone();

    void relativeRangesAreHeldWithinTheRecord_data();
    void relativeRangesAreHeldWithinTheRecord();
    void rangesAreHighlighted_data();
    void rangesAreHighlighted();
    void aRangeIsResetToNone();

    void aDragOfThePositionIsTold();
    void thePositionIsToldWhoeverMovesIt();
    void largePositionsKeepTheirValue_data();
    void largePositionsKeepTheirValue();
    void thePositionCanBeHiddenAndFixed();
    void leavesNoValuesBehind();

    void hasButtonsForAListThatCanBeEditedOnly_data();
    void hasButtonsForAListThatCanBeEditedOnly();
    void buttonsFollowTheList_data();
    void buttonsFollowTheList();
    void applyTakesTheFocusBeforeItSends();
    void aBookmarkGoesToTheRecorderAndBack();
    void noBookmarkIsSetUntilTheRecorderHasAnswered();
    void anExternalChangeWaitsForTheUser();

    void byItselfItHasNoChannel();
};

void ReplayBarWidgetTest::isABarWithAPositionToMove()
{
    Dialog dialog;
    dialog.showRecord();
    const VCReplayBar& bar = dialog.shown.bar();
    QCOMPARE(bar.parentWidget(), dialog.shown.widget.get());
    QCOMPARE(bar.pixelAt(momentAt(0)), 10);
    QCOMPARE(bar.pixelAt(momentAt(90)), bar.width() - 11);
    QVERIFY(dialog.shown.position().IsShown());
    QVERIFY(dialog.shown.position().IsMoveable());
    QCOMPARE(dialog.shown.position().GetName(), u"record position"_s);
    QVERIFY(!bar.GetMarker(2)->IsShown());
    QVERIFY(!bar.GetMarker(3)->IsShown());
}

void ReplayBarWidgetTest::theWheelDoesNotZoom()
{
    Dialog dialog;
    dialog.showRecord();
    VCReplayBar& bar = dialog.shown.bar();
    const QPointF place = bar.rect().center();
    QWheelEvent wheel(place, bar.mapToGlobal(place), {}, {0, 240}, Qt::NoButton, {}, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(&bar, &wheel);
    QCOMPARE(microseconds(bar.visibleStart()), timeAt(0));
    QCOMPARE(microseconds(bar.visibleStop()), timeAt(90));
}

void ReplayBarWidgetTest::showsARecordFromStartToStop()
{
    Dialog dialog;
    QCOMPARE(dialog.shown.bar().GetRecordingStop(), 0.0);
    dialog.showRecord();
    QCOMPARE(microseconds(dialog.shown.bar().GetRecordingStart()), timeAt(0));
    QCOMPARE(microseconds(dialog.shown.bar().GetRecordingStop()), timeAt(90));
    QCOMPARE(dialog.site.model.getSynchState(), BookmarkModel::SynchInSync);
}

void ReplayBarWidgetTest::anIndexTellsTheExtent_data()
{
    QTest::addColumn<QList<int>>("index");
    QTest::addColumn<bool>("isFinished");
    QTest::addColumn<int>("first");
    QTest::addColumn<int>("last");
    QTest::newRow("one entry") << QList<int>{30} << true << 0 << 90;
    QTest::newRow("two entries") << QList<int>{10, 80} << true << 10 << 80;
    QTest::newRow("in no order") << QList<int>{40, 95, -5, 60} << true << -5 << 95;
    QTest::newRow("being recorded") << QList<int>{10, 80} << false << 10 << 80;
}

void ReplayBarWidgetTest::anIndexTellsTheExtent()
{
    QFETCH(QList<int>, index);
    QFETCH(int, first);
    QFETCH(int, last);
    QFETCH(bool, isFinished);
    Dialog dialog;
    const BookmarkSite::RecordPtr record = makeRecord(u"R"_s, isFinished ? 5 : 2);
    record->SetFinished(isFinished);
    QVector<ZELKO_XML::IndexEntry> entries;
    for (const int seconds : index) {
        entries.append(indexAt(seconds));
    }
    record->SetIndexEntry(entries);
    dialog.site.store(record);
    dialog.showRecord(u"R"_s);
    QCOMPARE(microseconds(dialog.shown.bar().GetRecordingStart()), timeAt(first));
    QCOMPARE(microseconds(dialog.shown.bar().GetRecordingStop()), timeAt(last));
}

void ReplayBarWidgetTest::thePositionBeginsAtTheStart()
{
    Dialog dialog;
    dialog.site.store(BookmarkSite::Entries());
    dialog.showRecord(u"R"_s);
    QCOMPARE(microseconds(dialog.shown.position().GetPosition()), timeAt(0));
    QCOMPARE(dialog.shown.takePositions(), QList<quint64>{recordBegin});
}

void ReplayBarWidgetTest::theSameExtentLeavesThePosition()
{
    Dialog dialog;
    dialog.showRecord();
    dialog.store(u"S"_s, begin, end);
    dialog.shown.setPosition(momentAt(30));
    dialog.shown.takePositions();
    dialog.showRecord(u"S"_s);
    QCOMPARE(microseconds(dialog.shown.position().GetPosition()), timeAt(30));
    QCOMPARE(dialog.shown.takePositions(), QList<quint64>());
}

void ReplayBarWidgetTest::aRecordThatGrowsTakesThePositionBack()
{
    Dialog dialog;
    dialog.showRecord();
    dialog.shown.setPosition(momentAt(30));
    dialog.shown.takePositions();
    dialog.store(u"R"_s, begin, end + second);
    QCOMPARE(microseconds(dialog.shown.bar().GetRecordingStop()), timeAt(91));
    QCOMPARE(microseconds(dialog.shown.position().GetPosition()), timeAt(0));
    QCOMPARE(dialog.shown.takePositions(), QList<quint64>{recordBegin});
}

// Who is told the position may ask the list for the bookmarks there.
void ReplayBarWidgetTest::theListHasTheRecordBeforeThePositionIsTold()
{
    Dialog dialog;
    dialog.site.store(twoBookmarks);
    QStringList told;
    const QObject context;
    connect(&dialog.site.model, &BookmarkModel::si_synchStateChanged, &context,
            [&told](BookmarkModel::enSynchState state) { told << u"state %1"_s.arg(state); });
    connect(dialog.shown.widget.get(), &ReplayBarWidget::si_currentPosChanged, &context, [&](quint64 position) {
        told << u"position %1 with %2"_s.arg(position).arg(dialog.site.bookmarks().size());
    });
    dialog.showRecord(u"R"_s);
    QCOMPARE(told,
             QStringList({u"state %1"_s.arg(BookmarkModel::SynchPending), u"state %1"_s.arg(BookmarkModel::SynchInSync),
                          u"position %1 with 2"_s.arg(recordBegin)}));
}

void ReplayBarWidgetTest::followsItsRecordOnly()
{
    Dialog dialog;
    dialog.showRecord();
    dialog.store(u"S"_s, begin, end + second);
    dialog.site.map->EraseAt(u"S"_s, nullptr);
    QCOMPARE(microseconds(dialog.shown.bar().GetRecordingStop()), timeAt(90));
    QCOMPARE(dialog.shown.takePositions(), QList<quint64>());
}

void ReplayBarWidgetTest::aResetWritesZeros()
{
    Dialog dialog;
    dialog.showRecord();
    UpdateCounter writes;
    ValueObservingPtr<Value<double>> position(&writes);
    position.GetFromTree(dialog.shown.position().GetValueTreePath());
    dialog.shown.widget->resetRecord();
    QCOMPARE(writes.take().size(), std::size_t(1));
    QCOMPARE(dialog.shown.bar().GetRecordingStart(), 0.0);
    QCOMPARE(dialog.shown.bar().GetRecordingStop(), 0.0);
    QCOMPARE(dialog.shown.position().GetPosition(), 0.0);
    QCOMPARE(dialog.shown.takePositions(), QList<quint64>{0});
    QCOMPARE(dialog.site.model.getSynchState(), BookmarkModel::SynchNoRecord);
    dialog.shown.widget->resetRecord();
    QCOMPARE(writes.take().size(), std::size_t(0));
    QCOMPARE(dialog.shown.takePositions(), QList<quint64>());
}

void ReplayBarWidgetTest::losesItsRecord_data()
{
    QTest::addColumn<Use>("lose");
    QTest::newRow("deleted") << Use([](BookmarkSite& site) { site.map->EraseAt(u"R"_s, nullptr); });
    QTest::newRow("all gone") << Use([](BookmarkSite& site) { site.map->Clear(nullptr); });
    QTest::newRow("without its list") << Use([](BookmarkSite& site) { site.records.reset(); });
}

void ReplayBarWidgetTest::losesItsRecord()
{
    QFETCH(Use, lose);
    Dialog dialog;
    dialog.showRecord(twoBookmarks);
    lose(dialog.site);
    QCOMPARE(dialog.shown.bar().GetRecordingStop(), 0.0);
    QCOMPARE(dialog.shown.takePositions(), QList<quint64>{0});
    QVERIFY(dialog.shown.bar().GetBookmarks().empty());
}

void ReplayBarWidgetTest::anotherModelIsFollowedAlone()
{
    Dialog dialog;
    dialog.showRecord();
    ZelkoGUI::RecordItemMapModel other(nullptr);
    dialog.shown.widget->setRecord(u"R"_s, &other, u"D"_s);
    QCOMPARE(dialog.shown.takePositions(), QList<quint64>{0});
    dialog.store(u"R"_s, begin, end + second);
    QCOMPARE(dialog.shown.bar().GetRecordingStop(), 0.0);
    dialog.site.records.reset();
    QCOMPARE(dialog.shown.takePositions(), QList<quint64>());
}

void ReplayBarWidgetTest::relativeRangesAreHeldWithinTheRecord_data()
{
    QTest::addColumn<quint64>("from");
    QTest::addColumn<quint64>("to");
    QTest::addColumn<Ranges>("ranges");
    constexpr quint64 step = second;
    QTest::newRow("within") << 10 * step << 20 * step << Ranges{{begin + 10 * second, begin + 20 * second}};
    QTest::newRow("past the end") << 80 * step << 100 * step << Ranges{{begin + 80 * second, end}};
    QTest::newRow("far past the end") << 80 * step << all << Ranges{{begin + 80 * second, end}};
    QTest::newRow("all of it behind the end") << 95 * step << 100 * step << Ranges{{end, end}};
    QTest::newRow("the wrong way round") << 20 * step << 20 * step - 1 << Ranges{};
    QTest::newRow("one moment") << 20 * step << 20 * step << Ranges{{begin + 20 * second, begin + 20 * second}};
}

void ReplayBarWidgetTest::relativeRangesAreHeldWithinTheRecord()
{
    QFETCH(quint64, from);
    QFETCH(quint64, to);
    QFETCH(Ranges, ranges);
    Dialog dialog;
    dialog.showRecord();
    dialog.shown.widget->setRelativeRange(from, to);
    QCOMPARE(dialog.shown.bar().GetRangeVector(), ranges);
}

void ReplayBarWidgetTest::rangesAreHighlighted_data()
{
    QTest::addColumn<quint64>("start");
    QTest::addColumn<quint64>("stop");
    QTest::addColumn<Ranges>("ranges");
    constexpr auto most = std::numeric_limits<long long>::max();
    QTest::newRow("a range") << quint64(5) << quint64(7) << Ranges{{5, 7}};
    QTest::newRow("one moment") << quint64(5) << quint64(5) << Ranges{{5, 5}};
    QTest::newRow("the wrong way round") << quint64(7) << quint64(5) << Ranges{};
    QTest::newRow("beyond what a bar can show") << quint64(5) << all << Ranges{{5, most}};
}

void ReplayBarWidgetTest::rangesAreHighlighted()
{
    QFETCH(quint64, start);
    QFETCH(quint64, stop);
    QFETCH(Ranges, ranges);
    Dialog dialog;
    dialog.shown.widget->sl_setRange(1, 2);
    dialog.shown.widget->sl_setRange(start, stop);
    QCOMPARE(dialog.shown.bar().GetRangeVector(), ranges);
}

void ReplayBarWidgetTest::aRangeIsResetToNone()
{
    Dialog dialog;
    dialog.shown.widget->sl_setRange(1, 2);
    dialog.shown.widget->sl_resetRange();
    QVERIFY(dialog.shown.bar().GetRangeVector().empty());
}

void ReplayBarWidgetTest::aDragOfThePositionIsTold()
{
    Dialog dialog;
    dialog.showRecord();
    const double expected = dialog.shown.hands.afterDrag(momentAt(0), momentAt(45));
    dialog.shown.hands.dragPosition(momentAt(0), momentAt(45));
    QCOMPARE(microseconds(dialog.shown.position().GetPosition()), microseconds(expected));
    QCOMPARE(dialog.shown.takePositions(), QList<quint64>{static_cast<quint64>(expected)});
}

void ReplayBarWidgetTest::thePositionIsToldWhoeverMovesIt()
{
    Dialog dialog;
    dialog.showRecord();
    dialog.shown.setPosition(momentAt(7));
    QCOMPARE(dialog.shown.takePositions(), QList<quint64>{recordBegin + 7'000'000});
    auto& value = *Tree::Instance()->Find<Value<double>>(dialog.shown.position().GetValueTreePath());
    value.NotifyObservers(TChangeCode::ValueRefreshed, nullptr);
    QCOMPARE(dialog.shown.takePositions(), QList<quint64>{recordBegin + 7'000'000});
    value.NotifyObservers(TChangeCode::StateChanged, nullptr);
    QCOMPARE(dialog.shown.takePositions(), QList<quint64>());
}

void ReplayBarWidgetTest::largePositionsKeepTheirValue_data()
{
    QTest::addColumn<double>("moment");
    QTest::addColumn<quint64>("position");
    QTest::newRow("two to the 63") << 9223372036854775808.0 << (quint64(1) << 63);
    QTest::newRow("above it") << 12e18 << quint64(12'000'000'000'000'000'000ULL);
    QTest::newRow("the largest") << 18446744073709551616.0 << all;
}

void ReplayBarWidgetTest::largePositionsKeepTheirValue()
{
    QFETCH(double, moment);
    QFETCH(quint64, position);
    Dialog dialog;
    dialog.shown.setPosition(moment);
    QCOMPARE(dialog.shown.takePositions(), QList<quint64>{position});
}

void ReplayBarWidgetTest::thePositionCanBeHiddenAndFixed()
{
    Dialog dialog;
    dialog.showRecord();
    dialog.shown.widget->setPositionMovable(false);
    dialog.shown.hands.dragPosition(momentAt(0), momentAt(45));
    QCOMPARE(dialog.shown.takePositions(), QList<quint64>());
    dialog.shown.widget->setPositionMovable(true);
    dialog.shown.widget->showCurrentPosition(false);
    dialog.shown.hands.dragPosition(momentAt(0), momentAt(45));
    QCOMPARE(dialog.shown.takePositions(), QList<quint64>());
    dialog.shown.widget->showCurrentPosition(true);
    dialog.shown.hands.dragPosition(momentAt(0), momentAt(45));
    QCOMPARE(dialog.shown.takePositions().size(), 1);
}

void ReplayBarWidgetTest::leavesNoValuesBehind()
{
    const std::size_t before = guiValues();
    {
        Dialog dialog;
        dialog.showRecord(twoBookmarks);
        QVERIFY(guiValues() > before);
    }
    QCOMPARE(guiValues(), before);
}

void ReplayBarWidgetTest::hasButtonsForAListThatCanBeEditedOnly_data()
{
    QTest::addColumn<bool>("hasModel");
    QTest::addColumn<bool>("readOnly");
    QTest::addColumn<bool>("hasButtons");
    QTest::newRow("no list") << false << false << false;
    QTest::newRow("a list to look at") << true << true << false;
    QTest::newRow("a list to edit") << true << false << true;
}

void ReplayBarWidgetTest::hasButtonsForAListThatCanBeEditedOnly()
{
    QFETCH(bool, hasModel);
    QFETCH(bool, readOnly);
    QFETCH(bool, hasButtons);
    BookmarkSite site(readOnly);
    const ShownReplayBar shown(std::make_unique<ReplayBarWidget>(hasModel ? &site.model : nullptr));
    site.store(twoBookmarks);
    shown.widget->setRecord(u"R"_s, site.records.get(), u"D"_s);
    QCOMPARE(shown.apply() != nullptr, hasButtons);
    QCOMPARE(shown.reset() != nullptr, hasButtons);
    QCOMPARE(shown.bar().GetBookmarks().size(), std::size_t(hasModel ? 2 : 0));
    QCOMPARE(microseconds(shown.bar().GetRecordingStop()), timeAt(90));
}

void ReplayBarWidgetTest::buttonsFollowTheList_data()
{
    QTest::addColumn<Use>("reach");
    QTest::addColumn<bool>("canApply");
    QTest::addColumn<bool>("canReset");
    QTest::addColumn<bool>("isExternal");
    QTest::newRow("no record") << Use([](BookmarkSite& site) { site.model.resetRecord(); }) << false << false << false;
    QTest::newRow("in step") << Use([](BookmarkSite&) {}) << false << false << false;
    QTest::newRow("changed here") << Use([](BookmarkSite& site) { site.edit(0, bookmarkAt(11, u"a"_s)); }) << true
                                  << true << false;
    QTest::newRow("changed elsewhere") << Use([](BookmarkSite& site) { site.store({bookmarkAt(11, u"a"_s)}); }) << false
                                       << true << true;
    QTest::newRow("sent") << Use([](BookmarkSite& site) {
        site.edit(0, bookmarkAt(11, u"a"_s));
        site.model.sl_synchronize();
    }) << false << false << false;
}

void ReplayBarWidgetTest::buttonsFollowTheList()
{
    QFETCH(Use, reach);
    QFETCH(bool, canApply);
    QFETCH(bool, canReset);
    QFETCH(bool, isExternal);
    Dialog dialog;
    dialog.showRecord(twoBookmarks);
    reach(dialog.site);
    const QToolButton& reset = *dialog.shown.reset();
    const QString name = isExternal ? u"Refresh"_s : u"Reset"_s;
    QCOMPARE(dialog.shown.apply()->isEnabled(), canApply);
    QCOMPARE(reset.isEnabled(), canReset);
    QCOMPARE(picture(reset.icon()), picture(QIcon(u":/Zelko/Bookmarks/%1Bookmarks.svg"_s.arg(name))));
    QCOMPARE(reset.toolTip(), isExternal ? u"bookmarks changed by an external application - reload from ZELKO"_s
                                         : u"reset bookmarks from ZELKO"_s);
    QCOMPARE(picture(dialog.shown.apply()->icon()), picture(QIcon(u":/Zelko/Bookmarks/ApplyBookmarks.svg"_s)));
    QCOMPARE(dialog.shown.apply()->toolTip(), u"send bookmarks to ZELKO"_s);
    QCOMPARE(dialog.shown.apply()->accessibleName(), dialog.shown.apply()->toolTip());
    QCOMPARE(reset.accessibleName(), reset.toolTip());
}

// The button loses the focus again as soon as it is disabled, which is before anything else can be seen of the sending.
void ReplayBarWidgetTest::applyTakesTheFocusBeforeItSends()
{
    Dialog dialog;
    dialog.showRecord(twoBookmarks);
    dialog.site.edit(0, bookmarkAt(11, u"a"_s));
    dialog.shown.widget->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(dialog.shown.widget.get(), patience));
    QStringList happened;
    const QObject context;
    connect(qApp, &QApplication::focusChanged, &context, [&](const QWidget*, const QWidget* now) {
        happened.append(now == nullptr ? QString() : now->objectName());
    });
    dialog.shown.apply()->setFocusPolicy(Qt::NoFocus);
    connect(&dialog.site.model, &BookmarkModel::si_updateBookmarks, &context, [&] { happened.append(u"sent"_s); });
    click(dialog.shown.apply());
    QCOMPARE(happened.constFirst(), u"ApplyBookmarks"_s);
    QCOMPARE(happened.count(u"sent"_s), 1);
}

void ReplayBarWidgetTest::aBookmarkGoesToTheRecorderAndBack()
{
    Dialog dialog;
    dialog.showRecord(twoBookmarks);
    constexpr int first = VCReplayBar::FirstBookmarkMarker;
    const VCReplayBar& bar = dialog.shown.bar();
    BookmarkSite::Entries sent;
    QStringList addressed;
    connect(&dialog.site.model, &BookmarkModel::si_updateBookmarks, this,
            [&](const QString& record, const BookmarkSite::Entries& bookmarks, const QString& device) {
                sent = bookmarks;
                addressed << record << device;
            });
    dialog.shown.hands.dragFlag(momentAt(10), momentAt(45));
    QCOMPARE(bar.GetCurrentMarker(), first);
    QCOMPARE(dialog.site.model.getSynchState(), BookmarkModel::SynchLocalChange);
    click(dialog.shown.apply());
    QCOMPARE(dialog.site.model.getSynchState(), BookmarkModel::SynchPending);
    QCOMPARE(bookmarkTexts(sent).constFirst(), u"20000000 b"_s);
    QCOMPARE(sent.size(), 2);
    QCOMPARE(addressed, QStringList({u"R"_s, u"D"_s}));
    QVERIFY(!bar.GetMarker(first)->IsEnabled());

    dialog.site.store(sent);
    QCOMPARE(bar.GetBookmarks().front().text, u"b"_s);
    QCOMPARE(bar.GetCurrentMarker(), first + 1); // the list comes back in order
    QCOMPARE(bar.GetMarker(first + 1)->GetName(), u"a"_s);
    dialog.site.timer.advance(2s);
    QCOMPARE(dialog.site.model.getSynchState(), BookmarkModel::SynchInSync);
    QVERIFY(bar.GetMarker(first)->IsEnabled());
    QCOMPARE(bookmarkTexts(dialog.site.model.entries()), bookmarkTexts(sent));
}

void ReplayBarWidgetTest::noBookmarkIsSetUntilTheRecorderHasAnswered()
{
    Dialog dialog;
    dialog.showRecord(twoBookmarks);
    VCReplayBar& bar = dialog.shown.bar();
    const auto doubleClick = [&] {
        QTest::mouseDClick(&bar, Qt::LeftButton, {}, dialog.shown.hands.flagAt(momentAt(70)));
    };
    dialog.shown.hands.dragFlag(momentAt(10), momentAt(45));
    click(dialog.shown.apply());
    doubleClick();
    bar.setFocus();
    QTest::keyClick(&bar, Qt::Key_Insert);
    QCOMPARE(bar.GetBookmarks().size(), std::size_t(2));
    dialog.site.timer.advance(2s);
    doubleClick();
    QCOMPARE(bar.GetBookmarks().size(), std::size_t(3));
}

void ReplayBarWidgetTest::anExternalChangeWaitsForTheUser()
{
    Dialog dialog;
    dialog.showRecord(twoBookmarks);
    dialog.site.store({bookmarkAt(30, u"c"_s)});
    QCOMPARE(dialog.shown.bar().GetBookmarks().size(), std::size_t(2));
    click(dialog.shown.reset());
    QCOMPARE(dialog.shown.bar().GetBookmarks().size(), std::size_t(1));
    QVERIFY(!dialog.shown.reset()->isEnabled());
}

void ReplayBarWidgetTest::byItselfItHasNoChannel()
{
    Dialog dialog;
    dialog.showRecord();
    const QString path = dialog.shown.position().GetValueTreePath();
    dialog.shown.widget->connectSignals();
    QCOMPARE(dialog.shown.position().GetValueTreePath(), path);
}

QTEST_MAIN(ReplayBarWidgetTest)
#include "tst_replaybarwidget.moc"
