#include <recorder/store/deviceclock.h>

#include <filesizelimit.h>
#include <foldersyncs.h>
#include <readonlyfolder.h>
#include <storedrecord.h>

#include <QDateTime>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

#include <limits>
#include <optional>

using namespace ZelkoRecorder;
using namespace ZelkoTest;

class TestDeviceClock : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void goesWithTheMachineAtFirst();
    void isShiftedWhenItIsSet();
    void keepsItsShift();
    void canBeSetBack();
    void takesTimesWithinBounds_data();
    void takesTimesWithinBounds();
    void goesOnAsItWasWhenTheDiskRefuses();
    void goesByItsFileWhenTheFolderIsNotSynced();
    void goesByItsFileWhenThatCannotBePutBack();
    void goesWithTheMachineWhenItsFileIsNone_data();
    void goesWithTheMachineWhenItsFileIsNone();
    void givesTheTimeOfTheMachine();

private:
    DeviceClock clock() const
    {
        return DeviceClock(m_folder->path(), [this] { return m_machine; });
    }
    QString file() const { return m_folder->filePath(QStringLiteral(".clock-shift")); }

    std::unique_ptr<QTemporaryDir> m_folder;
    qint64 m_machine = 0;
};

void TestDeviceClock::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    m_machine = 1'000'000;
}

void TestDeviceClock::goesWithTheMachineAtFirst()
{
    const DeviceClock device = clock();
    QCOMPARE(device.now(), qint64{1'000'000});
    QVERIFY(!device.isShifted());
    m_machine = 2'000'000;
    QCOMPARE(device.now(), qint64{2'000'000});
}

void TestDeviceClock::isShiftedWhenItIsSet()
{
    DeviceClock device = clock();
    QVERIFY(device.set(5'000'000));
    QCOMPARE(device.now(), qint64{5'000'000});
    QVERIFY(device.isShifted());
    m_machine += 7;
    QCOMPARE(device.now(), qint64{5'000'007});
}

void TestDeviceClock::keepsItsShift()
{
    QVERIFY(clock().set(400'000));
    m_machine += 100;
    QCOMPARE(clock().now(), qint64{400'100});
}

void TestDeviceClock::canBeSetBack()
{
    DeviceClock device = clock();
    QVERIFY(device.set(5'000'000));
    QVERIFY(device.set(m_machine));
    QVERIFY(!device.isShifted());
    QVERIFY(!clock().isShifted());
}

void TestDeviceClock::takesTimesWithinBounds_data()
{
    QTest::addColumn<qint64>("time");
    QTest::addColumn<bool>("taken");
    QTest::newRow("the epoch") << qint64{0} << true;
    QTest::newRow("before the epoch") << qint64{-1} << false;
    QTest::newRow("the latest") << DeviceClock::latest << true;
    QTest::newRow("behind the latest") << DeviceClock::latest + 1 << false;
    QTest::newRow("the least number") << std::numeric_limits<qint64>::min() << false;
    QTest::newRow("the greatest number") << std::numeric_limits<qint64>::max() << false;
}

void TestDeviceClock::takesTimesWithinBounds()
{
    QFETCH(const qint64, time);
    QFETCH(const bool, taken);
    DeviceClock device = clock();
    QCOMPARE(device.set(time), taken);
    QCOMPARE(device.now(), taken ? time : m_machine);
    QCOMPARE(clock().now(), taken ? time : m_machine);
}

void TestDeviceClock::goesOnAsItWasWhenTheDiskRefuses()
{
    DeviceClock device = clock();
    QVERIFY(device.set(5'000'000));
    {
        const FileSizeLimit full(0);
        QVERIFY(!device.set(6'000'000));
    }
    {
        const ReadOnlyFolder readOnly(m_folder->path());
        QVERIFY(!device.set(6'000'000));
    }
    QCOMPARE(device.now(), qint64{5'000'000});
    QCOMPARE(clock().now(), qint64{5'000'000});
}

void TestDeviceClock::goesByItsFileWhenTheFolderIsNotSynced()
{
    DeviceClock device = clock();
    QVERIFY(device.set(5'000'000));
    {
        const FolderSyncs disk(m_folder->path());
        QVERIFY(!device.set(9'000'000));
    }
    QCOMPARE(device.now(), 5'000'000);
    QCOMPARE(clock().now(), 5'000'000);
}

void TestDeviceClock::goesByItsFileWhenThatCannotBePutBack()
{
    DeviceClock device = clock();
    QVERIFY(device.set(5'000'000));
    {
        std::optional<FileSizeLimit> full;
        const FolderSyncs disk(m_folder->path(), [&] { return full.emplace(1), true; });
        QVERIFY(!device.set(9'000'000));
    }
    QCOMPARE(device.now(), 9'000'000);
    QCOMPARE(clock().now(), 9'000'000);
}

void TestDeviceClock::goesWithTheMachineWhenItsFileIsNone_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("a text") << QByteArray("tomorrow\n");
    QTest::newRow("a number and more") << QByteArray("5 or so\n");
    QTest::newRow("a number that is too large") << QByteArray("9000000000000000000\n");
    QTest::newRow("a number that is no number any more") << QByteArray(1000, '9');
}

void TestDeviceClock::goesWithTheMachineWhenItsFileIsNone()
{
    QFETCH(const QByteArray, content);
    QVERIFY(writeBytes(file(), content));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("shift of the clock")));
    QCOMPARE(clock().now(), m_machine);
}

void TestDeviceClock::givesTheTimeOfTheMachine()
{
    const qint64 before = QDateTime::currentMSecsSinceEpoch();
    const qint64 now = DeviceClock(m_folder->path()).now();
    const qint64 after = QDateTime::currentMSecsSinceEpoch();
    QVERIFY(now / 1000 >= before && now / 1000 <= after);
}

QTEST_GUILESS_MAIN(TestDeviceClock)
#include "tst_deviceclock.moc"
