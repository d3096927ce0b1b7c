#include "adminservant.h"
#include "cdrbytes.h"
#include "largestallocation.h"
#include "rawgiop.h"
#include "servicevalues.h"

#include <zelkobase/orb/orb.h>

#include <QtTest>

#include <functional>

using namespace QD_ZLK;
using namespace servicevalues;
using ZelkoCommon::fromCorba;
using ZelkoCommon::Orb;

namespace {

constexpr CORBA::ULong undeclared = 0x4f4d0001; // the minor code of UNKNOWN

// A call through a proxy, and what it gave, as a text.
using Call = std::function<QString(CORBA::Object_ptr)>;

template <typename Interface, typename Function>
Call callOn(Function function)
{
    return [function](CORBA::Object_ptr object) {
        const typename Interface::_var_type proxy = Interface::_unchecked_narrow(object);
        return function(proxy.in());
    };
}

// A body as it is sent: the last parameter has no padding behind it, and the ORB ends the connection over a byte too
// many.
QByteArray body(QByteArray hex)
{
    while (hex.endsWith('.') || hex.endsWith(' ')) {
        hex.chop(1);
    }
    return hex;
}

// A call to be made, the bytes that it must send, the bytes that come back, and what it must give.
template <typename Interface, typename Function>
void row(const char* operation, Function function, const char* sent, const char* received = "", const char* given = "")
{
    QTest::newRow(operation) << callOn<Interface>(function) << body(sent) << body(received) << QString::fromUtf8(given);
}

template <typename Interface, typename Function>
void silentRow(const char* operation, Function function, const char* sent)
{
    row<Interface>(
        operation,
        [function](auto* proxy) {
            function(proxy);
            return QString();
        },
        sent);
}

QString text(CORBA::Object_ptr object)
{
    return CORBA::is_nil(object) ? QStringLiteral("nil") : QStringLiteral("an object");
}

// Strings of one letter and their padding to a multiple of 4.
#define A "02000000 6100 .... "
#define B "02000000 6200 .... "
#define NIL "01000000 00 ...... 00000000 "

void addAdminCalls()
{
    using I = IF_ZELKO_Admin;
    row<I>(
        "removeHistoryEntry",
        [](I::_ptr_type admin) { return QString::number(admin->removeHistoryEntry("a", "b", 9)); },
        A B "0900000000000000", "05000000", "5");
    row<I>(
        "copyRecord",
        [](I::_ptr_type admin) {
            CORBA::String_var copy;
            const auto status = admin->copyRecord("a", "b", copy.out(), sequenceOf<TimeRangeSeq>(range()), L"n");
            return QString::number(status) + ' ' + copy.in();
        },
        A B "01000000 ........ 0807060504030201 1817161514131211 04000000 fffe6e00", "07000000" B, "7 b");
    row<I>(
        "addBookmarks",
        [](I::_ptr_type admin) { return QString::number(admin->addBookmarks("a", "b", RecordBookmarkSeq())); },
        A B "00000000", "00000000", "0");
    row<I>(
        "getDeviceTime",
        [](I::_ptr_type admin) {
            CORBA::LongLong time = 0;
            CORBA::Boolean synchronised = false;
            const auto status = admin->getDeviceTime("a", time, synchronised);
            return QStringLiteral("%1 %2 %3").arg(status).arg(time).arg(synchronised);
        },
        A, "00000000 00000000 0201000000000000 01", "0 258 1");
    row<I>(
        "getOverviewSpectrumStreamed",
        [](I::_ptr_type admin) {
            return QString::number(
                admin->getOverviewSpectrumStreamed("a", "b", 1, 2, 3, 4, WINDOW_FLAT_TOP, "a", 0x1234));
        },
        A B "0100000000000000 0200000000000000 0300000000000000 04000000 04000000 02000000 6100 3412", "00000000", "0");
    row<I>(
        "getRecord",
        [](I::_ptr_type admin) {
            RecordInfo_var record;
            const auto status = admin->getRecord("a", "b", record.out());
            return QString::number(status) + ' ' + record->recordId.in() + ' ' + QString::number(record->loopSize);
        },
        A B,
        "02000000" B "00000000 0000000000000000 0000000000000000 0000000000000000 00000000 00000000"
        "0000000000000000 0000000000000000 0800000000000000 00000000 00 000000 00000000 00000000 00000000",
        "2 b 8");
}

void addReplayCalls()
{
    using I = IF_ZELKO_Replay;
    row<I>(
        "StartReplayReceivers",
        [](I::_ptr_type replay) {
            return QString::number(replay->StartReplayReceivers("a", "b", RATE_16_KB, 2, 3, 4, ENDPOINT_MULTICAST));
        },
        A B "01000000 ........ 0200000000000000 0300000000000000 04000000 03000000", "ffffffff", "-1");
    row<I>(
        "StopReplay", [](I::_ptr_type replay) { return QString::number(replay->StopReplay("a", "b")); }, A B,
        "00000000", "0");
}

void addEntryCalls()
{
    using I = IF_ZLK_c_ZLK;
    row<I>(
        "registerChannel",
        [](I::_ptr_type entry) {
            CORBA::String_var id;
            const IF_ZLK_c_Chan_var channel =
                entry->registerChannel(IF_ZLK_c_ChanMan::_nil(), RATE_16_KB, FORMAT_IQ8, true, false, "a", id.out());
            return text(channel) + ' ' + id.in();
        },
        NIL "01000000 02000000 01 00 .... " A, NIL B, "nil b");
    row<I>(
        "registerReceiverChannel",
        [](I::_ptr_type entry) {
            CORBA::String_var id;
            const IF_ZLK_c_Chan_var channel = entry->registerReceiverChannel(
                IF_ZLK_c_ChanMan::_nil(), RATE_16_KB, FORMAT_IQ8, false, true, "a", "b", id.out(), ENDPOINT_TCP, "a");
            return text(channel) + ' ' + id.in();
        },
        NIL "01000000 02000000 00 01 .... " A B "02000000 02000000 6100", NIL B, "nil b");
    row<I>(
        "getZelkoReplayInterface",
        [](I::_ptr_type entry) { return text(IF_ZELKO_Replay_var(entry->getZelkoReplayInterface("a"))); },
        "02000000 6100", NIL, "nil");
    row<I>(
        "getZelkoChannelInterface",
        [](I::_ptr_type entry) { return text(IF_ZLK_c_Chan_var(entry->getZelkoChannelInterface("a"))); },
        "02000000 6100", NIL, "nil");
    row<I>(
        "getZelkoAdminInterface",
        [](I::_ptr_type entry) { return text(IF_ZELKO_Admin_var(entry->getZelkoAdminInterface())); }, "", NIL, "nil");
    row<I>(
        "getAllDevices",
        [](I::_ptr_type entry) {
            StringSeq_var devices = entry->getAllDevices();
            return QString::number(devices->length()) + ' ' + fromCorba(devices[1].in());
        },
        "", "02000000" A B, "2 b");
    row<I>(
        "getDeviceInformation",
        [](I::_ptr_type entry) {
            CORBA::String_var name;
            CORBA::Long state = 0;
            entry->getDeviceInformation("a", name.out(), state);
            return fromCorba(name.in()) + ' ' + QString::number(state);
        },
        "02000000 6100", B "03000000", "b 3");
    silentRow<I>(
        "cancelExport", [](I::_ptr_type entry) { entry->cancelExport("a", true); }, "02000000 6100 01");
}

void addChannelCalls()
{
    using I = IF_ZLK_c_Chan;
    silentRow<I>(
        "setRequestedSampleRate", [](I::_ptr_type channel) { channel->setRequestedSampleRate(5, 0x1234); },
        "0500000000000000 3412");
    silentRow<I>(
        "startRecording", [](I::_ptr_type channel) { channel->startRecording(1, L"n", 2); },
        "01000000 04000000 fffe6e00 02000000");
    silentRow<I>(
        "setZelkoDevices",
        [](I::_ptr_type channel) {
            channel->setZelkoDevices(sequenceOf<StringSeqSeq>(sequenceOf<StringSeq>("a", "b")));
        },
        "01000000 02000000" A "02000000 6200");
    silentRow<I>(
        "setCallBackInterface", [](I::_ptr_type channel) { channel->setCallBackInterface(IF_ZLK_c_ChanMan::_nil()); },
        NIL);
    silentRow<I>(
        "errorOccured", [](I::_ptr_type channel) { channel->errorOccured(FAULT_DEVICE); }, "03000000");
    silentRow<I>(
        "removeChannel", [](I::_ptr_type channel) { channel->removeChannel(); }, "");
}

void addManagerCalls()
{
    using I = IF_ZLK_c_ChanMan;
    row<I>(
        "connectForRecord",
        [](I::_ptr_type manager) {
            DataEndpointSeq_var endpoints;
            LongSeq_var streams;
            const bool connected = manager->connectForRecord("a", endpoints.out(), streams.out());
            return QStringLiteral("%1 %2 %3").arg(connected).arg(endpoints->length()).arg(streams[1]);
        },
        "02000000 6100", "01 ...... 00000000 02000000 01000000 02000000", "1 0 2");
    row<I>(
        "connectForReplay",
        [](I::_ptr_type manager) {
            return QString::number(
                manager->connectForReplay("a", sequenceOf<DataEndpointSeq>(endpoint()), sequenceOf<LongSeq>(7)));
        },
        A "01000000 04000000 04030201 14131211 2827262524232221 01000000 07000000", "01", "1");
    row<I>(
        "startXgReplay", [](I::_ptr_type manager) { return QString::number(manager->startXgReplay("a", 1, 2, 3)); },
        A "0100000000000000 0200000000000000 03000000", "00", "0");
    row<I>(
        "stopXgReplay", [](I::_ptr_type manager) { return QString::number(manager->stopXgReplay()); }, "", "01", "1");
    silentRow<I>(
        "goingDown", [](I::_ptr_type manager) { manager->goingDown(); }, "");
    silentRow<I>(
        "ZelkoRecordReplaySessionFault",
        [](I::_ptr_type manager) { manager->ZelkoRecordReplaySessionFault("a", 1, "b"); }, A "01000000 02000000 6200");
}

void addNotices()
{
    silentRow<IF_RecordStateChangeCallback>(
        "NotifyStateChange",
        [](IF_RecordStateChangeCallback_ptr callback) { callback->NotifyStateChange("a", "b", "a", 3); },
        A B A "03000000");
    silentRow<IF_ZelkoStatusCallback>(
        "NotifyCStorageStatus", [](IF_ZelkoStatusCallback_ptr callback) { callback->NotifyCStorageStatus("a", "b"); },
        A "02000000 6200");
}

// What the body of a reply with an exception holds: its repository ID and its members.
QByteArray exceptionBody(const QByteArray& id, const QByteArray& members)
{
    QByteArray body = giop::string(id);
    body.append((4 - body.size() % 4) % 4, '\0');
    return body + members;
}

// MARSHAL and the like as a reply carries them; the minor code and whether the call was completed do not matter.
QByteArray systemException(const giop::Reply& reply)
{
    return reply.status == giop::SystemException ? reply.body.mid(4, reply.body.indexOf('\0', 4) - 4) : QByteArray();
}

enum class Raise { Nothing, Declared, Undeclared };

// Raises what it is told to.
class RaisingServant final : public AdminServant
{
public:
    using AdminServant::AdminServant;

