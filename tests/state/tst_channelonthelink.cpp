#include "channelbranch.h"
#include "channelsignallog.h"
#include "linkclient.h"
#include "patience.h"
#include "statesite.h"
#include "updatecounter.h"

#include <recorder/link/treelinkserver.h>

#include <valuecore/tree.h>
#include <zelkobase/orb/orb.h>
#include <zelkobase/state/localzelkovalues.h>

#include <QtTest>

using namespace Qt::StringLiterals;
using ZelkoGUI::ZelkoChannelModel;

namespace {

/// A recorder's end of the link with the channel C1, which clients may write.
struct Recorder
{
    explicit Recorder(ZelkoCommon::Orb& orb)
        : server(orb, tree, {}, [](const ZelkoRecorder::LinkUser&, const ValueBase&) { return true; })
    {
        channel.putAll();
        recordingState()->AddObserver(&writes);
    }

    ValueSelection* recordingState() const { return channel.selection("AllRecordReplayModes"); }

    UpdateCounter writes; // of clients and of the recorder, to the recording state
    Tree tree;
    ChannelBranch channel{tree, u"C1"_s};
    ZelkoRecorder::TreeLinkServer server;
};

/// A client of it, whose channel is named by a value of its own.
struct Client
{
    explicit Client(ZelkoCommon::Orb& orb)
        : connection(std::make_shared<ZelkoCommon::ServerConnectionData>(
              orb, Tree::Instance(), LinkClient::site(orb.port()), LinkClient::quickOptions()))
    {}
    ~Client()
    {
        Tree::Instance()->Remove(u"/ZELKO"_s);
        Tree::Instance()->Remove(u"/Window"_s);
    }

    /// Has the model work on C1 as soon as there is a connection.
    bool takeUpChannel()
    {
        if (!QTest::qWaitFor([this] { return connection->isConnected(u"north"_s); }, patience)) {
            return false;
        }
        channelId->SetValue(u"C1"_s, nullptr);
        return model.isReady();
    }

    const std::shared_ptr<ZelkoCommon::ServerConnectionData> connection;
    const ZelkoCommon::LocalZelkoValues local{u"north"_s};
    Value<QString>* const channelId = StateSite::putText(u"Channel"_s);
    ZelkoChannelModel model{local, u"/Window/Channel"_s, connection};
    ChannelSignalLog log{model};
};

} // namespace

class TestChannelOnTheLink : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void recordsByKeysAlone();
    void writesTheSettingsToTheRecorder();
    void comesBackWithTheRecorder();
};

void TestChannelOnTheLink::recordsByKeysAlone()
{
    ZelkoCommon::Orb orb{ZelkoCommon::OrbOptions()};
    Recorder recorder(orb);
    Client client(orb);
    QVERIFY(client.takeUpChannel());
    QCOMPARE(client.log.take(), (QStringList{u"state 3"_s, u"reconnected 0"_s, u"state 0"_s}));

    client.model.startRecording();
    QTRY_COMPARE_WITH_TIMEOUT(recorder.recordingState()->GetCurrentKey(), 0, patience);
    recorder.recordingState()->SetCurrentKey(1, nullptr);
    QTRY_COMPARE_WITH_TIMEOUT(client.model.getRecordingMode(), 1, patience);
    client.model.stopRecording();
    QTRY_COMPARE_WITH_TIMEOUT(recorder.recordingState()->GetCurrentKey(), 3, patience);
    recorder.recordingState()->SetCurrentKey(4, nullptr);
    QTRY_COMPARE_WITH_TIMEOUT(client.model.getRecordingMode(), 4, patience);

    QCOMPARE(client.log.take(), (QStringList{u"recording normal"_s, u"recording stopped"_s}));
    QCOMPARE(recorder.writes.take().size(), std::size_t(4)); // two of each side, and none comes back as an echo
}

void TestChannelOnTheLink::writesTheSettingsToTheRecorder()
{
    ZelkoCommon::Orb orb{ZelkoCommon::OrbOptions()};
    const Recorder recorder(orb);
    Client client(orb);
    QVERIFY(client.takeUpChannel());
    client.model.setDeviceID(u"A1"_s);
    client.model.setRecordingTimeout(60);
    client.model.setRecordingName(u"tower"_s);
    QTRY_COMPARE_WITH_TIMEOUT(recorder.channel.value<QString>("RecordName")->GetValue(), u"tower"_s, patience);
    QCOMPARE(recorder.channel.value<int>("RecordTimeout")->GetValue(), 60);
    QCOMPARE(recorder.channel.value<QString>("DeviceID")->GetValue(), u"A1"_s);
}

void TestChannelOnTheLink::comesBackWithTheRecorder()
{
    ZelkoCommon::Orb orb{ZelkoCommon::OrbOptions()};
    auto recorder = std::make_unique<Recorder>(orb);
    Client client(orb);
    QVERIFY(client.takeUpChannel());
    client.local.valueDeviceId()->SetValue(u"A1"_s, nullptr);
    client.log.take();

    recorder.reset();
    QTRY_COMPARE_WITH_TIMEOUT(int(client.model.channelState()), 4, patience);
    QCOMPARE(client.log.take(), QStringList{u"state 4"_s});
    QCOMPARE(client.local.valueDeviceId()->GetValue(), u"A1"_s); // what is the workstation's own stays

    recorder = std::make_unique<Recorder>(orb);
    QTRY_COMPARE_WITH_TIMEOUT(int(client.model.channelState()), 3, patience);
    QCOMPARE(client.log.take(), QStringList{u"state 3"_s});
    client.model.resetChannel(QString());
    QCOMPARE(client.log.take(), (QStringList{u"reconnected 0"_s, u"state 0"_s}));
    client.model.startRecording();
    QTRY_COMPARE_WITH_TIMEOUT(recorder->recordingState()->GetCurrentKey(), 0, patience);
}

QTEST_GUILESS_MAIN(TestChannelOnTheLink)
#include "tst_channelonthelink.moc"
