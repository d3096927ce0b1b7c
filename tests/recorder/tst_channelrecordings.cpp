#include <channeltest.h>

#include <QTcpSocket>

using namespace ZelkoRecorder;
using namespace ZelkoTest;
using ZelkoCommon::toWideCorba;
using Status = ZELKO_XML::ZELKO_RecordData::RecordStatus;

// How channels record what their manager sends.
class TestChannelRecordings : public ChannelTest
{
    Q_OBJECT

private Q_SLOTS:
    void init() { begin(); }
    void cleanup() { end(); }
    void recordsDatagrams();
    void recordsAStream();
    void recordsOnTheDeviceThatIsWanted();
    void takesNoDataOfStrangers();
    void endsWithTheLastFrame();
    void endsWhenItsTimeIsOver();
    void endsWhenAClientWantsTheRecordAtRest();
    void givesTheRecordTheNameItGotInTheEnd();
    void recordsAgain();
    void tellsTheManagerWhatWentWrong_data();
    void tellsTheManagerWhatWentWrong();
    void leavesNoRecordWithoutData();
};

void TestChannelRecordings::recordsDatagrams()
{
    const Registered registered = enter("Antenne 1");
    startRecording(registered);
    send({0, 1, 2});
    QTRY_VERIFY_WITH_TIMEOUT(m_manager->calls().contains("started"), patience);
    QTRY_VERIFY_WITH_TIMEOUT(onlyRecord() != nullptr, patience);
    QCOMPARE(stopping(registered), QStringLiteral("done"));
    QTRY_VERIFY_WITH_TIMEOUT(isFinished(), patience);
    const auto record = onlyRecord();
    const QString id = record->GetRecordID();
    QTRY_COMPARE_WITH_TIMEOUT(
        m_manager->calls(),
        QStringList({"available D1", "connect", "start", "started", "stop", "disconnect", "finished D1 " + id}),
        patience);
    QCOMPARE(record->GetRecordName(), QStringLiteral("Aufnahme"));
    QCOMPARE(record->GetDataFormat(), ZELKO_XML::ZELKO_RecordData::DataFormat::IQ16);
    QCOMPARE(record->GetStartTime(), 10'000'000U);
    QCOMPARE(record->GetStopTime(), 10'300'000U);
    QCOMPARE(record->GetSize(), 1200U);
    QVERIFY(record->GetDeletable());
    QCOMPARE(std::as_const(*record).GetIndexEntry().constFirst().GetTunerFrequency(), 145'000'000U);
    QCOMPARE(readBytes(m_recorder->deviceFolder("D1") + '/' + id + '/' + id + ".dat"),
             samplesOf(frameOf(0)) + samplesOf(frameOf(1)) + samplesOf(frameOf(2)));
}

