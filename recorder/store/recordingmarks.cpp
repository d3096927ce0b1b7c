#include <recorder/store/recordingmarks.h>

#include <reportcore/durablefile.h>

#include <QFile>
#include <QFileInfo>

#include <filesystem>
#include <string_view>

namespace ZelkoRecorder {

namespace {

constexpr std::string_view prefix = ".recording-";

} // namespace

RecordingMarks::RecordingMarks(const QString& deviceFolder)
    : m_folder(deviceFolder)
{}

QString RecordingMarks::fileOf(const QString& recordID) const
{
    return m_folder + QLatin1Char('/') + QLatin1String(prefix.data(), prefix.size()) + recordID;
}

bool RecordingMarks::set(const QString& recordID) const
{
    QFile mark(fileOf(recordID));
    return mark.open(QIODevice::WriteOnly | QIODevice::NewOnly) && REPORTGENERATOR::syncFolder(m_folder);
}

bool RecordingMarks::isSet(const QString& recordID) const
{
    return QFileInfo(fileOf(recordID)).isFile();
}

void RecordingMarks::clear(const QString& recordID) const
{
    QFile::remove(fileOf(recordID));
}

void RecordingMarks::clearOrphans() const
{
    std::error_code error;
    for (std::filesystem::directory_iterator entry(QFile::encodeName(m_folder).toStdString(), error), end;
         !error && entry != end; entry.increment(error)) {
        const std::string name = entry->path().filename().string();
        if (!name.starts_with(prefix)) {
            continue;
        }
        const QString recordID = QFile::decodeName(name.substr(prefix.size()).c_str());
        if (!QFileInfo::exists(m_folder + QLatin1Char('/') + recordID)) {
            clear(recordID);
        }
    }
}

} // namespace ZelkoRecorder
