#include <zelkoguibase/state/zelkochannelmodel.h>

#include "channelsetting.h"
#include "patience.h"
#include "testrecords.h"

#include <zelkobase/state/channelvalues.h>

#include <QtTest>

using namespace Qt::StringLiterals;
using ZelkoGUI::ZelkoChannelModel;

class TestZelkoChannelModel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void startsDisconnectedWithoutAChannel();
    void takesUpTheChannelThatTheValueNames();
    void tellsTheStateWhenConnected_data();
    void tellsTheStateWhenConnected();
    void tellsTheSameStateAgain();
    void needsAllValues_data();
    void needsAllValues();
    void letsGoOfItsChannelSilently();
    void letsGoOfItsChannelWhenDisconnected();
    void keepsItsChannelWhenAnotherSubSystemComesAndGoes();
    void takesUpAnotherChannel();
    void leavesTheChannelThatIsHeld();
    void takesUpTheHeldChannelAgainWhenItsValuesAreGone();
    void leavesTheHeldChannelThatHasFoundItsValues();
    void takesUpTheNamedChannelOfADevice_data();
    void takesUpTheNamedChannelOfADevice();
    void doesNotTakeUpAChannelWithoutItsValue();
    void findsValuesThatComeLate();
    void followsTheRecordFlag();
    void tellsWhatIsToBeShown();
    void tellsRecordingStates_data();
    void tellsRecordingStates();
    void tellsReplayStates_data();
    void tellsReplayStates();
    void tellsErrorCodes();
    void passesOnOnlyTheLastOfABurstOfErrorCodes();
    void tellsTheConnection();
    void tellsTheConnectionOnlyIfAllIsKnown_data();
    void tellsTheConnectionOnlyIfAllIsKnown();
    void knowsTheConnection();
    void ignoresOtherChanges();
    void goesBeforeItsValues();

private:
    static void addStateColumns();
};

void TestZelkoChannelModel::startsDisconnectedWithoutAChannel()
{
    ChannelSetting setting;
    setting.channel.putAll();
    QCOMPARE(int(setting.model.channelState()), 4);
    QVERIFY(!setting.model.isReady());
    QCOMPARE(setting.model.channelId(), QString());
    QCOMPARE(setting.model.getRecordingMode(), -1);
    QVERIFY(setting.model.isStopped());
    QVERIFY(!setting.model.isRecording());
    QVERIFY(!setting.model.isReplaying());
    QVERIFY(!setting.model.isPaused());
    QVERIFY(!setting.model.supportsRecording());
    QVERIFY(!setting.model.supportsXGReplay());
    QCOMPARE(setting.model.recordID(), QString());
    QCOMPARE(setting.model.getDataRateClass(), -1);
    QVERIFY(setting.model.channelValues());
    QCOMPARE(setting.log.take(), QStringList());
}

void TestZelkoChannelModel::takesUpTheChannelThatTheValueNames()
{
    ChannelSetting setting;
    setting.channel.putAll();
    setting.channelId->SetValue(u"C1"_s, nullptr);
    QCOMPARE(setting.model.channelId(), u"C1"_s);
    QVERIFY(setting.model.isReady());
    QVERIFY(setting.model.supportsRecording());
    QCOMPARE(setting.model.getRecordingMode(), 4);
    QCOMPARE(setting.log.take(), texts("reconnected 0, state 0"));
}

void TestZelkoChannelModel::tellsTheStateWhenConnected_data()
{
    QTest::addColumn<bool>("isThere");
    QTest::addColumn<bool>("mayRecord");
    QTest::addColumn<QStringList>("expected");
    QTest::newRow("a channel that may record") << true << true << texts("reconnected 0, state 0");
    QTest::newRow("a channel that may not record") << true << false << texts("reconnected 0, state 1");
    QTest::newRow("a channel without values") << false << false << texts("state 3");
}

void TestZelkoChannelModel::tellsTheStateWhenConnected()
{
    QFETCH(bool, isThere);
    QFETCH(bool, mayRecord);
    ChannelSetting setting;
    setting.model.setChannelId(u"C1"_s, QString());
    QCOMPARE(setting.log.take(), texts("state 3"));
    if (isThere) {
        setting.channel.putAll();
        setting.channel.value<bool>("RecordFlag")->SetValue(mayRecord, nullptr);
    }
    setting.site.data->setConnected(u"north"_s, true);
    QTEST(setting.log.take(), "expected");
    QCOMPARE(setting.model.isReady(), mayRecord);
}

