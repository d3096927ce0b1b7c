#include <recorder/store/storedfiles.h>

#include <recorder/store/recorderlog.h>
#include <recorder/store/recordid.h>
#include <recorder/store/recordrepair.h>
#include <recorder/store/recordtimeline.h>

#include <reportcore/rgexception.h>
#include <zelkobase/data/recordfiles.h>

#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <filesystem>
#include <string>

namespace ZelkoRecorder {

using ZELKO_XML::ZELKO_RecordData;

namespace {

// As QSaveFile names what it writes to until it is complete.
bool isTemporary(const std::string& name)
{
    static const std::string prefix = std::string(ZELKO_XML::metaDataFileName.latin1()) + '.';
    constexpr std::size_t randomCharacters = 6;
    const auto isRandom = [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
    };
    return name.size() == prefix.size() + randomCharacters && name.starts_with(prefix) &&
           std::all_of(name.end() - randomCharacters, name.end(), isRandom);
}

} // namespace

QString sampleFilePath(const QString& folder, const ZELKO_RecordData& record)
{
    return folder + QLatin1Char('/') + ZELKO_XML::sampleFileName(record.GetRecordID(), record.GetDataFormat());
}

// A record that has become invalid is not written, and that is no reason to end the recorder.
bool saveMetaData(const QString& folder, const ZELKO_RecordData& record)
{
    try {
        return record.SaveXml(folder + QLatin1Char('/') + ZELKO_XML::metaDataFileName);
    } catch (const RGException& exception) {
        qCWarning(recorderLog).noquote() << "cannot save" << record.GetRecordID() << ":" << exception.GetMessage();
        return false;
    }
}

// Reads the folder's names past QDir, which would ask the disk for each file: this is done for every record of a store.
void removeTemporaries(const QString& folder)
{
    std::error_code error;
    for (std::filesystem::directory_iterator entry(QFile::encodeName(folder).toStdString(), error), end;
         !error && entry != end; entry.increment(error)) {
        if (isTemporary(entry->path().filename().string())) {
            QFile::remove(QFile::decodeName(entry->path().c_str()));
        }
    }
}

StoreStatus readWhole(const DeviceStore& store, const QString& recordID, RecordPointer* record)
{
    QString error;
    *record = isRecordId(recordID) ? store.read(recordID, &error) : nullptr;
    if (!*record) {
        return StoreStatus::UnknownRecord;
    }
    if (isUnfinished(**record)) {
        return StoreStatus::InUse;
    }
    const QFileInfo samples(sampleFilePath(store.recordFolder(recordID), **record));
    const bool isWhole = (*record)->GetRecordStatus() != ZELKO_RecordData::RecordStatus::Damaged &&
                         static_cast<quint64>(samples.size()) >= RecordTimeline(**record).stopOffset();
    return isWhole ? StoreStatus::Done : StoreStatus::Damaged;
}

} // namespace ZelkoRecorder
