#include <recorder/served/servedrecorder.h>

#include <recordervalues.h>
#include <samplebytes.h>

#include <QProcess>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <array>
#include <cstdio>
#include <set>
#include <thread>

using namespace ZelkoRecorder;
using namespace ZelkoTest;
using ZELKO_XML::BookmarkEntry;
using ZELKO_XML::HistoryEntry;
using ZELKO_XML::ZELKO_RecordData;

// A process that changes records as clients of a recorder do, and says of each change that it was acknowledged, is
// killed again and again at any moment. What it acknowledged is on disk, and nothing is half written.

namespace {

constexpr int rounds = 50;
constexpr int leastChanges = 12; // of a round, on both records together
constexpr int mostChanges = 32;
constexpr int clients = 2; // each changes a record of its own
constexpr qsizetype samples = 40'000;

QString idOf(int client)
{
    return QStringLiteral("R%1").arg(client);
}

BookmarkEntry bookmark(quint64 number)
{
    BookmarkEntry entry;
    entry.SetTimestamp(10'000'000 + number);
    entry.SetBookmark(QStringLiteral("mark %1").arg(number));
    return entry;
}

ZELKO_RecordData firstState(int client)
{
    ZELKO_RecordData record = finishedRecord(idOf(client));
    record.SetSize(samples);
    record.SetStopPosition(samples);
    record.SetIndexEntry({indexEntry(10'000'000, 0), indexEntry(20'000'000, samples)});
    return record;
}

// What follows from a number alone, in the process that changes and in the one that looks.
class Changes
{
public:
    explicit Changes(const ZELKO_RecordData& record, quint32 seed)
        : m_record(record)
        , m_random(seed)
    {}

    enum class Kind { Comment, Deletable, SetBookmarks, DeleteBookmarks, AddHistory, RemoveHistory, Copy, Count };

    /// The next change, made to the record here.
    Kind next()
    {
        m_number = m_random.bounded(1'000'000U);
        m_kind = static_cast<Kind>(m_random.bounded(static_cast<int>(Kind::Count)));
        apply();
        return m_kind;
    }

    const ZELKO_RecordData& record() const { return m_record; }

    /// The same change, asked of a recorder. A copy gives the ID of the new record.
    StoreStatus ask(DeviceService& service, QString* newID) const;

    /// Whether a record is in this state; the time of a comment is up to whoever stores it.
    bool isStateOf(const ZELKO_RecordData& other) const
    {
        ZELKO_RecordData same = other;
        same.SetHistoryEntry(std::as_const(m_record).GetHistoryEntry());
        return same == m_record && texts(other) == texts(m_record);
    }

private:
    static QStringList texts(const ZELKO_RecordData& record)
    {
        QStringList result;
        for (const HistoryEntry& comment : record.GetHistoryEntry()) {
            result.append(comment.GetHistoryEntry());
        }
        return result;
    }
    QString text() const { return QStringLiteral("text %1").arg(m_number); }
    quint64 begin() const { return 4 * (m_number % 5000); } // of a copy of half of the samples
    QVector<BookmarkEntry> bookmarks() const { return {bookmark(m_number), bookmark(m_number + 1)}; }
    void apply();

    ZELKO_RecordData m_record;
    QRandomGenerator m_random;
    Kind m_kind = Kind::Count;
    quint32 m_number = 0;
    QVector<BookmarkEntry> m_deleted;
    qsizetype m_removed = -1; // the place of a comment
};

void Changes::apply()
{
    QVector<BookmarkEntry> marks = std::as_const(m_record).GetBookmarkEntry();
    QVector<HistoryEntry> history = std::as_const(m_record).GetHistoryEntry();
    switch (m_kind) {
    case Kind::Comment:
        m_record.SetRecordName(text());
        break;
    case Kind::Deletable:
        m_record.SetDeletable(m_number % 2 == 0);
        break;
    case Kind::SetBookmarks:
        m_record.SetBookmarkEntry(bookmarks());
        break;
    case Kind::DeleteBookmarks:
        m_deleted = marks.mid(0, 1);
        if (!marks.isEmpty()) {
            m_record.SetBookmarkEntry(marks.mid(1));
        }
        break;
    case Kind::AddHistory:
        appendComment(m_record, text(), 0);
        break;
    case Kind::RemoveHistory:
        m_removed = history.isEmpty() ? -1 : static_cast<qsizetype>(m_number) % history.size();
        if (m_removed >= 0) {
            history.removeAt(m_removed);
            m_record.SetHistoryEntry(history);
        }
        break;
    case Kind::Copy:
    case Kind::Count:
        break;
    }
}

StoreStatus Changes::ask(DeviceService& service, QString* newID) const
{
    const QString& id = m_record.GetRecordID();
    switch (m_kind) {
    case Kind::Comment:
        return service.setComment(id, text());
    case Kind::Deletable:
        return service.setDeletable(id, m_number % 2 == 0);
    case Kind::SetBookmarks:
        return service.setBookmarks(id, bookmarks());
    case Kind::DeleteBookmarks:
        return service.deleteBookmarks(id, m_deleted);
    case Kind::AddHistory:
        return service.addHistory(id, text());
    case Kind::RemoveHistory:
        return m_removed < 0
                   ? StoreStatus::Done
                   : service.removeHistory(id, service.record(id)->GetHistoryEntry().at(m_removed).GetTimestamp());
    case Kind::Copy:
        return service.copy(id, {{begin(), begin() + samples / 2}}, RecordRange::Unit::Positions, text(), newID);
    case Kind::Count:
        break;
    }
    return StoreStatus::DiskRefused;
}

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
            Changes changes(*service.record(idOf(client)), seed + static_cast<quint32>(client));
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
    struct Acknowledged
    {
        std::array<int, clients> changes{};
        QStringList copies;
        int count = 0;
    };