    Raise raise = Raise::Nothing;

    CORBA::ULong getRecord(const char* device, const char* record, RecordInfo_out recordData) override
    {
        if (raise == Raise::Declared) {
            throw QD_ZLK::IF_ZELKO_Admin::exAdmin(QD_ZLK::IF_ZELKO_Admin::ADMIN_FAILED, "no such record");
        }
        if (raise == Raise::Undeclared) {
            throw exGen(GEN_INTERNAL, "never heard of");
        }
        return AdminServant::getRecord(device, record, recordData);
    }
};

} // namespace

Q_DECLARE_METATYPE(Call)

class TestServiceCalls : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();
    void sendsItsParametersAndReadsTheAnswerInOrder_data();
    void sendsItsParametersAndReadsTheAnswerInOrder();
    void answersWithTheResultBeforeTheOutParameters_data();
    void answersWithTheResultBeforeTheOutParameters();
    void refusesARequestThatCannotBe_data();
    void refusesARequestThatCannotBe();
    void answersWithADeclaredException();
    void answersAnUndeclaredExceptionAsUnknown();
    void raisesADeclaredException();
    void raisesAnUndeclaredExceptionAsUnknown_data();
    void raisesAnUndeclaredExceptionAsUnknown();
    void refusesAnAnswerThatCannotBe_data();
    void refusesAnAnswerThatCannotBe();
    void carriesEverythingBetweenTwoOrbs();

