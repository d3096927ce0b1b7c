#include <recorder/served/writepolicy.h>

#include <valuecore/tree.h>
#include <valuecore/valuetypes.h>

#include <QTest>

using namespace ZelkoRecorder;

class TestWritePolicy : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void tellsLoopbackAddresses_data();
    void tellsLoopbackAddresses();
    void allowsCommandsOnThisMachineOnly_data();
    void allowsCommandsOnThisMachineOnly();
};

void TestWritePolicy::tellsLoopbackAddresses_data()
{
    QTest::addColumn<QString>("address");
    QTest::addColumn<bool>("loopback");
    QTest::newRow("the usual one") << QStringLiteral("127.0.0.1") << true;
    QTest::newRow("another of its net") << QStringLiteral("127.8.4.1") << true;
    QTest::newRow("version 6") << QStringLiteral("::1") << true;
    QTest::newRow("by name") << QStringLiteral("localhost") << true;
    QTest::newRow("every interface") << QString() << false;
    QTest::newRow("every interface, spelled out") << QStringLiteral("0.0.0.0") << false;
    QTest::newRow("of a network") << QStringLiteral("192.0.2.7") << false;
    QTest::newRow("version 6 of a network") << QStringLiteral("2001:db8::1") << false;
    QTest::newRow("a name that begins like one") << QStringLiteral("127.0.0.1.example") << false;
}

void TestWritePolicy::tellsLoopbackAddresses()
{
    QFETCH(const QString, address);
    QTEST(isLoopbackAddress(address), "loopback");
}

void TestWritePolicy::allowsCommandsOnThisMachineOnly_data()
{
    QTest::addColumn<QString>("listen");
    QTest::addColumn<QString>("node");
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("mayWrite");
    const QString here = QStringLiteral("127.0.0.1");
    const QString commands = QStringLiteral("/ZELKO/Command/D1");
    for (const char* const name : {"Synchronize", "SyncOneRecord", "DeleteRecordingList", "SetRecordIdle"}) {
        QTest::addRow("the command %s", name) << here << commands << QString::fromLatin1(name) << true;
    }
    const QString idle = QStringLiteral("SetRecordIdle");
    QTest::newRow("what is told beside the commands") << here << commands << QStringLiteral("Extended") << false;
    QTest::newRow("an address beside the commands") << here << commands << QStringLiteral("IpAddress") << false;
    QTest::newRow("a record value") << here << QStringLiteral("/ZELKO/Device/D1/Records") << idle << false;
    QTest::newRow("a branch with a similar name") << here << QStringLiteral("/ZELKO/Commands") << idle << false;
    QTest::newRow("a command over a network") << QStringLiteral("192.0.2.7") << commands << idle << false;
    QTest::newRow("a command over every interface") << QString() << commands << idle << false;
}

void TestWritePolicy::allowsCommandsOnThisMachineOnly()
{
    QFETCH(const QString, listen);
    QFETCH(const QString, node);
    QFETCH(const QString, name);
    Tree tree;
    const auto* const value = tree.Emplace(node, std::make_unique<Value<QString>>(name));
    QVERIFY(value);
    QTEST(writePolicy(listen)(QStringLiteral("anybody"), *value), "mayWrite");
}

QTEST_GUILESS_MAIN(TestWritePolicy)
#include "tst_writepolicy.moc"
