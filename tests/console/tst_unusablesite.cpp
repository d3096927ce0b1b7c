#include <console/session/unusablesite.h>

#include <zelkobase/connection/abstractserverconnectiondata.h>

#include <QTest>

using namespace ZelkoConsole;

namespace {

ZelkoCommon::ZelkoConfiguration twoSubSystems()
{
    ZelkoCommon::ZelkoConfiguration site;
    site.AddSubSystem({QStringLiteral("north"), QStringLiteral("127.0.0.1")});
    site.AddSubSystem({QStringLiteral("south"), QStringLiteral("127.0.0.1")});
    return site;
}

} // namespace

class TestUnusableSite : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void namesTheSubSystemsOfTheSite()
    {
        const UnusableSite site(twoSubSystems(), QStringLiteral("the key is lost"));
        QCOMPARE(site.subSystems(), QStringList({QStringLiteral("north"), QStringLiteral("south")}));
    }

    void saysOfEachWhyItIsNotConnected()
    {
        const UnusableSite site(twoSubSystems(), QStringLiteral("the key is lost"));
        const SubSystemStatus status{LinkState::Unusable, QStringLiteral("the key is lost")};
        QCOMPARE(site.status(QStringLiteral("north")), status);
        QCOMPARE(site.status(QStringLiteral("south")), status);
        QCOMPARE(site.status(QStringLiteral("west")), SubSystemStatus());
        QCOMPARE(longText(QStringLiteral("north"), status),
                 QStringLiteral("This console cannot connect to recorder north: the key is lost"));
        QCOMPARE(shortText(status), QStringLiteral("no connection"));
    }

    void connectsNothing()
    {
        const UnusableSite site(twoSubSystems(), QStringLiteral("the key is lost"));
        const auto connection = site.connectionData();
        QVERIFY(connection);
        QCOMPARE(connection, site.connectionData());
        QVERIFY(!connection->isConnected(QStringLiteral("north")));
        QVERIFY(!connection->getVtClient(QStringLiteral("north"), ZelkoCommon::ConnectionType::Client));
        QVERIFY(!site.role(QStringLiteral("north")));
    }
};

QTEST_GUILESS_MAIN(TestUnusableSite)
#include "tst_unusablesite.moc"