private:
    QString outcome(const giop::Server& server, const Call& call) const;
    CORBA::Object_ptr objectOf(const giop::Server& server) const;

    CallLog m_log;
    std::unique_ptr<Orb> m_orb;
    RaisingServant* m_servant = nullptr;
};

void TestServiceCalls::initTestCase()
{
    m_orb = std::make_unique<Orb>(ZelkoCommon::OrbOptions());
    m_servant = new RaisingServant(m_log);
    m_orb->publish("Admin", m_servant);
    m_servant->_remove_ref();
}

void TestServiceCalls::cleanupTestCase()
{
    m_orb.reset();
}

CORBA::Object_ptr TestServiceCalls::objectOf(const giop::Server& server) const
{
    return m_orb->remoteObject("127.0.0.1", server.port(), "Test");
}

// What a call gave, or the name of the exception with which it ended.
QString TestServiceCalls::outcome(const giop::Server& server, const Call& call) const
{
    const CORBA::Object_var object = objectOf(server);
    try {
        return call(object);
    } catch (const CORBA::SystemException& exception) {
        return QStringLiteral("%1 %2").arg(exception._name()).arg(exception.minor(), 0, 16);
    } catch (const CORBA::Exception& exception) {
        return QString::fromLatin1(exception._name());
    }
}

