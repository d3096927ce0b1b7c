#include <callending.h>
#include <servicerecorder.h>

#include <zelkobase/data/zelko_recorddata.h>
#include <zelkobase/orb/corbacall.h>
#include <zelkobase/service/recorderservice.h>

#include <QSysInfo>
#include <QTest>

using namespace ZelkoRecorder;
using namespace ZelkoTest;
using QD_ZLK::IF_ZLK_c_ZLK_var;
using ZelkoCommon::fromCorba;
using ZelkoCommon::RecorderService;
using ZelkoCommon::Role;
using ZelkoCommon::ServiceStatus;
using ZelkoCommon::toCorba;

namespace {

ZELKO_XML::ZELKO_RecordData richRecord(const QString& id)
{
    ZELKO_XML::ZELKO_RecordData record = finishedRecord(id);
    record.SetRecordName(QStringLiteral("Größe 名 \U0001F4E1"));
    ZELKO_XML::BookmarkEntry bookmark;
    bookmark.SetTimestamp(10'500'000);
    bookmark.SetBookmark(QStringLiteral("Anfang"));
    record.SetBookmarkEntry({bookmark});
    ZELKO_XML::HistoryEntry comment;
    comment.SetTimestamp(12'000'000);
    comment.SetHistoryEntry(QStringLiteral("gehört"));
    record.SetHistoryEntry({comment});
    return record;
}

} // namespace

class TestZlkServant : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { m_recorder.reset(); }
    void namesItsDevices();
    void mapsDevicesToAddresses();
    void refusesDevicesThatAreNone_data();
    void refusesDevicesThatAreNone();
    void tellsOfADevice();
    void tellsTheMetaDataOfARecord();
    void refusesRecordsThatAreNone_data();
    void refusesRecordsThatAreNone();
    void listsAllRecords();
    void refusesAListThatNoAnswerHolds();
    void namesItsWorkstation();
    void givesItsInterfaces();
    void isFoundAgainAfterARestart();
    void refusesExportsWithoutAFolderForThem();
    void exportsAndCancels();
    void mayBeLookedAtByViewersOnly();
    void answersWhileAnotherClientWaits();
    void givesUpWhenTheRecorderIsBusy();
    void tellsThoseThatWaitThatItEnds();

private:
    IF_ZLK_c_ZLK_var entry() const { return m_recorder->entry(); }
    ZelkoCommon::ServiceAddress address() const { return {{}, QStringLiteral("127.1"), m_recorder->orb.port()}; }

    // How a client understands what the call ends with.
    ServiceStatus statusOf(const std::function<void(QD_ZLK::IF_ZLK_c_ZLK_ptr)>& call) const
    {
        return onCallerThread([&] {
            RecorderService service([this] { return address(); });
            service.setLimit(std::chrono::seconds(60));
            return static_cast<ServiceStatus>(service.ask([&](QD_ZLK::IF_ZLK_c_ZLK_ptr root) {
                call(root);
                return 0UL;
            }));
        });
    }
    ServiceStatus statusOfExport(const std::string& target) const
    {
        return statusOf([&](QD_ZLK::IF_ZLK_c_ZLK_ptr root) {
            CORBA::String_var(root->exportRecording("D1", "r1", target.c_str()));
        });
    }
    ServiceStatus statusOfCancel(const QString& id) const
    {
        return statusOf([&](QD_ZLK::IF_ZLK_c_ZLK_ptr root) { root->cancelExport(toCorba(id), true); });
    }

    std::unique_ptr<ServiceRecorder> m_recorder;
};

void TestZlkServant::init()
{
    m_recorder = ServiceRecorder::loaded([](const QString& folder) {
        storeRecord(folder, richRecord("r1"), 4000);
        storeRecord(folder, finishedRecord("r2"), 4000);
    });
    QVERIFY(m_recorder);
}

