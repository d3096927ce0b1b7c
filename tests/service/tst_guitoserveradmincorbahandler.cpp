#include "servicesite.h"

#include <zelkobase/orb/corbatext.h>
#include <zelkobase/service/guitoserveradmincorbahandler.h>
#include <zelkobase/service/recorderservice.h>
#include <zelkobase/service/toolbarhelper.h>

#include <QTest>

#include <limits>

using namespace ZelkoCommon;
using ZelkoGUI::GuiToServerAdminCorbaHandler;
using Operation = std::function<unsigned long(GuiToServerAdminCorbaHandler&)>;
using ZelkoDataTypes::eFFT_Window;

namespace {

QVector<ZELKO_XML::BookmarkEntry> bookmarks(const QStringList& texts)
{
    QVector<ZELKO_XML::BookmarkEntry> entries;
    for (const QString& text : texts) {
        ZELKO_XML::BookmarkEntry entry;
        entry.SetTimestamp(static_cast<quint64>(100 + entries.size()));
        entry.SetBookmark(text);
        entries.append(entry);
    }
    return entries;
}

const QString wideText = QStringLiteral("Grüße ✓ \U0001F4FB");

// Each operation once, with arguments that differ in each place.
struct Row
{
    const char* operation;
    Operation call;
    QString arrived;
};

std::vector<Row> rows()
{
    using Handler = GuiToServerAdminCorbaHandler;
    return {
        {"addHistory", [](Handler& handler) { return handler.addHistory("D1", "R1", wideText); },
         "addHistory D1 R1 " + wideText},
        {"removeHistoryEntry",
         [](Handler& handler) { return handler.removeHistoryEntry("D1", "R1", 1234567890123456); },
         "removeHistoryEntry D1 R1 1234567890123456"},
        {"copyRecord", [](Handler& handler) { return handler.copyRecord("D1", "R1", 11, 22, wideText); },
         "copyRecord D1 R1 [11-22] " + wideText},
        {"addBookmarks",
         [](Handler& handler) {
             return handler.addBookmarkEntries("D1", "R1", bookmarks({"a", wideText}));
         },
         "addBookmarks D1 R1 [100:a,101:" + wideText + "]"},
        {"deleteBookmarks",
         [](Handler& handler) {
             return handler.deleteBookmarkEntries("D1", "R1", bookmarks({"a", ""}));
         },
         "deleteBookmarks D1 R1 [100:a,101:]"},
        {"setRecordDeletableFlag", [](Handler& handler) { return handler.SetRecordDeletableFlag("D1", "R1", true); },
         "setRecordDeletableFlag D1 R1 true"},
        {"setRecordComment", [](Handler& handler) { return handler.SetRecordComment("D1", "R1", wideText); },
         "setRecordComment D1 R1 " + wideText},
        {"requestRecordDataDetail", [](Handler& handler) { return handler.requestRecordDataDetail("D1", "R1"); },
         "requestRecordDataDetail D1 R1"},
        {"getOverviewSpectrumStreamed",
         [](Handler& handler) {
             return handler.overviewSpectrumStreamed("D1", "R1", 1, 2, 3, 4, eFFT_Window::Blackman, "192.0.2.1", 5);
         },
         "getOverviewSpectrumStreamed D1 R1 1 2 3 4 3 192.0.2.1 5"},
        {"setDeviceTime", [](Handler& handler) { return handler.setDeviceTime("D1", 77); }, "setDeviceTime D1 77"},
    };
}

} // namespace

class tst_GuiToServerAdminCorbaHandler : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void operationsReachTheRecorder_data();
    void operationsReachTheRecorder();
    void statusCodesComeBack_data() { operationsReachTheRecorder_data(); }
    void statusCodesComeBack();
    void failuresBecomeCodes_data() { operationsReachTheRecorder_data(); }
    void failuresBecomeCodes();
    void anEmptyListOfBookmarksIsACall();
    void emptyTextsArrive();
    void aTextThatIsTooLongIsNotSent();
    void aFlagThatIsTakenAway();
    void aCopyTellsItsId();
    void aRefusedCopyTellsNoId();
    void theTimeOfADevice();
    void aFailureLeavesTheTimeAlone();
    void aRecord();
    void aRecordThatIsRefusedInWords();
    void whatTheServiceHasNoNumberForIsNotSent_data();
    void whatTheServiceHasNoNumberForIsNotSent();
    void anotherSubSystemIsAnotherRecorder();
    void withoutAServerNothingIsConfigured();
};

void tst_GuiToServerAdminCorbaHandler::operationsReachTheRecorder_data()
{
    QTest::addColumn<QString>("operation");
    QTest::addColumn<Operation>("call");
    QTest::addColumn<QString>("arrived");
    for (const Row& row : rows()) {
        QTest::newRow(row.operation) << row.operation << row.call << row.arrived;
    }
}