void TestServiceCalls::sendsItsParametersAndReadsTheAnswerInOrder_data()
{
    QTest::addColumn<Call>("call");
    QTest::addColumn<QByteArray>("sent");
    QTest::addColumn<QByteArray>("received");
    QTest::addColumn<QString>("given");
    addAdminCalls();
    addReplayCalls();
    addEntryCalls();
    addChannelCalls();
    addManagerCalls();
    addNotices();
}

void TestServiceCalls::sendsItsParametersAndReadsTheAnswerInOrder()
{
    QFETCH(Call, call);
    QFETCH(QByteArray, sent);
    QFETCH(QByteArray, received);
    const giop::Server server({giop::NoException, cdr::bytes(received)});
    QTEST(outcome(server, call), "given");
    QCOMPARE(server.lastRequest().operation, QByteArray(QTest::currentDataTag()));
    QCOMPARE(cdr::shownLike(server.lastRequest().body, sent), sent.replace(' ', ""));
}

void TestServiceCalls::answersWithTheResultBeforeTheOutParameters_data()
{
    QTest::addColumn<QByteArray>("sent");
    QTest::addColumn<QByteArray>("received");
    QTest::newRow("copyRecord") << QByteArray(A B "00000000 04000000 fffe6e00")
                                << QByteArray("07000000 05000000 636f707900");
    QTest::newRow("getDeviceTime") << body(A) << QByteArray("07000000 ........ 0807060504030201 01");
    QTest::newRow("addBookmarks") << QByteArray(A B "00000000") << QByteArray("07000000");
}

void TestServiceCalls::answersWithTheResultBeforeTheOutParameters()
{
    QFETCH(QByteArray, sent);
    QFETCH(QByteArray, received);
    m_servant->status = 7;
    const giop::Reply reply = giop::call(m_orb->port(), "Admin", {QTest::currentDataTag(), cdr::bytes(sent)});
    m_servant->status = 0;
    QCOMPARE(reply.status, quint32{giop::NoException});
    QCOMPARE(cdr::shownLike(reply.body, received), received.replace(' ', ""));
}

