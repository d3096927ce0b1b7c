#include "testdevices.h"

#include <zelkobase/discovery/announcement.h>

#include <reportcore/rgexception.h>

#include <QtTest>

using ZELKO_XML::ZELKO_AvailableDevice;
using ZelkoCommon::Announcement;

class AnnouncementTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void numbersTheKindsOfDevices();
    void readsWhatWasWritten_data();
    void readsWhatWasWritten();
    void writesNothingThatIsTooLong();
    void writesNoDeviceWithoutAnAddress();
    void readsAnnouncementsOfNewerDevices();
    void refusesWhatIsNoAnnouncement_data();
    void refusesWhatIsNoAnnouncement();
};

void AnnouncementTest::numbersTheKindsOfDevices()
{
    QCOMPARE(ZELKO_AvailableDevice::GetDeviceTypes().size(), 6);
    QCOMPARE(static_cast<int>(ZELKO_AvailableDevice::NameToDeviceType(QStringLiteral("ZELKO"))), 0);
    QCOMPARE(static_cast<int>(ZELKO_AvailableDevice::NameToDeviceType(QStringLiteral("ZELKO_XG"))), 1);
    QCOMPARE(static_cast<int>(ZELKO_AvailableDevice::NameToDeviceType(QStringLiteral("QX310"))), 5);
    QCOMPARE(ZELKO_AvailableDevice::DeviceTypeToName(ZELKO_AvailableDevice::DeviceType::QX310),
             QStringLiteral("QX310"));
}

void AnnouncementTest::readsWhatWasWritten_data()
{
    QTest::addColumn<ZELKO_AvailableDevice>("device");
    ZELKO_AvailableDevice device = makeDevice({QStringLiteral("192.0.2.7")});
    QTest::newRow("what each device has") << device;
    device.SetIPAddress({QStringLiteral("192.0.2.7"), QStringLiteral("2001:db8::7"), QStringLiteral("127.0.0.1")});
    QTest::newRow("several addresses") << device;
    device.SetDeviceName(QString::fromUtf8("K\xC3\xB6ln & <north>"));
    device.SetGUID(QStringLiteral("{6f9619ff-8b86-d011-b42d-00c04fc964ff}"));
    device.SetPortNumber(QStringLiteral("65535"));
    QTest::newRow("all there is") << device;
}

void AnnouncementTest::readsWhatWasWritten()
{
    QFETCH(ZELKO_AvailableDevice, device);
    const auto read = Announcement::read(Announcement::write(device));
    QVERIFY(read);
    QVERIFY(*read == device);
}

void AnnouncementTest::writesNothingThatIsTooLong()
{
    ZELKO_AvailableDevice device = makeDevice({QStringLiteral("192.0.2.7")});
    device.SetDeviceName(QString(Announcement::MaximumSize, u'a'));
    QCOMPARE(Announcement::write(device), QByteArray());
}

void AnnouncementTest::writesNoDeviceWithoutAnAddress()
{
    QVERIFY_EXCEPTION_THROWN(Announcement::write(makeDevice({})), RGException);
}

void AnnouncementTest::readsAnnouncementsOfNewerDevices()
{
    QByteArray datagram = Announcement::write(makeDevice({QStringLiteral("192.0.2.7")}));
    datagram.replace("</ZELKO_AvailableDevice>", "<Colour>green</Colour></ZELKO_AvailableDevice>");
    QVERIFY(Announcement::read(datagram));
}

void AnnouncementTest::refusesWhatIsNoAnnouncement_data()
{
    QTest::addColumn<QByteArray>("datagram");
    const QByteArray good = Announcement::write(makeDevice({QStringLiteral("192.0.2.7")}));
    const auto with = [&good](const char* before, const QByteArray& after) {
        return QByteArray(good).replace(before, after);
    };
    const auto withName = [&with](const QByteArray& name) {
        return with("</Firmware>", "</Firmware><DeviceName>" + name + "</DeviceName>");
    };
    QVERIFY(Announcement::read(good) && Announcement::read(withName("name")));
    QTest::newRow("nothing") << QByteArray();
    QTest::newRow("a word") << QByteArray("hello");
    QTest::newRow("half of one") << good.first(good.size() / 2);
    QTest::newRow("one and something") << good + "x";
    QTest::newRow("one with a zero behind it") << good + '\0';
    QTest::newRow("another document") << QByteArray("<ZELKO_RecordData/>");
    QTest::newRow("bytes that are no text") << QByteArray("\xFF\xFE\x00\x01", 4);
    QTest::newRow("a name that is no text") << withName("\xC3");
    QTest::newRow("one that is too long") << good + QByteArray(Announcement::MaximumSize + 1 - good.size(), ' ');
    QTest::newRow("an unknown kind of device") << with("ZELKO_XG", "Toaster");
    QTest::newRow("no address") << with("<IPAddress>192.0.2.7</IPAddress>", "");
    QTest::newRow("an empty address") << with("192.0.2.7", "");
    QTest::newRow("a host name for an address") << with("192.0.2.7", "recorder");
    QTest::newRow("markup for an address") << with("192.0.2.7", "&lt;b&gt;");
    QTest::newRow("an address that means many") << with("192.0.2.7", "239.0.0.1");
    QTest::newRow("an address that means all") << with("192.0.2.7", "255.255.255.255");
    QTest::newRow("an address that means any") << with("192.0.2.7", "0.0.0.0");
    QTest::newRow("an address of six that means any") << with("192.0.2.7", "::");
    QTest::newRow("an address with numbers left out") << with("192.0.2.7", "127.1");
    QTest::newRow("an address that is one number") << with("192.0.2.7", "3221225991");
    QTest::newRow("an address with zeros in front") << with("192.0.2.7", "192.0.02.7");
    QTest::newRow("an address of six in full length") << with("192.0.2.7", "2001:db8:0:0:0:0:0:7");
    QTest::newRow("too many addresses") << with("<IPAddress>192.0.2.7</IPAddress>",
                                                QByteArray("<IPAddress>192.0.2.7</IPAddress>").repeated(17));
    QTest::newRow("a line end in a name") << withName("a\nb");
    QTest::newRow("a control character in a name") << withName("a\\u0000b");
    QTest::newRow("port 0") << with("</Firmware>", "</Firmware><PortNumber>0</PortNumber>");
    QTest::newRow("a port beyond") << with("</Firmware>", "</Firmware><PortNumber>65536</PortNumber>");
    QTest::newRow("a port in words") << with("</Firmware>", "</Firmware><PortNumber>http</PortNumber>");
    QTest::newRow("an empty port") << with("</Firmware>", "</Firmware><PortNumber/>");
}

void AnnouncementTest::refusesWhatIsNoAnnouncement()
{
    QFETCH(QByteArray, datagram);
    QVERIFY(!Announcement::read(datagram));
}

QTEST_APPLESS_MAIN(AnnouncementTest)
#include "tst_announcement.moc"
