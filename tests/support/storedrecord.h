#pragma once

#include <zelkobase/data/recordfiles.h>

#include <QByteArray>
#include <QDir>
#include <QFile>

namespace ZelkoTest {

inline ZELKO_XML::IndexEntry indexEntry(quint64 timestamp, quint64 offset, quint64 frequency = 145'000'000)
{
    ZELKO_XML::IndexEntry entry;
    entry.SetTimestamp(timestamp);
    entry.SetRecordOffset(offset);
    entry.SetTunerFrequency(frequency);
    entry.SetSampleRate(1000);
    entry.SetBandwidth(800);
    return entry;
}

/// A finished record of 4000 bytes between the seconds 10 and 11.
inline ZELKO_XML::ZELKO_RecordData finishedRecord(const QString& id)
{
    ZELKO_XML::ZELKO_RecordData record;
    record.SetRecordID(id);
    record.SetRecordName(QStringLiteral("Name of ") + id);
    record.SetStartTime(10'000'000);
    record.SetStopTime(11'000'000);
    record.SetSize(4000);
    record.SetStopPosition(4000);
    record.SetDataFormat(ZELKO_XML::ZELKO_RecordData::DataFormat::IQ16);
    record.SetRecordStatus(ZELKO_XML::ZELKO_RecordData::RecordStatus::Finished);
    record.SetFinished(true);
    record.SetDeletable(true);
    record.SetIndexEntry({indexEntry(10'000'000, 0), indexEntry(11'000'000, 4000)});
    return record;
}

/// A finished record of 4000 bytes that lasts an hour.
inline ZELKO_XML::ZELKO_RecordData hourLongRecord(const QString& id)
{
    ZELKO_XML::ZELKO_RecordData record = finishedRecord(id);
    record.SetStopTime(3'610'000'000);
    record.SetIndexEntry({indexEntry(10'000'000, 0), indexEntry(3'610'000'000, 4000)});
    return record;
}

/// As finishedRecord, while it is being recorded.
inline ZELKO_XML::ZELKO_RecordData unfinishedRecord(const QString& id)
{
    ZELKO_XML::ZELKO_RecordData record = finishedRecord(id);
    record.SetRecordStatus(ZELKO_XML::ZELKO_RecordData::RecordStatus::Recording);
    record.SetFinished(false);
    record.SetDeletable(false);
    return record;
}

inline bool writeBytes(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

inline QByteArray readBytes(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// Puts a record with so many bytes of samples into the folder of a device.
inline bool storeRecord(const QString& device, const ZELKO_XML::ZELKO_RecordData& record, qsizetype sampleBytes)
{
    const QDir folder(device + QLatin1Char('/') + record.GetRecordID());
    const QString samples = ZELKO_XML::sampleFileName(record.GetRecordID(), record.GetDataFormat());
    return QDir().mkpath(folder.path()) && writeBytes(folder.filePath(samples), QByteArray(sampleBytes, 's')) &&
           record.SaveXml(folder.filePath(ZELKO_XML::metaDataFileName));
}

/// Everything in a folder and below it: relative path and content of each file.
inline QMap<QString, QByteArray> contentOf(const QString& folder)
{
    QMap<QString, QByteArray> content;
    const QDir dir(folder);
    for (const QString& name : dir.entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot)) {
        const QString path = dir.filePath(name);
        if (!QFileInfo(path).isDir()) {
            content.insert(name, readBytes(path));
            continue;
        }
        const auto below = contentOf(path);
        for (auto it = below.cbegin(); it != below.cend(); ++it) {
            content.insert(name + QLatin1Char('/') + it.key(), it.value());
        }
    }
    return content;
}

} // namespace ZelkoTest
