#include "adminservant.h"
#include "cdrbytes.h"
#include "largestallocation.h"
#include "servicecall.h"
#include "servicevalues.h"

#include <QtTest>

using namespace QD_ZLK;
using namespace servicecall;
using namespace servicevalues;
using ZelkoCommon::fromCorba;
using ZelkoCommon::Orb;

namespace {

constexpr CORBA::ULong undeclared = 0x4f4d0001; // the minor code of UNKNOWN

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

class TestServiceCalls : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();
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
    void takesNoMemoryForRecordsThatAreNotThere();
    void carriesEverythingBetweenTwoOrbs();

private:
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

void TestServiceCalls::answersWithTheResultBeforeTheOutParameters_data()
{
    QTest::addColumn<QByteArray>("sent");
    QTest::addColumn<QByteArray>("received");
    QTest::newRow("copyRecord") << body("$a $b 00000000 04000000 fffe6e00")
                                << QByteArray("07000000 05000000 636f707900");
    QTest::newRow("getDeviceTime") << body("$a") << QByteArray("07000000 ........ 0807060504030201 01");
    QTest::newRow("addBookmarks") << body("$a $b 00000000") << QByteArray("07000000");
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
        "$a $b 0100000000000000 0200000000000000 0300000000000000 04000000 05000000 02000000 6100 3412");
    row("a sequence beyond the end of the message", "addBookmarks", "$a $b 02000000");
    row("a sequence with the greatest length", "addBookmarks", "$a $b ffffffff 0000000000000000");
    row("a string beyond the end of the message", "requestRecordDataDetail", "$a 00010000 6200");
    row("a string with the greatest length", "requestRecordDataDetail", "$a ffffffff 6200");
    row("a string without even its zero", "requestRecordDataDetail", "$a 00000000");
    row("a string without an end", "requestRecordDataDetail", "$a 01000000 62");
    row("a wide string beyond the end of the message", "addHistory", "$a $b 00010000 fffe6e00");
    row("a wide string with half an element", "addHistory", "$a $b 03000000 fffe6e");
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
    const giop::Reply reply = giop::call(m_orb->port(), "Admin", {"getRecord", cdr::bytes(body("$a $b"))});
    QCOMPARE(reply.status, quint32{giop::UserException});
    const QByteArray expected = giop::string("IDL:QD_ZLK/IF_ZELKO_Admin/exAdmin:1.0").toHex() + "...." + "00000000" +
                                giop::string("no such record").toHex();
    QCOMPARE(cdr::shownLike(reply.body, expected), expected);
}

void TestServiceCalls::answersAnUndeclaredExceptionAsUnknown()
{
    m_servant->raise = Raise::Undeclared;
    const giop::Reply reply = giop::call(m_orb->port(), "Admin", {"getRecord", cdr::bytes(body("$a $b"))});
    QCOMPARE(systemException(reply), QByteArray("IDL:omg.org/CORBA/UNKNOWN:1.0"));
    QVERIFY(reply.body.contains(cdr::encoded(undeclared)));
}

void TestServiceCalls::raisesADeclaredException()
{
    const QByteArray id = "IDL:QD_ZLK/IF_ZELKO_Admin/exAdmin:1.0";
    const giop::Server server({giop::UserException, exceptionBody(id, cdr::bytes(body("00000000 $b")))});
    const Call call = callOn<IF_ZELKO_Admin>([](IF_ZELKO_Admin_ptr admin) {
        RecordInfo_var record;
        try {
            admin->getRecord("a", "b", record.out());
        } catch (const IF_ZELKO_Admin::exAdmin& exception) {
            return QStringLiteral("%1 %2").arg(exception.code).arg(fromCorba(exception.text.in()));
        }
        return QString();
    });
    QCOMPARE(outcome(*m_orb, server, call), "0 b");
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
    const giop::Server server({giop::UserException, exceptionBody(id, cdr::bytes(body("00000000 $b")))});
    QCOMPARE(outcome(*m_orb, server, call), QStringLiteral("UNKNOWN %1").arg(undeclared, 0, 16));
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
    const QString result = outcome(*m_orb, server, call);
    QVERIFY2(result.startsWith("MARSHAL"), qPrintable(result));
    QVERIFY2(largestAllocation < 1'000'000, "memory was taken for elements that are not there");
}

// As many as there are bytes: a record takes more of them, and more memory still.
void TestServiceCalls::takesNoMemoryForRecordsThatAreNotThere()
{
    const giop::Server server({giop::NoException, QByteArray("\xa0\x86\x01\0", 4) + QByteArray(100'000, '\0')});
    const Call call = callOn<IF_ZLK_c_ZLK>(
        [](IF_ZLK_c_ZLK_ptr entry) { return QString::number(RecordInfoSeq_var(entry->getAllRecords("a"))->length()); });
    largestAllocation = 0;
    const QString result = outcome(*m_orb, server, call);
    QVERIFY2(result.startsWith("MARSHAL"), qPrintable(result));
    QVERIFY2(largestAllocation < 1'000'000, "memory was taken for records that are not there");
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