void TestZlkServant::namesItsDevices()
{
    const QStringList devices = onCallerThread([this] {
        QD_ZLK::StringSeq_var ids = entry()->getAllDevices();
        QStringList result;
        for (CORBA::ULong i = 0; i < ids->length(); ++i) {
            result << fromCorba(static_cast<const char*>(ids[i]));
        }
        return result;
    });
    QCOMPARE(devices, QStringList({"D1", "D2"}));
}

void TestZlkServant::mapsDevicesToAddresses()
{
    const auto texts = onCallerThread([this] {
        const CORBA::String_var address = entry()->mapDeviceIdToAddress("D2");
        const CORBA::String_var device = entry()->mapAddressToDeviceId("192.0.2.1");
        return QStringList{fromCorba(address.in()), fromCorba(device.in())};
    });
    QCOMPARE(texts, QStringList({"192.0.2.1", "D1"})); // the first one of several at an address
}

void TestZlkServant::refusesDevicesThatAreNone_data()
{
    QTest::addColumn<QString>("device");
    QTest::newRow("an unknown one") << "D3";
    QTest::newRow("an empty text") << "";
    QTest::newRow("a path upwards") << "../D1";
    QTest::newRow("a path below a device") << "D1/Admin";
    QTest::newRow("the same in other letters") << "d1";
    QTest::newRow("a very long text") << QString(100'000, QLatin1Char('D'));
}

void TestZlkServant::refusesDevicesThatAreNone()
{
    QFETCH(QString, device);
    const std::string id = device.toStdString();
    const char* const text = id.c_str();
    CORBA::String_var name;
    CORBA::Long state = 0;
    const QString expected = QStringLiteral("unknown device");
    QCOMPARE(endingOf([&] { CORBA::String_var(entry()->mapDeviceIdToAddress(text)); }), expected);
    QCOMPARE(endingOf([&] { CORBA::String_var(entry()->mapAddressToDeviceId(text)); }), expected);
    QCOMPARE(endingOf([&] { entry()->getDeviceInformation(text, name.out(), state); }), expected);
    QCOMPARE(endingOf([&] { QD_ZLK::RecordMetaData_var(entry()->getMetaDataForRecord(text, "r1")); }), expected);
    QCOMPARE(endingOf([&] { QD_ZLK::RecordInfoSeq_var(entry()->getAllRecords(text)); }), expected);
    QCOMPARE(endingOf([&] { CORBA::String_var(entry()->exportRecording(text, "r1", "/")); }), expected);
    QVERIFY(onCallerThread(
        [&] { return CORBA::is_nil(QD_ZLK::IF_ZELKO_Replay_var(entry()->getZelkoReplayInterface(text))); }));
}

void TestZlkServant::tellsOfADevice()
{
    const auto [name, state] = onCallerThread([this] {
        CORBA::String_var deviceName;
        CORBA::Long deviceState = 0;
        entry()->getDeviceInformation("D1", deviceName.out(), deviceState);
        return std::pair(fromCorba(deviceName.in()), deviceState);
    });
    QCOMPARE(name, QStringLiteral("D1"));
    QCOMPARE(state, static_cast<CORBA::Long>(DeviceDirectory::DeviceState::Ready));
}

void TestZlkServant::tellsTheMetaDataOfARecord()
{
    auto data =
        onCallerThread([this] { return QD_ZLK::RecordMetaData_var(entry()->getMetaDataForRecord("D1", "r1")); });
    QCOMPARE(fromCorba(static_cast<const char*>(data->deviceId)), QStringLiteral("D1"));
    QCOMPARE(fromCorba(static_cast<const char*>(data->recordId)), QStringLiteral("r1"));
    QCOMPARE(fromCorba(static_cast<const CORBA::WChar*>(data->recordName)), richRecord("r1").GetRecordName());
    QCOMPARE(data->startTime, 10'000'000);
    QCOMPARE(data->stopTime, 11'000'000);
    QCOMPARE(data->format, QD_ZLK::FORMAT_IQ16);
    QCOMPARE(data->size, 4000);
    QCOMPARE(data->stopPosition, 4000);
    QCOMPARE(data->tunerFrequency, 145'000'000);
    QCOMPARE(data->sampleRate, 1000);
    QCOMPARE(data->bandwidth, 800);
    QCOMPARE(data->indexEntryCount, 2);
    QCOMPARE(data->firstIndexTime, 10'000'000);
    QCOMPARE(data->lastIndexTime, 11'000'000);
}

void TestZlkServant::refusesRecordsThatAreNone_data()
{
    QTest::addColumn<QString>("record");
    QTest::newRow("an unknown one") << "r3";
    QTest::newRow("an empty text") << "";
    QTest::newRow("a path upwards") << "../D1/r1";
    QTest::newRow("the folder itself") << ".";
}

void TestZlkServant::refusesRecordsThatAreNone()
{
    QFETCH(QString, record);
    const std::string id = record.toStdString();
    QCOMPARE(endingOf([&] { QD_ZLK::RecordMetaData_var(entry()->getMetaDataForRecord("D1", id.c_str())); }),
             QStringLiteral("unknown record"));
}

void TestZlkServant::listsAllRecords()
{
    auto records = onCallerThread([this] { return QD_ZLK::RecordInfoSeq_var(entry()->getAllRecords("D1")); });
    QCOMPARE(records->length(), 2U);
    const QD_ZLK::RecordInfo& rich = records[0];
    QCOMPARE(fromCorba(static_cast<const char*>(rich.recordId)), QStringLiteral("r1"));
    QCOMPARE(fromCorba(static_cast<const CORBA::WChar*>(rich.recordName)), richRecord("r1").GetRecordName());
    QCOMPARE(rich.kind, QD_ZLK::KIND_FINISHED);
    QVERIFY(rich.deletable);
    QCOMPARE(rich.indexEntries.length(), 2U);
    QCOMPARE(rich.indexEntries[1].recordOffset, 4000);
    QCOMPARE(rich.bookmarks.length(), 1U);
    QCOMPARE(rich.bookmarks[0].position, 10'500'000);
    QCOMPARE(fromCorba(static_cast<const CORBA::WChar*>(rich.bookmarks[0].text)), QStringLiteral("Anfang"));
    QCOMPARE(rich.history.length(), 1U);
    QCOMPARE(rich.history[0].entryKey, 12'000'000);
    QCOMPARE(fromCorba(static_cast<const CORBA::WChar*>(rich.history[0].text)), QStringLiteral("gehört"));
    auto none = onCallerThread([this] { return QD_ZLK::RecordInfoSeq_var(entry()->getAllRecords("D2")); });
    QCOMPARE(none->length(), 0U);
}

void TestZlkServant::refusesAListThatNoAnswerHolds()
{
    ServiceHost::Options options;
    options.largestList = 500;
    m_recorder.reset();
    m_recorder = ServiceRecorder::loaded(
        [](const QString& folder) {
            storeRecord(folder, finishedRecord("r1"), 4000);
            storeRecord(folder, finishedRecord("r2"), 4000);
        },
        options);
    QVERIFY(m_recorder);
    QCOMPARE(endingOf([this] { QD_ZLK::RecordInfoSeq_var(entry()->getAllRecords("D1")); }), QStringLiteral("failed"));
    QCOMPARE(endingOf([this] { QD_ZLK::RecordInfoSeq_var(entry()->getAllRecords("D2")); }), QStringLiteral("done"));
    QCOMPARE(statusOf([](QD_ZLK::IF_ZLK_c_ZLK_ptr root) { QD_ZLK::RecordInfoSeq_var(root->getAllRecords("D1")); }),
             ServiceStatus::AnswerTooLarge);
}

void TestZlkServant::namesItsWorkstation()
{
    const QString name =
        onCallerThread([this] { return fromCorba(CORBA::String_var(entry()->getWorkstationName()).in()); });
    QCOMPARE(name, QSysInfo::machineHostName());
}

// The references that it gives are those by which the objects answer.
void TestZlkServant::givesItsInterfaces()
{
    const auto answers = onCallerThread([this] {
        const QD_ZLK::IF_ZELKO_Admin_var admin = entry()->getZelkoAdminInterface();
        const QD_ZLK::IF_ZELKO_Replay_var replay = entry()->getZelkoReplayInterface("D1");
        CORBA::LongLong time = 0;
        CORBA::Boolean synchronised = false;
        return std::pair(admin->getDeviceTime("D1", time, synchronised), replay->StopReplay("D1", "r3"));
    });
    QCOMPARE(answers.first, statusCode(ServiceStatus::None));
    QCOMPARE(answers.second, static_cast<CORBA::Long>(ServiceStatus::NotReplaying));
    QVERIFY(onCallerThread(
        [this] { return CORBA::is_nil(QD_ZLK::IF_ZLK_c_Chan_var(entry()->getZelkoChannelInterface("../Admin"))); }));
}

void TestZlkServant::isFoundAgainAfterARestart()
{
    const IF_ZLK_c_ZLK_var before = entry();
    QCOMPARE(endingOf([&] { CORBA::String_var(before->getWorkstationName()); }), QStringLiteral("done"));
    m_recorder->host.reset();
    QCOMPARE(endingOf([&] { CORBA::String_var(before->getWorkstationName()); }), QStringLiteral("OBJECT_NOT_EXIST"));
    m_recorder->serve();
    QCOMPARE(endingOf([&] { CORBA::String_var(before->getWorkstationName()); }), QStringLiteral("done"));
}

void TestZlkServant::refusesExportsWithoutAFolderForThem()
{
    QCOMPARE(endingOf([this] { CORBA::String_var(entry()->exportRecording("D1", "r1", "/tmp")); }),
             QStringLiteral("failed"));
    QCOMPARE(endingOf([this] { entry()->cancelExport("no export", true); }), QStringLiteral("failed"));
    QCOMPARE(statusOfExport("/tmp"), ServiceStatus::TargetNotAllowed);
    QCOMPARE(statusOfCancel("no export"), ServiceStatus::NoSuchExport);
}

void TestZlkServant::exportsAndCancels()
{
    m_recorder.reset();
    const QTemporaryDir target;
    m_recorder = ServiceRecorder::loaded([](const QString& folder) { storeRecord(folder, finishedRecord("r1"), 4000); },
                                         ServiceHost::Options(), QStringList{target.path()});
    QVERIFY(m_recorder);
    QStringList finished;
    QObject::connect(&m_recorder->recorder.exports(), &ExportQueue::finished, this,
                     [&](const QString& id) { finished << id; });
    const std::string path = target.path().toStdString();
    const QString id = onCallerThread(
        [&] { return fromCorba(CORBA::String_var(entry()->exportRecording("D1", "r1", path.c_str())).in()); });
    QVERIFY(!id.isEmpty());
    QTRY_COMPARE_WITH_TIMEOUT(finished, QStringList{id}, 30000);
    QCOMPARE(statusOfCancel(id), ServiceStatus::NoSuchExport); // it is over
    QCOMPARE(statusOfExport(path), ServiceStatus::TargetExists);
    QCOMPARE(endingOf([&] { CORBA::String_var(entry()->exportRecording("D1", "r9", path.c_str())); }),
             QStringLiteral("unknown record"));
}

void TestZlkServant::mayBeLookedAtByViewersOnly()
{
    m_recorder->role = Role::Viewer;
    const auto manager = QD_ZLK::IF_ZLK_c_ChanMan::_nil();
    CORBA::String_var id;
    QCOMPARE(endingOf([this] { QD_ZLK::RecordInfoSeq_var(entry()->getAllRecords("D1")); }), QStringLiteral("done"));
    QCOMPARE(endingOf([this] { CORBA::String_var(entry()->exportRecording("D1", "r1", "/tmp")); }),
             QStringLiteral("not permitted"));
    QCOMPARE(endingOf([this] { entry()->cancelExport("x", false); }), QStringLiteral("not permitted"));
    QCOMPARE(endingOf([&] {
                 QD_ZLK::IF_ZLK_c_Chan_var(entry()->registerChannel(manager, QD_ZLK::RATE_1_MB, QD_ZLK::FORMAT_IQ16,
                                                                    true, false, "x", id.out()));
             }),
             QStringLiteral("not permitted"));
}

void TestZlkServant::answersWhileAnotherClientWaits()
{
    std::vector<std::future<CORBA::ULong>> clients;
    for (int client = 0; client < 8; ++client) {
        clients.push_back(std::async(std::launch::async, [this] {
            CORBA::ULong records = 0;
            for (int i = 0; i < 20; ++i) {
                records += QD_ZLK::RecordInfoSeq_var(entry()->getAllRecords("D1"))->length();
            }
            return records;
        }));
    }
    for (auto& client : clients) {
        QTRY_VERIFY_WITH_TIMEOUT(client.wait_for(std::chrono::seconds(0)) == std::future_status::ready, 30000);
        QCOMPARE(client.get(), 40U);
    }
}

// The recorder's thread does not come to the question here: this one, which does not wait by an event loop.
void TestZlkServant::givesUpWhenTheRecorderIsBusy()
{
    m_recorder.reset();
    ServiceHost::Options options;
    options.patience = std::chrono::milliseconds(50);
    m_recorder = std::make_unique<ServiceRecorder>(ServiceRecorder::Fill(), options);
    auto ending = std::async(std::launch::async, [this]() -> std::string {
        try {
            CORBA::String_var(entry()->mapDeviceIdToAddress("D1"));
        } catch (const CORBA::TIMEOUT& timeout) {
            return timeout.completed() == CORBA::COMPLETED_NO ? "not begun" : "begun";
        } catch (const CORBA::Exception& exception) {
            return exception._name();
        }
        return "done";
    });
    QCOMPARE(ending.get(), std::string("not begun"));
}

// The client is held where it is asked for whom it calls until the recorder, which lets it finish, has lost patience.
void TestZlkServant::tellsThoseThatWaitThatItEnds()
{
    std::promise<void> isInside;
    std::promise<void> patienceIsOver;
    const CallRights rights([&] {
        isInside.set_value();
        patienceIsOver.get_future().wait();
        return Caller{QStringLiteral("anna"), Role::Administrator};
    });
    ServiceHost::Recorder served = servedBy(m_recorder->recorder, *m_recorder->channelDevices);
    served.services = [&, services = served.services](const QString& device) {
        if (device == QLatin1String("D1")) { // asked for when nobody waits any more, to have it end as well
            patienceIsOver.set_value();
        }
        return services(device);
    };
    m_recorder->host.reset();
    m_recorder->host = std::make_unique<ServiceHost>(m_recorder->orb, served, rights, ServiceHost::Options());
    RecorderService client([this] { return address(); });
    client.setLimit(std::chrono::seconds(60));
    auto ending = std::async(std::launch::async, [&] {
        return static_cast<ServiceStatus>(client.ask([](QD_ZLK::IF_ZLK_c_ZLK_ptr service) {
            CORBA::String_var(service->mapDeviceIdToAddress("D1"));
            return 0UL;
        }));
    });
    auto inside = isInside.get_future();
    QTRY_VERIFY_WITH_TIMEOUT(inside.wait_for(std::chrono::seconds(0)) == std::future_status::ready, 30000);
    m_recorder->host.reset();
    QCOMPARE(ending.get(), ServiceStatus::ShuttingDown);
    const QString sentence = QStringLiteral("The recorder is shutting down. Try again when it is back.");
    QVERIFY2(client.lastErrorText().startsWith(sentence), qPrintable(client.lastErrorText()));
}

QTEST_GUILESS_MAIN(TestZlkServant)
#include "tst_zlkservant.moc"
