#pragma once

#include "randomchanges.h"

#include <recorder/store/devicestore.h>

#include <QTest>

#include <vector>

namespace ZelkoTest {

/// Records in the folder of a device, which clients change by RandomChanges, each a record of its own, while the
/// recorder may be killed at any moment. Whatever is not as it must be fails the test.
class ChangedRecords
{
public:
    /// What the clients were told since the last check.
    struct Acknowledged
    {
        explicit Acknowledged(int clients)
            : changes(static_cast<std::size_t>(clients))
        {}

        void add(int client, const QString& copy)
        {
            ++changes.at(static_cast<std::size_t>(client));
            ++count;
            if (!copy.isEmpty()) {
                copies.append(copy);
            }
        }

        std::vector<int> changes; ///< by client
        QStringList copies;       ///< IDs of new records
        int count = 0;            ///< of changes in all
    };

    ChangedRecords(const QString& folder, int clients)
        : m_store(folder)
        , m_states(static_cast<std::size_t>(clients))
    {}

    static QString idOf(int client) { return QStringLiteral("R%1").arg(client); }

    /// The number that random changes are to follow from, which it tells whoever wants to repeat them.
    static quint32 seedOfTest()
    {
        const char* const variable = "ZELKO_TEST_SEED";
        const quint32 seed =
            qEnvironmentVariableIsSet(variable) ? qgetenv(variable).toUInt() : QRandomGenerator::system()->generate();
        qInfo("%s=%u repeats these changes", variable, seed);
        return seed;
    }

    /// Puts the records into the folder.
    void fill()
    {
        for (int client = 0; client < clients(); ++client) {
            stateOf(client) = firstState(client);
            QVERIFY(storeSamples(m_store.folder(), firstState(client), m_samples));
        }
    }

    /// What a client will ask for, beginning with the state of the last check.
    RandomChanges changes(int client, quint32 seed) const
    {
        return RandomChanges(m_states.at(static_cast<std::size_t>(client)), seed + static_cast<quint32>(client));
    }

    /// Looks at all records when the recorder is dead. Copies stay until the next check, which takes them away.
    void check(quint32 seed, const Acknowledged& acknowledged)
    {
        m_store.removeLeftovers();
        removeCopies();
        QStringList names; // of the copies that were acknowledged
        for (int client = 0; client < clients(); ++client) {
            checkRecord(client, seed, acknowledged.changes.at(static_cast<std::size_t>(client)), &names);
        }
        checkCopies(acknowledged.copies, names);
    }

    /// How many changes were on disk in all the checks although nobody had been told.
    int inFlight() const { return m_inFlight; }

private:
    static ZELKO_XML::ZELKO_RecordData firstState(int client)
    {
        ZELKO_XML::ZELKO_RecordData record = finishedRecord(idOf(client));
        record.SetSize(RandomChanges::samples);
        record.SetStopPosition(RandomChanges::samples);
        record.SetIndexEntry({indexEntry(10'000'000, 0), indexEntry(20'000'000, RandomChanges::samples)});
        return record;
    }
    int clients() const { return static_cast<int>(m_states.size()); }
    ZELKO_XML::ZELKO_RecordData& stateOf(int client) { return m_states.at(static_cast<std::size_t>(client)); }
    void checkRecord(int client, quint32 seed, int acknowledged, QStringList* copies);
    void checkCopies(const QStringList& acknowledged, QStringList names);
    void removeCopies();
    ZELKO_XML::ZELKO_RecordData stored(const QString& id);
    QByteArray storedSamples(const QString& id) const
    {
        return readBytes(QStringLiteral("%1/%2/%2.dat").arg(m_store.folder(), id));
    }

    const ZelkoRecorder::DeviceStore m_store;
    const QByteArray m_samples = sampleBytes(RandomChanges::samples);
    std::vector<ZELKO_XML::ZELKO_RecordData> m_states;
    QStringList m_copies; // of the last check
    int m_inFlight = 0;
};

// In the state of the last change that was acknowledged, or of the one that was on its way.
inline void ChangedRecords::checkRecord(int client, quint32 seed, int acknowledged, QStringList* copies)
{
    RandomChanges expected = changes(client, seed);
    for (int i = 0; i < acknowledged; ++i) {
        if (expected.next() == RandomChanges::Kind::Copy) {
            copies->append(expected.text());
        }
    }
    const ZELKO_XML::ZELKO_RecordData now = stored(idOf(client));
    if (!expected.isStateOf(now)) {
        expected.next();
        ++m_inFlight;
    }
    QVERIFY(expected.isStateOf(now));
    QCOMPARE(storedSamples(idOf(client)), m_samples);
    stateOf(client) = now;
}

// All that were acknowledged are there, whole, by the names that were asked for; of the others there is one from each
// client at most, whole too.
inline void ChangedRecords::checkCopies(const QStringList& acknowledged, QStringList names)
{
    m_copies = m_store.recordIds();
    for (int client = 0; client < clients(); ++client) {
        QVERIFY(m_copies.removeOne(idOf(client)));
    }
    QCOMPARE(acknowledged.size(), names.size());
    QVERIFY(m_copies.size() <= acknowledged.size() + clients());
    for (const QString& id : acknowledged) {
        QVERIFY(m_copies.contains(id));
    }
    for (const QString& id : std::as_const(m_copies)) {
        const ZELKO_XML::ZELKO_RecordData copy = stored(id);
        QVERIFY(names.removeOne(copy.GetRecordName()) || !acknowledged.contains(id));
        QCOMPARE(copy.GetSize(), quint64{RandomChanges::samples / 2});
        QCOMPARE(storedSamples(id), RandomChanges::copiedSamples(m_samples, copy.GetRecordName()));
    }
}

inline void ChangedRecords::removeCopies()
{
    QCOMPARE(m_store.remove(m_copies).size(), m_copies.size());
}

inline ZELKO_XML::ZELKO_RecordData ChangedRecords::stored(const QString& id)
{
    QString error;
    const ZelkoRecorder::RecordPointer record = m_store.readAtRest(id, &error);
    const QStringList files = contentOf(m_store.recordFolder(id)).keys();
    if (!record || files != QStringList{id + QStringLiteral(".dat"), QStringLiteral("RecordData.xml")}) {
        QTest::qFail(qPrintable(id + QLatin1Char(' ') + error + files.join(QLatin1Char(' '))), __FILE__, __LINE__);
        return {};
    }
    return *record;
}

} // namespace ZelkoTest
