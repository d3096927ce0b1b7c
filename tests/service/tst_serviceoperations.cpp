#include "cdrbytes.h"
#include "servicecall.h"
#include "servicevalues.h"

#include <QtTest>

using namespace QD_ZLK;
using namespace servicecall;
using namespace servicevalues;
using ZelkoCommon::fromCorba;

namespace {

// A call to be made, the bytes that it must send, the bytes that come back, and what it must give.
template <typename Interface, typename Function>
void row(const char* operation, Function function, const char* sent, const char* received = "", const char* given = "")
{
    const QByteArray id = Interface::_PD_repoId;
    const QByteArray name = id.mid(id.indexOf('/') + 1).chopped(4);
    QTest::addRow("%s of %s", operation, name.constData()) << QByteArray(operation) << callOn<Interface>(function)
                                                           << body(sent) << body(received) << QString::fromUtf8(given);
}

void addAdminRows()
{
    const auto row = [](const char* operation, auto function, const char* sent, const char* received = "05000000",
                        const char* given = "5") { ::row<IF_ZELKO_Admin>(operation, function, sent, received, given); };
    row(
        "removeHistoryEntry", [](auto* p) { return p->removeHistoryEntry("a", "b", 9); }, "$a $b 0900000000000000");
    row(
        "addHistory", [](auto* p) { return p->addHistory("a", "b", L"n"); }, "$a $b 04000000 fffe6e00");
    row(
        "copyRecord",
        [](auto* p) {
            CORBA::String_var copy;
            const auto status = p->copyRecord("a", "b", copy.out(), sequenceOf<TimeRangeSeq>(range()), L"n");
            return text(status) + ' ' + copy.in();
        },
        "$a $b 01000000 ........ 0807060504030201 1817161514131211 04000000 fffe6e00", "07000000 $b", "7 b");
    row(
        "setRecordComment", [](auto* p) { return p->setRecordComment("a", "b", L""); }, "$a $b 00000000");
    row(
        "setRecordDeletableFlag", [](auto* p) { return p->setRecordDeletableFlag("a", "b", true); },
        "$a 02000000 6200 01");
    row(
        "addBookmarks", [](auto* p) { return p->addBookmarks("a", "b", RecordBookmarkSeq()); }, "$a $b 00000000");
    row(
        "deleteBookmarks",
        [](auto* p) { return p->deleteBookmarks("a", "b", sequenceOf<RecordBookmarkSeq>(bookmark())); },
        "$a $b 01000000 ........ 2827262524232221 08000000 fffec4003dd8e1dc");
    row(
        "getDeviceTime",
        [](auto* p) {
            CORBA::LongLong time = 0;
            CORBA::Boolean synchronised = false;
            const auto status = p->getDeviceTime("a", time, synchronised);
            return QStringLiteral("%1 %2 %3").arg(status).arg(time).arg(text(synchronised));
        },
        "$a", "00000000 ........ 0201000000000000 01", "0 258 true");
    row(
        "setDeviceTime", [](auto* p) { return p->setDeviceTime("a", 9); }, "$a 0900000000000000");
    row(
        "getOverviewSpectrumStreamed",
        [](auto* p) { return p->getOverviewSpectrumStreamed("a", "b", 1, 2, 3, 4, WINDOW_FLAT_TOP, "c", 0x1234); },
        "$a $b 0100000000000000 0200000000000000 0300000000000000 04000000 04000000 02000000 6300 3412");
    row(
        "getRecord",
        [](auto* p) {
            RecordInfo_var record;
            const auto status = p->getRecord("a", "b", record.out());
            return text(status) + ' ' + record->recordId.in() + ' ' + QString::number(record->loopSize);
        },
        "$a $b",
        "02000000 $b 00000000 0000000000000000 0000000000000000 0000000000000000 00000000 00000000"
        "0000000000000000 0000000000000000 0800000000000000 00000000 00 ...... 00000000 00000000 00000000",
        "2 b 8");
    row(
        "requestRecordDataDetail", [](auto* p) { return p->requestRecordDataDetail("a", "b"); }, "$a $b");
}

void addReplayRows()
{
    const auto row = [](const char* operation, auto function, const char* sent) {
        ::row<IF_ZELKO_Replay>(operation, function, sent, "ffffffff", "-1");
    };
    row(
        "StartReplay", [](auto* p) { return p->StartReplay("a", "b", RATE_16_KB, 2, 3, 4); },
        "$a $b 01000000 ........ 0200000000000000 0300000000000000 04000000");
    row(
        "StartReplayReceivers",
        [](auto* p) { return p->StartReplayReceivers("a", "b", RATE_16_KB, 2, 3, 4, ENDPOINT_MULTICAST); },
        "$a $b 01000000 ........ 0200000000000000 0300000000000000 04000000 03000000");
    row(
        "PauseReplay", [](auto* p) { return p->PauseReplay("a", "b"); }, "$a $b");
    row(
        "ContinueReplay", [](auto* p) { return p->ContinueReplay("a", "b"); }, "$a $b");
    row(
        "StopReplay", [](auto* p) { return p->StopReplay("a", "b"); }, "$a $b");
}

void addRegistrationRows()
{
    const auto row = [](const char* operation, auto function, const char* sent) {
        ::row<IF_ZLK_c_ZLK>(operation, function, sent, "$0 $z", "nil z");
    };
    row(
        "registerChannel",
        [](auto* p) {
            CORBA::String_var id;
            auto* const channel =
                p->registerChannel(IF_ZLK_c_ChanMan::_nil(), RATE_16_KB, FORMAT_IQ8, true, false, "a", id.out());
            return text(channel) + ' ' + id.in();
        },
        "$0 01000000 02000000 01 00 .... $a");
    row(
        "registerChannelEx",
        [](auto* p) {
            CORBA::String_var id;
            auto* const channel =
                p->registerChannelEx(IF_ZLK_c_ChanMan::_nil(), RATE_16_KB, FORMAT_IQ8, true, false, "a", "b", id.out());
            return text(channel) + ' ' + id.in();
        },
        "$0 01000000 02000000 01 00 .... $a $b");
    row(
        "registerReceiverChannel",
        [](auto* p) {
            CORBA::String_var id;
            auto* const channel = p->registerReceiverChannel(IF_ZLK_c_ChanMan::_nil(), RATE_16_KB, FORMAT_IQ8, false,
                                                             true, "a", "b", id.out(), ENDPOINT_TCP, "c");
            return text(channel) + ' ' + id.in();
        },
        "$0 01000000 02000000 00 01 .... $a $b 02000000 $c");
}

void addEntryRows()
{
    const auto row = [](const char* operation, auto function, const char* sent, const char* received,
                        const char* given) { ::row<IF_ZLK_c_ZLK>(operation, function, sent, received, given); };
    row(
        "getZelkoReplayInterface", [](auto* p) { return p->getZelkoReplayInterface("a"); }, "$a", "$0", "nil");
    row(
        "getZelkoChannelInterface", [](auto* p) { return p->getZelkoChannelInterface("a"); }, "$a", "$0", "nil");
    row(
        "getZelkoAdminInterface", [](auto* p) { return p->getZelkoAdminInterface(); }, "", "$0", "nil");
    row(
        "getAllDevices",
        [](auto* p) {
            StringSeq_var devices = p->getAllDevices();
            return text(devices->length()) + ' ' + fromCorba(devices[1].in());
        },
        "", "02000000 $a $b", "2 b");
    row(
        "mapDeviceIdToAddress", [](auto* p) { return p->mapDeviceIdToAddress("a"); }, "$a", "$b", "b");
    row(
        "mapAddressToDeviceId", [](auto* p) { return p->mapAddressToDeviceId("a"); }, "$a", "$b", "b");
    row(
        "getDeviceInformation",
        [](auto* p) {
            CORBA::String_var name;
            CORBA::Long state = 0;
            p->getDeviceInformation("a", name.out(), state);
            return fromCorba(name.in()) + ' ' + text(state);
        },
        "$a", "$b 03000000", "b 3");
    row(
        "getMetaDataForRecord",
        [](auto* p) {
            const RecordMetaData_var data = p->getMetaDataForRecord("a", "b");
            return fromCorba(data->recordId.in()) + ' ' + QString::number(data->lastIndexTime);
        },
        "$a $b",
        "$a $b 00000000 ........ 0000000000000000 0000000000000000 00000000 00000000"
        "0000000000000000 0000000000000000 0000000000000000 0000000000000000 0000000000000000 0000000000000000"
        "00000000 00000000 0000000000000000 0900000000000000",
        "b 9");
    row(
        "getAllRecords",
        [](auto* p) {
            const RecordInfoSeq_var records = p->getAllRecords("a");
            return text(records->length());
        },
        "$a", "00000000", "0");
    row(
        "getWorkstationName", [](auto* p) { return p->getWorkstationName(); }, "", "$b", "b");
    row(
        "exportRecording", [](auto* p) { return p->exportRecording("a", "b", "c"); }, "$a $b $c", "$d", "d");
    row(
        "cancelExport", [](auto* p) { return p->cancelExport("a", true); }, "02000000 6100 01", "", "");
}

void addChannelRows()
{
    const auto row = [](const char* operation, auto function, const char* sent, const char* received = "",
                        const char* given = "") { ::row<IF_ZLK_c_Chan>(operation, function, sent, received, given); };
    row(
        "errorOccured", [](auto* p) { p->errorOccured(FAULT_DEVICE); }, "03000000");
    row(
        "removeChannel", [](auto* p) { p->removeChannel(); }, "");
    row(
        "removeChannelForced", [](auto* p) { p->removeChannelForced(); }, "");
    row(
        "setCallBackInterface", [](auto* p) { p->setCallBackInterface(IF_ZLK_c_ChanMan::_nil()); }, "$0");
    row(
        "setDataRateClass", [](auto* p) { p->setDataRateClass(RATE_VARIABLE); }, "0f000000");
    row(
        "setRequestedSampleRate", [](auto* p) { p->setRequestedSampleRate(5, 0x1234); }, "0500000000000000 3412");
    row(
        "setDataFormat", [](auto* p) { p->setDataFormat(FORMAT_OTHER); }, "17000000");
    row(
        "setRecordFlag", [](auto* p) { p->setRecordFlag(true); }, "01");
    row(
        "setReplayFlag", [](auto* p) { p->setReplayFlag(false); }, "00");
    row(
        "setName", [](auto* p) { p->setName("a"); }, "$a");
    row(
        "getChannelID", [](auto* p) { return p->getChannelID(); }, "", "$b", "b");
    row(
        "startRecording", [](auto* p) { p->startRecording(1, L"n", 2); }, "01000000 04000000 fffe6e00 02000000");
    row(
        "DataTransferStarted", [](auto* p) { p->DataTransferStarted(); }, "");
    row(
        "stopRecording", [](auto* p) { p->stopRecording(L"n"); }, "04000000 fffe6e00");
    row(
        "DataTransferStopped", [](auto* p) { p->DataTransferStopped(); }, "");
    row(
        "startReplaying", [](auto* p) { p->startReplaying("a", "b", RATE_16_KB, 2, 3, 4); },
        "$a $b 01000000 ........ 0200000000000000 0300000000000000 04000000");
    row(
        "channelError", [](auto* p) { p->channelError("a"); }, "$a");
    row(
        "setZelkoDevices",
        [](auto* p) { p->setZelkoDevices(sequenceOf<StringSeqSeq>(sequenceOf<StringSeq>("a", "b"), StringSeq())); },
        "02000000 02000000 $a $b 00000000");
    row(
        "setAdditionalDataRateClass", [](auto* p) { p->setAdditionalDataRateClass(RATE_16_KB); }, "01000000");
}

// The calls of a channel manager by which a channel is connected.
void addConnectionRows()
{
    const auto row = [](const char* operation, auto function, const char* sent, const char* received,
                        const char* given) { ::row<IF_ZLK_c_ChanMan>(operation, function, sent, received, given); };
    row(
        "isAvailableForRecord", [](auto* p) { return p->isAvailableForRecord("a", sequenceOf<StringSeq>("b")); },
        "$a 01000000 $b", "01", "true");
    row(
        "connectForRecord",
        [](auto* p) {
            DataEndpointSeq_var endpoints;
            LongSeq_var streams;
            const bool connected = p->connectForRecord("a", endpoints.out(), streams.out());
            return QStringLiteral("%1 %2 %3").arg(connected).arg(endpoints->length()).arg(streams[1]);
        },
        "$a", "01 ...... 00000000 02000000 01000000 02000000", "1 0 2");
    row(
        "connectForRecordNG",
        [](auto* p) {
            DataEndpointNGSeq_var endpoints;
            LongSeq_var streams;
            const bool connected = p->connectForRecordNG("a", endpoints.out(), streams.out());
            return QStringLiteral("%1 %2 %3").arg(connected).arg(endpoints[0].address.in()).arg(streams->length());
        },
        "$a", "01 ...... 01000000 01000000 $b 03000000 0000000000000000 00000000", "1 b 0");
    row(
        "isAvailableForReplay", [](auto* p) { return p->isAvailableForReplay("a", StringSeq()); }, "$a 00000000", "00",
        "false");
    row(
        "connectForReplay",
        [](auto* p) {
            return p->connectForReplay("a", sequenceOf<DataEndpointSeq>(endpoint()), sequenceOf<LongSeq>(7));
        },
        "$a 01000000 04000000 04030201 14131211 2827262524232221 01000000 07000000", "01", "true");
    row(
        "startXgReplayLegacy",
        [](auto* p) {
            return p->startXgReplayLegacy(sequenceOf<DataEndpointNGSeq>(namedEndpoint()), sequenceOf<LongSeq>(7));
        },
        "01000000 02000000 05000000 6d61737400 ...... 14131211 2827262524232221 01000000 07000000", "01", "true");
    row(
        "startXgReplay", [](auto* p) { return p->startXgReplay("a", 1, 2, 3); },
        "$a 0100000000000000 0200000000000000 03000000", "00", "false");
    row(
        "stopXgReplay", [](auto* p) { return p->stopXgReplay(); }, "", "01", "true");
}

void addManagerRows()
{
    const auto row = [](const char* operation, auto function, const char* sent) {
        ::row<IF_ZLK_c_ChanMan>(operation, function, sent);
    };
    row(
        "startDataFlow", [](auto* p) { p->startDataFlow("a"); }, "$a");
    row(
        "startDataFlowNG", [](auto* p) { p->startDataFlowNG("a", "b", 3); }, "$a $b 03000000");
    row(
        "stopDataFlow", [](auto* p) { p->stopDataFlow("a"); }, "$a");
    row(
        "disconnect", [](auto* p) { p->disconnect("a"); }, "$a");
    row(
        "DataTransferStarted", [](auto* p) { p->DataTransferStarted("a"); }, "$a");
    row(
        "stoppingDataTransfer", [](auto* p) { p->stoppingDataTransfer("a"); }, "$a");
    row(
        "goingDown", [](auto* p) { p->goingDown(); }, "");
    row(
        "ChannelRemoved", [](auto* p) { p->ChannelRemoved("a"); }, "$a");
    row(
        "RecordingFinished", [](auto* p) { p->RecordingFinished("a", "b", "c"); }, "$a $b $c");
    row(
        "ZelkoRecordReplaySessionFault", [](auto* p) { p->ZelkoRecordReplaySessionFault("a", 1, "b"); },
        "$a 01000000 $b");
}

void addNoticeRows()
{
    row<IF_RecordStateChangeCallback>(
        "NotifyStateChange", [](auto* p) { p->NotifyStateChange("a", "b", "c", 3); }, "$a $b $c 03000000");
    row<IF_ZelkoStatusCallback>(
        "NotifyCStorageStatus", [](auto* p) { p->NotifyCStorageStatus("a", "b"); }, "$a $b");
}

} // namespace

