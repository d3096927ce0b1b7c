// Reading 10,000 metadata files into record data, beside the bare parser that reads the same fields of the same files;
// and the binary form of a record.
#include <zelkobase/data/recordfiles.h>

#include <QDir>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>
#include <pugixml.hpp>

#include <cstdlib>
#include <string>
#include <vector>

using namespace ZELKO_XML;

namespace {

constexpr int fileCount = 10'000;
constexpr int bookmarkCount = 3;
constexpr int indexCount = 2;

ZELKO_RecordData plainRecord(int number)
{
    ZELKO_RecordData record;
    record.SetRecordID(QStringLiteral("REC-20240101-%1").arg(number, 6, 10, QLatin1Char('0')));
    record.SetRecordName(QStringLiteral("Recording number %1").arg(number));
    record.SetSize(1'000'000'000ULL + static_cast<quint64>(number));
    record.SetStartTime(1'704'067'200'000'000ULL + static_cast<quint64>(number));
    record.SetStopTime(1'704'067'260'000'000ULL + static_cast<quint64>(number));
    record.SetStartPosition(0);
    record.SetStopPosition(1'000'000'000);
    record.SetRecordingLoopSize(0);
    record.SetRecordStatus(ZELKO_RecordData::RecordStatus::Finished);
    record.SetDataRate(ZELKO_RecordData::DataRate::UpTo16MB);
    record.SetDataFormat(ZELKO_RecordData::DataFormat::IQ16);
    record.SetInterface(ZELKO_RecordData::Interface::Ethernet);
    record.SetDeletable(false);
    record.SetFinished(true);
    return record;
}

ZELKO_RecordData recordWithLists(int number)
{
    ZELKO_RecordData record = plainRecord(number);
    for (int i = 0; i < bookmarkCount; ++i) {
        BookmarkEntry entry;
        entry.SetTimestamp(record.GetStartTime() + static_cast<quint64>(i));
        entry.SetBookmark(QStringLiteral("bookmark %1").arg(i));
        record.AppendBookmarkEntry(entry);
    }
    for (int i = 0; i < indexCount; ++i) {
        IndexEntry entry;
        entry.SetTimestamp(record.GetStartTime() + static_cast<quint64>(i));
        entry.SetRecordOffset(static_cast<quint64>(i));
        entry.SetTunerFrequency(433'920'000);
        entry.SetSampleRate(2'400'000);
        entry.SetBandwidth(2'000'000);
        record.AppendIndexEntry(entry);
    }
    return record;
}

/// The files, written once for all benchmarks of the process.
struct Files
{
    Files()
    {
        for (int i = 0; i < fileCount; ++i) {
            ZELKO_RecordData record = recordWithLists(i);
            const QString folder = record.GetRecordID();
            QDir(root.path()).mkdir(folder);
            const QString path = root.path() + QLatin1Char('/') + folder + QLatin1Char('/') + metaDataFileName;
            write(path, record.GetXmlString());
            paths.push_back(path);
            nativePaths.push_back(path.toStdString());
        }
    }

    // Not with SaveXml, which would wait for the disk twenty thousand times.
    static void write(const QString& path, const QString& text)
    {
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly) || file.write(text.toUtf8()) < 0)
            std::abort();
    }

    QTemporaryDir root;
    std::vector<QString> paths;
    std::vector<std::string> nativePaths;
};

const Files& files()
{
    static const Files all;
    return all;
}

struct BareBookmark
{
    unsigned long long timestamp;
    std::string text;
};

struct BareIndex
{
    unsigned long long timestamp, offset, frequency, sampleRate, bandwidth;
};

struct BareRecord
{
    std::string id, name, status, rate, format, interfaceName;
    unsigned long long size, start, stop, startPosition, stopPosition, loopSize;
    bool deletable, finished;
    std::vector<BareBookmark> bookmarks;
    std::vector<BareIndex> index;
};

unsigned long long number(const pugi::xml_node& node, const char* name)
{
    return node.child(name).text().as_ullong();
}

std::string text(const pugi::xml_node& node, const char* name)
{
    return node.child(name).text().get();
}

bool bareLoad(const std::string& path, BareRecord& record)
{
    pugi::xml_document document;
    if (!document.load_file(path.c_str()))
        return false;
    const pugi::xml_node root = document.document_element();
    record = {text(root, "RecordID"),
              text(root, "RecordName"),
              text(root, "RecordStatus"),
              text(root, "DataRate"),
              text(root, "DataFormat"),
              text(root, "Interface"),
              number(root, "Size"),
              number(root, "StartTime"),
              number(root, "StopTime"),
              number(root, "StartPosition"),
              number(root, "StopPosition"),
              number(root, "RecordingLoopSize"),
              root.child("Deletable").text().as_bool(),
              root.child("Finished").text().as_bool(),
              {},
              {}};
    for (const pugi::xml_node node : root.children("BookmarkEntry"))
        record.bookmarks.push_back({number(node, "Timestamp"), text(node, "Bookmark")});
    for (const pugi::xml_node node : root.children("IndexEntry"))
        record.index.push_back({number(node, "Timestamp"), number(node, "RecordOffset"), number(node, "TunerFrequency"),
                                number(node, "SampleRate"), number(node, "Bandwidth")});
    return true;
}

void readOurs(benchmark::State& state)
{
    const Files& all = files();
    for (auto _ : state) {
        std::vector<ZELKO_RecordData> records(fileCount);
        for (std::size_t i = 0; i < fileCount; ++i) {
            if (!records[i].LoadXml(all.paths[i]))
                state.SkipWithError("a file could not be read");
        }
        if (records.back() != recordWithLists(fileCount - 1))
            state.SkipWithError("a record is not what was written");
    }
    state.SetItemsProcessed(state.iterations() * fileCount);
}

void readBare(benchmark::State& state)
{
    const Files& all = files();
    for (auto _ : state) {
        std::vector<BareRecord> records(fileCount);
        for (std::size_t i = 0; i < fileCount; ++i) {
            if (!bareLoad(all.nativePaths[i], records[i]))
                state.SkipWithError("a file could not be read");
        }
        if (records.back().bookmarks.size() != bookmarkCount || records.back().index.size() != indexCount)
            state.SkipWithError("a record is not what was written");
    }
    state.SetItemsProcessed(state.iterations() * fileCount);
}

void encode(benchmark::State& state)
{
    const ZELKO_RecordData record = plainRecord(1);
    std::string bytes;
    for (auto _ : state) {
        bytes.clear();
        record.appendBinary(bytes);
        benchmark::DoNotOptimize(bytes);
    }
    state.counters["bytes"] = static_cast<double>(bytes.size());
}

void decode(benchmark::State& state)
{
    std::string bytes;
    plainRecord(1).appendBinary(bytes);
    ZELKO_RecordData record;
    for (auto _ : state) {
        const char* begin = bytes.data();
        if (!record.readBinary(begin, bytes.data() + bytes.size()))
            state.SkipWithError("the record could not be read");
    }
}

void compare(benchmark::State& state)
{
    const ZELKO_RecordData a = plainRecord(1);
    const ZELKO_RecordData b = plainRecord(1);
    for (auto _ : state)
        benchmark::DoNotOptimize(a == b);
}

} // namespace

BENCHMARK(readOurs)->Name("recordfiles/ours")->Unit(benchmark::kMillisecond);
BENCHMARK(readBare)->Name("recordfiles/pugixml")->Unit(benchmark::kMillisecond);
BENCHMARK(encode)->Name("recordbinary/encode");
BENCHMARK(decode)->Name("recordbinary/decode");
BENCHMARK(compare)->Name("recordbinary/compare");
BENCHMARK_MAIN();
