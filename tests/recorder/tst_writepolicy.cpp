#include <recorder/served/writepolicy.h>

#include <valuecore/tree.h>
#include <valuecore/valuetypes.h>

#include <QTest>

using namespace ZelkoRecorder;

class TestWritePolicy : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void allowsCommandsToWhoHasTheRight_data();
    void allowsCommandsToWhoHasTheRight();
    void allowsWishesToAChannel_data();
    void allowsWishesToAChannel();
    void allowsNothingElseToAnybody_data();
    void allowsNothingElseToAnybody();
};

namespace {

const QString commands = QStringLiteral("/ZELKO/Command/D1");
const QString channel = QStringLiteral("/ZELKO/Channel/C1");

bool mayWrite(Role role, const QString& node, const QString& name)
{
    Tree tree;
    const auto* const value = tree.Emplace(node, std::make_unique<Value<QString>>(name));
    return writePolicy()({QStringLiteral("anybody"), role}, *value);
}

} // namespace

void TestWritePolicy::allowsCommandsToWhoHasTheRight_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<Role>("role");
    QTest::addColumn<bool>("allowed");
    for (const char* const name : {"Synchronize", "SyncOneRecord", "DeleteRecordingList", "SetRecordIdle"}) {
        const QString command = QString::fromLatin1(name);
        QTest::addRow("%s by a viewer", name) << command << Role::Viewer << false;
        QTest::addRow("%s by an operator", name) << command << Role::Operator << true;
        QTest::addRow("%s by an administrator", name) << command << Role::Administrator << true;
    }
}

void TestWritePolicy::allowsCommandsToWhoHasTheRight()
{
    QFETCH(const QString, name);
    QFETCH(const Role, role);
    QTEST(mayWrite(role, commands, name), "allowed");
}

void TestWritePolicy::allowsWishesToAChannel_data()
{
    QTest::addColumn<QString>("name");
    for (const char* const name :
         {"AllRecordReplayModes", "ReplayMode", "DeviceID", "RecordName", "RecordTimeout", "FileSizeInKB",
          "CurrentReplayPosition", "FileSize", "StartTime", "StopTime", "StartPosition", "StopPosition", "LoopSize",
          "RecordStatus", "ReplayDataRateClass", "DataFormat", "IsDeletable", "RecordID", "Bookmarks"}) {
        QTest::newRow(name) << QString::fromLatin1(name);
    }
}

void TestWritePolicy::allowsWishesToAChannel()
{
    QFETCH(const QString, name);
    QVERIFY(!mayWrite(Role::Viewer, channel, name));
    QVERIFY(mayWrite(Role::Operator, channel, name));
    QVERIFY(mayWrite(Role::Administrator, channel, name));
    QVERIFY(!mayWrite(Role::Administrator, commands, name));
}

void TestWritePolicy::allowsNothingElseToAnybody_data()
{
    QTest::addColumn<QString>("node");
    QTest::addColumn<QString>("name");
    const QString idle = QStringLiteral("SetRecordIdle");
    QTest::newRow("what is told beside the commands") << commands << QStringLiteral("Extended");
    QTest::newRow("an address beside the commands") << commands << QStringLiteral("IpAddress");
    QTest::newRow("a record value") << QStringLiteral("/ZELKO/Device/D1/Records") << idle;
    for (const char* const name :
         {"ErrorCode", "RecordFlag", "ReplayFlag", "ChannelName", "DataRateClass", "RecordReplayModes"}) {
        QTest::addRow("%s of a channel", name) << channel << QString::fromLatin1(name);
    }
    QTest::newRow("a command below a channel") << channel << idle;
    QTest::newRow("a branch with a similar name") << QStringLiteral("/ZELKO/Commands") << idle;
}

void TestWritePolicy::allowsNothingElseToAnybody()
{
    QFETCH(const QString, node);
    QFETCH(const QString, name);
    QVERIFY(!mayWrite(Role::Administrator, node, name));
}

QTEST_GUILESS_MAIN(TestWritePolicy)
#include "tst_writepolicy.moc"