void TestChannelRecordings::recordsAStream()
{
    m_manager->answers.kind = QD_ZLK::ENDPOINT_TCP;
    startRecording(enter("Antenne 1"));
    QTcpSocket socket;
    socket.connectToHost(QHostAddress::LocalHost, m_manager->port());
    QTRY_COMPARE_WITH_TIMEOUT(socket.state(), QAbstractSocket::ConnectedState, patience);
    QByteArray bytes;
    for (quint32 number = 0; number < 100; ++number) {
        bytes += wire(frameOf(number, 4000));
    }
    socket.write(bytes);
    QTRY_COMPARE_WITH_TIMEOUT(socket.bytesToWrite(), 0, patience);
    socket.disconnectFromHost(); // the end of the stream is the end of the recording
    QTRY_VERIFY_WITH_TIMEOUT(isFinished(), patience);
    QCOMPARE(onlyRecord()->GetSize(), 400'000U);
    QTRY_VERIFY_WITH_TIMEOUT(m_manager->calls().contains("stopping"), patience);
}

void TestChannelRecordings::recordsOnTheDeviceThatIsWanted()
{
    const Registered preferred = enter("1", "D2");
    startRecording(preferred);
    QCOMPARE(m_manager->calls().first(), QStringLiteral("available D2"));
    QCOMPARE(stopping(preferred), QStringLiteral("done"));
    QTRY_VERIFY_WITH_TIMEOUT(m_manager->calls().last().startsWith("finished D2"), patience);

    const Registered allowed = enter("2");
    QD_ZLK::StringSeqSeq devices;
    devices.length(1);
    devices[0].length(2);
    devices[0][0] = "D9";
    devices[0][1] = "D2";
    QCOMPARE(endingOf([&] { allowed.channel->setZelkoDevices(devices); }), QStringLiteral("done"));
    QCOMPARE(endingOf([&] { allowed.channel->startRecording(0, toWideCorba("x"), 0); }), QStringLiteral("done"));
    QTRY_COMPARE_WITH_TIMEOUT(m_manager->calls().count("available D2"), 2, patience);
    devices[0].length(1);
    QCOMPARE(endingOf([&] { allowed.channel->setZelkoDevices(devices); }), QStringLiteral("no device"));
    devices[0].length(100'000);
    QCOMPARE(endingOf([&] { allowed.channel->setZelkoDevices(devices); }), QStringLiteral("failed"));
}

void TestChannelRecordings::takesNoDataOfStrangers()
{
    const Registered registered = enter("Antenne 1");
    startRecording(registered);
    ChannelFrame stranger = frameOf(0);
    stranger.stream = 8;
    write(wire(stranger));
    write("no frame at all");
    write(wire(frameOf(0)).chopped(1));
    QUdpSocket other;
    QVERIFY(other.bind(QHostAddress("127.0.0.2")));
    other.writeDatagram(wire(frameOf(0, 40)), QHostAddress::LocalHost, m_manager->port());
    send({0, 1});
    write(wire(frameOf(1)));
    write(wire(frameOf(0)));
    send({2});
    QTRY_VERIFY_WITH_TIMEOUT(m_manager->calls().contains("started"), patience);
    QCOMPARE(stopping(registered), QStringLiteral("done"));
    QTRY_VERIFY_WITH_TIMEOUT(isFinished(), patience);
    QCOMPARE(onlyRecord()->GetSize(), 1200U);
}

void TestChannelRecordings::endsWithTheLastFrame()
{
    startRecording(enter("Antenne 1"));
    send({0});
    ChannelFrame last = frameOf(1);
    last.isLast = true;
    const auto isOver = [&] {
        write(wire(last));
        return isFinished();
    };
    QTRY_VERIFY_WITH_TIMEOUT(isOver(), patience);
    QCOMPARE(onlyRecord()->GetSize(), 800U);
}

void TestChannelRecordings::endsWhenItsTimeIsOver()
{
    startRecording(enter("Antenne 1"), 1);
    send({0});
    QTRY_VERIFY_WITH_TIMEOUT(isFinished(), patience);
    QTRY_VERIFY_WITH_TIMEOUT(m_manager->calls().last().startsWith("finished"), patience);
}

void TestChannelRecordings::endsWhenAClientWantsTheRecordAtRest()
{
    startRecording(enter("Antenne 1"));
    send({0});
    QTRY_VERIFY_WITH_TIMEOUT(onlyRecord() != nullptr, patience);
    QCOMPARE(onlyRecord()->GetRecordStatus(), Status::Recording);
    m_recorder->values("D1").command<Value<QString>>("SetRecordIdle")->SetValue(onlyRecord()->GetRecordID(), nullptr);
    QTRY_VERIFY_WITH_TIMEOUT(isFinished(), patience);
    QTRY_VERIFY_WITH_TIMEOUT(m_manager->calls().last().startsWith("finished"), patience);
}

void TestChannelRecordings::givesTheRecordTheNameItGotInTheEnd()
{
    const Registered registered = enter("Antenne 1");
    startRecording(registered);
    send({0});
    QTRY_VERIFY_WITH_TIMEOUT(onlyRecord() != nullptr, patience);
    QCOMPARE(endingOf([&] { registered.channel->stopRecording(toWideCorba("Größe")); }), QStringLiteral("done"));
    QTRY_VERIFY_WITH_TIMEOUT(onlyRecord() && onlyRecord()->GetRecordName() == QStringLiteral("Größe"), patience);
}

void TestChannelRecordings::recordsAgain()
{
    const Registered registered = enter("Antenne 1");
    for (int round = 1; round <= 3; ++round) {
        QCOMPARE(endingOf([&] { registered.channel->startRecording(0, toWideCorba("x"), 0); }), QStringLiteral("done"));
        QTRY_COMPARE_WITH_TIMEOUT(m_manager->calls().count("start"), round, patience);
        send({0});
        QTRY_COMPARE_WITH_TIMEOUT(m_manager->calls().count("started"), round, patience);
        QCOMPARE(stopping(registered), QStringLiteral("done"));
        QTRY_VERIFY_WITH_TIMEOUT(m_manager->calls().last().startsWith("finished"), patience);
        QTRY_COMPARE_WITH_TIMEOUT(m_recorder->values("D1").ids().size(), round, patience);
    }
}

void TestChannelRecordings::tellsTheManagerWhatWentWrong_data()
{
    using Change = std::function<void(ChannelManager::Answers&)>;
    QTest::addColumn<Change>("change");
    QTest::addColumn<QString>("last");
    QTest::addColumn<int>("disconnects");
    QTest::newRow("it is not available") << Change([](auto& answers) { answers.available = false; })
                                         << "fault 1: the channel manager declined" << 0;
    QTest::newRow("it does not connect") << Change([](auto& answers) { answers.connects = false; })
                                         << "fault 2: the channel manager declined" << 0;
    QTest::newRow("its data would come over an optical link")
        << Change([](auto& answers) { answers.kind = QD_ZLK::ENDPOINT_OPTICAL; })
        << "fault 2: it names no endpoint that can be used" << 1;
    QTest::newRow("its data would come from no address") << Change([](auto& answers) { answers.address = "../etc"; })
                                                         << "fault 2: it names no endpoint that can be used" << 1;
    QTest::newRow("nothing flows") << Change([](auto& answers) { answers.starts = false; }) << "finished D1 " << 1;
}

void TestChannelRecordings::tellsTheManagerWhatWentWrong()
{
    using Change = std::function<void(ChannelManager::Answers&)>;
    QFETCH(Change, change);
    QFETCH(QString, last);
    change(m_manager->answers);
    const Registered registered = enter("Antenne 1");
    QCOMPARE(endingOf([&] { registered.channel->startRecording(0, toWideCorba("x"), 0); }), QStringLiteral("done"));
    QTRY_VERIFY_WITH_TIMEOUT(!m_manager->calls().isEmpty() && m_manager->calls().last() == last, patience);
    QCOMPARE(m_manager->calls().filter("fault").size(), 1);
    QTEST(int(m_manager->calls().count("disconnect")), "disconnects");
    QCOMPARE(stopping(registered), QStringLiteral("not recording"));
}

void TestChannelRecordings::leavesNoRecordWithoutData()
{
    m_manager->answers.namesEndpoint = false;
    const Registered registered = enter("Antenne 1");
    startRecording(registered);
    QCOMPARE(endingOf([&] { registered.channel->stopRecording(toWideCorba("x")); }), QStringLiteral("done"));
    QTRY_COMPARE_WITH_TIMEOUT(m_manager->calls().last(), QStringLiteral("finished D1 "), patience);
    QVERIFY(m_recorder->values("D1").ids().isEmpty());
}

QTEST_GUILESS_MAIN(TestChannelRecordings)
#include "tst_channelrecordings.moc"
