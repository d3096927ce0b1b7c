// The record map and its model against a plain table model that is fed the same records.

#include "plainrecordmodel.h"

#include <valuecore/tree.h>
#include <zelkobase/maps/recorditemmap.h>
#include <zelkoguibase/recordlist/recorditemmapmodel.h>

#include <QCoreApplication>

#include <benchmark/benchmark.h>

#include <malloc.h>

#include <algorithm>
#include <map>
#include <random>

namespace {

using zelko::recordmap::RecordItemMap;
using zelko::recordmap::RecordMapData;
using RecordPtr = PlainRecordModel::RecordPtr;

constexpr int manyRecords = 100000;
constexpr int mostRecords = 1000000;
constexpr int recordsInSlice = 200; // what the tree link folds into one notification is below the log's 250

RecordPtr makeRecord(int number, quint64 size)
{
    auto record = std::make_shared<ZELKO_XML::ZELKO_RecordData>();
    record->SetRecordID(QStringLiteral("5d3f0c9a-7b21-4e6f-9c55-%1").arg(number, 12, 16, QLatin1Char('0')));
    record->SetRecordName(QStringLiteral("Record %1 of the north mast").arg(number));
    record->SetStartTime(1700000000000000);
    record->SetSize(size);
    record->SetRecordStatus(ZELKO_XML::ZELKO_RecordData::RecordStatus::Finished);
    return record;
}

std::vector<RecordPtr> makeRecords(int count, quint64 size = 0)
{
    std::vector<RecordPtr> records;
    records.reserve(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i) {
        records.push_back(makeRecord(i, size));
    }
    return records;
}

const std::vector<RecordPtr>& sharedRecords()
{
    static const std::vector<RecordPtr> records = makeRecords(manyRecords);
    return records;
}

// Every second row on average, without a pattern; in the order of the draw, not of the rows.
std::vector<QString> scatteredHalf(const std::vector<RecordPtr>& records)
{
    std::vector<QString> ids;
    for (const RecordPtr& record : records) {
        ids.push_back(record->GetRecordID());
    }
    std::shuffle(ids.begin(), ids.end(), std::mt19937(7));
    ids.resize(ids.size() / 2);
    return ids;
}

/// A record map in a tree, and the model over it.
class Ours
{
public:
    explicit Ours(const QString& node = QStringLiteral("/Bench"))
        : m_node(node)
    {
        m_map = Tree::Instance()->Emplace(m_node,
                                          std::make_unique<RecordItemMap>(QStringLiteral("Map"), TValueState::Open));
        m_model.connect(m_map->GetPathName());
    }
    ~Ours() { Tree::Instance()->Remove(m_node); }
    Ours(const Ours&) = delete;
    Ours& operator=(const Ours&) = delete;

    void set(const RecordPtr& record) { m_map->SetAt(record->GetRecordID(), RecordMapData(record), nullptr); }

    void fill(const std::vector<RecordPtr>& records)
    {
        for (std::size_t begin = 0; begin < records.size(); begin += recordsInSlice) {
            m_map->StartTransaction(nullptr);
            const std::size_t end = std::min(records.size(), begin + recordsInSlice);
            for (std::size_t i = begin; i < end; ++i) {
                set(records[i]);
            }
            m_map->EndTransaction(TChangeCode::ValueChanged, nullptr);
        }
    }

    void erase(const std::vector<QString>& ids)
    {
        m_map->StartTransaction(nullptr);
        for (const QString& id : ids) {
            m_map->EraseAt(id, nullptr);
        }
        m_map->EndTransaction(TChangeCode::ValueChanged, nullptr);
    }

    /// As a recorder does before the first record comes.
    void announceSize(int records) { m_map->ExpectSize(static_cast<std::uint64_t>(records)); }

    RecordItemMap& map() { return *m_map; }
    int count() const { return m_model.rowCount(); }

private:
    const QString m_node;
    RecordItemMap* m_map;
    ZelkoGUI::RecordItemMapModel m_model{nullptr};
};

/// The plain model, with the same words.
class Plain
{
public:
    void set(const RecordPtr& record) { m_model.set(record); }

    void fill(const std::vector<RecordPtr>& records)
    {
        for (auto begin = records.begin(); begin != records.end();) {
            const auto end = begin + std::min<std::ptrdiff_t>(recordsInSlice, records.end() - begin);
            m_model.setAll(std::vector<RecordPtr>(begin, end));
            begin = end;
        }
    }