void TestZelkoChannelModel::tellsTheSameStateAgain()
{
    ChannelSetting setting;
    setting.takeUpChannel();
    setting.site.data->setConnected(u"north"_s, true);
    QCOMPARE(setting.log.take(), texts("reconnected 0, state 0"));
    setting.channel.value<bool>("RecordFlag")->HasChanged(TChangeCode::ValueChanged, nullptr);
    QCOMPARE(setting.log.take(), texts("state 0"));
}

void TestZelkoChannelModel::needsAllValues_data()
{
    QTest::addColumn<QString>("missing");
    for (const QString& name : ChannelBranch::names()) {
        QTest::newRow(qPrintable(u"all but "_s + name)) << name;
    }
}

void TestZelkoChannelModel::needsAllValues()
{
    QFETCH(QString, missing);
    ChannelSetting setting;
    setting.channel.putAll();
    setting.channel.remove(missing);
    setting.channelId->SetValue(u"C1"_s, nullptr);
    QCOMPARE(setting.log.take(), texts("state 3"));
    setting.model.startRecording();
    setting.model.setRecordingName(u"a name"_s);
    setting.model.setDeviceID(u"A1"_s);
    setting.model.setRecordData(*makeRecord(u"R1"_s));
    setting.model.synchronize(u"A1"_s);
    QCOMPARE(setting.model.recordID(), QString());
    QCOMPARE(setting.log.take(), QStringList());
}

void TestZelkoChannelModel::letsGoOfItsChannelSilently()
{
    ChannelSetting setting;
    setting.takeUpChannel();
    setting.channelId->SetValue(QString(), nullptr);
    QCOMPARE(int(setting.model.channelState()), 2);
    QCOMPARE(setting.model.channelId(), QString());
    QCOMPARE(setting.model.getRecordingMode(), -1);
    setting.channel.selection("AllRecordReplayModes")->SetCurrentKey(1, nullptr);
    setting.channel.value<QString>("ErrorCode")->SetValue(u"E1"_s, nullptr);
    setting.channel.value<bool>("RecordFlag")->SetValue(false, nullptr);
    QCOMPARE(setting.log.take(), QStringList());

    setting.model.setChannelId(u"C1"_s, QString());
    setting.log.take();
    setting.model.setChannelId(QString(), u"A1"_s);
    QCOMPARE(int(setting.model.channelState()), 2);
    QCOMPARE(setting.log.take(), QStringList());
}

void TestZelkoChannelModel::letsGoOfItsChannelWhenDisconnected()
{
    ChannelSetting setting;
    setting.takeUpChannel();
    setting.site.data->setConnected(u"north"_s, false);
    QCOMPARE(setting.log.take(), texts("state 4"));
    QCOMPARE(setting.model.channelId(), QString());
    QVERIFY(!setting.model.channelValues()->valueRecordId());
    setting.site.data->setConnected(u"north"_s, false);
    QCOMPARE(setting.log.take(), texts("state 4"));
    setting.site.data->setConnected(u"north"_s, true);
    QCOMPARE(setting.log.take(), texts("state 3"));
    setting.model.resetChannel(QString());
    QCOMPARE(setting.log.take(), texts("reconnected 0, state 0"));
}

void TestZelkoChannelModel::keepsItsChannelWhenAnotherSubSystemComesAndGoes()
{
    ChannelSetting setting;
    setting.takeUpChannel();
    setting.site.data->setConnected(u"south"_s, true);
    setting.site.data->setConnected(u"south"_s, false);
    QCOMPARE(setting.log.take(), QStringList());
    QCOMPARE(setting.model.channelId(), u"C1"_s);
    QVERIFY(setting.model.isReady());
    QVERIFY(setting.model.channelValues()->valueRecordId());
}

void TestZelkoChannelModel::takesUpAnotherChannel()
{
    ChannelSetting setting;
    setting.takeUpChannel();
    const ChannelBranch other(u"north"_s, u"C2"_s);
    other.putAll();
    other.value<bool>("RecordFlag")->SetValue(false, nullptr);
    setting.channelId->SetValue(u"C2"_s, nullptr);
    QCOMPARE(setting.log.take(), texts("reconnected 0, state 1"));
    setting.channel.selection("AllRecordReplayModes")->SetCurrentKey(1, nullptr);
    other.selection("AllRecordReplayModes")->SetCurrentKey(2, nullptr);
    QCOMPARE(setting.log.take(), texts("recording continuous"));
    setting.channelId->SetValue(u"C3"_s, nullptr);
    QCOMPARE(setting.log.take(), texts("state 3"));
    QCOMPARE(setting.model.channelId(), u"C3"_s);
}

