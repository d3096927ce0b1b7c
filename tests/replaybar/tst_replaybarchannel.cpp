#include "bookmarksite.h"
#include "channelbranch.h"
#include "microseconds.h"
#include "shownreplaybar.h"
#include "statesite.h"

#include <zelkobase/state/localzelkovalues.h>
#include <zelkoguibase/state/zelkochannelmodel.h>

#include <QtTest>

#include <optional>

using namespace Qt::StringLiterals;
using ZELKO_XML::Admin;
using ZelkoGUI::ReplayBarWidget;
using ZelkoGUI::ZelkoChannelModel;

namespace {

using State = ZelkoGlobal::ChannelAvailableState;

const auto momentAt = ShownReplayBar::momentAt;
const auto timeAt = ShownReplayBar::timeAt;

// As a newer recorder may have it.
constexpr auto unknownRecording = static_cast<Admin::RecordReplayAllModes>(6);

/// Beside the channel C1 of the sub system north, which is stopped.
struct Channel
{
    Channel()
    {
        channel.putAll();
        channelId->SetValue(u"C1"_s, nullptr);
        channel.value<double>("CurrentReplayPosition")->SetValue(momentAt(40), nullptr);
        local.valueWaterfallTimestamp()->SetValue(momentAt(10), nullptr);
    }

    void open(ZelkoGUI::BookmarkModel* bookmarks = nullptr)
    {
        shown.emplace(std::make_unique<ReplayBarWidget>(local, model.get(), bookmarks));
    }
    void setReplay(Admin::RecordReplayMode mode) const
    {
        channel.selection("ReplayMode")->SetCurrentKey(static_cast<int>(mode), nullptr);
    }
    void setRecording(Admin::RecordReplayAllModes mode) const
    {
        channel.selection("AllRecordReplayModes")->SetCurrentKey(static_cast<int>(mode), nullptr);
    }
    void allowRecording(bool allow) const { channel.value<bool>("RecordFlag")->SetValue(allow, nullptr); }

    /// What the position on the bar is tied to: "waterfall", "replay", "nothing" or "something else".
    QString tie() const
    {
        const QString path = shown->position().GetValueTreePath();
        if (path == local.valueWaterfallTimestamp()->GetPathName()) {
            return u"waterfall"_s;
        }
        const auto* const replay = channel.value<double>("CurrentReplayPosition");
        if (replay != nullptr && path == replay->GetPathName()) {
            return u"replay"_s;
        }
        return path.isEmpty() ? u"nothing"_s : u"something else"_s;
    }

    const StateSite site{{u"north"_s}};
    const ChannelBranch channel{u"north"_s, u"C1"_s};
    Value<QString>* const channelId = StateSite::putText(u"Channel"_s);
    const ZelkoCommon::LocalZelkoValues local{u"north"_s};
    std::unique_ptr<ZelkoChannelModel> model =
        std::make_unique<ZelkoChannelModel>(local, u"/Window/Channel"_s, site.data);
    std::optional<ShownReplayBar> shown;
};

} // namespace

Q_DECLARE_METATYPE(State)
Q_DECLARE_METATYPE(Admin::RecordReplayMode)
Q_DECLARE_METATYPE(Admin::RecordReplayAllModes)

/// A replay bar widget beside a channel.
class ReplayBarChannelTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void followsTheStateOfTheChannel_data();
    void followsTheStateOfTheChannel();
    void aPausedReplayLeavesThePosition();
    void followsReplaysAsTheyStartAndStop();
    void aFlagThatIsOffChangesNothing();
    void aFlagThatComesBackChangesNothing_data();
    void aFlagThatComesBackChangesNothing();
    void aLostConnectionIsNotFollowed();
    void aChannelThatIsGoneIsNotFollowed_data();
    void aChannelThatIsGoneIsNotFollowed();
    void takesUpAnotherChannel();
    void connectsTheChannelWhenItIsTold();
    void aRecordSetsThePositionOfTheChannel();
    void theChannelMayGoFirst();
};