    void runUntilKilled(quint32 seed, Acknowledged* acknowledged);
    static void note(const QByteArray& line, Acknowledged* acknowledged);
    void checkRecord(int client, quint32 seed, int acknowledged);
    void checkCopies(const QStringList& acknowledged);
    ZELKO_RecordData stored(const QString& id);

    QTemporaryDir m_folder;
    const DeviceStore m_store{m_folder.path()};
    std::array<ZELKO_RecordData, clients> m_states;
    QRandomGenerator m_random;
    int m_inFlight = 0;
};

void TestKilledWhileChanged::initTestCase()
{
    const char* const variable = "ZELKO_TEST_SEED";
    const quint32 seed =
        qEnvironmentVariableIsSet(variable) ? qgetenv(variable).toUInt() : QRandomGenerator::system()->generate();
    m_random.seed(seed);
    qInfo("%s=%u repeats these changes", variable, seed);
    for (int client = 0; client < clients; ++client) {
        m_states.at(static_cast<std::size_t>(client)) = firstState(client);
        QVERIFY(storeSamples(m_folder.path(), firstState(client), sampleBytes(samples)));
    }
}

void TestKilledWhileChanged::keepsEveryChangeThatItAcknowledged()
{
    int acknowledgedInAll = 0;
    for (int round = 0; round < rounds; ++round) {
        const quint32 seed = m_random.generate();
        Acknowledged acknowledged;
        runUntilKilled(seed, &acknowledged);
        m_store.removeLeftovers();
        for (int client = 0; client < clients; ++client) {
            checkRecord(client, seed, acknowledged.changes.at(static_cast<std::size_t>(client)));
        }
        checkCopies(acknowledged.copies);
        QVERIFY2(!QTest::currentTestFailed(), qPrintable(QStringLiteral("round %1").arg(round)));
        acknowledgedInAll += acknowledged.count;
    }
    qInfo("%d changes were acknowledged, %d more were on disk", acknowledgedInAll, m_inFlight);
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
    ++acknowledged->changes.at(words.at(0).toUInt());
    ++acknowledged->count;
    if (!words.at(2).isEmpty()) {
        acknowledged->copies.append(QString::fromLatin1(words.at(2)));
    }
}

// In the state of the last change that was acknowledged, or of the one that was on its way.
void TestKilledWhileChanged::checkRecord(int client, quint32 seed, int acknowledged)
{
    ZELKO_RecordData& state = m_states.at(static_cast<std::size_t>(client));
    Changes changes(state, seed + static_cast<quint32>(client));
    for (int i = 0; i < acknowledged; ++i) {
        changes.next();
    }
    const ZELKO_RecordData now = stored(idOf(client));
    if (!changes.isStateOf(now)) {
        changes.next();
        ++m_inFlight;
    }
    QVERIFY(changes.isStateOf(now));
    state = now;
}

// All that were acknowledged are there, whole; of the others there is one from each client at most, whole too.
void TestKilledWhileChanged::checkCopies(const QStringList& acknowledged)
{
    QStringList copies = m_store.recordIds();
    for (int client = 0; client < clients; ++client) {
        QVERIFY(copies.removeOne(idOf(client)));
    }
    for (const QString& id : acknowledged) {
        QVERIFY(copies.contains(id));
    }
    QVERIFY(copies.size() <= acknowledged.size() + clients);
    const QByteArray original = sampleBytes(samples);
    for (const QString& id : copies) {
        const ZELKO_RecordData copy = stored(id);
        const QByteArray bytes = readBytes(QStringLiteral("%1/%2/%2.dat").arg(m_folder.path(), id));
        QCOMPARE(bytes.size(), samples / 2);
        QCOMPARE(copy.GetSize(), quint64{samples / 2});
        QVERIFY(original.contains(bytes));
    }
    QCOMPARE(m_store.remove(copies).size(), copies.size());
}

ZELKO_RecordData TestKilledWhileChanged::stored(const QString& id)
{
    QString error;
    const RecordPointer record = m_store.readAtRest(id, &error);
    const QStringList files = contentOf(m_store.recordFolder(id)).keys();
    if (!record || files != QStringList{id + QStringLiteral(".dat"), QStringLiteral("RecordData.xml")}) {
        QTest::qFail(qPrintable(id + QLatin1Char(' ') + error + files.join(QLatin1Char(' '))), __FILE__, __LINE__);
        return {};
    }
    return *record;
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