void TestZelkoChannelModel::leavesTheChannelThatIsHeld()
{
    ChannelSetting setting;
    setting.takeUpChannel();
    setting.model.setChannelId(u"C1"_s, QString());
    setting.model.setChannelId(u"C1"_s, u"another device"_s);
    QCOMPARE(setting.log.take(), QStringList());
    QVERIFY(setting.model.isReady());
}

void TestZelkoChannelModel::takesUpTheHeldChannelAgainWhenItsValuesAreGone()
{
    ChannelSetting setting;
    setting.takeUpChannel();
    setting.channel.removeAll();
    setting.model.setChannelId(setting.model.channelId(), QString());
    QCOMPARE(setting.log.take(), texts("state 3"));
    QCOMPARE(setting.model.channelId(), u"C1"_s);
    setting.channel.putAll();
    setting.channel.remove(u"RecordID"_s);
    setting.model.setChannelId(setting.model.channelId(), QString());
    QCOMPARE(setting.log.take(), texts("state 3"));
    setting.channel.put(u"RecordID"_s);
    setting.channelId->HasChanged(TChangeCode::ValueChanged, nullptr);
    QCOMPARE(setting.log.take(), texts("reconnected 0, state 0"));
    setting.channelId->HasChanged(TChangeCode::ValueChanged, nullptr);
    QCOMPARE(setting.log.take(), QStringList()); // nothing is gone
}

// Whoever has looked for the values meanwhile has found them, and nobody was told.
void TestZelkoChannelModel::leavesTheHeldChannelThatHasFoundItsValues()
{
    ChannelSetting setting;
    setting.channelId->SetValue(u"C1"_s, nullptr);
    setting.channel.putAll();
    setting.log.take();
    QCOMPARE(setting.model.recordID(), QString());
    setting.model.setChannelId(u"C1"_s, QString());
    QCOMPARE(setting.log.take(), QStringList());
    QCOMPARE(setting.model.getRecordingMode(), 4);
}

void TestZelkoChannelModel::takesUpTheNamedChannelOfADevice_data()
{
    QTest::addColumn<QString>("branch");
    QTest::addColumn<QString>("path");
    QTest::newRow("a path") << u"A1/C1"_s << u"/SubSystems/north/ZELKO/Device/A1"_s;
    QTest::newRow("a name alone") << u"A1/C1"_s << u"A1"_s;
    QTest::newRow("a path that ends in its separator") << u"C1"_s << u"/SubSystems/north/"_s;
    QTest::newRow("nothing") << u"C1"_s << QString();
}

void TestZelkoChannelModel::takesUpTheNamedChannelOfADevice()
{
    QFETCH(QString, branch);
    QFETCH(QString, path);
    ChannelSetting setting;
    setting.channelId->SetValue(u"C1"_s, nullptr);
    QCOMPARE(setting.log.take(), texts("state 3"));
    ChannelBranch(u"north"_s, branch).putAll();
    setting.model.setChannelId(QString(), QString());
    setting.model.resetChannel(path);
    QCOMPARE(setting.log.take(), texts("reconnected 0, state 0"));
    QCOMPARE(setting.model.channelId(), u"C1"_s);
}

void TestZelkoChannelModel::doesNotTakeUpAChannelWithoutItsValue()
{
    ChannelSetting setting;
    setting.takeUpChannel();
    Tree::Instance()->Remove(u"/Window/Channel"_s);
    setting.model.resetChannel(u"A1"_s);
    QCOMPARE(setting.log.take(), QStringList());
    QCOMPARE(setting.model.channelId(), u"C1"_s);
}

void TestZelkoChannelModel::findsValuesThatComeLate()
{
    ChannelSetting setting;
    setting.channelId->SetValue(u"C1"_s, nullptr);
    setting.channel.putAll();
    setting.model.startRecording(); // nobody has looked for the values yet
    QCOMPARE(setting.channel.selection("AllRecordReplayModes")->GetCurrentKey(), 4);
    setting.log.take();
    setting.model.setRecordingName(u"a name"_s);
    QCOMPARE(setting.channel.value<QString>("RecordName")->GetValue(), u"a name"_s);
    QCOMPARE(int(setting.model.channelState()), 3);
    setting.model.startRecording();
    QCOMPARE(setting.channel.selection("AllRecordReplayModes")->GetCurrentKey(), 0);
    QCOMPARE(setting.log.take(), QStringList());
}

