#include <recorder/process/reachableaddress.h>

#include <QTest>

#include <deque>

#include <arpa/inet.h>
#include <ifaddrs.h>
#include <net/if.h>

using namespace ZelkoRecorder;

namespace {

// The addresses of a machine that is described in words: "192.0.2.7", "down 192.0.2.7", "loopback ::1".
class Machine
{
public:
    explicit Machine(const QStringList& addresses)
    {
        for (const QString& address : addresses) {
            add(address.split(QLatin1Char(' ')));
        }
    }

    const ifaddrs* addresses() const { return m_list.empty() ? nullptr : &m_list.front(); }

private:
    void add(const QStringList& words)
    {
        ifaddrs entry{};
        entry.ifa_flags = IFF_UP | IFF_RUNNING;
        if (words.contains("down")) {
            entry.ifa_flags = IFF_UP;
        }
        if (words.contains("loopback")) {
            entry.ifa_flags |= IFF_LOOPBACK;
        }
        entry.ifa_addr = words.last() == "none" ? nullptr : socketAddress(words.last());
        m_list.push_back(entry);
        if (m_list.size() > 1) {
            m_list[m_list.size() - 2].ifa_next = &m_list.back();
        }
    }

    sockaddr* socketAddress(const QString& text)
    {
        auto& address = m_addresses.emplace_back();
        auto& older = reinterpret_cast<sockaddr_in&>(address);
        auto& newer = reinterpret_cast<sockaddr_in6&>(address);
        address.ss_family = text.contains(QLatin1Char(':')) ? AF_INET6 : AF_INET;
        void* const bytes = address.ss_family == AF_INET ? static_cast<void*>(&older.sin_addr) : &newer.sin6_addr;
        inet_pton(address.ss_family, qPrintable(text), bytes);
        return reinterpret_cast<sockaddr*>(&address);
    }

    std::deque<ifaddrs> m_list;
    std::deque<sockaddr_storage> m_addresses;
};

} // namespace

class TestReachableAddress : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void keepsAnAddressOfItsOwn_data();
    void keepsAnAddressOfItsOwn();
    void findsOneForAllInterfaces_data();
    void findsOneForAllInterfaces();
    void takesTheFirstThatOthersReach_data();
    void takesTheFirstThatOthersReach();
};

void TestReachableAddress::keepsAnAddressOfItsOwn_data()
{
    QTest::addColumn<QString>("address");
    QTest::newRow("loopback") << QStringLiteral("127.0.0.1");
    QTest::newRow("of a network") << QStringLiteral("192.0.2.7");
    QTest::newRow("a name") << QStringLiteral("recorder.example");
}

void TestReachableAddress::keepsAnAddressOfItsOwn()
{
    QFETCH(const QString, address);
    QCOMPARE(reachableAddress(address), address);
}

void TestReachableAddress::findsOneForAllInterfaces_data()
{
    QTest::addColumn<QString>("address");
    QTest::newRow("none") << QString();
    QTest::newRow("any of the older kind") << QStringLiteral("0.0.0.0");
    QTest::newRow("any of the newer kind") << QStringLiteral("::");
}

void TestReachableAddress::findsOneForAllInterfaces()
{
    QFETCH(const QString, address);
    in_addr found{};
    in6_addr newer{};
    const QString text = reachableAddress(address);
    if (inet_pton(AF_INET, qPrintable(text), &found) == 1) {
        QVERIFY(found.s_addr != INADDR_ANY);
    } else {
        QCOMPARE(address, "::"); // on a machine that has nothing else
        QCOMPARE(inet_pton(AF_INET6, qPrintable(text), &newer), 1);
    }
}

void TestReachableAddress::takesTheFirstThatOthersReach_data()
{
    QTest::addColumn<QStringList>("addresses");
    QTest::addColumn<bool>("anyKind");
    QTest::addColumn<QString>("first");
    QTest::newRow("a machine without any") << QStringList{} << true << QString();
    QTest::newRow("an interface without an address") << QStringList{"none"} << true << QString();
    QTest::newRow("the first of two") << QStringList{"192.0.2.7", "192.0.2.8"} << false << "192.0.2.7";
    QTest::newRow("behind the loopback") << QStringList{"loopback 127.0.0.1", "192.0.2.7"} << false << "192.0.2.7";
    QTest::newRow("behind one that is down") << QStringList{"down 192.0.2.7", "192.0.2.8"} << false << "192.0.2.8";
    QTest::newRow("the older kind before the newer") << QStringList{"2001:db8::7", "192.0.2.7"} << true << "192.0.2.7";
    QTest::newRow("the newer kind alone") << QStringList{"loopback ::1", "2001:db8::7"} << true << "2001:db8::7";
    QTest::newRow("not one of a single link") << QStringList{"fe80::7", "2001:db8::7"} << true << "2001:db8::7";
    QTest::newRow("not the newer kind where it is not served") << QStringList{"2001:db8::7"} << false << QString();
}

void TestReachableAddress::takesTheFirstThatOthersReach()
{
    QFETCH(const QStringList, addresses);
    QFETCH(const bool, anyKind);
    const Machine machine(addresses);
    QTEST(firstReachable(machine.addresses(), anyKind), "first");
}

QTEST_GUILESS_MAIN(TestReachableAddress)
#include "tst_reachableaddress.moc"
