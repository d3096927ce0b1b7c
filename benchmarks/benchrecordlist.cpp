#include "benchrecordlist.h"

#include <algorithm>
#include <array>
#include <random>

namespace {

using Record = ZELKO_XML::ZELKO_RecordData;
using RecordPtr = std::shared_ptr<Record>;

constexpr int poolSize = 100000;
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

std::vector<RecordPtr> makePool()
{
    std::mt19937 random(3);
    std::vector<quint64> sizes;
    for (quint64 number = 1; number <= poolSize; ++number) {
        sizes.push_back(number * 1000);
    }
    std::shuffle(sizes.begin(), sizes.end(), random);
    std::vector<RecordPtr> pool;
    for (int number = 0; number < poolSize; ++number) {
        pool.push_back(makeRecord(number, random(), sizes[static_cast<std::size_t>(number)]));
    }
    return pool;
}

} // namespace

BenchRecordList::BenchRecordList(int rows)
{
    append(rows);
}

void BenchRecordList::append(int rows)
{
    static const std::vector<RecordPtr> pool = makePool();
    if (rows == 0) {
        return;
    }
    beginInsertRows(QModelIndex(), recordCount(), recordCount() + rows - 1);
    for (int i = 0; i < rows; ++i) {
        m_rows.push_back(pool[m_rows.size() % pool.size()]);
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