void TestZelkoChannelModel::followsTheRecordFlag()
{
    ChannelSetting setting;
    setting.takeUpChannel();
    setting.channel.value<bool>("RecordFlag")->SetValue(false, nullptr);
    QCOMPARE(setting.log.take(), texts("state 1"));
    QVERIFY(!setting.model.isReady());
    QVERIFY(!setting.model.supportsRecording());
    setting.channel.value<bool>("RecordFlag")->SetValue(true, nullptr);
    QCOMPARE(setting.log.take(), texts("state 0"));
    setting.channel.value<bool>("ReplayFlag")->SetValue(true, nullptr);
    QVERIFY(setting.model.supportsXGReplay());
    QCOMPARE(setting.log.take(), QStringList());
}

void TestZelkoChannelModel::tellsWhatIsToBeShown()
{
    ChannelSetting setting;
    setting.takeUpChannel();
    setting.channel.selection("RecordReplayModes")->SetCurrentKey(4, nullptr);
    QCOMPARE(setting.log.take(), QStringList());
    setting.site.data->setConnected(u"north"_s, true);
    QCOMPARE(setting.log.take(), texts("reconnected 4, state 0"));
}

void TestZelkoChannelModel::addStateColumns()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<QStringList>("expected");
    QTest::addColumn<QStringList>("states");
}

void TestZelkoChannelModel::tellsRecordingStates_data()
{
    addStateColumns();
    QTest::newRow("start requested") << 0 << texts("") << texts("recording");
    QTest::newRow("recording") << 1 << texts("recording normal") << texts("recording");
    QTest::newRow("continuous recording") << 2 << texts("recording continuous") << texts("recording");
    QTest::newRow("stopping") << 3 << texts("recording stopping") << texts("stopped");
    QTest::newRow("stopped") << 4 << texts("recording stopped") << texts("stopped");
    QTest::newRow("one that is not known") << 5 << texts("") << texts("");
}

void TestZelkoChannelModel::tellsRecordingStates()
{
    QFETCH(int, key);
    ChannelSetting setting;
    setting.takeUpChannel();
    auto& state = *setting.channel.selection("AllRecordReplayModes");
    state.SetCurrentKey(6, nullptr);
    QCOMPARE(setting.log.take(), QStringList());
    state.SetCurrentKey(key, nullptr);
    QTEST(setting.log.take(), "expected");
    QCOMPARE(setting.model.getRecordingMode(), key);
    QStringList states;
    if (setting.model.isRecording()) {
        states << u"recording"_s;
    }
    if (setting.model.isStopped()) {
        states << u"stopped"_s;
    }
    QTEST(states, "states");
}

void TestZelkoChannelModel::tellsReplayStates_data()
{
    addStateColumns();
    QTest::newRow("stopped") << 0 << texts("replay stopped") << texts("");
    QTest::newRow("replay started") << 1 << texts("") << texts("replaying");
    QTest::newRow("paused") << 2 << texts("replay paused") << texts("paused");
    QTest::newRow("pausing") << 3 << texts("replay pausing") << texts("paused");
    QTest::newRow("running") << 4 << texts("replay running") << texts("replaying");
    QTest::newRow("stopping") << 5 << texts("replay stopping") << texts("");
    QTest::newRow("one that is not known") << 6 << texts("") << texts("");
}

void TestZelkoChannelModel::tellsReplayStates()
{
    QFETCH(int, key);
    QFETCH(QStringList, expected);
    ChannelSetting setting;
    setting.takeUpChannel();
    auto& state = *setting.channel.selection("ReplayMode");
    state.SetCurrentKey(key == 6 ? 5 : 6, nullptr);
    setting.log.take();
    state.SetCurrentKey(key, nullptr);
    QCOMPARE(setting.log.take(), expected);
    QStringList states;
    if (setting.model.isReplaying()) {
        states << u"replaying"_s;
    }
    if (setting.model.isPaused()) {
        states << u"paused"_s;
    }
    QTEST(states, "states");
    setting.model.synchronize(u"A1"_s);
    QCOMPARE(setting.log.take(), expected);
}

void TestZelkoChannelModel::tellsErrorCodes()
{
    ChannelSetting setting;
    setting.channel.putAll();
    auto& errorCode = *setting.channel.value<QString>("ErrorCode");
    errorCode.SetValue(u"E1"_s, nullptr);
    setting.channelId->SetValue(u"C1"_s, nullptr);
    QCOMPARE(setting.log.take(), texts("reconnected 0, state 0"));
    errorCode.SetValue(u"E2"_s, nullptr);
    errorCode.HasChanged(TChangeCode::ValueChanged, nullptr);
    QCOMPARE(setting.log.take(), texts("error E2, error E2"));
    errorCode.SetValue(QString(), nullptr);
    QCOMPARE(setting.log.take(), QStringList());
}

