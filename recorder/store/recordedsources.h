#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

namespace ZelkoRecorder {

/// Which sources a device has recorded to their end, in a file of the device's folder: a record that was deleted since
/// counts, too. For one thread.
class RecordedSources
{
public:
    /// More than this, and the oldest are forgotten.
    static constexpr qsizetype maximumCount = 10'000;

    /// `folder` is that of the device. What cannot be read counts as not recorded, and is told to the log.
    explicit RecordedSources(const QString& folder);

    /// `fingerprint` is any text that tells sources apart.
    bool contains(const QString& fingerprint) const;

    /// Notes a source; durable when it returns true. False if the disk refuses.
    bool add(const QString& fingerprint);

private:
    void read();

    const QString m_path;
    QList<QByteArray> m_hashes;
};

} // namespace ZelkoRecorder