void TestServiceCalls::refusesARequestThatCannotBe_data()
{
    QTest::addColumn<QByteArray>("operation");
    QTest::addColumn<QByteArray>("sent");
    const auto row = [](const char* name, const char* operation, const char* sent) {
        QTest::newRow(name) << QByteArray(operation) << body(sent);
    };
    row("a window beyond the last", "getOverviewSpectrumStreamed",
        A B "0100000000000000 0200000000000000 0300000000000000 04000000 05000000 02000000 6100 3412");
    row("a sequence beyond the end of the message", "addBookmarks", A B "02000000");
    row("a sequence with the greatest length", "addBookmarks", A B "ffffffff 0000000000000000");
    row("a string beyond the end of the message", "requestRecordDataDetail", A "00010000 6200");
    row("a string with the greatest length", "requestRecordDataDetail", A "ffffffff 6200");
    row("a string without an end", "requestRecordDataDetail", A "01000000 62");
    row("a wide string beyond the end of the message", "addHistory", A B "00010000 fffe6e00");
    row("a wide string with half an element", "addHistory", A B "03000000 fffe6e");
    row("a parameter too few", "requestRecordDataDetail", "02000000 6100");
    row("no parameters", "requestRecordDataDetail", "");
}

void TestServiceCalls::refusesARequestThatCannotBe()
{
    QFETCH(QByteArray, operation);
    QFETCH(QByteArray, sent);
    const QStringList before = m_log.calls();
    const giop::Reply reply = giop::call(m_orb->port(), "Admin", {operation, cdr::bytes(sent)});
    QCOMPARE(systemException(reply), QByteArray("IDL:omg.org/CORBA/MARSHAL:1.0"));
    QCOMPARE(m_log.calls(), before);
}

void TestServiceCalls::answersWithADeclaredException()
{
    m_servant->raise = Raise::Declared;
    const giop::Reply reply = giop::call(m_orb->port(), "Admin", {"getRecord", cdr::bytes(body(A B))});
    QCOMPARE(reply.status, quint32{giop::UserException});
    const QByteArray expected = giop::string("IDL:QD_ZLK/IF_ZELKO_Admin/exAdmin:1.0").toHex() + "...." + "00000000" +
                                giop::string("no such record").toHex();
    QCOMPARE(cdr::shownLike(reply.body, expected), expected);
}

void TestServiceCalls::answersAnUndeclaredExceptionAsUnknown()
{
    m_servant->raise = Raise::Undeclared;
    const giop::Reply reply = giop::call(m_orb->port(), "Admin", {"getRecord", cdr::bytes(body(A B))});
    QCOMPARE(systemException(reply), QByteArray("IDL:omg.org/CORBA/UNKNOWN:1.0"));
    QVERIFY(reply.body.contains(cdr::encoded(undeclared)));
}

void TestServiceCalls::raisesADeclaredException()
{
    const QByteArray id = "IDL:QD_ZLK/IF_ZELKO_Admin/exAdmin:1.0";
    const giop::Server server({giop::UserException, exceptionBody(id, cdr::bytes(body("00000000" B)))});
    const Call call = callOn<IF_ZELKO_Admin>([](IF_ZELKO_Admin_ptr admin) {
        RecordInfo_var record;
        try {
            admin->getRecord("a", "b", record.out());
        } catch (const IF_ZELKO_Admin::exAdmin& exception) {
            return QStringLiteral("%1 %2").arg(exception.code).arg(fromCorba(exception.text.in()));
        }
        return QString();
    });
    QCOMPARE(outcome(server, call), "0 b");
}