void TestZelkoChannelModel::passesOnOnlyTheLastOfABurstOfErrorCodes()
{
    ChannelSetting setting;
    setting.takeUpChannel();
    setting.site.client->take();
    auto& errorCode = *setting.channel.value<QString>("ErrorCode");
    errorCode.SetValue(u"E1"_s, nullptr);
    errorCode.SetValue(u"E2"_s, nullptr);
    QCOMPARE(setting.site.client->take(), QStringList());
    QStringList sent;
    QTRY_VERIFY_WITH_TIMEOUT(!(sent += setting.site.client->take()).isEmpty(), patience);
    QCOMPARE(sent, QStringList{u"ErrorCode=E2"_s});
    QCOMPARE(setting.log.take(), texts("error E1, error E2"));
}

void TestZelkoChannelModel::tellsTheConnection()
{
    ChannelSetting setting;
    setting.local.valueCCOConnectionResult()->SetValue(u"fine"_s, nullptr);
    setting.local.valueCCOConnectionState()->SetCurrentKey(2, nullptr);
    QCOMPARE(setting.log.take(), texts("connection 0 fine, connection 2 fine"));
}

void TestZelkoChannelModel::tellsTheConnectionOnlyIfAllIsKnown_data()
{
    QTest::addColumn<bool>("isStateMissing");
    QTest::newRow("without the state") << true;
    QTest::newRow("without the result") << false;
}

void TestZelkoChannelModel::tellsTheConnectionOnlyIfAllIsKnown()
{
    QFETCH(const bool, isStateMissing);
    ChannelSetting setting;
    if (isStateMissing) {
        Tree::Instance()->Remove(setting.local.valueCCOConnectionState()->GetPathName());
        setting.local.valueCCOConnectionResult()->SetValue(u"fine"_s, nullptr);
    } else {
        Tree::Instance()->Remove(setting.local.valueCCOConnectionResult()->GetPathName());
        setting.local.valueCCOConnectionState()->SetCurrentKey(2, nullptr);
    }
    QCOMPARE(setting.log.take(), QStringList());
}

void TestZelkoChannelModel::knowsTheConnection()
{
    const ChannelSetting setting;
    setting.local.valueCCOConnectionState()->SetCurrentKey(3, nullptr);
    setting.local.valueCCOConnectionResult()->SetValue(u"no answer"_s, nullptr);
    QCOMPARE(setting.model.getCCOConnectionState(), 3);
    QCOMPARE(setting.model.getCCOConnectionResult(), u"no answer"_s);
    Tree::Instance()->Remove(u"/ZELKO/Local"_s);
    QCOMPARE(setting.model.getCCOConnectionState(), -1);
    QCOMPARE(setting.model.getCCOConnectionResult(),
             u"Please validate if your server and client are running the same Belvo version!"_s);
}

void TestZelkoChannelModel::ignoresOtherChanges()
{
    ChannelSetting setting;
    setting.takeUpChannel();
    setting.channel.value<QString>("ErrorCode")->SetValue(u"E1"_s, nullptr);
    setting.log.take();
    for (const auto code : {TChangeCode::StateChanged, TChangeCode::ValueRefreshed, TChangeCode::ChildAdded}) {
        setting.channelId->HasChanged(code, nullptr);
        setting.channel.selection("AllRecordReplayModes")->HasChanged(code, nullptr);
        setting.channel.selection("ReplayMode")->HasChanged(code, nullptr);
        setting.channel.value<QString>("ErrorCode")->HasChanged(code, nullptr);
        setting.channel.value<bool>("RecordFlag")->HasChanged(code, nullptr);
    }
    QCOMPARE(setting.log.take(), QStringList());
}

void TestZelkoChannelModel::goesBeforeItsValues()
{
    const StateSite site;
    site.data->setConnected(u"north"_s, true);
    const ChannelBranch channel(u"north"_s, u"C1"_s);
    channel.putAll();
    StateSite::putText(u"Channel"_s, u"C1"_s);
    {
        ZelkoChannelModel model(ZelkoCommon::LocalZelkoValues(u"north"_s), u"/Window/Channel"_s, site.data);
        model.resetChannel(QString());
        QVERIFY(model.isReady());
    }
    QCOMPARE(channel.selection("AllRecordReplayModes")->ObserverCount(), std::size_t(0));
    QVERIFY(!channel.value<QString>("RecordName")->GetTransmitter());
    channel.selection("ReplayMode")->SetCurrentKey(4, nullptr);
    site.data->setConnected(u"north"_s, false);
}

QTEST_GUILESS_MAIN(TestZelkoChannelModel)
#include "tst_zelkochannelmodel.moc"
