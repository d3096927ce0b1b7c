#include <recorder/store/preparedrecords.h>

#include <recorder/store/dataratetable.h>

#include <zelkobase/data/recordfiles.h>

#include <QDir>
#include <QFile>
#include <QRandomGenerator>

#include <iterator>

namespace ZelkoRecorder {

using ZELKO_XML::IndexEntry;
using ZELKO_XML::ZELKO_RecordData;
using Format = ZELKO_RecordData::DataFormat;

namespace {

constexpr quint64 perSecond = 1'000'000;
constexpr quint64 firstStart = 1'704'067'200 * perSecond; // the first second of 2024
constexpr quint64 longestGap = 900 * perSecond;

struct Kind
{
    const char* name;
    Format format;
    quint64 sampleRate;
    quint64 bytesPerSample;
    quint64 frequency;
};

constexpr Kind kinds[] = {
    {"Harbour radio", Format::IQ16, 48'000, 4, 156'800'000},
    {"Airband tower", Format::Audio16, 16'000, 2, 118'700'000},
    {"Weather satellite", Format::IQ8, 250'000, 2, 137'620'000},
    {"Short-wave broadcast", Format::Real16, 96'000, 2, 9'410'000},
    {"Trunked network", Format::IQ16, 2'000'000, 4, 391'500'000},
    {"Beacon", Format::Symbols, 1'200, 1, 144'430'000},
    {"Telemetry", Format::IQ32, 1'000'000, 8, 433'920'000},
    {"Wideband survey", Format::IQFloat, 10'000'000, 8, 868'000'000},
};

constexpr const char* places[] = {"north pier", "hill station", "mast 2", "roof", "mobile unit", "field camp", "depot"};

QVector<IndexEntry> indexOf(const Kind& kind, quint64 start, quint64 seconds, quint64 frequency)
{
    constexpr quint64 parts = 4;
    QVector<IndexEntry> index;
    for (quint64 part = 0; part <= parts; ++part) {
        const quint64 second = seconds * part / parts;
        IndexEntry entry;
        entry.SetTimestamp(start + second * perSecond);
        entry.SetRecordOffset(second * kind.sampleRate * kind.bytesPerSample);
        entry.SetTunerFrequency(frequency);
        entry.SetSampleRate(kind.sampleRate);
        entry.SetBandwidth(kind.sampleRate * 4 / 5);
        index.append(entry);
    }
    return index;
}

// Replaces whatever has that name: it may be a pipe, which one would wait for.
bool writeFile(const QString& path, const QByteArray& bytes, quint64 size)
{
    QFile file(path);
    file.remove();
    return file.open(QIODevice::WriteOnly | QIODevice::NewOnly | QIODevice::Unbuffered) &&
           file.write(bytes) == bytes.size() &&
           (size == static_cast<quint64>(bytes.size()) || file.resize(static_cast<qint64>(size)));
}

} // namespace

PreparedRecords::PreparedRecords(const QString& device, int count)
    : m_device(device)
    , m_count(count)
{}

QString PreparedRecords::recordId(int number) const
{
    return QStringLiteral("prepared-%1-%2").arg(m_device).arg(number, 7, 10, QLatin1Char('0'));
}

int PreparedRecords::numberOf(const QString& recordID) const
{
    bool isNumber = false;
    const int number = QStringView(recordID).mid(recordID.lastIndexOf(QLatin1Char('-')) + 1).toInt(&isNumber);
    return isNumber && number < m_count && recordID == recordId(number) ? number : -1;
}

ZELKO_RecordData PreparedRecords::record(int number) const
{
    QRandomGenerator random(static_cast<quint32>(number) + 1);
    const Kind& kind = kinds[random.bounded(static_cast<quint32>(std::size(kinds)))];
    const char* const place = places[random.bounded(static_cast<quint32>(std::size(places)))];
    const quint64 start = firstStart + static_cast<quint64>(number) * longestGap + random.bounded(1'000'000U) * 500ULL;
    const quint64 seconds = 4 + random.bounded(600U);
    const quint64 frequency = kind.frequency + random.bounded(200U) * 12'500ULL;

    ZELKO_RecordData record;
    record.SetRecordID(recordId(number));
    record.SetRecordName(
        QStringLiteral("%1, %2 %3").arg(QString::fromLatin1(kind.name), QString::fromLatin1(place)).arg(number + 1));
    record.SetStartTime(start);
    record.SetStopTime(start + seconds * perSecond);
    record.SetSize(seconds * kind.sampleRate * kind.bytesPerSample);
    record.SetStartPosition(0);
    record.SetStopPosition(record.GetSize());
    record.SetRecordStatus(ZELKO_RecordData::RecordStatus::Finished);
    record.SetDataRate(dataRateClass(kind.sampleRate * kind.bytesPerSample));
    record.SetDataFormat(kind.format);
    record.SetInterface(static_cast<ZELKO_RecordData::Interface>(1 + random.bounded(8U)));
    record.SetDeletable(random.bounded(4U) != 0);
    record.SetFinished(true);
    record.SetIndexEntry(indexOf(kind, start, seconds, frequency));
    return record;
}

// The metadata is written last: without it the folder is not yet a record.
RecordPointer PreparedRecords::write(const DeviceStore& store, int number) const
{
    auto prepared = std::make_shared<ZELKO_RecordData>(record(number));
    const QString& id = prepared->GetRecordID();
    const QDir folder(store.recordFolder(id));
    const QByteArray xml = prepared->GetXmlString().toUtf8();
    const QString samples = folder.filePath(ZELKO_XML::sampleFileName(id, prepared->GetDataFormat()));
    const bool written = QDir().mkpath(folder.path()) && writeFile(samples, {}, prepared->GetSize()) &&
                         writeFile(folder.filePath(ZELKO_XML::metaDataFileName), xml, static_cast<quint64>(xml.size()));
    return written ? prepared : nullptr;
}

} // namespace ZelkoRecorder
