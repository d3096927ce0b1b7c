#include <console/session/listenaddress.h>

#include <QHash>
#include <QTest>

using namespace ZelkoConsole;
using ZelkoCommon::ZelkoConfiguration;

namespace {

ZelkoConfiguration siteOf(const QStringList& hosts)
{
    ZelkoConfiguration site;
    for (const QString& host : hosts) {
        site.AddSubSystem({QStringLiteral("to ") + host, host, 8004});
    }
    return site;
}

// A machine with two interfaces.
std::optional<QHostAddress> ownAddress(const QString& host)
{
    static const QHash<QString, const char*> ways{
        {QStringLiteral("localhost"), "127.0.0.1"}, {QStringLiteral("::1"), "::1"},
        {QStringLiteral("north"), "192.0.2.20"},    {QStringLiteral("north-2"), "192.0.2.20"},
        {QStringLiteral("south"), "198.51.100.7"},  {QStringLiteral("west"), "2001:db8::7"}};
    const auto way = ways.find(host);
    return way == ways.end() ? std::nullopt : std::optional(QHostAddress(QLatin1String(*way)));
}

} // namespace

class TestListenAddress : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void findsTheAddressThatTheRecordersReach_data()
    {
        QTest::addColumn<QStringList>("hosts");
        QTest::addColumn<QString>("address");
        const auto row = [](const char* name, const char* hosts, const char* address) {
            QTest::newRow(name) << QString::fromLatin1(hosts).split(QLatin1Char(' ')) << QString::fromLatin1(address);
        };
        row("a recorder on this machine", "localhost", "127.0.0.1");
        row("one on this machine by its IPv6 address", "::1", "127.0.0.1");
        row("one elsewhere", "north", "192.0.2.20");
        row("two by the same interface", "north north-2", "192.0.2.20");
        row("one here and one elsewhere", "localhost north", "192.0.2.20");
        row("one elsewhere and one here", "north localhost", "192.0.2.20");
        row("one elsewhere by IPv6", "west", "2001:db8::7");
        row("two by different interfaces", "north south", "");
        row("one that nobody knows", "nowhere", "");
        row("one that nobody knows and one here", "localhost nowhere", "");
    }

    void findsTheAddressThatTheRecordersReach()
    {
        QFETCH(QStringList, hosts);
        QTEST(listenAddress(siteOf(hosts), ownAddress), "address");
    }

    void takesTheAddressOfTheSite_data()
    {
        QTest::addColumn<QString>("listen");
        QTest::addColumn<QString>("address");
        QTest::newRow("an address") << QStringLiteral("198.51.100.7") << QStringLiteral("198.51.100.7");
        QTest::newRow("a name") << QStringLiteral("console-1") << QStringLiteral("console-1");
        QTest::newRow("all of IPv4") << QStringLiteral("0.0.0.0") << QString();
        QTest::newRow("all of IPv6") << QStringLiteral("::") << QString();
    }

    void takesTheAddressOfTheSite()
    {
        QFETCH(QString, listen);
        auto site = siteOf({QStringLiteral("north")});
        QVERIFY(site.SetListenAddress(listen));
        QTEST(listenAddress(site, ownAddress), "address");
    }

    void asksTheSystemForNamesAndRoutes_data()
    {
        QTest::addColumn<QString>("host");
        QTest::newRow("the name of this machine for itself") << QStringLiteral("localhost");
        QTest::newRow("an address") << QStringLiteral("127.0.0.5");
        QTest::newRow("an IPv6 address") << QStringLiteral("::1");
    }

    void asksTheSystemForNamesAndRoutes()
    {
        QFETCH(QString, host);
        QCOMPARE(listenAddress(siteOf({host})), QStringLiteral("127.0.0.1"));
    }

    void doesNotWaitForANameForLong()
    {
        QCOMPARE(listenAddress(siteOf({QStringLiteral("nowhere.invalid")}), std::chrono::milliseconds(0)), QString());
    }
};

QTEST_GUILESS_MAIN(TestListenAddress)
#include "tst_listenaddress.moc"