void tst_GuiToServerAdminCorbaHandler::operationsReachTheRecorder()
{
    QFETCH(Operation, call);
    QFETCH(QString, arrived);
    ServiceSite site;
    GuiToServerAdminCorbaHandler handler(site.handler);
    QCOMPARE(call(handler), 0UL);
    QCOMPARE(site.peer.calls(), QStringList(arrived));
    QVERIFY(site.peer.wasCalledOverNetwork());
    QCOMPARE(handler.lastErrorText(), QString());
}

void tst_GuiToServerAdminCorbaHandler::statusCodesComeBack()
{
    QFETCH(QString, operation);
    QFETCH(Operation, call);
    ServiceSite site;
    site.peer.setAnswer(operation, statusCode(ServiceStatus::NotAllowed));
    GuiToServerAdminCorbaHandler handler(site.handler);
    QCOMPARE(call(handler), statusCode(ServiceStatus::NotAllowed));
    QCOMPARE(handler.lastErrorText(),
             ToolbarHelper::Instance()->ErrorId2Text(statusCode(ServiceStatus::NotAllowed), 1));
}

void tst_GuiToServerAdminCorbaHandler::failuresBecomeCodes()
{
    QFETCH(QString, operation);
    QFETCH(Operation, call);
    ServiceSite site;
    GuiToServerAdminCorbaHandler handler(site.handler);
    site.peer.setAction(operation, [] { throw CORBA::NO_MEMORY(0, CORBA::COMPLETED_NO); });
    QCOMPARE(call(handler), statusCode(ServiceStatus::RecorderOverloaded));
    site.peer.setAction(operation, [] { throw CORBA::INTERNAL(0, CORBA::COMPLETED_MAYBE); });
    QCOMPARE(call(handler), statusCode(ServiceStatus::RecorderFailed));
    site.peer.setAction(operation, {});
    site.peer.withdraw();
    QCOMPARE(call(handler), statusCode(ServiceStatus::ServiceNotOffered));
    site.peer.publish();
    QCOMPARE(call(handler), 0UL);
    QCOMPARE(site.peer.calls().size(), 3);
}

void tst_GuiToServerAdminCorbaHandler::anEmptyListOfBookmarksIsACall()
{
    ServiceSite site;
    GuiToServerAdminCorbaHandler handler(site.handler);
    QCOMPARE(handler.addBookmarkEntries("D1", "R1", {}), 0UL);
    QCOMPARE(site.peer.calls(), QStringList("addBookmarks D1 R1 []"));
}

void tst_GuiToServerAdminCorbaHandler::emptyTextsArrive()
{
    ServiceSite site;
    GuiToServerAdminCorbaHandler handler(site.handler);
    QCOMPARE(handler.SetRecordComment(QString(), QString(), QString()), 0UL);
    QCOMPARE(site.peer.calls(), QStringList("setRecordComment   "));
}

void tst_GuiToServerAdminCorbaHandler::aTextThatIsTooLongIsNotSent()
{
    ServiceSite site;
    GuiToServerAdminCorbaHandler handler(site.handler);
    QCOMPARE(handler.addHistory("D1", "R1", QString(5 * 1024 * 1024, 'x')),
             statusCode(ServiceStatus::NotTransmittable));
    QCOMPARE(handler.addHistory("D1", "R1", "short"), 0UL);
    QCOMPARE(site.peer.calls(), QStringList("addHistory D1 R1 short"));
}

void tst_GuiToServerAdminCorbaHandler::aFlagThatIsTakenAway()
{
    ServiceSite site;
    GuiToServerAdminCorbaHandler handler(site.handler);
    QCOMPARE(handler.SetRecordDeletableFlag("D1", "R1", false), 0UL);
    QCOMPARE(site.peer.calls(), QStringList("setRecordDeletableFlag D1 R1 false"));
}

void tst_GuiToServerAdminCorbaHandler::aCopyTellsItsId()
{
    ServiceSite site;
    GuiToServerAdminCorbaHandler handler(site.handler);
    QString id;
    QCOMPARE(handler.copyRecord("D1", "R1", 1, 2, "copy", &id), 0UL);
    QCOMPARE(id, ServicePeer::newId());
}

void tst_GuiToServerAdminCorbaHandler::aRefusedCopyTellsNoId()
{
    ServiceSite site;
    site.peer.setAnswer("copyRecord", statusCode(ServiceStatus::NoSamples));
    GuiToServerAdminCorbaHandler handler(site.handler);
    QString id = "as before";
    QCOMPARE(handler.copyRecord("D1", "R1", 1, 2, "copy", &id), statusCode(ServiceStatus::NoSamples));
    QCOMPARE(id, "as before");
}

void tst_GuiToServerAdminCorbaHandler::theTimeOfADevice()
{
    ServiceSite site;
    GuiToServerAdminCorbaHandler handler(site.handler);
    qint64 time = 0;
    bool synchronised = false;
    QCOMPARE(handler.getDeviceTime("D1", time, synchronised), 0UL);
    QCOMPARE(time, 1234567890123456LL);
    QVERIFY(synchronised);
    QCOMPARE(site.peer.calls(), QStringList("getDeviceTime D1"));
}

