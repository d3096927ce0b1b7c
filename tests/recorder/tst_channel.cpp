#include <recorder/service/channel.h>

#include <recorder/service/channeldevices.h>

#include <channelmanager.h>
#include <frames.h>

#include <zelkobase/orb/orb.h>

#include <QTcpSocket>
#include <QTemporaryDir>
#include <QTest>

#include <future>

using namespace ZelkoRecorder;
using namespace ZelkoTest;
using QD_ZLK::IF_ZLK_c_ChanMan;

namespace {

// One device that becomes ready when the test says so.
class OneDevice final : public ChannelDevices
{
public:
    QStringList devices() const override { return {QStringLiteral("D1")}; }
    DeviceStore store(const QString&) const override { return DeviceStore(folder.path()); }
    void whenReady(const QString&, QObject*, std::function<void()> ready) override { waiting.push_back(ready); }
    const DeviceClock& clock(const QString&) const override { return deviceClock; }
    void recordBegins(const QString&, const QString& id, std::function<void()>,
                      const std::shared_ptr<EditQueue>& queue) override
    {
        recordID = id;
        edits = queue;
    }
    void recordChanged(const QString&, const RecordPointer&) override {}
    void recordEnded(const QString&, const QString&) override {}

    QTemporaryDir folder;
    const DeviceClock deviceClock{folder.path()};
    QString recordID;
    std::shared_ptr<EditQueue> edits;
    std::vector<std::function<void()>> waiting;
};

constexpr char managerKey[] = "Manager";

} // namespace

class TestChannel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void letsNoDataFlowBeforeTheDeviceIsReady();
    void startsNothingForAManagerThatIsLostMeanwhile();
    void letsOthersChangeItsRecord();
    void namesItsRecordWhateverEndsIt();

private:
    void send(quint32 frame);
    QString storedName() const
    {
        QString error;
        const RecordPointer record = DeviceStore(m_devices->folder.path()).read(m_devices->recordID, &error);
        return record ? record->GetRecordName() : error;
    }

    std::unique_ptr<ZelkoCommon::Orb> m_orb;
    ChannelManager* m_manager = nullptr;
    PortableServer::ServantBase_var m_guard;
    std::unique_ptr<OneDevice> m_devices;
    std::unique_ptr<Channel> m_channel;
    QTcpSocket m_sender;
};

void TestChannel::init()
{
    m_orb = std::make_unique<ZelkoCommon::Orb>(ZelkoCommon::OrbOptions());
    m_manager = new ChannelManager;
    m_guard = m_manager;
    m_manager->answers.kind = QD_ZLK::ENDPOINT_TCP;
    m_orb->publish(managerKey, m_manager);
    m_devices = std::make_unique<OneDevice>();
    Channel::Options options;
    options.pingInterval = std::chrono::milliseconds(100);
    ChannelWish wish;
    wish.name = QStringLiteral("Kanal");
    wish.format = ChannelWish::DataFormat::IQ16;
    wish.canRecord = true;
    const CORBA::Object_var manager =
        m_orb->reference(QStringLiteral("corbaloc::1.2@127.1:%1/%2").arg(m_orb->port()).arg(managerKey));
    m_channel = std::make_unique<Channel>(QStringLiteral("C1"), wish, IF_ZLK_c_ChanMan::_unchecked_narrow(manager),
                                          *m_devices, options);
    QCOMPARE(m_channel->startRecording(0, {}), Channel::Verdict::Done);
    QTRY_COMPARE_WITH_TIMEOUT(m_devices->waiting.size(), 1U, 30'000);
}

void TestChannel::cleanup()
{
    m_sender.abort();
    m_channel.reset();
    m_orb.reset();
}

void TestChannel::letsNoDataFlowBeforeTheDeviceIsReady()
{
    QCOMPARE(m_channel->state(), ChannelMachine::State::Starting);
    QVERIFY(!m_manager->calls().contains("start"));
    m_devices->waiting.front()();
    QTRY_COMPARE_WITH_TIMEOUT(m_channel->state(), ChannelMachine::State::Recording, 30'000);
    QCOMPARE(m_manager->calls(), QStringList({"available D1", "connect", "start"}));
}

void TestChannel::startsNothingForAManagerThatIsLostMeanwhile()
{
    m_orb->withdraw(managerKey);
    QTRY_COMPARE_WITH_TIMEOUT(m_channel->state(), ChannelMachine::State::Removed, 30'000);
    m_devices->waiting.front()();
    QCOMPARE(m_channel->state(), ChannelMachine::State::Removed);
    QVERIFY(!m_manager->calls().contains("start"));
}

void TestChannel::send(quint32 frame)
{
    if (m_sender.state() != QTcpSocket::ConnectedState) {
        m_sender.connectToHost(QHostAddress::LocalHost, m_manager->port());
    }
    m_sender.write(wire(frameOf(frame)));
    QTRY_COMPARE_WITH_TIMEOUT(m_sender.bytesToWrite(), 0, 30'000);
}

void TestChannel::letsOthersChangeItsRecord()
{
    m_devices->waiting.front()();
    QTRY_COMPARE_WITH_TIMEOUT(m_channel->state(), ChannelMachine::State::Recording, 30'000);
    send(0);
    QTRY_VERIFY_WITH_TIMEOUT(m_devices->edits, 30'000);
    std::promise<StoreStatus> answer;
    QVERIFY(m_devices->edits->post(commentEdit("Neu"), [&](StoreStatus status) { answer.set_value(status); }));
    QCOMPARE(answer.get_future().get(), StoreStatus::Done);
    QCOMPARE(storedName(), "Neu");
}

// The recorder ends before the manager has stopped the flow.
void TestChannel::namesItsRecordWhateverEndsIt()
{
    m_devices->waiting.front()();
    QTRY_COMPARE_WITH_TIMEOUT(m_channel->state(), ChannelMachine::State::Recording, 30'000);
    send(0);
    QTRY_VERIFY_WITH_TIMEOUT(m_devices->edits, 30'000);
    QCOMPARE(m_channel->stopRecording("Ende"), Channel::Verdict::Done);
    m_channel.reset();
    QCOMPARE(storedName(), "Ende");
}

QTEST_GUILESS_MAIN(TestChannel)
#include "tst_channel.moc"
