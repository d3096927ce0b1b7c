#include <channelmanager.h>
#include <faultproxy.h>
#include <frames.h>
#include <servicerecorder.h>

#include <QDirIterator>
#include <QTcpSocket>
#include <QTest>
#include <QUdpSocket>

using namespace ZelkoRecorder;
using namespace ZelkoTest;
using QD_ZLK::IF_ZLK_c_Chan;
using QD_ZLK::IF_ZLK_c_Chan_var;
using QD_ZLK::IF_ZLK_c_ChanMan;
using QD_ZLK::IF_ZLK_c_ChanMan_var;
using ZelkoCommon::fromCorba;
using ZelkoCommon::Role;
using ZelkoCommon::toCorba;
using ZelkoCommon::toWideCorba;
using Status = ZELKO_XML::ZELKO_RecordData::RecordStatus;

namespace {

// What a call ends with: "done", the code of its exception, or the name of an exception of the ORB.
template <typename Call>
QString endingOf(Call call)
{
    return onCallerThread([&]() -> QString {
        try {
            call();
            return QStringLiteral("done");
        } catch (const IF_ZLK_c_Chan::exChan& refusal) {
            constexpr const char* names[] = {"failed", "removed", "busy", "not recording", "no device", "no space"};
            return QString::fromLatin1(names[refusal.code]);
        } catch (const QD_ZLK::exGen& refusal) {
            constexpr const char* names[] = {"internal", "bad parameter", "not permitted", "no resources", "in use"};
            return QString::fromLatin1(names[refusal.code]);
        } catch (const CORBA::Exception& exception) {
            return QString::fromLatin1(exception._name());
        }
    });
}

constexpr char managerKey[] = "Manager";

} // namespace

class TestChannelServant : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { begin({}); }
    void cleanup();
    void registersAChannel();
    void refusesANilManager();
    void refusesANameThatIsUsed();
    void refusesWhatCannotBeRegistered_data();
    void refusesWhatCannotBeRegistered();
    void takesNoMoreChannelsThanItMay();
    void refusesViewers();
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
    void refusesWhatItsStateDoesNotAllow();
    void refusesToRecordForWhichItWasNotRegistered();
    void refusesWhatIsNotOffered();
    void changesItsSettings();
    void isRemovedByForce();
    void forgetsAManagerThatHasNoSuchObjectAnyMore();
    void forgetsAManagerThatCannotBeReached();
    void keepsNobodyWaitingForAManagerThatHangs();
    void closesTheRecordOfAManagerThatDies();
    void tellsItsManagersThatTheRecorderEnds();

private:
    struct Registered
    {
        IF_ZLK_c_Chan_var channel;
        QString id;
    };

    void begin(const ServiceHost::Options& options);
    QD_ZLK::IF_ZLK_c_ZLK_var entry() const { return m_recorder->entry(); }
    IF_ZLK_c_ChanMan_var managerAt(quint16 port) const;
    Registered enter(const char* name, const char* device = "");
    QString entering(const char* name, const char* device = "");
    void startRecording(const Registered& registered, int seconds = 0);
    void write(const QByteArray& datagram);
    void send(std::initializer_list<quint32> frames);
    qint64 storedBytes() const;
    std::shared_ptr<ZELKO_XML::ZELKO_RecordData> onlyRecord(const QString& device = QStringLiteral("D1"));
    bool isFinished(const QString& device = QStringLiteral("D1"));

    std::unique_ptr<ServiceRecorder> m_recorder;
    ChannelManager* m_manager = nullptr;
    PortableServer::ServantBase_var m_guard;
    QUdpSocket m_sender;
};

void TestChannelServant::begin(const ServiceHost::Options& options)
{
    m_recorder.reset();
    m_recorder = std::make_unique<ServiceRecorder>(ServiceRecorder::Fill(), options);
    m_manager = new ChannelManager;
    m_guard = m_manager;
    m_recorder->orb.publish(managerKey, m_manager);
    QTRY_VERIFY_WITH_TIMEOUT(m_recorder->isLoaded(), 30000);
}

void TestChannelServant::cleanup()
{
    m_manager->release();
    m_recorder.reset();
}

