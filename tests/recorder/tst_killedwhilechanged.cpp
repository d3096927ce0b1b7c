#include <recorder/served/servedrecorder.h>

#include <changedrecords.h>

#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <array>
#include <cstdio>
#include <thread>

using namespace ZelkoRecorder;
using namespace ZelkoTest;

// A process that changes records as clients of a recorder do, and says of each change that it was acknowledged, is
// killed again and again at any moment. What it acknowledged is on disk, and nothing is half written.

namespace {

constexpr int rounds = 50;
constexpr int leastChanges = 12; // of a round, on both records together
constexpr int mostChanges = 32;
constexpr int clients = 2; // each changes a record of its own

// The process that is killed: changes without an end, a line for each change that was acknowledged.
int changeUntilKilled(QCoreApplication& application, const QString& store, quint32 seed)
{
    ServedRecorder recorder;
    DevicePlan plan;
    plan.folder = store;
    QString error;
    if (!recorder.addDevice({QStringLiteral("D"), QString(), QString()}, plan, &error)) {
        return 1;
    }
    DeviceService& service = *recorder.service(QStringLiteral("D"));
    std::array<std::thread, clients> threads;
    for (int client = 0; client < clients; ++client) {
        threads.at(static_cast<std::size_t>(client)) = std::thread([&service, client, seed] {
            RandomChanges changes(*service.record(ChangedRecords::idOf(client)), seed + static_cast<quint32>(client));
            for (;;) {
                QString newID;
                changes.next();
                const StoreStatus status = changes.ask(service, &newID);
                std::printf("%d %d %s\n", client, static_cast<int>(status), qPrintable(newID));
                std::fflush(stdout);
            }
        });
    }
    return application.exec();
}

} // namespace

class TestKilledWhileChanged : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void keepsEveryChangeThatItAcknowledged();

private:
    using Acknowledged = ChangedRecords::Acknowledged;

    void runUntilKilled(quint32 seed, Acknowledged* acknowledged);
    static void note(const QByteArray& line, Acknowledged* acknowledged);

    QTemporaryDir m_folder;
    ChangedRecords m_records{m_folder.path(), clients};
    QRandomGenerator m_random;
};

void TestKilledWhileChanged::initTestCase()
{
    m_random.seed(ChangedRecords::seedOfTest());
    m_records.fill();
}

void TestKilledWhileChanged::keepsEveryChangeThatItAcknowledged()
{
    int acknowledgedInAll = 0;
    for (int round = 0; round < rounds; ++round) {
        const quint32 seed = m_random.generate();
        Acknowledged acknowledged(clients);
        runUntilKilled(seed, &acknowledged);
        m_records.check(seed, acknowledged);
        QVERIFY2(!QTest::currentTestFailed(), qPrintable(QStringLiteral("round %1").arg(round)));
        acknowledgedInAll += acknowledged.count;
    }
    qInfo("%d changes were acknowledged, %d more were on disk", acknowledgedInAll, m_records.inFlight());
    QVERIFY(acknowledgedInAll >= rounds * leastChanges);
}

// Lines that it wrote before it died count all of them, seen or not.
void TestKilledWhileChanged::runUntilKilled(quint32 seed, Acknowledged* acknowledged)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(QCoreApplication::applicationFilePath(),
                  {QStringLiteral("change"), m_folder.path(), QString::number(seed)});
    const int enough = m_random.bounded(leastChanges, mostChanges);
    while (acknowledged->count < enough) {
        QVERIFY(process.canReadLine() || process.waitForReadyRead(30'000));
        while (process.canReadLine()) {
            note(process.readLine(), acknowledged);
        }
    }
    QTest::qSleep(m_random.bounded(4)); // not just when it has acknowledged something
    process.kill();
    QVERIFY(process.waitForFinished(30'000));
    for (QByteArray line = process.readLine(); line.endsWith('\n'); line = process.readLine()) {
        note(line, acknowledged);
    }
}

void TestKilledWhileChanged::note(const QByteArray& line, Acknowledged* acknowledged)
{
    const QList<QByteArray> words = line.chopped(1).split(' ');
    QCOMPARE(words.size(), 3);
    QCOMPARE(words.at(1), QByteArray::number(static_cast<int>(StoreStatus::Done)));
    acknowledged->add(words.at(0).toInt(), QString::fromLatin1(words.at(2)));
}

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() == 4 && arguments.at(1) == QLatin1String("change")) {
        return changeUntilKilled(application, arguments.at(2), arguments.at(3).toUInt());
    }
    TestKilledWhileChanged test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_killedwhilechanged.moc"