void ReplayBarChannelTest::followsTheStateOfTheChannel_data()
{
    using Recording = Admin::RecordReplayAllModes;
    using Replay = Admin::RecordReplayMode;
    QTest::addColumn<Recording>("recording");
    QTest::addColumn<Replay>("replay");
    QTest::addColumn<QString>("tie");
    QTest::newRow("nothing runs") << Recording::Stopped << Replay::Stopped << u"replay"_s;
    QTest::newRow("records") << Recording::NormalRecording << Replay::Stopped << u"replay"_s;
    QTest::newRow("replays") << Recording::Stopped << Replay::Running << u"waterfall"_s;
    QTest::newRow("begins to replay") << Recording::Stopped << Replay::Started << u"waterfall"_s;
    QTest::newRow("replays while it records") << Recording::NormalRecording << Replay::Running << u"waterfall"_s;
    QTest::newRow("pauses a replay") << Recording::Stopped << Replay::Paused << u"replay"_s;
    QTest::newRow("does what nobody knows") << unknownRecording << Replay::Stopped << u"nothing"_s;
    QTest::newRow("pauses a replay beside what nobody knows") << unknownRecording << Replay::Paused << u"nothing"_s;
}

void ReplayBarChannelTest::followsTheStateOfTheChannel()
{
    QFETCH(Admin::RecordReplayAllModes, recording);
    QFETCH(Admin::RecordReplayMode, replay);
    QFETCH(QString, tie);
    Channel channel;
    channel.setRecording(recording);
    channel.setReplay(replay);
    channel.open();
    QCOMPARE(channel.tie(), tie);
}

void ReplayBarChannelTest::aPausedReplayLeavesThePosition()
{
    Channel channel;
    channel.setReplay(Admin::RecordReplayMode::Running);
    channel.open();
    channel.setReplay(Admin::RecordReplayMode::Paused);
    QCOMPARE(channel.tie(), u"waterfall"_s);
    channel.setReplay(Admin::RecordReplayMode::Running);
    QCOMPARE(channel.tie(), u"waterfall"_s);
}

void ReplayBarChannelTest::followsReplaysAsTheyStartAndStop()
{
    Channel channel;
    channel.open();
    channel.setReplay(Admin::RecordReplayMode::Running);
    QCOMPARE(channel.tie(), u"waterfall"_s);
    channel.local.valueWaterfallTimestamp()->SetValue(momentAt(12), nullptr);
    channel.channel.value<double>("CurrentReplayPosition")->SetValue(momentAt(41), nullptr);
    QCOMPARE(channel.shown->takePositions(), QList<quint64>{recordBegin + 12'000'000});
    channel.setReplay(Admin::RecordReplayMode::Stopped);
    QCOMPARE(channel.tie(), u"replay"_s);
    channel.local.valueWaterfallTimestamp()->SetValue(momentAt(13), nullptr);
    channel.channel.value<double>("CurrentReplayPosition")->SetValue(momentAt(42), nullptr);
    QCOMPARE(channel.shown->takePositions(), QList<quint64>{recordBegin + 42'000'000});
}

void ReplayBarChannelTest::aFlagThatIsOffChangesNothing()
{
    Channel channel;
    channel.allowRecording(false);
    channel.open();
    QCOMPARE(channel.tie(), u"nothing"_s);
    channel.setReplay(Admin::RecordReplayMode::Running);
    QCOMPARE(channel.tie(), u"nothing"_s);
    channel.allowRecording(true);
    QCOMPARE(channel.tie(), u"waterfall"_s);
    channel.allowRecording(false);
    channel.setReplay(Admin::RecordReplayMode::Stopped);
    QCOMPARE(channel.tie(), u"replay"_s);
}

void ReplayBarChannelTest::aFlagThatComesBackChangesNothing_data()
{
    using Replay = Admin::RecordReplayMode;
    using Modes = QList<Replay>;
    QTest::addColumn<Modes>("replay");
    QTest::addColumn<QString>("tie");
    QTest::newRow("without a replay") << Modes{} << u"replay"_s;
    QTest::newRow("while a replay begins") << Modes{Replay::Started} << u"replay"_s;
    QTest::newRow("while a replay runs") << Modes{Replay::Started, Replay::Running} << u"waterfall"_s;
    QTest::newRow("while a replay is being paused") << Modes{Replay::Running, Replay::Pausing} << u"waterfall"_s;
    QTest::newRow("while a replay that ran is paused") << Modes{Replay::Running, Replay::Paused} << u"waterfall"_s;
    QTest::newRow("while a replay that never ran is paused") << Modes{Replay::Started, Replay::Paused} << u"replay"_s;
    QTest::newRow("while a replay ends") << Modes{Replay::Running, Replay::Stopping} << u"waterfall"_s;
    QTest::newRow("behind a replay") << Modes{Replay::Running, Replay::Stopped} << u"replay"_s;
}