IF_ZLK_c_ChanMan_var TestChannelServant::managerAt(quint16 port) const
{
    const CORBA::Object_var object =
        m_recorder->orb.reference(QStringLiteral("corbaloc::1.2@127.1:%1/%2").arg(port).arg(managerKey));
    return IF_ZLK_c_ChanMan::_unchecked_narrow(object);
}

TestChannelServant::Registered TestChannelServant::enter(const char* name, const char* device)
{
    return onCallerThread([&] {
        CORBA::String_var id;
        const IF_ZLK_c_ChanMan_var manager = managerAt(m_recorder->orb.port());
        Registered result;
        result.channel = entry()->registerChannelEx(manager, QD_ZLK::RATE_16_KB, QD_ZLK::FORMAT_IQ16, true, false, name,
                                                    device, id.out());
        result.id = fromCorba(id.in());
        return result;
    });
}

QString TestChannelServant::entering(const char* name, const char* device)
{
    return endingOf([&] {
        CORBA::String_var id;
        const IF_ZLK_c_ChanMan_var manager = managerAt(m_recorder->orb.port());
        IF_ZLK_c_Chan_var(entry()->registerChannelEx(manager, QD_ZLK::RATE_16_KB, QD_ZLK::FORMAT_IQ16, true, false,
                                                     name, device, id.out()));
    });
}

void TestChannelServant::startRecording(const Registered& registered, int seconds)
{
    QCOMPARE(endingOf([&] { registered.channel->startRecording(seconds, toWideCorba("Aufnahme"), 0); }),
             QStringLiteral("done"));
    QTRY_VERIFY_WITH_TIMEOUT(m_manager->calls().contains("start"), 30000);
}

// A datagram may be lost, and one that comes twice is left out: each is sent until its samples are there.
void TestChannelServant::send(std::initializer_list<quint32> frames)
{
    for (const quint32 number : frames) {
        const qint64 before = storedBytes();
        const auto isStored = [&] {
            write(wire(frameOf(number)));
            return storedBytes() > before;
        };
        QTRY_VERIFY_WITH_TIMEOUT(isStored(), 30000);
    }
}

void TestChannelServant::write(const QByteArray& datagram)
{
    m_sender.writeDatagram(datagram, QHostAddress::LocalHost, m_manager->port());
}

// Of all records of both devices.
qint64 TestChannelServant::storedBytes() const
{
    qint64 bytes = 0;
    QDirIterator files(m_recorder->folder.path(), {QStringLiteral("*.dat")}, QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        bytes += QFileInfo(files.next()).size();
    }
    return bytes;
}

std::shared_ptr<ZELKO_XML::ZELKO_RecordData> TestChannelServant::onlyRecord(const QString& device)
{
    const QStringList ids = m_recorder->values(device).ids();
    return ids.size() == 1 ? m_recorder->values(device).record(ids.first()) : nullptr;
}

bool TestChannelServant::isFinished(const QString& device)
{
    const auto record = onlyRecord(device);
    return record && record->GetRecordStatus() == Status::Finished;
}

void TestChannelServant::registersAChannel()
{
    const Registered registered = enter("Antenne 1");
    QVERIFY(!registered.id.isEmpty());
    const auto same = onCallerThread([&] {
        const IF_ZLK_c_Chan_var found = entry()->getZelkoChannelInterface(toCorba(registered.id));
        return fromCorba(CORBA::String_var(found->getChannelID()).in());
    });
    QCOMPARE(same, registered.id);
    const auto byKey = m_recorder->remoteAs<IF_ZLK_c_Chan>(channelKey(registered.id.toStdString()));
    QCOMPARE(onCallerThread([&] { return fromCorba(CORBA::String_var(byKey->getChannelID()).in()); }), registered.id);
}

void TestChannelServant::refusesANilManager()
{
    const auto nobody = IF_ZLK_c_ChanMan::_nil();
    CORBA::String_var id;
    const QString expected = QStringLiteral("bad parameter");
    QCOMPARE(endingOf([&] {
                 IF_ZLK_c_Chan_var(entry()->registerChannel(nobody, QD_ZLK::RATE_1_MB, QD_ZLK::FORMAT_IQ16, true, true,
                                                            "x", id.out()));
             }),
             expected);
    QCOMPARE(endingOf([&] {
                 IF_ZLK_c_Chan_var(entry()->registerChannelEx(nobody, QD_ZLK::RATE_1_MB, QD_ZLK::FORMAT_IQ16, true,
                                                              true, "x", "", id.out()));
             }),
             expected);
    QCOMPARE(endingOf([&] {
                 IF_ZLK_c_Chan_var(entry()->registerReceiverChannel(nobody, QD_ZLK::RATE_1_MB, QD_ZLK::FORMAT_IQ16,
                                                                    true, true, "x", "", id.out(), QD_ZLK::ENDPOINT_UDP,
                                                                    "r"));
             }),
             expected);
    const Registered registered = enter("Antenne 1");
    QCOMPARE(endingOf([&] { registered.channel->setCallBackInterface(nobody); }), expected);
    QCOMPARE(m_recorder->host->channels().count(), 1);
}

