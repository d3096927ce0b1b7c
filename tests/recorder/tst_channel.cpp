#include <recorder/service/channel.h>

#include <filesizelimit.h>
#include <frames.h>
#include <onedevice.h>
#include <publishedmanager.h>

#include <QTcpSocket>
#include <QTest>

#include <future>
#include <utility>

using namespace ZelkoRecorder;
using namespace ZelkoTest;

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
    void answersWhenTheNameOfTheEndIsStored();
    void saysThatTheNameOfTheEndIsNotStored();

private:
    ChannelManager& manager() const { return m_manager->manager(); }
    void send(quint32 frame);
    StoreStatus rename(const QString& name) const
    {
        std::promise<StoreStatus> answer;
        const auto isPosted =
            m_devices->edits->post(commentEdit(name), [&](StoreStatus given) { answer.set_value(given); });
        return isPosted ? answer.get_future().get() : StoreStatus::InUse;
    }
    QString storedName() const
    {
        QString error;
        const RecordPointer record = DeviceStore(m_devices->folder.path()).read(m_devices->recordID, &error);
        return record ? record->GetRecordName() : error;
    }

    std::unique_ptr<ZelkoCommon::Orb> m_orb;
    std::unique_ptr<PublishedManager> m_manager;
    std::unique_ptr<OneDevice> m_devices;
    std::unique_ptr<Channel> m_channel;
    QTcpSocket m_sender;
};

void TestChannel::init()
{
    m_orb = std::make_unique<ZelkoCommon::Orb>(ZelkoCommon::OrbOptions());
    m_manager = std::make_unique<PublishedManager>(*m_orb);
    manager().answers.kind = QD_ZLK::ENDPOINT_TCP;
    m_devices = std::make_unique<OneDevice>();
    Channel::Options options;
    options.pingInterval = std::chrono::milliseconds(100);
    ChannelWish wish;
    wish.name = QStringLiteral("Kanal");
    wish.format = ChannelWish::DataFormat::IQ16;
    wish.canRecord = true;
    m_channel = std::make_unique<Channel>(QStringLiteral("C1"), wish, m_manager->reference(), *m_devices, options);
    QCOMPARE(m_channel->startRecording({}), Channel::Verdict::Done);
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
    QVERIFY(!manager().calls().contains("start"));
    m_devices->waiting.front()();
    QTRY_COMPARE_WITH_TIMEOUT(m_channel->state(), ChannelMachine::State::Recording, 30'000);
    QCOMPARE(manager().calls(), QStringList({"available D1", "connect", "start"}));
}

void TestChannel::startsNothingForAManagerThatIsLostMeanwhile()
{
    m_manager->vanish();
    QTRY_COMPARE_WITH_TIMEOUT(m_channel->state(), ChannelMachine::State::Removed, 30'000);
    m_devices->waiting.front()();
    QCOMPARE(m_channel->state(), ChannelMachine::State::Removed);
    QVERIFY(!manager().calls().contains("start"));
}

void TestChannel::send(quint32 frame)
{
    if (m_sender.state() != QTcpSocket::ConnectedState) {
        m_sender.connectToHost(QHostAddress::LocalHost, manager().port());
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
    std::promise<Channel::Verdict> verdict;
    m_channel->stopRecording("Ende", [&](Channel::Verdict given) { verdict.set_value(given); });
    m_channel.reset();
    QCOMPARE(storedName(), "Ende");
}

void TestChannel::answersWhenTheNameOfTheEndIsStored()
{
    m_devices->waiting.front()();
    QTRY_COMPARE_WITH_TIMEOUT(m_channel->state(), ChannelMachine::State::Recording, 30'000);
    send(0);
    QTRY_VERIFY_WITH_TIMEOUT(m_devices->edits, 30'000);
    std::promise<std::pair<Channel::Verdict, QString>> answer; // with what is stored at that moment
    m_channel->stopRecording("Ende", [&](Channel::Verdict given) { answer.set_value({given, storedName()}); });
    QCOMPARE(answer.get_future().get(), std::pair(Channel::Verdict::Done, QString("Ende")));
}

void TestChannel::saysThatTheNameOfTheEndIsNotStored()
{
    m_devices->waiting.front()();
    QTRY_COMPARE_WITH_TIMEOUT(m_channel->state(), ChannelMachine::State::Recording, 30'000);
    send(0);
    QTRY_VERIFY_WITH_TIMEOUT(m_devices->edits, 30'000);
    QCOMPARE(rename("Anfang"), StoreStatus::Done); // so that the disk is not full before the record is born
    const FileSizeLimit full(1);
    std::promise<Channel::Verdict> answer;
    m_channel->stopRecording("Ende", [&](Channel::Verdict given) { answer.set_value(given); });
    QCOMPARE(answer.get_future().get(), Channel::Verdict::NotStored);
}

QTEST_GUILESS_MAIN(TestChannel)
#include "tst_channel.moc"