void tst_GuiToServerAdminCorbaHandler::aFailureLeavesTheTimeAlone()
{
    ServiceSite site;
    site.peer.setAnswer("getDeviceTime", statusCode(ServiceStatus::NoSuchDevice));
    GuiToServerAdminCorbaHandler handler(site.handler);
    qint64 time = 5;
    bool synchronised = false;
    QCOMPARE(handler.getDeviceTime("D9", time, synchronised), statusCode(ServiceStatus::NoSuchDevice));
    QCOMPARE(time, 5LL);
    QVERIFY(!synchronised);
}

void tst_GuiToServerAdminCorbaHandler::aRecord()
{
    ServiceSite site;
    QD_ZLK::RecordInfo info{};
    info.recordId = "R1";
    info.recordName = toWideCorba(wideText);
    info.kind = QD_ZLK::KIND_FINISHED;
    site.peer.setRecord(info);
    GuiToServerAdminCorbaHandler handler(site.handler);
    ZELKO_XML::ZELKO_RecordData record;
    QCOMPARE(handler.getRecord("D1", "R1", record), 0UL);
    QCOMPARE(record.GetRecordID(), "R1");
    QCOMPARE(record.GetRecordName(), wideText);
    QCOMPARE(record.GetRecordStatus(), ZELKO_XML::ZELKO_RecordData::RecordStatus::Finished);
}

void tst_GuiToServerAdminCorbaHandler::aRecordThatIsRefusedInWords()
{
    using Admin = QD_ZLK::IF_ZELKO_Admin;
    ServiceSite site;
    site.peer.setAction("getRecord", [] { throw Admin::exAdmin(Admin::ADMIN_FAILED, "no record R1"); });
    GuiToServerAdminCorbaHandler handler(site.handler);
    ZELKO_XML::ZELKO_RecordData record;
    record.SetRecordID("as before");
    QCOMPARE(handler.getRecord("D1", "R1", record), statusCode(ServiceStatus::InternalError));
    QVERIFY2(handler.lastErrorText().contains("no record R1"), qPrintable(handler.lastErrorText()));
    QCOMPARE(record.GetRecordID(), "as before");
}

void tst_GuiToServerAdminCorbaHandler::whatTheServiceHasNoNumberForIsNotSent_data()
{
    QTest::addColumn<unsigned long>("fftLength");
    QTest::addColumn<int>("window");
    QTest::addColumn<unsigned int>("port");
    QTest::newRow("a length beyond a long") << 2147483648UL << 0 << 1U;
    QTest::newRow("a window beyond the last") << 4UL << 5 << 1U;
    QTest::newRow("a negative window") << 4UL << -1 << 1U;
    QTest::newRow("a port beyond the last") << 4UL << 0 << 65536U;
}

void tst_GuiToServerAdminCorbaHandler::whatTheServiceHasNoNumberForIsNotSent()
{
    QFETCH(unsigned long, fftLength);
    QFETCH(int, window);
    QFETCH(unsigned int, port);
    ServiceSite site;
    GuiToServerAdminCorbaHandler handler(site.handler);
    QCOMPARE(handler.overviewSpectrumStreamed("D1", "R1", 1, 2, 3, fftLength, static_cast<eFFT_Window>(window),
                                              "192.0.2.1", port),
             statusCode(ServiceStatus::BadArgument));
    QCOMPARE(site.peer.calls(), QStringList());
    QVERIFY(!handler.lastErrorText().isEmpty());
}

void tst_GuiToServerAdminCorbaHandler::anotherSubSystemIsAnotherRecorder()
{
    ServiceSite site;
    FaultProxy south(site.orb.port());
    site.data->configuration->AddSubSystem({"south", "127.0.0.1", south.port()});
    GuiToServerAdminCorbaHandler handler(site.handler);
    handler.sl_activeDeviceChanged("D1", "north");
    QCOMPARE(handler.requestRecordDataDetail("D1", "R1"), 0UL);
    QCOMPARE(south.connections(), 0);
    QCOMPARE(site.peer.adminRequests(), 1);
    handler.sl_activeDeviceChanged("D2", "north"); // its recorder is known
    QCOMPARE(handler.requestRecordDataDetail("D2", "R1"), 0UL);
    QCOMPARE(site.peer.adminRequests(), 1);
    site.data->configuration->SetCurrentSubSystem("south");
    handler.sl_activeDeviceChanged("D1", "south");
    QCOMPARE(handler.requestRecordDataDetail("D1", "R1"), 0UL);
    QVERIFY(south.connections() > 0);
    QCOMPARE(site.peer.adminRequests(), 2);
}

void tst_GuiToServerAdminCorbaHandler::withoutAServerNothingIsConfigured()
{
    GuiToServerAdminCorbaHandler handler(nullptr);
    handler.sl_activeDeviceChanged("D1", "north");
    QCOMPARE(handler.addHistory("D1", "R1", "text"), statusCode(ServiceStatus::NotConfigured));
    QVERIFY(!handler.lastErrorText().isEmpty());
}

QTEST_GUILESS_MAIN(tst_GuiToServerAdminCorbaHandler)

#include "tst_guitoserveradmincorbahandler.moc"
