#include <recorder/store/devicestore.h>

#include <recorder/source/regularfile.h>
#include <recorder/store/recorderlog.h>
#include <recorder/store/recordid.h>
#include <recorder/store/recordrepair.h>
#include <recorder/store/storedfiles.h>

#include <reportcore/durablefile.h>
#include <reportcore/rgexception.h>
#include <zelkobase/data/recordfiles.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <filesystem>

namespace ZelkoRecorder {

using ZELKO_XML::ZELKO_RecordData;

namespace {

constexpr QLatin1String birthPrefix(".new-");
constexpr QLatin1String tombstonePrefix(".deleted-");

// Reads names and kinds of a folder's entries without asking the disk for each of them, as QDir would.
QStringList subFolders(const QString& folder)
{
    QStringList names;
    std::error_code error;
    for (std::filesystem::directory_iterator entry(QFile::encodeName(folder).toStdString(), error), end;
         !error && entry != end; entry.increment(error)) {
        if (entry->is_directory(error)) {
            names.append(QFile::decodeName(entry->path().filename().c_str()));
        }
    }
    return names;
}

QString problemWith(const ZELKO_RecordData& record, const QString& recordID, const QDir& folder)
{
    if (record.GetRecordID() != recordID) {
        return QStringLiteral("its metadata is that of record \"%1\"").arg(record.GetRecordID());
    }
    const QString samples = ZELKO_XML::sampleFileName(recordID, record.GetDataFormat());
    return QFileInfo(folder.filePath(samples)).isFile() ? QString() : QStringLiteral("it has no file %1").arg(samples);
}

RecordPointer readMetaData(const QDir& folder, QString* error)
{
    const auto file = openRegularFile(folder.filePath(ZELKO_XML::metaDataFileName), error);
    if (!file) {
        return nullptr;
    }
    auto record = std::make_shared<ZELKO_RecordData>();
    try {
        if (record->LoadXml(file.get())) {
            return record;
        }
        *error = QStringLiteral("its %1 holds no record").arg(ZELKO_XML::metaDataFileName);
    } catch (const RGException& exception) {
        *error = exception.GetMessage();
    }
    return nullptr;
}

} // namespace

DeviceStore::DeviceStore(const QString& folder, Sync sync)
    : m_folder(QDir(folder).absolutePath())
    , m_marks(m_folder)
    , m_sync(sync)
{}

bool DeviceStore::syncFolder(const QString& folder)
{
    return REPORTGENERATOR::syncFolder(folder);
}

QString DeviceStore::recordFolder(const QString& recordID) const
{
    return m_folder + QLatin1Char('/') + recordID;
}

QString DeviceStore::birthFolder(const QString& recordID) const
{
    return m_folder + QLatin1Char('/') + birthPrefix + recordID;
}

QString DeviceStore::tombstone(const QString& recordID) const
{
    return m_folder + QLatin1Char('/') + tombstonePrefix + recordID;
}

bool DeviceStore::open(QString* error) const
{
    if (REPORTGENERATOR::makeFolderDurably(m_folder) && m_sync(m_folder)) {
        return true;
    }
    *error = QStringLiteral("the folder %1 cannot be used").arg(m_folder);
    return false;
}

void DeviceStore::removeLeftovers() const
{
    for (const QString& name : subFolders(m_folder)) {
        if (name.startsWith(birthPrefix) || name.startsWith(tombstonePrefix)) {
            QDir(recordFolder(name)).removeRecursively();
        }
    }
    m_marks.clearOrphans();
}

QStringList DeviceStore::recordIds() const
{
    QStringList ids;
    for (const QString& name : subFolders(m_folder)) {
        if (isRecordId(name)) {
            ids.append(name);
        } else if (!name.startsWith(QLatin1Char('.'))) {
            qCWarning(recorderLog).noquote() << "set aside" << recordFolder(name) << ": no record has such an ID";
        }
    }
    return ids;
}

RecordPointer DeviceStore::read(const QString& recordID, QString* error) const
{
    const QDir folder(recordFolder(recordID));
    RecordPointer record = readMetaData(folder, error);
    if (!record) {
        return nullptr;
    }
    const QString problem = problemWith(*record, recordID, folder);
    if (!problem.isEmpty()) {
        *error = problem;
        return nullptr;
    }
    return record;
}

RecordPointer DeviceStore::readAtRest(const QString& recordID, QString* error) const
{
    RecordPointer record = read(recordID, error);
    if (!record) {
        return nullptr;
    }
    if (!isUnfinished(*record)) {
        removeTemporaries(recordFolder(recordID));
    } else if (repairRecord(recordFolder(recordID), m_marks.isSet(recordID), *record, error)) {
        qCInfo(recorderLog).noquote() << "closed" << recordID << "at" << record->GetSize() << "bytes";
    } else {
        return nullptr;
    }
    m_marks.clear(recordID);
    return record;
}

bool DeviceStore::save(const ZELKO_RecordData& record) const
{
    return saveMetaData(recordFolder(record.GetRecordID()), record);
}

// A record goes by taking its name away, which is one step for the disk; only then its files are removed. What the disk
// may bring back gets its name again.
QStringList DeviceStore::remove(const QStringList& recordIDs) const
{
    QStringList gone;
    for (const QString& id : recordIDs) {
        if (isRecordId(id) && QDir().rename(recordFolder(id), tombstone(id))) {
            gone.append(id);
        }
    }
    if (!gone.isEmpty() && !m_sync(m_folder)) {
        qCWarning(recorderLog).noquote() << "cannot delete from" << m_folder << ": the disk refuses";
        return restore(gone);
    }
    for (const QString& id : gone) {
        QDir(tombstone(id)).removeRecursively();
    }
    return gone;
}

// Gives those that cannot be restored: without a name they are gone.
QStringList DeviceStore::restore(const QStringList& recordIDs) const
{
    QStringList lost;
    for (const QString& id : recordIDs) {
        if (!QDir().rename(tombstone(id), recordFolder(id))) {
            lost.append(id);
        }
    }
    return lost;
}

bool DeviceStore::publish(const QString& recordID) const
{
    const QString place = recordFolder(recordID);
    if (QFileInfo::exists(place) || !QDir().rename(birthFolder(recordID), place)) {
        return false;
    }
    const bool isDurable = m_sync(m_folder);
    if (!isDurable && !QDir().rename(place, birthFolder(recordID))) {
        qCWarning(recorderLog).noquote() << "whether" << place << "outlives the machine is not known: the disk refuses";
    }
    return isDurable;
}

bool DeviceStore::mayDelete(const ZELKO_RecordData& record)
{
    using Status = ZELKO_RecordData::RecordStatus;
    switch (record.GetRecordStatus()) {
    case Status::Recording:
    case Status::LoopRecording:
    case Status::Stopping:
    case Status::Replaying:
    case Status::Transferring:
        return false;
    default:
        return record.GetDeletable();
    }
}

} // namespace ZelkoRecorder
