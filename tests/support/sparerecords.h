#pragma once

#include "samplebytes.h"

#include <QTest>

namespace ZelkoTest {

/// Damaged records in the folder of a device. A client puts each to rest, then deletes it, one step after the other,
/// while the recorder may be killed at any moment. Whatever is not as it must be fails the test.
class SpareRecords
{
    using ZELKO_RecordData = ZELKO_XML::ZELKO_RecordData;
    using Status = ZELKO_RecordData::RecordStatus;

public:
    enum class Step { PutToRest, Delete };

    explicit SpareRecords(const QString& folder)
        : m_folder(folder)
    {}

    /// Puts them into the folder, which nobody serves then.
    void fill()
    {
        m_done = 0;
        m_isUnderWay = false;
        for (int i = 0; i < records; ++i) {
            QVERIFY(storeSamples(m_folder, recordIn(State::Damaged, i), m_samples));
        }
    }

    /// The next step and its record, for as long as there are any.
    bool isUsedUp() const { return m_done == 2 * records; }
    Step step() const { return m_done % 2 == 0 ? Step::PutToRest : Step::Delete; }
    QString id() const { return idOf(m_done / 2); }

    /// The recorder is asked for the step from now on; it has done it.
    void ask() { m_isUnderWay = true; }
    void acknowledge()
    {
        m_isUnderWay = false;
        ++m_done;
        ++m_doneInAll;
    }

    /// How many steps were acknowledged since it was made.
    int doneInAll() const { return m_doneInAll; }

    /// Looks at all when the recorder is dead, and takes away those that are left.
    void check()
    {
        for (int i = 0; i < records; ++i) {
            checkRecord(i);
            QDir(folderOf(i)).removeRecursively();
        }
    }

private:
    enum class State { Damaged, AtRest, Gone };

    static constexpr int records = 20;

    static QString idOf(int record) { return QStringLiteral("S%1").arg(record); }
    QString folderOf(int record) const { return m_folder + QLatin1Char('/') + idOf(record); }
    static ZELKO_RecordData recordIn(State state, int record)
    {
        ZELKO_RecordData data = finishedRecord(idOf(record));
        data.SetRecordStatus(state == State::Damaged ? Status::Damaged : Status::Finished);
        return data;
    }

    // In the state of the last step that was acknowledged, or of the one that was on its way.
    void checkRecord(int record)
    {
        const int steps = std::clamp(m_done - 2 * record, 0, 2);
        const bool isUnderWay = m_isUnderWay && m_done / 2 == record;
        const QString what = QStringLiteral("%1 after %2 steps").arg(idOf(record)).arg(steps);
        QVERIFY2(isWholeIn(static_cast<State>(steps), record) ||
                     (isUnderWay && isWholeIn(static_cast<State>(steps + 1), record)),
                 qPrintable(what));
    }

    // Files that a change left beside the record count as none.
    bool isWholeIn(State state, int record) const
    {
        const QString folder = folderOf(record);
        if (state == State::Gone) {
            return !QFileInfo::exists(folder);
        }
        ZELKO_RecordData stored;
        return stored.LoadXml(folder + QLatin1Char('/') + ZELKO_XML::metaDataFileName) &&
               stored == recordIn(state, record) &&
               readBytes(folder + QLatin1Char('/') +
                         ZELKO_XML::sampleFileName(stored.GetRecordID(), stored.GetDataFormat())) == m_samples;
    }

    const QString m_folder;
    const QByteArray m_samples = sampleBytes(4000);
    int m_done = 0; // steps since the last fill
    int m_doneInAll = 0;
    bool m_isUnderWay = false;
};

} // namespace ZelkoTest