void TestChannelServant::refusesANameThatIsUsed()
{
    const Registered first = enter("Antenne 1");
    QCOMPARE(entering("Antenne 1"), QStringLiteral("in use"));
    QCOMPARE(endingOf([&] { first.channel->removeChannel(); }), QStringLiteral("done"));
    QCOMPARE(entering("Antenne 1"), QStringLiteral("done"));
}

void TestChannelServant::refusesWhatCannotBeRegistered_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("device");
    QTest::newRow("an empty name") << ""
                                   << "";
    QTest::newRow("a name of two lines") << "a\nb"
                                         << "";
    QTest::newRow("a name of blanks") << "  "
                                      << "";
    QTest::newRow("a very long name") << QString(100'000, QLatin1Char('a')) << "";
    QTest::newRow("a device that is none") << "a"
                                           << "D3";
    QTest::newRow("a path in place of a device") << "a"
                                                 << "../D1";
}

void TestChannelServant::refusesWhatCannotBeRegistered()
{
    QFETCH(QString, name);
    QFETCH(QString, device);
    QCOMPARE(entering(name.toStdString().c_str(), device.toStdString().c_str()), QStringLiteral("bad parameter"));
    QCOMPARE(m_recorder->host->channels().count(), 0);
}

void TestChannelServant::takesNoMoreChannelsThanItMay()
{
    ServiceHost::Options options;
    options.channels.maxChannels = 2;
    begin(options);
    enter("1");
    enter("2");
    QCOMPARE(entering("3"), QStringLiteral("no resources"));
}

void TestChannelServant::refusesViewers()
{
    const Registered registered = enter("1");
    m_recorder->role = Role::Viewer;
    QCOMPARE(entering("2"), QStringLiteral("not permitted"));
    QCOMPARE(endingOf([&] { registered.channel->startRecording(0, toWideCorba("x"), 0); }),
             QStringLiteral("NO_PERMISSION"));
    QCOMPARE(endingOf([&] { registered.channel->removeChannel(); }), QStringLiteral("NO_PERMISSION"));
    QCOMPARE(endingOf([&] { registered.channel->setDataRateClass(QD_ZLK::RATE_1_MB); }),
             QStringLiteral("not permitted"));
    QCOMPARE(endingOf([&] { registered.channel->removeChannelForced(); }), QStringLiteral("NO_PERMISSION"));
    QCOMPARE(endingOf([&] { CORBA::String_var(registered.channel->getChannelID()); }), QStringLiteral("NO_PERMISSION"));
    QVERIFY(m_manager->calls().isEmpty());
    QCOMPARE(m_recorder->host->channels().count(), 1);
}

