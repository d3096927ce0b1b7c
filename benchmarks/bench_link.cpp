// The first load of a device's record list over the tree link, beside the bare ORB moving the same records, and the
// longest pause of the GUI thread meanwhile. The other end is a process of its own, this program with another argument.
#include "benchpeer.h"

#include <recorder/link/treelinkserver.h>

#include <valuecore/tree.h>
#include <zelkobase/connection/treelink.h>
#include <zelkobase/maps/itemmaptypes.h>
#include <zelkobase/maps/recorditemmap.h>
#include <zelkobase/orb/orb.h>
#include <zelkoguibase/recordlist/recorditemmapmodel.h>

#include <QCoreApplication>
#include <QEventLoop>
#include <QTimer>

#include <zelkoidl/benchrecords.hh>

#include <benchmark/benchmark.h>

#include <chrono>
#include <memory>

using zelko::recordmap::RecordItemMap;
using zelko::recordmap::RecordMapData;
using ZELKO_XML::ZELKO_RecordData;

namespace {

constexpr int recordCount = 100'000;
constexpr const char* recordsKey = "BenchRecords";

// The server's side

std::shared_ptr<ZELKO_RecordData> makeRecord(int number)
{
    auto record = std::make_shared<ZELKO_RecordData>();
    const auto n = static_cast<quint64>(number);
    record->SetRecordID(QStringLiteral("REC-20240101-%1").arg(number, 6, 10, QLatin1Char('0')));
    record->SetRecordName(QStringLiteral("Recording number %1").arg(number));
    record->SetSize(1'000'000 + n);
    record->SetStartTime(1'704'067'200'000'000 + n * 1'000'000);
    record->SetStopTime(1'704'067'260'000'000 + n * 1'000'000);
    record->SetStartPosition(0);
    record->SetStopPosition(1'000'000 + n);
    record->SetRecordingLoopSize(0);
    record->SetRecordStatus(ZELKO_RecordData::RecordStatus::Finished);
    record->SetDataRate(ZELKO_RecordData::DataRate::UpTo16MB);
    record->SetDataFormat(ZELKO_RecordData::DataFormat::IQ16);
    record->SetInterface(ZELKO_RecordData::Interface::Ethernet);
    record->SetDeletable(true);
    record->SetFinished(true);
    return record;
}

// The records of this benchmark have no lists, so that those of the struct stay empty as well.
void fill(ZelkoBench::Record& out, const ZELKO_RecordData& record)
{
    out.id = record.GetRecordID().toUtf8().constData();
    out.name = record.GetRecordName().toUtf8().constData();
    out.size = record.GetSize();
    out.startTime = record.GetStartTime();
    out.stopTime = record.GetStopTime();
    out.startPosition = record.GetStartPosition();
    out.stopPosition = record.GetStopPosition();
    out.loopSize = record.GetRecordingLoopSize();
    out.status = static_cast<CORBA::Long>(record.GetRecordStatus());
    out.dataRate = static_cast<CORBA::Long>(record.GetDataRate());
    out.dataFormat = static_cast<CORBA::Long>(record.GetDataFormat());
    out.interfaceType = static_cast<CORBA::Long>(record.GetInterface());
    out.deletable = record.GetDeletable();
    out.finished = record.GetFinished();
}

class RecordsServant final : public POA_ZelkoBench::Records, public PortableServer::RefCountServantBase
{
public:
    explicit RecordsServant(const RecordItemMap& map)
        : m_map(map)
    {}

    ZelkoBench::RecordSeq* getAll() override
    {
        ZelkoBench::RecordSeq_var records = new ZelkoBench::RecordSeq;
        records->length(static_cast<CORBA::ULong>(m_map.Size()));
        CORBA::ULong i = 0;
        for (const auto& entry : m_map.data()) {
            fill(records[i++], *entry.second.GetRecordData());
        }
        return records._retn();
    }

private:
    const RecordItemMap& m_map; // does not change while it is served
};

ZelkoCommon::OrbOptions orbOptions()
{
    ZelkoCommon::OrbOptions options;
    options.maxMessageBytes = 512 * 1024 * 1024; // the bare ORB moves all records in one message
    options.callTimeout = std::chrono::minutes(2);
    return options;
}

int serve(QCoreApplication& application)
{
    ZelkoCommon::Orb orb(orbOptions());
    Tree tree;
    auto* const map = tree.Emplace(QStringLiteral("/ZELKO/Device/A/Records"),
                                   std::make_unique<RecordItemMap>(QStringLiteral("Map"), TValueState::Open));
    for (int i = 0; i < recordCount; ++i) {
        map->Add(RecordMapData(makeRecord(i)), nullptr);
    }
    PortableServer::Servant_var<RecordsServant> servant(new RecordsServant(*map));
    orb.publish(recordsKey, servant.in());
    ZelkoRecorder::TreeLinkServer server(orb, tree);
    BenchPeer::announce(orb.port());
    return application.exec();
}

// The client's side

quint16 serverPort = 0;
std::unique_ptr<ZelkoCommon::Orb> clientOrb;

// Loads the whole list into a model and gives the longest time between two ticks of a timer. The timer has a
// millisecond, so that the thread sleeps like that of any host when there is nothing to do: one that turned and turned
// would keep from a processor those who need it.
class Load
{
public:
    Load()
    {
        QObject::connect(&m_link, &ZelkoCommon::TreeLink::connected, &m_model,
                         [this] { m_model.connect(QStringLiteral("/SubSystems/bench/ZELKO/Device/A/Records/Map")); });
        QObject::connect(&m_model, &QAbstractItemModel::rowsInserted, &m_model, [this] { endWhenComplete(); });
        QObject::connect(&m_tick, &QTimer::timeout, &m_model, [this] { noteTick(); });
        m_tick.start(std::chrono::milliseconds(1));
    }

    void run() { m_loop.exec(); }
    std::chrono::duration<double, std::milli> longestPause() const { return m_longestPause; }

private:
    void noteTick()
    {
        const auto now = std::chrono::steady_clock::now();
        m_longestPause = std::max<std::chrono::duration<double, std::milli>>(m_longestPause, now - m_lastTick);
        m_lastTick = now;
    }

    void endWhenComplete()
    {
        if (m_model.rowCount() == recordCount) {
            noteTick();
            m_loop.quit();
        }
    }

    QEventLoop m_loop;
    QTimer m_tick;
    std::chrono::steady_clock::time_point m_lastTick = std::chrono::steady_clock::now();
    std::chrono::duration<double, std::milli> m_longestPause{0};
    ZelkoGUI::RecordItemMapModel m_model{nullptr};
    ZelkoCommon::TreeLink m_link{*clientOrb,
                                 Tree::Instance(),
                                 {QStringLiteral("bench"), QStringLiteral("127.0.0.1"), serverPort},
                                 ZelkoCommon::LinkOptions()};
};

// The allocator puts together what a list of small pieces gave back when somebody next wants a large one. That is the
// list that went, and no part of the next load.
void settleAllocator()
{
    constexpr std::size_t large = 64 * 1024;
    void* volatile piece = std::malloc(large);
    std::free(piece);
}

void overTheLink(benchmark::State& state)
{
    double pause = 0;
    for (auto _ : state) {
        auto load = std::make_unique<Load>();
        load->run();
        pause = std::max(pause, load->longestPause().count());
        state.PauseTiming();
        load.reset();
        settleAllocator();
        state.ResumeTiming();
    }
    state.counters["longest_pause_ms"] = pause;
}

void overTheBareOrb(benchmark::State& state)
{
    const CORBA::Object_var object = clientOrb->remoteObject(QStringLiteral("127.0.0.1"), serverPort, recordsKey);
    const ZelkoBench::Records_var records = ZelkoBench::Records::_unchecked_narrow(object);
    for (auto _ : state) {
        ZelkoBench::RecordSeq_var all = records->getAll();
        if (all->length() != recordCount) {
            state.SkipWithError("records are missing");
        }
        state.PauseTiming();
        all = nullptr;
        state.ResumeTiming();
    }
}

BENCHMARK(overTheLink)->Name("firstload/ours")->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(1);
BENCHMARK(overTheBareOrb)->Name("firstload/bareorb")->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(1);

} // namespace

int main(int argc, char** argv)
{
    // The other end keeps to one processor. This one may use all: its ORB receives while the GUI thread is at work.
    const auto begin = [](quint16 port) {
        serverPort = port;
        zelko::registerItemMapTypes();
        clientOrb = std::make_unique<ZelkoCommon::Orb>(orbOptions());
    };
    return BenchPeer::run(argc, argv, {serve, begin, [] { clientOrb.reset(); }});
}
