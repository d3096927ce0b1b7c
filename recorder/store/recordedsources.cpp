#include <recorder/store/recordedsources.h>

#include <recorder/source/regularfile.h>
#include <recorder/store/recorderlog.h>

#include <reportcore/durablefile.h>

#include <QCryptographicHash>
#include <QDir>
#include <QFileInfo>

namespace ZelkoRecorder {

namespace {

constexpr auto algorithm = QCryptographicHash::Sha256;

// A line of the file: it has the same length for every source, whatever is in its text.
QByteArray hashOf(const QString& fingerprint)
{
    return QCryptographicHash::hash(fingerprint.toUtf8(), algorithm).toHex();
}

bool isHash(const QByteArray& line)
{
    return line.size() == 2 * QCryptographicHash::hashLength(algorithm) && QByteArray::fromHex(line).toHex() == line;
}

} // namespace

RecordedSources::RecordedSources(const QString& folder)
    : m_path(QDir(folder).filePath(QStringLiteral(".recorded-sources")))
{
    if (QFileInfo::exists(m_path)) {
        read();
    }
}

void RecordedSources::read()
{
    QString error;
    const auto file = openRegularFile(m_path, &error);
    if (!file) {
        qCWarning(recorderLog).noquote() << "what was recorded from which source is not known:" << error;
        return;
    }
    const qsizetype lineSize = 2 * QCryptographicHash::hashLength(algorithm) + 1;
    for (const QByteArray& line : file->read(maximumCount * lineSize).split('\n')) {
        if (isHash(line)) {
            m_hashes.append(line);
        }
    }
}

bool RecordedSources::contains(const QString& fingerprint) const
{
    return m_hashes.contains(hashOf(fingerprint));
}

bool RecordedSources::add(const QString& fingerprint)
{
    if (contains(fingerprint)) {
        return true;
    }
    m_hashes.append(hashOf(fingerprint));
    if (m_hashes.size() > maximumCount) {
        m_hashes.removeFirst();
    }
    return REPORTGENERATOR::writeDurably(m_path, m_hashes.join('\n') + '\n');
}

} // namespace ZelkoRecorder
