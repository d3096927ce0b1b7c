#include "servicesite.h"

#include <zelkobase/service/guitoserverexportcorbahandler.h>
#include <zelkobase/service/recorderservice.h>

#include <QTest>

using namespace ZelkoCommon;
using ZelkoGUI::GuiToServerExportCorbaHandler;
using Zlk = QD_ZLK::IF_ZLK_c_ZLK;

class tst_GuiToServerExportCorbaHandler : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void connectedWhileTheServiceIsThere();
    void anExportGivesItsId();
    void bothWaysOfExportingAreOne();
    void aRefusedExportGivesNothing();
    void anExportIsCancelled_data();
    void anExportIsCancelled();
    void aRefusedCancelIsFalse();
    void withoutAServerNothingIsConnected();
};

void tst_GuiToServerExportCorbaHandler::connectedWhileTheServiceIsThere()
{
    ServiceSite site;
    site.peer.withdraw();
    const GuiToServerExportCorbaHandler handler(site.handler);
    QVERIFY(!handler.connected());
    site.peer.publish();
    QVERIFY(handler.connected());
    QCOMPARE(site.peer.calls(), QStringList());
}

void tst_GuiToServerExportCorbaHandler::anExportGivesItsId()
{
    ServiceSite site;
    GuiToServerExportCorbaHandler handler(site.handler);
    QCOMPARE(handler.exportRecord("D1", "R1", QStringLiteral("/srv/Ausgänge")), ServicePeer::newId());
    QCOMPARE(site.peer.calls(), QStringList(QStringLiteral("exportRecording D1 R1 /srv/Ausgänge")));
    QVERIFY(site.peer.wasCalledOverNetwork());
    QCOMPARE(handler.lastError(), 0UL);
    QCOMPARE(handler.lastErrorText(), QString());
}

void tst_GuiToServerExportCorbaHandler::bothWaysOfExportingAreOne()
{
    ServiceSite site;
    GuiToServerExportCorbaHandler handler(site.handler);
    QCOMPARE(handler.exportRecordEx("D1", "R1", "/srv/out"), ServicePeer::newId());
    QCOMPARE(site.peer.calls(), QStringList("exportRecording D1 R1 /srv/out"));
}

void tst_GuiToServerExportCorbaHandler::aRefusedExportGivesNothing()
{
    ServiceSite site;
    site.peer.setAction("exportRecording", [] { throw Zlk::exZLK(Zlk::ZLK_UNKNOWN_RECORD, "no record R9"); });
    GuiToServerExportCorbaHandler handler(site.handler);
    QCOMPARE(handler.exportRecord("D1", "R9", "/srv/out"), QString());
    QCOMPARE(handler.lastError(), statusCode(ServiceStatus::NoSuchRecord));
    QVERIFY2(handler.lastErrorText().contains("no record R9"), qPrintable(handler.lastErrorText()));
    site.peer.setAction("exportRecording", {});
    QCOMPARE(handler.exportRecord("D1", "R1", "/srv/out"), ServicePeer::newId());
    QCOMPARE(handler.lastError(), 0UL);
}

void tst_GuiToServerExportCorbaHandler::anExportIsCancelled_data()
{
    QTest::addColumn<bool>("removeTarget");
    QTest::addColumn<QString>("arrived");
    QTest::newRow("and what it wrote goes") << true << "cancelExport E1 true";
    QTest::newRow("and what it wrote stays") << false << "cancelExport E1 false";
}

void tst_GuiToServerExportCorbaHandler::anExportIsCancelled()
{
    QFETCH(bool, removeTarget);
    ServiceSite site;
    GuiToServerExportCorbaHandler handler(site.handler);
    QVERIFY(handler.cancelExport("E1", removeTarget));
    QFETCH(QString, arrived);
    QCOMPARE(site.peer.calls(), QStringList(arrived));
}

void tst_GuiToServerExportCorbaHandler::aRefusedCancelIsFalse()
{
    ServiceSite site;
    site.peer.setAction("cancelExport", [] { throw Zlk::exZLK(Zlk::ZLK_NOT_PERMITTED, "not yours"); });
    GuiToServerExportCorbaHandler handler(site.handler);
    QVERIFY(!handler.cancelExport("E1", true));
    QCOMPARE(handler.lastError(), statusCode(ServiceStatus::NotAllowed));
}

void tst_GuiToServerExportCorbaHandler::withoutAServerNothingIsConnected()
{
    GuiToServerExportCorbaHandler handler(nullptr);
    QVERIFY(!handler.connected());
    QCOMPARE(handler.exportRecord("D1", "R1", "/srv/out"), QString());
    QVERIFY(!handler.cancelExport("E1", false));
    QCOMPARE(handler.lastError(), statusCode(ServiceStatus::NotConfigured));
    QVERIFY(!handler.lastErrorText().isEmpty());
}

QTEST_GUILESS_MAIN(tst_GuiToServerExportCorbaHandler)

#include "tst_guitoserverexportcorbahandler.moc"