void TestChannelServant::recordsDatagrams()
{
    const Registered registered = enter("Antenne 1");
    startRecording(registered);
    send({0, 1, 2});
    QTRY_VERIFY_WITH_TIMEOUT(m_manager->calls().contains("started"), 30000);
    QTRY_VERIFY_WITH_TIMEOUT(onlyRecord() != nullptr, 30000);
    QCOMPARE(endingOf([&] { registered.channel->stopRecording(toWideCorba("")); }), QStringLiteral("done"));
    QTRY_VERIFY_WITH_TIMEOUT(isFinished(), 30000);
    const auto record = onlyRecord();
    const QString id = record->GetRecordID();
    QTRY_COMPARE_WITH_TIMEOUT(
        m_manager->calls(),
        QStringList({"available D1", "connect", "start", "started", "stop", "disconnect", "finished D1 " + id}), 30000);
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

void TestChannelServant::recordsAStream()
{
    m_manager->answers.kind = QD_ZLK::ENDPOINT_TCP;
    startRecording(enter("Antenne 1"));
    QTcpSocket socket;
    socket.connectToHost(QHostAddress::LocalHost, m_manager->port());
    QTRY_COMPARE_WITH_TIMEOUT(socket.state(), QAbstractSocket::ConnectedState, 30000);
    QByteArray bytes;
    for (quint32 number = 0; number < 100; ++number) {
        bytes += wire(frameOf(number, 4000));
    }
    socket.write(bytes);
    QTRY_COMPARE_WITH_TIMEOUT(socket.bytesToWrite(), 0, 30000);
    socket.disconnectFromHost(); // the end of the stream is the end of the recording
    QTRY_VERIFY_WITH_TIMEOUT(isFinished(), 30000);
    QCOMPARE(onlyRecord()->GetSize(), 400'000U);
    QTRY_VERIFY_WITH_TIMEOUT(m_manager->calls().contains("stopping"), 30000);
}

void TestChannelServant::recordsOnTheDeviceThatIsWanted()
{
    const Registered preferred = enter("1", "D2");
    startRecording(preferred);
    QCOMPARE(m_manager->calls().first(), QStringLiteral("available D2"));
    QCOMPARE(endingOf([&] { preferred.channel->stopRecording(toWideCorba("")); }), QStringLiteral("done"));
    QTRY_VERIFY_WITH_TIMEOUT(m_manager->calls().last().startsWith("finished D2"), 30000);

    const Registered allowed = enter("2");
    QD_ZLK::StringSeqSeq devices;
    devices.length(1);
    devices[0].length(2);
    devices[0][0] = "D9";
    devices[0][1] = "D2";
    QCOMPARE(endingOf([&] { allowed.channel->setZelkoDevices(devices); }), QStringLiteral("done"));
    QCOMPARE(endingOf([&] { allowed.channel->startRecording(0, toWideCorba("x"), 0); }), QStringLiteral("done"));
    QTRY_COMPARE_WITH_TIMEOUT(m_manager->calls().count("available D2"), 2, 30000);
    devices[0].length(1);
    QCOMPARE(endingOf([&] { allowed.channel->setZelkoDevices(devices); }), QStringLiteral("no device"));
    devices[0].length(100'000);
    QCOMPARE(endingOf([&] { allowed.channel->setZelkoDevices(devices); }), QStringLiteral("failed"));
}

void TestChannelServant::takesNoDataOfStrangers()
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
    QTRY_VERIFY_WITH_TIMEOUT(m_manager->calls().contains("started"), 30000);
    QCOMPARE(endingOf([&] { registered.channel->stopRecording(toWideCorba("")); }), QStringLiteral("done"));
    QTRY_VERIFY_WITH_TIMEOUT(isFinished(), 30000);
    QCOMPARE(onlyRecord()->GetSize(), 1200U);
}

void TestChannelServant::endsWithTheLastFrame()
{
    startRecording(enter("Antenne 1"));
    send({0});
    ChannelFrame last = frameOf(1);
    last.isLast = true;
    const auto isOver = [&] {
        write(wire(last));
        return isFinished();
    };
    QTRY_VERIFY_WITH_TIMEOUT(isOver(), 30000);
    QCOMPARE(onlyRecord()->GetSize(), 800U);
}

void TestChannelServant::endsWhenItsTimeIsOver()
{
    startRecording(enter("Antenne 1"), 1);
    send({0});
    QTRY_VERIFY_WITH_TIMEOUT(isFinished(), 30000);
    QTRY_VERIFY_WITH_TIMEOUT(m_manager->calls().last().startsWith("finished"), 30000);
}

void TestChannelServant::endsWhenAClientWantsTheRecordAtRest()
{
    startRecording(enter("Antenne 1"));
    send({0});
    QTRY_VERIFY_WITH_TIMEOUT(onlyRecord() != nullptr, 30000);
    QCOMPARE(onlyRecord()->GetRecordStatus(), Status::Recording);
    m_recorder->values("D1").command<Value<QString>>("SetRecordIdle")->SetValue(onlyRecord()->GetRecordID(), nullptr);
    QTRY_VERIFY_WITH_TIMEOUT(isFinished(), 30000);
    QTRY_VERIFY_WITH_TIMEOUT(m_manager->calls().last().startsWith("finished"), 30000);
}

void TestChannelServant::givesTheRecordTheNameItGotInTheEnd()
{
    const Registered registered = enter("Antenne 1");
    startRecording(registered);
    send({0});
    QTRY_VERIFY_WITH_TIMEOUT(onlyRecord() != nullptr, 30000);
    QCOMPARE(endingOf([&] { registered.channel->stopRecording(toWideCorba("Größe")); }), QStringLiteral("done"));
    QTRY_VERIFY_WITH_TIMEOUT(onlyRecord() && onlyRecord()->GetRecordName() == QStringLiteral("Größe"), 30000);
}

void TestChannelServant::recordsAgain()
{
    const Registered registered = enter("Antenne 1");
    for (int round = 1; round <= 3; ++round) {
        QCOMPARE(endingOf([&] { registered.channel->startRecording(0, toWideCorba("x"), 0); }), QStringLiteral("done"));
        QTRY_COMPARE_WITH_TIMEOUT(m_manager->calls().count("start"), round, 30000);
        send({0});
        QTRY_COMPARE_WITH_TIMEOUT(m_manager->calls().count("started"), round, 30000);
        QCOMPARE(endingOf([&] { registered.channel->stopRecording(toWideCorba("")); }), QStringLiteral("done"));
        QTRY_VERIFY_WITH_TIMEOUT(m_manager->calls().last().startsWith("finished"), 30000);
        QTRY_COMPARE_WITH_TIMEOUT(m_recorder->values("D1").ids().size(), round, 30000);
    }
}

void TestChannelServant::tellsTheManagerWhatWentWrong_data()
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

void TestChannelServant::tellsTheManagerWhatWentWrong()
{
    using Change = std::function<void(ChannelManager::Answers&)>;
    QFETCH(Change, change);
    QFETCH(QString, last);
    change(m_manager->answers);
    const Registered registered = enter("Antenne 1");
    QCOMPARE(endingOf([&] { registered.channel->startRecording(0, toWideCorba("x"), 0); }), QStringLiteral("done"));
    QTRY_VERIFY_WITH_TIMEOUT(!m_manager->calls().isEmpty() && m_manager->calls().last() == last, 30000);
    QCOMPARE(m_manager->calls().filter("fault").size(), 1);
    QTEST(int(m_manager->calls().count("disconnect")), "disconnects");
    QCOMPARE(endingOf([&] { registered.channel->stopRecording(toWideCorba("")); }), QStringLiteral("not recording"));
}

void TestChannelServant::leavesNoRecordWithoutData()
{
    m_manager->answers.namesEndpoint = false;
    const Registered registered = enter("Antenne 1");
    startRecording(registered);
    QCOMPARE(endingOf([&] { registered.channel->stopRecording(toWideCorba("x")); }), QStringLiteral("done"));
    QTRY_COMPARE_WITH_TIMEOUT(m_manager->calls().last(), QStringLiteral("finished D1 "), 30000);
    QVERIFY(m_recorder->values("D1").ids().isEmpty());
}

void TestChannelServant::refusesWhatItsStateDoesNotAllow()
{
    const Registered registered = enter("Antenne 1");
    IF_ZLK_c_Chan_var channel = registered.channel;
    QCOMPARE(endingOf([&] { channel->stopRecording(toWideCorba("")); }), QStringLiteral("not recording"));
    startRecording(registered);
    QCOMPARE(endingOf([&] { channel->startRecording(0, toWideCorba("x"), 0); }), QStringLiteral("busy"));
    QCOMPARE(endingOf([&] { channel->removeChannel(); }), QStringLiteral("busy"));
    QCOMPARE(endingOf([&] { channel->setRecordFlag(false); }), QStringLiteral("busy"));
    QCOMPARE(endingOf([&] { channel->setDataFormat(QD_ZLK::FORMAT_IQ8); }), QStringLiteral("no resources"));
    QCOMPARE(endingOf([&] { channel->setDataRateClass(QD_ZLK::RATE_1_MB); }), QStringLiteral("no resources"));
    QCOMPARE(endingOf([&] { channel->setRequestedSampleRate(-1, 16); }), QStringLiteral("bad parameter"));
    QCOMPARE(endingOf([&] { channel->removeChannelForced(); }), QStringLiteral("done"));
    QTRY_COMPARE_WITH_TIMEOUT(m_recorder->host->channels().count(), 0, 30000);
    const QString ending = endingOf([&] { channel->removeChannel(); });
    QVERIFY2(ending == "removed" || ending == "OBJECT_NOT_EXIST", qPrintable(ending));
}

void TestChannelServant::refusesToRecordForWhichItWasNotRegistered()
{
    const Registered registered = enter("Antenne 1");
    IF_ZLK_c_Chan_var channel = registered.channel;
    QCOMPARE(endingOf([&] { channel->setRecordFlag(false); }), QStringLiteral("done"));
    QCOMPARE(endingOf([&] { channel->startRecording(0, toWideCorba("x"), 0); }), QStringLiteral("failed"));
    QCOMPARE(endingOf([&] { channel->setRecordFlag(true); }), QStringLiteral("done"));
    QCOMPARE(endingOf([&] { channel->startRecording(-1, toWideCorba("x"), 0); }), QStringLiteral("failed"));
    QCOMPARE(endingOf([&] { channel->startRecording(0, toWideCorba("x"), 0); }), QStringLiteral("done"));
}

void TestChannelServant::refusesWhatIsNotOffered()
{
    const Registered registered = enter("Antenne 1");
    IF_ZLK_c_Chan_var channel = registered.channel;
    QCOMPARE(endingOf([&] { channel->startRecording(0, toWideCorba("x"), 10); }), QStringLiteral("failed"));
    QCOMPARE(endingOf([&] { channel->startReplaying("D1", "r1", QD_ZLK::RATE_1_MB, 0, 0, 100); }),
             QStringLiteral("NO_IMPLEMENT"));
    QCOMPARE(endingOf([&] { channel->setAdditionalDataRateClass(QD_ZLK::RATE_1_MB); }), QStringLiteral("NO_IMPLEMENT"));
}

void TestChannelServant::changesItsSettings()
{
    const Registered registered = enter("Antenne 1");
    const Registered other = enter("Antenne 2");
    IF_ZLK_c_Chan_var channel = registered.channel;
    QCOMPARE(endingOf([&] { channel->setDataRateClass(QD_ZLK::RATE_64_MB); }), QStringLiteral("done"));
    QCOMPARE(endingOf([&] { channel->setDataFormat(QD_ZLK::FORMAT_IQ8); }), QStringLiteral("done"));
    QCOMPARE(endingOf([&] { channel->setRequestedSampleRate(48'000, 16); }), QStringLiteral("done"));
    QCOMPARE(endingOf([&] { channel->setRequestedSampleRate(-1, 16); }), QStringLiteral("bad parameter"));
    QCOMPARE(endingOf([&] { channel->setReplayFlag(true); }), QStringLiteral("done"));
    QCOMPARE(endingOf([&] { channel->setName("Antenne 2"); }), QStringLiteral("done")); // keeps its own
    const auto* const settings = &m_recorder->host->channels().find(registered.id)->settings();
    QCOMPARE(settings->name, QStringLiteral("Antenne 1"));
    QCOMPARE(endingOf([&] { channel->setName("Antenne 3"); }), QStringLiteral("done"));
    QCOMPARE(settings->name, QStringLiteral("Antenne 3"));
    QCOMPARE(settings->dataRate, ChannelWish::DataRate::UpTo64MB);
    QCOMPARE(settings->format, ChannelWish::DataFormat::IQ8);
    QVERIFY(settings->canReplay);
    QCOMPARE(endingOf([&] { channel->errorOccured(QD_ZLK::FAULT_DEVICE); }), QStringLiteral("done"));
    QCOMPARE(endingOf([&] { channel->channelError("no\nantenna"); }), QStringLiteral("done"));
    QCOMPARE(endingOf([&] { channel->DataTransferStarted(); }), QStringLiteral("done"));
    QCOMPARE(endingOf([&] { channel->DataTransferStopped(); }), QStringLiteral("done"));
}

void TestChannelServant::isRemovedByForce()
{
    const Registered registered = enter("Antenne 1");
    startRecording(registered);
    send({0});
    QTRY_VERIFY_WITH_TIMEOUT(onlyRecord() != nullptr, 30000);
    QCOMPARE(endingOf([&] { registered.channel->removeChannelForced(); }), QStringLiteral("done"));
    QTRY_COMPARE_WITH_TIMEOUT(m_manager->calls().last(), QStringLiteral("removed"), 30000);
    QVERIFY(isFinished());
    QTRY_COMPARE_WITH_TIMEOUT(m_recorder->host->channels().count(), 0, 30000);
}

void TestChannelServant::forgetsAManagerThatHasNoSuchObjectAnyMore()
{
    ServiceHost::Options options;
    options.channels.channel.pingInterval = std::chrono::milliseconds(20);
    begin(options);
    enter("Antenne 1");
    m_recorder->orb.withdraw(managerKey);
    QTRY_COMPARE_WITH_TIMEOUT(m_recorder->host->channels().count(), 0, 30000);
}

void TestChannelServant::forgetsAManagerThatCannotBeReached()
{
    ServiceHost::Options options;
    options.channels.channel.pingInterval = std::chrono::milliseconds(20);
    begin(options);
    FaultProxy proxy(m_recorder->orb.port());
    onCallerThread([&] {
        CORBA::String_var id;
        const IF_ZLK_c_ChanMan_var manager = managerAt(proxy.port());
        IF_ZLK_c_Chan_var(
            entry()->registerChannel(manager, QD_ZLK::RATE_1_MB, QD_ZLK::FORMAT_IQ16, true, true, "1", id.out()));
        return 0;
    });
    QCOMPARE(m_recorder->host->channels().count(), 1);
    proxy.setTarget(1); // where nobody listens
    proxy.cut();
    QTRY_COMPARE_WITH_TIMEOUT(m_recorder->host->channels().count(), 0, 30000);
}

void TestChannelServant::keepsNobodyWaitingForAManagerThatHangs()
{
    ServiceHost::Options options;
    options.channels.channel.callLimit = std::chrono::milliseconds(500);
    options.channels.channel.pingInterval = std::chrono::milliseconds(20);
    begin(options);
    m_manager->answers.hangs = true;
    FaultProxy proxy(m_recorder->orb.port());
    const Registered hanging = onCallerThread([&] {
        CORBA::String_var id;
        Registered result;
        const IF_ZLK_c_ChanMan_var manager = managerAt(proxy.port());
        result.channel =
            entry()->registerChannel(manager, QD_ZLK::RATE_1_MB, QD_ZLK::FORMAT_IQ16, true, true, "1", id.out());
        result.id = fromCorba(id.in());
        return result;
    });
    QCOMPARE(endingOf([&] { hanging.channel->startRecording(0, toWideCorba("x"), 0); }), QStringLiteral("done"));
    proxy.setFrozen(true); // no sign of life comes through either
    QCOMPARE(endingOf([&] { CORBA::String_var(entry()->getWorkstationName()); }), QStringLiteral("done"));
    QTRY_COMPARE_WITH_TIMEOUT(m_recorder->host->channels().count(), 0, 30000);
}

void TestChannelServant::closesTheRecordOfAManagerThatDies()
{
    ServiceHost::Options options;
    options.channels.channel.pingInterval = std::chrono::milliseconds(20);
    begin(options);
    startRecording(enter("Antenne 1"));
    send({0, 1});
    QTRY_VERIFY_WITH_TIMEOUT(onlyRecord() != nullptr, 30000);
    m_recorder->orb.withdraw(managerKey);
    QTRY_VERIFY_WITH_TIMEOUT(isFinished(), 30000);
    QCOMPARE(onlyRecord()->GetSize(), 800U);
    QTRY_COMPARE_WITH_TIMEOUT(m_recorder->host->channels().count(), 0, 30000);
}

void TestChannelServant::tellsItsManagersThatTheRecorderEnds()
{
    ServiceHost::Options options;
    options.channels.farewell = std::chrono::seconds(30);
    begin(options);
    startRecording(enter("Antenne 1"));
    enter("Antenne 2");
    send({0, 1});
    QTRY_VERIFY_WITH_TIMEOUT(onlyRecord() != nullptr, 30000);
    const QString id = onlyRecord()->GetRecordID();
    m_recorder->host.reset();
    QCOMPARE(m_manager->calls().count("going down"), 2);
    QString error;
    const RecordPointer stored = DeviceStore(m_recorder->deviceFolder("D1")).read(id, &error);
    QVERIFY2(stored, qPrintable(error));
    QCOMPARE(stored->GetRecordStatus(), Status::Finished);
}

QTEST_GUILESS_MAIN(TestChannelServant)
#include "tst_channelservant.moc"
