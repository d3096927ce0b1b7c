#include "patience.h"
#include "testdevices.h"

#include <zelkobase/discovery/announcement.h>
#include <zelkobase/discovery/zelkoudplistener.h>

#include <QSignalSpy>
#include <QUdpSocket>
#include <QtTest>

using ZELKO_XML::ZELKO_AvailableDevice;
using ZelkoCommon::Announcement;
using ZelkoCommon::ZelkoUDPListener;

class ZelkoUDPListenerTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void listensFromTheStart();
    void saysWhenItCannotListen();
    void hearsADevice();
    void theMomentIsThatOfTheArrival();
    void passesOverWhatIsNoAnnouncement();
    void passesOverADatagramThatIsTooLong();
    void announcesKnownDevicesAgain();
    void knowsADeviceByAnyOfItsAddresses();
    void aDeviceTakesThePlaceOfAllThatItOverlaps();
    void forgetsTheDeviceHeardLongestAgo();
    void aSlotMayDeleteTheListener();
    void aSlotMayDeleteTheListenerThatRefreshes();
    void hearsAllOfABurst();
    void twoListenersMayShareAPort();

private:
    void send(const QByteArray& datagram)
    {
        QCOMPARE(m_sender.writeDatagram(datagram, QHostAddress::LocalHost, m_listener->port()), datagram.size());
    }
    void send(const ZELKO_AvailableDevice& device) { send(Announcement::write(device)); }

    QStringList heardAddresses() const
    {
        QStringList all;
        for (const ZELKO_AvailableDevice& device : m_heard) {
            all << QStringList(device.GetIPAddress()).join(u'+');
        }
        return all;
    }

    QUdpSocket m_sender;
    std::unique_ptr<ZelkoUDPListener> m_listener;
    QList<ZELKO_AvailableDevice> m_heard;
};

void ZelkoUDPListenerTest::init()
{
    m_heard.clear();
    m_listener = std::make_unique<ZelkoUDPListener>(nullptr, static_cast<unsigned short>(0));
    connect(m_listener.get(), &ZelkoUDPListener::si_deviceUpdate, this,
            [this](const ZELKO_AvailableDevice& device) { m_heard.append(device); });
}

void ZelkoUDPListenerTest::listensFromTheStart()
{
    QVERIFY(m_listener->listening());
    QVERIFY(m_listener->port() != 0);
}

void ZelkoUDPListenerTest::saysWhenItCannotListen()
{
    QUdpSocket selfish;
    QVERIFY(selfish.bind(QHostAddress::Any, 0, QUdpSocket::DontShareAddress));
    ZelkoUDPListener listener(nullptr, selfish.localPort());
    QVERIFY(!listener.listening());
    QCOMPARE(listener.port(), static_cast<unsigned short>(0));
    listener.refresh();
}

void ZelkoUDPListenerTest::hearsADevice()
{
    ZELKO_AvailableDevice device = makeDevice({QStringLiteral("192.0.2.7")});
    device.SetDeviceName(QStringLiteral("north"));
    send(device);
    QTRY_COMPARE_WITH_TIMEOUT(m_heard.size(), 1, patience);
    device.SetLastBroadcast(m_heard[0].GetLastBroadcast());
    QVERIFY(m_heard[0] == device);
}

void ZelkoUDPListenerTest::theMomentIsThatOfTheArrival()
{
    const auto before = static_cast<quint64>(QDateTime::currentMSecsSinceEpoch());
    send(makeDevice({QStringLiteral("192.0.2.7")}));
    QTRY_COMPARE_WITH_TIMEOUT(m_heard.size(), 1, patience);
    QVERIFY(m_heard[0].GetLastBroadcast() >= before);
    QVERIFY(m_heard[0].GetLastBroadcast() <= static_cast<quint64>(QDateTime::currentMSecsSinceEpoch()));
}

void ZelkoUDPListenerTest::passesOverWhatIsNoAnnouncement()
{
    send(QByteArray("hello"));
    send(QByteArray());
    send(makeDevice({QStringLiteral("192.0.2.7")}));
    QTRY_COMPARE_WITH_TIMEOUT(heardAddresses(), QStringList{"192.0.2.7"}, patience);
}

void ZelkoUDPListenerTest::passesOverADatagramThatIsTooLong()
{
    const QByteArray good = Announcement::write(makeDevice({QStringLiteral("192.0.2.8")}));
    send(good + QByteArray(Announcement::MaximumSize, ' '));
    send(makeDevice({QStringLiteral("192.0.2.7")}));
    QTRY_COMPARE_WITH_TIMEOUT(heardAddresses(), QStringList{"192.0.2.7"}, patience);
}