class TestServiceOperations : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void sendsItsParametersAndReadsTheAnswerInOrder_data();
    void sendsItsParametersAndReadsTheAnswerInOrder();
};

void TestServiceOperations::sendsItsParametersAndReadsTheAnswerInOrder_data()
{
    QTest::addColumn<QByteArray>("operation");
    QTest::addColumn<Call>("call");
    QTest::addColumn<QByteArray>("sent");
    QTest::addColumn<QByteArray>("received");
    QTest::addColumn<QString>("given");
    addAdminRows();
    addReplayRows();
    addRegistrationRows();
    addEntryRows();
    addChannelRows();
    addConnectionRows();
    addManagerRows();
    addNoticeRows();
}

void TestServiceOperations::sendsItsParametersAndReadsTheAnswerInOrder()
{
    QFETCH(Call, call);
    QFETCH(QByteArray, sent);
    QFETCH(QByteArray, received);
    const ZelkoCommon::Orb orb({});
    const giop::Server server({giop::NoException, cdr::bytes(received)});
    QTEST(outcome(orb, server, call), "given");
    QTEST(server.lastRequest().operation, "operation");
    QCOMPARE(cdr::shownLike(server.lastRequest().body, sent), sent);
}

QTEST_GUILESS_MAIN(TestServiceOperations)
#include "tst_serviceoperations.moc"
