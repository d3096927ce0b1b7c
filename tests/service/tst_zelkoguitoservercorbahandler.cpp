#include "servicesite.h"

#include <zelkobase/service/guitoserveradmincorbahandler.h>
#include <zelkobase/service/recorderservice.h>
#include <zelkobase/service/serviceaddress.h>

#include <QTest>

using namespace ZelkoCommon;
using ZelkoGUI::GuiToServerAdminCorbaHandler;
using ZelkoGUI::ZelkoGuiToServerCorbaHandler;

class tst_ZelkoGuiToServerCorbaHandler : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void givesWhatItWasGiven();
    void followsTheCurrentSubSystem();
    void keepsToASubSystemOfItsOwn();
    void isConnectedWithTheBranch();
    void theServiceOfTheSiteFileGoesBeforeHostAndPort();
    void aReferenceOfItsOwnGoesBeforeTheSiteFile();
    void anUnknownSubSystemIsNotConfigured();
    void aLostLinkLetsTheServiceGo();
    void aLostLinkOfAnotherSubSystemDoesNot();
    void withoutConnectionDataNothingIsThere();
    void theLimitIsThatOfTheService();
    void theLimitIsThatOfTheSite();
};

void tst_ZelkoGuiToServerCorbaHandler::givesWhatItWasGiven()
{
    const auto data = std::make_shared<FakeConnectionData>(ServiceSite::configuration(1));
    const ZelkoGuiToServerCorbaHandler handler(data);
    QCOMPARE(handler.GetServerConnectionData(), std::shared_ptr<AbstractServerConnectionData>(data));
}

void tst_ZelkoGuiToServerCorbaHandler::followsTheCurrentSubSystem()
{
    const auto data = std::make_shared<FakeConnectionData>(ServiceSite::configuration(1));
    data->configuration->AddSubSystem({"south", "127.0.0.1", 2});
    const ZelkoGuiToServerCorbaHandler handler(data);
    QCOMPARE(handler.GetCurrentSubsystem(), "north");
    data->configuration->SetCurrentSubSystem("south");
    QCOMPARE(handler.GetCurrentSubsystem(), "south");
}

void tst_ZelkoGuiToServerCorbaHandler::keepsToASubSystemOfItsOwn()
{
    const auto data = std::make_shared<FakeConnectionData>(ServiceSite::configuration(1));
    data->configuration->AddSubSystem({"south", "127.0.0.1", 2});
    const ZelkoGuiToServerCorbaHandler handler("south", data, {});
    QCOMPARE(handler.GetCurrentSubsystem(), "south");
    data->setConnected("north", true);
    QVERIFY(!handler.IsConnected());
    data->setConnected("south", true);
    QVERIFY(handler.IsConnected());
}

void tst_ZelkoGuiToServerCorbaHandler::isConnectedWithTheBranch()
{
    const auto data = std::make_shared<FakeConnectionData>(ServiceSite::configuration(1));
    const ZelkoGuiToServerCorbaHandler handler(data);
    QVERIFY(!handler.IsConnected());
    data->setConnected("north", true);
    QVERIFY(handler.IsConnected());
    data->setConnected("north", false);
    QVERIFY(!handler.IsConnected());
}

void tst_ZelkoGuiToServerCorbaHandler::theServiceOfTheSiteFileGoesBeforeHostAndPort()
{
    ServiceSite site;
    const QString service = serviceReference({"127.0.0.1"}, site.proxy.port());
    QVERIFY(site.data->configuration->AddSubSystem({"north", "127.0.0.1", 1, service}));
    QCOMPARE(site.handler->service().connect(), 0UL);
    QVERIFY(site.data->configuration->AddSubSystem({"north", "127.0.0.1", 1}));
    QVERIFY(site.handler->service().connect() != 0UL);
}

void tst_ZelkoGuiToServerCorbaHandler::aReferenceOfItsOwnGoesBeforeTheSiteFile()
{
    ServiceSite site;
    site.data->configuration->AddSubSystem({"north", "127.0.0.1", 1});
    const ZelkoGuiToServerCorbaHandler handler({}, site.data, serviceReference({"127.0.0.1"}, site.proxy.port()));
    QCOMPARE(handler.service().connect(), 0UL);
}

void tst_ZelkoGuiToServerCorbaHandler::anUnknownSubSystemIsNotConfigured()
{
    ServiceSite site;
    const ZelkoGuiToServerCorbaHandler handler("nowhere", site.data, {});
    QCOMPARE(handler.service().connect(), statusCode(ServiceStatus::NotConfigured));
    QVERIFY(!handler.lastErrorText().isEmpty());
}

void tst_ZelkoGuiToServerCorbaHandler::aLostLinkLetsTheServiceGo()
{
    ServiceSite site;
    GuiToServerAdminCorbaHandler admin(site.handler);
    QCOMPARE(admin.requestRecordDataDetail("D1", "R1"), 0UL);
    site.data->setConnected("north", false);
    QCOMPARE(admin.requestRecordDataDetail("D1", "R1"), 0UL);
    QCOMPARE(site.peer.adminRequests(), 2);
}

void tst_ZelkoGuiToServerCorbaHandler::aLostLinkOfAnotherSubSystemDoesNot()
{
    ServiceSite site;
    GuiToServerAdminCorbaHandler admin(site.handler);
    QCOMPARE(admin.requestRecordDataDetail("D1", "R1"), 0UL);
    site.data->setConnected("south", false);
    QCOMPARE(admin.requestRecordDataDetail("D1", "R1"), 0UL);
    QCOMPARE(site.peer.adminRequests(), 1);
}

void tst_ZelkoGuiToServerCorbaHandler::withoutConnectionDataNothingIsThere()
{
    const ZelkoGuiToServerCorbaHandler handler(nullptr);
    QCOMPARE(handler.GetCurrentSubsystem(), QString());
    QVERIFY(!handler.IsConnected());
    QCOMPARE(handler.service().connect(), statusCode(ServiceStatus::NotConfigured));
}

void tst_ZelkoGuiToServerCorbaHandler::theLimitIsThatOfTheService()
{
    ZelkoGuiToServerCorbaHandler handler(nullptr);
    QCOMPARE(handler.limit(), std::chrono::milliseconds(5000));
    handler.setLimit(std::chrono::milliseconds(700));
    QCOMPARE(handler.limit(), std::chrono::milliseconds(700));
    QCOMPARE(handler.service().limit(), std::chrono::milliseconds(700));
}

void tst_ZelkoGuiToServerCorbaHandler::theLimitIsThatOfTheSite()
{
    auto site = ServiceSite::configuration(1);
    QVERIFY(site.SetAnswerLimit(std::chrono::milliseconds(700)));
    const ZelkoGuiToServerCorbaHandler handler(std::make_shared<FakeConnectionData>(site));
    QCOMPARE(handler.limit(), std::chrono::milliseconds(700));
}

QTEST_GUILESS_MAIN(tst_ZelkoGuiToServerCorbaHandler)

#include "tst_zelkoguitoservercorbahandler.moc"
