#include <zelkoguibase/replaybar/replaybarwidget.h>

#include "dialogbar.h"
#include "microseconds.h"
#include "updatecounter.h"

#include <valuecore/node.h>
#include <zelkobase/data/indexentry.h>

#include <QtTest>

#include <functional>
#include <limits>

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

std::size_t guiValues()
{
    const auto* const node = dynamic_cast<const Node*>(Tree::Instance()->GetItem(u"/GuiCentral"_s));
    return node == nullptr ? 0 : node->GetTreeItems().size();
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

    void byItselfItHasNoChannel();
};

void ReplayBarWidgetTest::isABarWithAPositionToMove()
{
    DialogBar dialog;
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
    DialogBar dialog;
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
    DialogBar dialog;
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
    DialogBar dialog;
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
    DialogBar dialog;
    dialog.site.store(BookmarkSite::Entries());
    dialog.showRecord(u"R"_s);
    QCOMPARE(microseconds(dialog.shown.position().GetPosition()), timeAt(0));
    QCOMPARE(dialog.shown.takePositions(), QList<quint64>{recordBegin});
}

void ReplayBarWidgetTest::theSameExtentLeavesThePosition()
{
    DialogBar dialog;
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
    DialogBar dialog;
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
    DialogBar dialog;
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
    DialogBar dialog;
    dialog.showRecord();
    dialog.store(u"S"_s, begin, end + second);
    dialog.site.map->EraseAt(u"S"_s, nullptr);
    QCOMPARE(microseconds(dialog.shown.bar().GetRecordingStop()), timeAt(90));
    QCOMPARE(dialog.shown.takePositions(), QList<quint64>());
}

void ReplayBarWidgetTest::aResetWritesZeros()
{
    DialogBar dialog;
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
    DialogBar dialog;
    dialog.showRecord(twoBookmarks);
    lose(dialog.site);
    QCOMPARE(dialog.shown.bar().GetRecordingStop(), 0.0);
    QCOMPARE(dialog.shown.takePositions(), QList<quint64>{0});
    QVERIFY(dialog.shown.bar().GetBookmarks().empty());
}

void ReplayBarWidgetTest::anotherModelIsFollowedAlone()
{
    DialogBar dialog;
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
    DialogBar dialog;
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
    DialogBar dialog;
    dialog.shown.widget->sl_setRange(1, 2);
    dialog.shown.widget->sl_setRange(start, stop);
    QCOMPARE(dialog.shown.bar().GetRangeVector(), ranges);
}

void ReplayBarWidgetTest::aRangeIsResetToNone()
{
    DialogBar dialog;
    dialog.shown.widget->sl_setRange(1, 2);
    dialog.shown.widget->sl_resetRange();
    QVERIFY(dialog.shown.bar().GetRangeVector().empty());
}

void ReplayBarWidgetTest::aDragOfThePositionIsTold()
{
    DialogBar dialog;
    dialog.showRecord();
    const double expected = dialog.shown.hands.afterDrag(momentAt(0), momentAt(45));
    dialog.shown.hands.dragPosition(momentAt(0), momentAt(45));
    QCOMPARE(microseconds(dialog.shown.position().GetPosition()), microseconds(expected));
    QCOMPARE(dialog.shown.takePositions(), QList<quint64>{static_cast<quint64>(expected)});
}

void ReplayBarWidgetTest::thePositionIsToldWhoeverMovesIt()
{
    DialogBar dialog;
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
    DialogBar dialog;
    dialog.shown.setPosition(moment);
    QCOMPARE(dialog.shown.takePositions(), QList<quint64>{position});
}

void ReplayBarWidgetTest::thePositionCanBeHiddenAndFixed()
{
    DialogBar dialog;
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
        DialogBar dialog;
        dialog.showRecord(twoBookmarks);
        QVERIFY(guiValues() > before);
    }
    QCOMPARE(guiValues(), before);
}

void ReplayBarWidgetTest::byItselfItHasNoChannel()
{
    DialogBar dialog;
    dialog.showRecord();
    const QString path = dialog.shown.position().GetValueTreePath();
    dialog.shown.widget->connectSignals();
    QCOMPARE(dialog.shown.position().GetValueTreePath(), path);
}

QTEST_MAIN(ReplayBarWidgetTest)
#include "tst_replaybarwidget.moc"
