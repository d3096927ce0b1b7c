#pragma once

#include "peerprocess.h"
#include "testusers.h"
#include "treedigest.h"

#include <recorder/store/preparedrecords.h>

#include <QTemporaryDir>

/// A recorder process with one device and a store of its own, which outlives it, and with the users of TestUsers.
class LoadedRecorder
{
public:
    /// Prepared records, and changes to them that begin when they are loaded and come to an end.
    struct Load
    {
        int records = 0;
        int changesPerSecond = 0;
        int changes = 0;
    };

    explicit LoadedRecorder(const QString& program, const Load& load, const QStringList& more = {})
        : m_program(program)
        , m_load(load)
        , m_arguments(QStringList{"--store", m_store.path(), "--populate", QString::number(load.records), "--churn",
                                  QString::number(load.changesPerSecond), "--churn-changes",
                                  QString::number(load.changes)} +
                      m_users.arguments() + more)
    {
        start();
    }

    /// Starts it, again on the port that it had.
    void start()
    {
        m_process.reset(); // so that the store is free
        m_process = std::make_unique<PeerProcess>(m_arguments, m_port, m_program);
        m_port = m_process->port();
    }

    PeerProcess& process() { return *m_process; }
    qint64 pid() const { return m_process->pid(); }

    /// 0 when it did not become ready.
    quint16 port() const { return m_port; }

    QString store() const { return m_store.path(); }

    static QString device() { return QStringLiteral("/ZELKO/Device/Recorder1"); }
    static QString map() { return device() + QStringLiteral("/Records/Map"); }

    /// The digest of its map after all changes, or after so many: computed here, from what a change is said to be.
    QString mapDigest() const { return mapDigest(m_load.changes); }
    QString mapDigest(int changes) const
    {
        zelko::recordmap::RecordItemMap expected;
        for (int number = 0; number < m_load.records; ++number) {
            const int ofThisOne = changes / m_load.records + (number < changes % m_load.records ? 1 : 0);
            const auto record = std::make_shared<ZELKO_XML::ZELKO_RecordData>(m_prepared.record(number));
            record->SetSize(record->GetSize() + 4096 * static_cast<quint64>(ofThisOne));
            record->SetStopTime(record->GetStopTime() + 1'000'000 * static_cast<quint64>(ofThisOne));
            expected.Add(zelko::recordmap::RecordMapData(record), nullptr);
        }
        return digestOf(expected);
    }

    /// How many changes a copy of its map has seen, as far as they can be told from sizes.
    qint64 changesIn(const zelko::recordmap::RecordItemMap& map) const
    {
        quint64 grown = 0;
        for (int number = 0; number < m_load.records; ++number) {
            const auto record = map.contains(m_prepared.recordId(number))
                                    ? map.At(m_prepared.recordId(number)).GetRecordData()
                                    : nullptr;
            grown += record ? record->GetSize() - m_sizes.at(number) : 0;
        }
        return static_cast<qint64>(grown / 4096);
    }

private:
    QList<quint64> preparedSizes() const
    {
        QList<quint64> sizes;
        for (int number = 0; number < m_load.records; ++number) {
            sizes.append(m_prepared.record(number).GetSize());
        }
        return sizes;
    }

    const QString m_program;
    const Load m_load;
    const ZelkoRecorder::PreparedRecords m_prepared{QStringLiteral("Recorder1"), m_load.records};
    const QList<quint64> m_sizes = preparedSizes();
    const QTemporaryDir m_store;
    const ZelkoTest::TestUsers m_users;
    const QStringList m_arguments;
    std::unique_ptr<PeerProcess> m_process;
    quint16 m_port = 0;
};
