#include "benchrecordlist.h"

#include <array>
#include <random>

namespace {

using Record = ZELKO_XML::ZELKO_RecordData;
using RecordPtr = std::shared_ptr<Record>;

constexpr std::array<const char*, 8> masts{"north", "noble", "south", "east", "west", "centre", "upper", "lower"};

RecordPtr makeRecord(int number, unsigned draw, quint64 size)
{
    auto record = std::make_shared<Record>();
    record->SetRecordID(QStringLiteral("5d3f0c9a-7b21-4e6f-9c55-%1").arg(number, 12, 16, QLatin1Char('0')));
    record->SetRecordName(
        QStringLiteral("Record %1 of the %2 mast").arg(number).arg(QLatin1String(masts[draw % masts.size()])));
    record->SetStartTime(1700000000000000);
    record->SetSize(size);
    record->SetRecordStatus(Record::RecordStatus::Finished);
    return record;
}

// Sizes that differ all and follow no order: an odd factor visits each 32-bit number once.
quint64 sizeOf(int number)
{
    constexpr quint32 factor = 2654435761;
    return static_cast<quint32>(number) * factor;
}

/// The records of the longest list so far; shorter ones take the first of them.
class Pool
{
public:
    const RecordPtr& at(std::size_t number)
    {
        while (m_records.size() <= number) {
            const int next = static_cast<int>(m_records.size());
            m_records.push_back(makeRecord(next, static_cast<unsigned>(m_random()), sizeOf(next)));
        }
        return m_records[number];
    }

private:
    std::mt19937 m_random{3};
    std::vector<RecordPtr> m_records;
};

} // namespace

BenchRecordList::BenchRecordList(int rows)
{
    append(rows);
}

void BenchRecordList::append(int rows)
{
    static Pool pool;
    if (rows == 0) {
        return;
    }
    beginInsertRows(QModelIndex(), recordCount(), recordCount() + rows - 1);
    for (int i = 0; i < rows; ++i) {
        m_rows.push_back(pool.at(m_rows.size()));
    }
    endInsertRows();
}

void BenchRecordList::update(int row, quint64 size)
{
    auto record = std::make_shared<Record>(*recordData(row));
    record->SetSize(size);
    m_rows[static_cast<std::size_t>(row)] = std::move(record);
    Q_EMIT dataChanged(index(row, 0), index(row, columnCount() - 1));
}
