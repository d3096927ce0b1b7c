#pragma once

#include <QCryptographicHash>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

namespace ZelkoTest {

inline bool writeFile(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

/// A small valid recording in the SigMF format, to be changed at one place before it is written.
struct SigmfPair
{
    QJsonObject global{{"core:datatype", "ci16_le"}, {"core:sample_rate", 1000}, {"core:version", "1.2.0"}};
    QJsonArray captures{QJsonObject{
        {"core:sample_start", 0}, {"core:frequency", 145000000.0}, {"core:datetime", "2021-06-18T23:17:51.163959Z"}}};
    QJsonArray annotations;
    QByteArray samples = "0123456789abcdef";

    QByteArray metadata() const
    {
        const QJsonObject root{{"global", global}, {"captures", captures}, {"annotations", annotations}};
        return QJsonDocument(root).toJson();
    }

    void addHash()
    {
        const QByteArray hash = QCryptographicHash::hash(samples, QCryptographicHash::Sha512);
        global["core:sha512"] = QString::fromLatin1(hash.toHex());
    }

    /// Writes both files; `stem` is their path without an ending.
    bool write(const QString& stem) const
    {
        return writeFile(stem + QStringLiteral(".sigmf-meta"), metadata()) &&
               writeFile(stem + QStringLiteral(".sigmf-data"), samples);
    }
};

} // namespace ZelkoTest
