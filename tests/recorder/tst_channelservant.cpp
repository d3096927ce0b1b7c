#include <channeltest.h>
#include <processlog.h>

using namespace ZelkoRecorder;
using namespace ZelkoTest;
using QD_ZLK::IF_ZLK_c_Chan;
using QD_ZLK::IF_ZLK_c_Chan_var;
using QD_ZLK::IF_ZLK_c_ChanMan;
using ZelkoCommon::fromCorba;
using ZelkoCommon::Role;
using ZelkoCommon::toCorba;
using ZelkoCommon::toWideCorba;

namespace {

using Operation = std::function<void(IF_ZLK_c_Chan_var&)>;

// An operation of a channel, with the word that a refusal for want of rights ends with, and what it ends with where the
// rights are there and the channel is at rest.
struct ChannelOperation
{
    const char* name;
    Operation call;
    const char* refusal;
    const char* ending;
};

QD_ZLK::StringSeqSeq listOfDevices(CORBA::ULong count)
{
    QD_ZLK::StringSeqSeq devices;
    devices.length(1);
    devices[0].length(count);
    for (CORBA::ULong i = 0; i < count; ++i) {
        devices[0][i] = "D1";
    }
    return devices;
}

// All of them, those that look at their arguments with bad ones too.
const ChannelOperation operations[] = {
    {"errorOccured", [](auto& c) { c->errorOccured(QD_ZLK::FAULT_DEVICE); }, "NO_PERMISSION", "done"},
    {"removeChannel", [](auto& c) { c->removeChannel(); }, "NO_PERMISSION", "done"},
    {"removeChannelForced", [](auto& c) { c->removeChannelForced(); }, "NO_PERMISSION", "done"},
    {"setCallBackInterface without a manager", [](auto& c) { c->setCallBackInterface(IF_ZLK_c_ChanMan::_nil()); },
     "not permitted", "bad parameter"},
    {"setDataRateClass", [](auto& c) { c->setDataRateClass(QD_ZLK::RATE_1_MB); }, "not permitted", "done"},
    {"setRequestedSampleRate", [](auto& c) { c->setRequestedSampleRate(48'000, 16); }, "not permitted", "done"},
    {"setRequestedSampleRate below 0", [](auto& c) { c->setRequestedSampleRate(-1, 16); }, "not permitted",
     "bad parameter"},
    {"setDataFormat", [](auto& c) { c->setDataFormat(QD_ZLK::FORMAT_IQ8); }, "not permitted", "done"},
    {"setRecordFlag", [](auto& c) { c->setRecordFlag(true); }, "NO_PERMISSION", "done"},
    {"setReplayFlag", [](auto& c) { c->setReplayFlag(false); }, "NO_PERMISSION", "done"},
    {"setName", [](auto& c) { c->setName("new"); }, "NO_PERMISSION", "done"},
    {"getChannelID", [](auto& c) { CORBA::String_var(c->getChannelID()); }, "NO_PERMISSION", "done"},
    {"startRecording", [](auto& c) { c->startRecording(0, toWideCorba("x"), 0); }, "NO_PERMISSION", "done"},
    {"startRecording for less than no time", [](auto& c) { c->startRecording(-1, toWideCorba("x"), 0); },
     "NO_PERMISSION", "failed"},
    {"startRecording in a loop", [](auto& c) { c->startRecording(0, toWideCorba("x"), 1); }, "NO_PERMISSION", "failed"},
    {"DataTransferStarted", [](auto& c) { c->DataTransferStarted(); }, "NO_PERMISSION", "done"},
    {"stopRecording", [](auto& c) { c->stopRecording(toWideCorba("x")); }, "NO_PERMISSION", "not recording"},
    {"DataTransferStopped", [](auto& c) { c->DataTransferStopped(); }, "NO_PERMISSION", "done"},
    {"startReplaying", [](auto& c) { c->startReplaying("D1", "r1", QD_ZLK::RATE_1_MB, 0, 0, 100); }, "NO_PERMISSION",
     "NO_IMPLEMENT"},
    {"channelError", [](auto& c) { c->channelError("no antenna"); }, "NO_PERMISSION", "done"},
    {"setZelkoDevices", [](auto& c) { c->setZelkoDevices(listOfDevices(1)); }, "NO_PERMISSION", "done"},
    {"setZelkoDevices with too many", [](auto& c) { c->setZelkoDevices(listOfDevices(1001)); }, "NO_PERMISSION",
     "failed"},
    {"setAdditionalDataRateClass", [](auto& c) { c->setAdditionalDataRateClass(QD_ZLK::RATE_1_MB); }, "NO_PERMISSION",
     "NO_IMPLEMENT"},
};

} // namespace

// What a channel and its entry answer to whoever calls them.
class TestChannelServant : public ChannelTest
{
    Q_OBJECT

private Q_SLOTS:
    void init() { begin(); }
    void cleanup() { end(); }
    void registersAChannel();
    void refusesANilManager();
    void refusesANameThatIsUsed();
    void refusesWhatCannotBeRegistered_data();
    void refusesWhatCannotBeRegistered();
    void takesNoMoreChannelsThanItMay();
    void refusesViewers();
    void leavesItsOperationsToOperators_data();
    void leavesItsOperationsToOperators();
    void letsOperatorsSetTheManager();
    void refusesWhatItsStateDoesNotAllow();
    void refusesToRecordForWhichItWasNotRegistered();
    void refusesWhatIsNotOffered();
    void changesItsSettings();
};

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

void TestChannelServant::leavesItsOperationsToOperators_data()
{
    QTest::addColumn<int>("number");
    for (std::size_t i = 0; i < std::size(operations); ++i) {
        QTest::newRow(operations[i].name) << static_cast<int>(i);
    }
}

void TestChannelServant::leavesItsOperationsToOperators()
{
    QFETCH(const int, number);
    const ChannelOperation& operation = operations[number];
    IF_ZLK_c_Chan_var channel = enter("Antenne 1").channel;
    m_recorder->role = Role::Viewer;
    {
        const ProcessLog log;
        QCOMPARE(endingOf([&] { operation.call(channel); }), QString(operation.refusal));
        const QStringList lines = log.lines().filter(QStringLiteral("refused: "));
        QCOMPARE(lines.size(), 1);
        QVERIFY2(lines.first().contains("user \"anna\" (viewer)"), qPrintable(lines.first()));
        QVERIFY2(lines.first().endsWith("may not use channels"), qPrintable(lines.first()));
    }
    QVERIFY(m_manager->calls().isEmpty());
    QCOMPARE(m_recorder->host->channels().count(), 1);
    m_recorder->role = Role::Operator;
    QCOMPARE(endingOf([&] { operation.call(channel); }), QString(operation.ending));
}

void TestChannelServant::letsOperatorsSetTheManager()
{
    const Registered registered = enter("Antenne 1");
    const QD_ZLK::IF_ZLK_c_ChanMan_var manager = m_published->reference();
    m_recorder->role = Role::Viewer;
    QCOMPARE(endingOf([&] { registered.channel->setCallBackInterface(manager); }), QStringLiteral("not permitted"));
    m_recorder->role = Role::Operator;
    QCOMPARE(endingOf([&] { registered.channel->setCallBackInterface(manager); }), QStringLiteral("done"));
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
    QTRY_COMPARE_WITH_TIMEOUT(m_recorder->host->channels().count(), 0, patience);
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
    QCOMPARE(endingOf([&] { channel->errorOccured(QD_ZLK::FAULT_DEVICE); }), QStringLiteral("done"));
    QCOMPARE(endingOf([&] { channel->channelError("no\nantenna"); }), QStringLiteral("done"));
    QCOMPARE(endingOf([&] { channel->DataTransferStarted(); }), QStringLiteral("done"));
    QCOMPARE(endingOf([&] { channel->DataTransferStopped(); }), QStringLiteral("done"));
}

QTEST_GUILESS_MAIN(TestChannelServant)
#include "tst_channelservant.moc"
