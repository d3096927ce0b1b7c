#include "statesite.h"

#include <console/channel/permittedconnection.h>
#include <console/session/consoleuser.h>

#include <QSignalSpy>
#include <QTest>

using namespace ZelkoConsole;
using namespace Qt::StringLiterals;
using ZelkoCommon::ConnectionType;

namespace {

const QString north = u"north"_s;

void become(ZelkoCommon::Role role)
{
    UserRights::Instance()->SetUser(ZelkoCommon::roleName(role), ConsoleUser::rightsOf(role));
}

} // namespace

class TestPermittedConnection : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { UserRights::Instance()->SetUser({}, {}); }
    void bindsValuesForWhoMayChangeAnything_data();
    void bindsValuesForWhoMayChangeAnything();
    void letsGoForAnybody();
    void hasNoClientWithoutAConnection();
    void tellsOfConnections();
};

void TestPermittedConnection::bindsValuesForWhoMayChangeAnything_data()
{
    QTest::addColumn<ZelkoCommon::Role>("role");
    QTest::addColumn<QStringList>("bound");
    QTest::newRow("a viewer") << ZelkoCommon::Role::Viewer << QStringList();
    QTest::newRow("an operator") << ZelkoCommon::Role::Operator << QStringList(u"added Channel 0"_s);
    QTest::newRow("an administrator") << ZelkoCommon::Role::Administrator << QStringList(u"added Channel 0"_s);
}

void TestPermittedConnection::bindsValuesForWhoMayChangeAnything()
{
    QFETCH(ZelkoCommon::Role, role);
    const StateSite site({north});
    const PermittedConnection connection(site.data);
    become(role);
    connection.getVtClient(north, ConnectionType::Client)->AddValue(StateSite::putText(u"Channel"_s), 0);
    QTEST(site.client->take(), "bound");
}

void TestPermittedConnection::letsGoForAnybody()
{
    const StateSite site({north});
    const PermittedConnection connection(site.data);
    become(ZelkoCommon::Role::Viewer);
    ValueBase* const value = StateSite::putText(u"Channel"_s);
    site.client->AddValue(value, 0);
    connection.getVtClient(north, ConnectionType::Client)->RemoveValue(value);
    QVERIFY(!value->GetTransmitter());
}

void TestPermittedConnection::hasNoClientWithoutAConnection()
{
    const StateSite site;
    const PermittedConnection connection(site.data);
    QVERIFY(!connection.getVtClient(north, ConnectionType::Client));
    QVERIFY(!connection.isConnected(north));
    QCOMPARE(connection.GetConfiguration(), site.data->GetConfiguration());
}

void TestPermittedConnection::tellsOfConnections()
{
    const StateSite site;
    const PermittedConnection connection(site.data);
    const QSignalSpy came(&connection, &PermittedConnection::si_allTicsConnected);
    const QSignalSpy went(&connection, &PermittedConnection::si_allTicsDisconnected);
    site.data->setConnected(north, true);
    QCOMPARE(came.size(), 1);
    QVERIFY(connection.isConnected(north));
    site.data->setConnected(north, false);
    QCOMPARE(went.size(), 1);
}

QTEST_MAIN(TestPermittedConnection)
#include "tst_permittedconnection.moc"