void ReplayBarChannelTest::aFlagThatComesBackChangesNothing()
{
    QFETCH(QList<Admin::RecordReplayMode>, replay);
    Channel channel;
    channel.open();
    for (const Admin::RecordReplayMode mode : replay) {
        channel.setReplay(mode);
    }
    QTEST(channel.tie(), "tie");
    channel.allowRecording(false);
    QTEST(channel.tie(), "tie");
    channel.shown->widget->connectSignals();
    QTEST(channel.tie(), "tie");
    channel.allowRecording(true);
    QTEST(channel.tie(), "tie");
}

void ReplayBarChannelTest::aChannelThatIsGoneIsNotFollowed_data()
{
    QTest::addColumn<State>("state");
    QTest::addColumn<QString>("tie");
    QTest::newRow("ready") << ZelkoGlobal::ChannelReady << u"waterfall"_s;
    QTest::newRow("not allowed to record") << ZelkoGlobal::ChannelRecordFlagOff << u"waterfall"_s;
    QTest::newRow("not set") << ZelkoGlobal::ChannelNotSet << u"replay"_s;
    QTest::newRow("without its values") << ZelkoGlobal::ChannelValuesMissing << u"replay"_s;
    QTest::newRow("not connected") << ZelkoGlobal::ChannelDisconnected << u"replay"_s;
}

void ReplayBarChannelTest::aChannelThatIsGoneIsNotFollowed()
{
    QFETCH(State, state);
    Channel channel;
    channel.open();
    Q_EMIT channel.model->si_availableChannelState(state);
    channel.setReplay(Admin::RecordReplayMode::Running);
    QTEST(channel.tie(), "tie");
    channel.setReplay(Admin::RecordReplayMode::Stopped);
    QCOMPARE(channel.tie(), u"replay"_s);
    Q_EMIT channel.model->si_availableChannelState(ZelkoGlobal::ChannelReady);
    channel.setReplay(Admin::RecordReplayMode::Running);
    QCOMPARE(channel.tie(), u"waterfall"_s);
}

void ReplayBarChannelTest::aLostConnectionIsNotFollowed()
{
    Channel channel;
    channel.open();
    channel.site.data->setConnected(u"north"_s, false);
    Q_EMIT channel.model->si_replayRunning();
    QCOMPARE(channel.tie(), u"replay"_s);
    channel.site.data->setConnected(u"north"_s, true);
    channel.model->resetChannel(QString());
    channel.setReplay(Admin::RecordReplayMode::Running);
    QCOMPARE(channel.tie(), u"waterfall"_s);
}

void ReplayBarChannelTest::takesUpAnotherChannel()
{
    Channel channel;
    channel.open();
    const ChannelBranch other(u"north"_s, u"C2"_s);
    other.putAll();
    channel.channelId->SetValue(u"C2"_s, nullptr);
    QCOMPARE(channel.shown->position().GetValueTreePath(), other.value<double>("CurrentReplayPosition")->GetPathName());
}

void ReplayBarChannelTest::connectsTheChannelWhenItIsTold()
{
    Channel channel;
    channel.allowRecording(false);
    channel.open();
    QCOMPARE(channel.tie(), u"nothing"_s);
    channel.shown->widget->connectSignals();
    QCOMPARE(channel.tie(), u"replay"_s);
    channel.setReplay(Admin::RecordReplayMode::Running);
    QCOMPARE(channel.tie(), u"waterfall"_s);
}

void ReplayBarChannelTest::aRecordSetsThePositionOfTheChannel()
{
    Channel channel;
    BookmarkSite site;
    channel.open(&site.model);
    site.store(twoBookmarks);
    channel.shown->widget->setRecord(u"R"_s, site.records.get(), u"D"_s);
    const auto& position = *channel.channel.value<double>("CurrentReplayPosition");
    QCOMPARE(microseconds(position.GetValue()), timeAt(0));
    QCOMPARE(channel.shown->takePositions(), QList<quint64>{recordBegin});
    const double expected = channel.shown->hands.afterDrag(momentAt(0), momentAt(45));
    channel.shown->hands.dragPosition(momentAt(0), momentAt(45));
    QCOMPARE(microseconds(position.GetValue()), microseconds(expected));
    QVERIFY(position.GetValue() == std::round(position.GetValue()));
    QCOMPARE(channel.shown->takePositions(), QList<quint64>{static_cast<quint64>(expected)});
    QCOMPARE(microseconds(channel.local.valueWaterfallTimestamp()->GetValue()), timeAt(10));
}

void ReplayBarChannelTest::theChannelMayGoFirst()
{
    Channel channel;
    channel.open();
    channel.model.reset();
    channel.shown->widget->connectSignals();
    QCOMPARE(channel.tie(), u"replay"_s);
}

QTEST_MAIN(ReplayBarChannelTest)
#include "tst_replaybarchannel.moc"