void ZelkoUDPListenerTest::announcesKnownDevicesAgain()
{
    send(makeDevice({QStringLiteral("192.0.2.2")}));
    send(makeDevice({QStringLiteral("192.0.2.1")}));
    send(makeDevice({QStringLiteral("192.0.2.2")}));
    QTRY_COMPARE_WITH_TIMEOUT(m_heard.size(), 3, patience);
    m_heard.clear();
    m_listener->refresh();
    QCOMPARE(heardAddresses(), (QStringList{"192.0.2.2", "192.0.2.1"}));
}

void ZelkoUDPListenerTest::knowsADeviceByAnyOfItsAddresses()
{
    send(makeDevice({QStringLiteral("192.0.2.1"), QStringLiteral("192.0.2.2")}));
    send(makeDevice({QStringLiteral("192.0.2.2"), QStringLiteral("192.0.2.3")}));
    QTRY_COMPARE_WITH_TIMEOUT(m_heard.size(), 2, patience);
    m_heard.clear();
    m_listener->refresh();
    QCOMPARE(heardAddresses(), (QStringList{"192.0.2.2+192.0.2.3"}));
}

void ZelkoUDPListenerTest::aDeviceTakesThePlaceOfAllThatItOverlaps()
{
    send(makeDevice({QStringLiteral("192.0.2.1")}));
    send(makeDevice({QStringLiteral("192.0.2.9")}));
    send(makeDevice({QStringLiteral("192.0.2.2")}));
    send(makeDevice({QStringLiteral("192.0.2.2"), QStringLiteral("192.0.2.1")}));
    QTRY_COMPARE_WITH_TIMEOUT(m_heard.size(), 4, patience);
    m_heard.clear();
    m_listener->refresh();
    QCOMPARE(heardAddresses(), (QStringList{"192.0.2.2+192.0.2.1", "192.0.2.9"}));
}

void ZelkoUDPListenerTest::forgetsTheDeviceHeardLongestAgo()
{
    QStringList addresses;
    const auto hear = [&](const QString& address) {
        addresses << address;
        send(makeDevice({address}));
        QTRY_COMPARE_WITH_TIMEOUT(m_heard.size(), addresses.size(), patience);
    };
    for (std::size_t i = 0; i < ZelkoUDPListener::MaximumDevices; ++i) {
        hear(QStringLiteral("10.0.%1.%2").arg(i / 200).arg(i % 200));
    }
    hear(addresses.first());
    hear(QStringLiteral("192.0.2.7"));
    QCOMPARE(heardAddresses(), addresses);
    m_heard.clear();
    m_listener->refresh();
    addresses.removeAt(1);
    addresses.removeAt(addresses.size() - 2);
    QCOMPARE(heardAddresses(), addresses);
}

void ZelkoUDPListenerTest::aSlotMayDeleteTheListener()
{
    send(makeDevice({QStringLiteral("192.0.2.1")}));
    send(makeDevice({QStringLiteral("192.0.2.2")}));
    connect(m_listener.get(), &ZelkoUDPListener::si_deviceUpdate, this, [this] { m_listener.reset(); });
    QTRY_VERIFY_WITH_TIMEOUT(!m_listener, patience);
    QCOMPARE(heardAddresses(), QStringList{"192.0.2.1"});
}

void ZelkoUDPListenerTest::aSlotMayDeleteTheListenerThatRefreshes()
{
    send(makeDevice({QStringLiteral("192.0.2.1")}));
    send(makeDevice({QStringLiteral("192.0.2.2")}));
    QTRY_COMPARE_WITH_TIMEOUT(m_heard.size(), 2, patience);
    m_heard.clear();
    connect(m_listener.get(), &ZelkoUDPListener::si_deviceUpdate, this, [this] { m_listener.reset(); });
    m_listener->refresh();
    QVERIFY(!m_listener);
    QCOMPARE(heardAddresses(), QStringList{"192.0.2.1"});
}

void ZelkoUDPListenerTest::hearsAllOfABurst()
{
    QStringList addresses;
    for (int i = 0; i < 100; ++i) {
        addresses << QStringLiteral("10.0.0.%1").arg(i);
        send(makeDevice({addresses.last()}));
    }
    QTRY_COMPARE_WITH_TIMEOUT(heardAddresses(), addresses, patience);
}

void ZelkoUDPListenerTest::twoListenersMayShareAPort()
{
    const ZelkoUDPListener other(nullptr, m_listener->port());
    QVERIFY(other.listening());
    QCOMPARE(other.port(), m_listener->port());
}

QTEST_GUILESS_MAIN(ZelkoUDPListenerTest)
#include "tst_zelkoudplistener.moc"