void TestServiceCalls::raisesAnUndeclaredExceptionAsUnknown_data()
{
    QTest::addColumn<Call>("call");
    QTest::addColumn<QByteArray>("id");
    const auto row = [](const char* name, const Call& call, const char* id) {
        QTest::newRow(name) << call << QByteArray(id);
    };
    row("by an operation that declares another", callOn<IF_ZELKO_Admin>([](IF_ZELKO_Admin_ptr admin) {
            RecordInfo_var record;
            return QString::number(admin->getRecord("a", "b", record.out()));
        }),
        "IDL:QD_ZLK/exGen:1.0");
    row("by an operation that declares none",
        callOn<IF_ZELKO_Admin>([](IF_ZELKO_Admin_ptr admin) { return QString::number(admin->setDeviceTime("a", 1)); }),
        "IDL:QD_ZLK/IF_ZELKO_Admin/exAdmin:1.0");
    row("that is not of this service", callOn<IF_ZLK_c_ZLK>([](IF_ZLK_c_ZLK_ptr entry) {
            return QString::fromLatin1(CORBA::String_var(entry->mapDeviceIdToAddress("a")).in());
        }),
        "IDL:Other/exOther:1.0");
}

void TestServiceCalls::raisesAnUndeclaredExceptionAsUnknown()
{
    QFETCH(Call, call);
    QFETCH(QByteArray, id);
    const giop::Server server({giop::UserException, exceptionBody(id, cdr::bytes(body("00000000" B)))});
    QCOMPARE(outcome(server, call), QStringLiteral("UNKNOWN %1").arg(undeclared, 0, 16));
}

void TestServiceCalls::refusesAnAnswerThatCannotBe_data()
{
    QTest::addColumn<QByteArray>("received");
    QTest::newRow("more streams than there are") << QByteArray("01 ...... 00000000 02000000 01000000");
    QTest::newRow("streams whose bytes cannot be counted") << QByteArray("01 ...... 00000000 00000080 01000000");
    QTest::newRow("streams whose bytes count as few") << QByteArray("01 ...... 00000000 01000040 01000000");
    QTest::newRow("the greatest number of endpoints") << QByteArray("01 ...... ffffffff 00000000");
    QTest::newRow("an endpoint of a kind beyond the last")
        << QByteArray("01 ...... 01000000 05000000 04030201 14131211 ........ 2827262524232221 00000000");
    QTest::newRow("a result alone") << QByteArray("01");
    QTest::newRow("nothing") << QByteArray("");
}

void TestServiceCalls::refusesAnAnswerThatCannotBe()
{
    QFETCH(QByteArray, received);
    const giop::Server server({giop::NoException, cdr::bytes(received)});
    const Call call = callOn<IF_ZLK_c_ChanMan>([](IF_ZLK_c_ChanMan_ptr manager) {
        DataEndpointSeq_var endpoints;
        LongSeq_var streams;
        return QString::number(manager->connectForRecord("a", endpoints.out(), streams.out()));
    });
    largestAllocation = 0;
    const QString result = outcome(server, call);
    QVERIFY2(result.startsWith("MARSHAL"), qPrintable(result));
    QVERIFY2(largestAllocation < 1'000'000, "memory was taken for elements that are not there");
}

void TestServiceCalls::carriesEverythingBetweenTwoOrbs()
{
    m_servant->raise = Raise::Nothing;
    const CORBA::Object_var object = m_orb->remoteObject(overTheWire, m_orb->port(), "Admin");
    const IF_ZELKO_Admin_var admin = IF_ZELKO_Admin::_narrow(object);
    CORBA::String_var copy;
    admin->copyRecord("device", "Größe", copy.out(), sequenceOf<TimeRangeSeq>(TimeRange{1, 2}, TimeRange{3, 4}), L"");
    admin->addBookmarks("device", "", sequenceOf<RecordBookmarkSeq>(bookmark()));
    CORBA::LongLong time = 0;
    CORBA::Boolean synchronised = false;
    admin->getDeviceTime("device", time, synchronised);
    QCOMPARE(m_log.calls().last(3),
             (QStringList{"copyRecord(device, Größe, [1 to 2, 3 to 4], )",
                          QStringLiteral("addBookmarks(device, , [Ä\U0001F4E1 at %1])").arg(bookmark().position),
                          "getDeviceTime(device)"}));
    QCOMPARE(copy.in(), "copy");
    QCOMPARE(time, CORBA::LongLong{0x0102030405060708});
    QVERIFY(synchronised);
}

QTEST_GUILESS_MAIN(TestServiceCalls)
#include "tst_servicecalls.moc"
