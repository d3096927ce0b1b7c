#include <recorder/source/sigmfsource.h>

#include <recorder/source/cleantext.h>
#include <recorder/source/refusal.h>
#include <recorder/source/regularfile.h>

#include <QCryptographicHash>
#include <QDateTime>
#include <QFileInfo>
#include <QStringList>

#include <algorithm>
#include <utility>

namespace ZelkoRecorder {

namespace {

constexpr QLatin1StringView metaSuffix(".sigmf-meta");
constexpr QLatin1StringView dataSuffix(".sigmf-data");

QString stemOf(const QString& path)
{
    for (const QLatin1StringView suffix : {metaSuffix, dataSuffix}) {
        if (path.endsWith(suffix)) {
            return path.chopped(suffix.size());
        }
    }
    return path;
}

std::unique_ptr<QFile> openFile(const QString& path)
{
    QString error;
    auto file = openRegularFile(path, &error);
    if (!file) {
        throw Refusal{error};
    }
    return file;
}

SigmfMetadata readMetadata(const QString& path)
{
    const std::unique_ptr<QFile> file = openFile(path);
    QString error;
    // One byte beyond the limit is enough for the parser to refuse the file.
    const std::optional<SigmfMetadata> metadata =
        SigmfMetadata::parse(file->read(SigmfMetadata::maximumSize + 1), &error);
    if (!metadata) {
        throw Refusal{QStringLiteral("\"%1\": %2").arg(path, error)};
    }
    return *metadata;
}

QString dataPath(const QString& stem, const QString& dataset)
{
    if (dataset.isEmpty()) {
        return stem + dataSuffix;
    }
    const QString folder = QFileInfo(stem).absolutePath();
    const QFileInfo data(folder + u'/' + dataset);
    // The name has no path in it, but it may be that of a link to somewhere else.
    if (data.exists() && QFileInfo(data.canonicalFilePath()).path() != QFileInfo(folder).canonicalFilePath()) {
        throw Refusal{QStringLiteral("\"%1\" lies outside of its folder").arg(data.filePath())};
    }
    return data.filePath();
}

void checkHash(QFile& data, const QByteArray& expected)
{
    if (expected.isEmpty()) {
        return;
    }
    QCryptographicHash hash(QCryptographicHash::Sha512);
    if (!hash.addData(&data) || hash.result() != expected) {
        throw Refusal{QStringLiteral("\"%1\" does not have the SHA-512 of its metadata").arg(data.fileName())};
    }
    if (!data.seek(0)) {
        throw Refusal{QStringLiteral("\"%1\" cannot be read: %2").arg(data.fileName(), data.errorString())};
    }
}

/// Takes out what speaks of frames that the data file does not have.
void trim(SourceDescription& description)
{
    const qint64 total = description.totalFrames;
    description.segments.removeIf([total](const SourceSegment& segment) { return segment.frame >= total; });
    description.marks.removeIf([total](const SourceMark& mark) { return mark.frame >= total; });
    for (SourceMark& mark : description.marks) {
        mark.frameCount = std::min(mark.frameCount, total - mark.frame);
    }
}

SourceDescription describe(const SigmfMetadata& metadata, const QString& stem, const QFile& data)
{
    SourceDescription description = metadata.description;
    description.name = cleanText(QFileInfo(stem).fileName());
    description.totalFrames = data.size() / description.format.bytesPerFrame();
    if (description.totalFrames == 0) {
        throw Refusal{QStringLiteral("\"%1\" holds no samples").arg(data.fileName())};
    }
    if (description.totalFrames > SourceDescription::maximumFrame) {
        throw Refusal{QStringLiteral("\"%1\" holds too many samples").arg(data.fileName())};
    }
    trim(description);
    return description;
}

} // namespace

SigmfSource::SigmfSource(const SourceDescription& description, std::unique_ptr<QFile> data)
    : SignalSource(description)
    , m_data(std::move(data))
{}

std::unique_ptr<SigmfSource> SigmfSource::open(const QString& path, QString* error)
{
    try {
        const QString stem = stemOf(path);
        const SigmfMetadata metadata = readMetadata(stem + metaSuffix);
        std::unique_ptr<QFile> data = openFile(dataPath(stem, metadata.dataset));
        const SourceDescription description = describe(metadata, stem, *data);
        checkHash(*data, metadata.sha512);
        return std::unique_ptr<SigmfSource>(new SigmfSource(description, std::move(data)));
    } catch (const Refusal& refusal) {
        if (error != nullptr) {
            *error = refusal.text;
        }
        return nullptr;
    }
}

QString SigmfSource::fingerprint(const QString& path)
{
    const QString metaPath = stemOf(path) + metaSuffix;
    QStringList parts;
    try {
        for (const QString& file : {metaPath, dataPath(stemOf(path), readMetadata(metaPath).dataset)}) {
            const QFileInfo info(file);
            parts << info.canonicalFilePath() << QString::number(info.size())
                  << QString::number(info.lastModified().toMSecsSinceEpoch());
        }
    } catch (const Refusal& refusal) {
        return refusal.text;
    }
    return parts.join(u'\n');
}

qint64 SigmfSource::read(char* buffer, qint64 frames)
{
    const qint64 count = std::min(frames, description().totalFrames - m_frame);
    if (count <= 0 || !errorText().isEmpty()) {
        return 0;
    }
    const qint64 bytes = count * description().format.bytesPerFrame();
    if (m_data->read(buffer, bytes) != bytes) {
        fail(QStringLiteral("\"%1\" ends early or cannot be read").arg(m_data->fileName()));
        return 0;
    }
    m_frame += count;
    return count;
}

} // namespace ZelkoRecorder
