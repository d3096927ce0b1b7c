#include <console/demo/sampleconnection.h>
#include <console/session/siteconnection.h>

#include <zelkobase/connection/zelkoconfiguration.h>

#include <QSignalSpy>
#include <QTest>

using namespace ZelkoConsole;
using ZelkoCommon::ZelkoConfiguration;

namespace {

const QString north = QStringLiteral("north");
const QString south = QStringLiteral("south");

struct Setting
{
    Setting()
        : configuration(std::make_shared<ZelkoConfiguration>())
        , connection(configuration)
    {
        configuration->AddSubSystem({north, QStringLiteral("127.0.0.1"), 7});
        QObject::connect(&connection, &SiteConnection::si_allTicsConnected, &connection,
                         [this](const QString& name) { log.append(QStringLiteral("connected ") + name); });
        QObject::connect(&connection, &SiteConnection::si_allTicsDisconnected, &connection,
                         [this](const QString& name) { log.append(QStringLiteral("disconnected ") + name); });
        QObject::connect(&connection, &SiteConnection::si_deviceNodeAdded, &connection,
                         [this](const QString& path) { log.append(QStringLiteral("device ") + path); });
    }

    bool canWrite(const QString& subSystem) const
    {
        return connection.getVtClient(subSystem, ZelkoCommon::ConnectionType::Client) != nullptr;
    }

    std::shared_ptr<ZelkoConfiguration> configuration;
    SiteConnection connection;
    QStringList log;
};

} // namespace

class TestSiteConnection : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void hasNothingWithoutACarrier()
    {
        const Setting setting;
        QVERIFY(!setting.connection.isConnected(north));
        QVERIFY(!setting.canWrite(north));
        QCOMPARE(setting.connection.GetConfiguration(), setting.configuration);
    }

    void knowsItsPathsAndAddressesWithoutACarrier()
    {
        const Setting setting;
        QCOMPARE(setting.connection.GetDeviceBasePath(QStringLiteral("A1")),
                 setting.connection.getClientBasePath(north, ZelkoCommon::ConnectionType::Client) +
                     QStringLiteral("/A1"));
        ZelkoCommon::VtConnectData data;
        QVERIFY(setting.connection.GetIPConnectionInformation({}, data));
        QCOMPARE(data.port, quint16(7));
    }

    void tellsAndGivesWhatItsCarrierHas()
    {
        Setting setting;
        SampleConnection carrier({north, south});
        setting.connection.follow(&carrier);
        carrier.setConnected(north, true);
        Q_EMIT carrier.si_deviceNodeAdded(QStringLiteral("/a/b"));
        QVERIFY(setting.connection.isConnected(north));
        QVERIFY(!setting.connection.isConnected(south));
        QVERIFY(setting.canWrite(north));
        carrier.setConnected(north, false);
        QVERIFY(!setting.canWrite(north));
        QCOMPARE(setting.log, QStringList({QStringLiteral("connected north"), QStringLiteral("device /a/b"),
                                           QStringLiteral("disconnected north")}));
    }

    void tellsThatEverythingIsGoneWithItsCarrier()
    {
        Setting setting;
        auto carrier = std::make_unique<SampleConnection>(QStringList{north, south});
        setting.connection.follow(carrier.get());
        carrier->setConnected(north, true);
        setting.log.clear();
        carrier.reset();
        setting.connection.follow(nullptr);
        QCOMPARE(setting.log, QStringList(QStringLiteral("disconnected north")));
        QVERIFY(!setting.connection.isConnected(north));
    }

    void followsAnotherCarrierInPlaceOfOneThatIsGone()
    {
        Setting setting;
        auto first = std::make_unique<SampleConnection>(QStringList{north});
        setting.connection.follow(first.get());
        first->setConnected(north, true);
        first.reset();
        SampleConnection second({north});
        setting.connection.follow(&second);
        QVERIFY(!setting.connection.isConnected(north));
        second.setConnected(north, true);
        QCOMPARE(setting.log, QStringList({QStringLiteral("connected north"), QStringLiteral("disconnected north"),
                                           QStringLiteral("connected north")}));
    }
};

QTEST_GUILESS_MAIN(TestSiteConnection)
#include "tst_siteconnection.moc"