    void erase(const std::vector<QString>& ids) { m_model.removeAll(ids); }
    int count() const { return m_model.rowCount(); }

private:
    PlainRecordModel m_model;
};

// Measures `act` on a new subject each time; neither its preparation nor its destruction counts.
template <typename Subject, typename Prepare, typename Act>
void measure(benchmark::State& state, int expectedRows, Prepare prepare, Act act)
{
    for (auto _ : state) {
        state.PauseTiming();
        auto subject = std::make_unique<Subject>();
        prepare(*subject);
        state.ResumeTiming();
        act(*subject);
        state.PauseTiming();
        if (subject->count() != expectedRows) {
            state.SkipWithError("the model does not hold what it was fed");
        }
        subject.reset();
        state.ResumeTiming();
    }
}

// Rows from sets, with a notification for each of them and folded as the tree link folds them

template <typename Subject>
void rows(benchmark::State& state)
{
    measure<Subject>(
        state, manyRecords, [](Subject&) {},
        [](Subject& subject) {
            for (const RecordPtr& record : sharedRecords()) {
                subject.set(record);
            }
        });
}

template <typename Subject>
void rowsInSlices(benchmark::State& state)
{
    measure<Subject>(
        state, manyRecords, [](Subject&) {}, [](Subject& subject) { subject.fill(sharedRecords()); });
}

// Removal of half of the rows in one notification

template <typename Subject>
void removal(benchmark::State& state)
{
    const std::vector<QString> ids = scatteredHalf(sharedRecords());
    const auto prepare = [](Subject& subject) {
        subject.fill(sharedRecords());
        if constexpr (std::is_same_v<Subject, Ours>) {
            subject.map().SetChangeLogSize(manyRecords);
        }
    };
    measure<Subject>(state, manyRecords / 2, prepare, [&](Subject& subject) { subject.erase(ids); });
}

// Update by ID. What changes in a list is what is being recorded: a handful of records, one per channel, which stand
// anywhere.

// The records of a short list lie as far apart in memory as those of the longest one: what a processor makes of memory
// in one small piece is not the list's doing.
std::vector<RecordPtr> spreadRecords(int rows)
{
    static const std::vector<RecordPtr> all = makeRecords(mostRecords);
    std::vector<RecordPtr> records;
    for (int i = 0; i < rows; ++i) {
        records.push_back(all[static_cast<std::size_t>(i * (mostRecords / rows))]);
    }
    return records;
}

// Made once: the longest one takes a while.
Ours& standingList(int rows)
{
    static const Tree* const tree = Tree::Instance(); // outlives the lists
    static std::map<int, std::unique_ptr<Ours>> lists;
    std::unique_ptr<Ours>& list = lists[rows];
    if (tree && !list) {
        list = std::make_unique<Ours>(QStringLiteral("/Bench%1").arg(rows));
        list->announceSize(rows);
        list->fill(spreadRecords(rows));
    }
    return *list;
}

// Each handful changes for a while, then comes the next one: where the records of a single handful happen to lie in the
// hash would decide the figure otherwise.
void updateOurs(benchmark::State& state)
{
    constexpr int changing = 16;
    constexpr int handfuls = 62;
    constexpr int stride = changing * handfuls;
    constexpr std::size_t turnsOfHandful = 64 * changing;
    const int rows = static_cast<int>(state.range(0));
    Ours& ours = standingList(rows);
    std::vector<RecordPtr> states[2];
    for (int i = 0; i < stride; ++i) {
        const int number = (i % changing * handfuls + i / changing) * (rows / stride) * (mostRecords / rows);
        states[0].push_back(makeRecord(number, 1));
        states[1].push_back(makeRecord(number, 2));
    }
    std::size_t turn = 0;
    for (auto _ : state) {
        const std::size_t handful = turn / turnsOfHandful % handfuls;
        ours.set(states[turn / changing % 2][handful * changing + turn % changing]);
        ++turn;
    }
    if (ours.count() != rows) {
        state.SkipWithError("an update made a row");
    }
}

// Updates all over the list: here the processor's memory counts, for us and for a plain model.

template <typename Subject>
void updatesAllOver(benchmark::State& state)
{
    Subject subject;
    subject.fill(sharedRecords());
    std::vector<RecordPtr> states[2] = {makeRecords(manyRecords, 1), makeRecords(manyRecords, 2)};
    for (std::vector<RecordPtr>& records : states) {
        std::shuffle(records.begin(), records.end(), std::mt19937(11));
    }
    std::size_t turn = 0;
    for (auto _ : state) {
        subject.set(states[turn / manyRecords % 2][turn % manyRecords]);
        ++turn;
    }
    if (subject.count() != manyRecords) {
        state.SkipWithError("an update made a row");
    }
}

// Memory of records with a name, an ID and no lists, from their making on, in map and model

std::size_t bytesInUse()
{
    const struct mallinfo2 info = mallinfo2();
    return info.uordblks + info.hblkhd;
}

void memoryOurs(benchmark::State& state)
{
    double perRecord = 0;
    for (auto _ : state) {
        const std::size_t before = bytesInUse();
        Ours ours;
        for (int i = 0; i < manyRecords; ++i) {
            ours.set(makeRecord(i, 0));
        }
        perRecord = static_cast<double>(bytesInUse() - before) / manyRecords;
    }
    state.counters["bytes_per_record"] = perRecord;
}

} // namespace

BENCHMARK(rows<Ours>)->Name("rows/ours")->Unit(benchmark::kMillisecond);
BENCHMARK(rows<Plain>)->Name("rows/plain")->Unit(benchmark::kMillisecond);
BENCHMARK(rowsInSlices<Ours>)->Name("rows_in_slices/ours")->Unit(benchmark::kMillisecond);
BENCHMARK(rowsInSlices<Plain>)->Name("rows_in_slices/plain")->Unit(benchmark::kMillisecond);
BENCHMARK(updateOurs)->Name("update")->Arg(1000)->Arg(100000)->Arg(1000000);
BENCHMARK(updatesAllOver<Ours>)->Name("updates_all_over/ours");
BENCHMARK(updatesAllOver<Plain>)->Name("updates_all_over/plain");
BENCHMARK(removal<Ours>)->Name("removal/ours")->Unit(benchmark::kMillisecond);
BENCHMARK(removal<Plain>)->Name("removal/plain")->Unit(benchmark::kMillisecond);
BENCHMARK(memoryOurs)->Name("memory")->Unit(benchmark::kMillisecond)->Iterations(1);

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
