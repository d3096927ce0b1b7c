#pragma once

#include "plainspectrum.h"
#include "storedrecord.h"

#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QtEndian>

namespace ZelkoTest {

/// The samples of a SigMF pair as its metadata says, read without the recorder: `ci8`, `ci16_le` or `ri16_le`.
class CapturedSamples
{
public:
    /// `metadata` is the path of the file that ends with ".sigmf-meta".
    explicit CapturedSamples(const QString& metadata)
        : m_bytes(readBytes(metadata.chopped(4) + QLatin1String("data")))
    {
        const QJsonObject global = QJsonDocument::fromJson(readBytes(metadata)).object()["global"].toObject();
        const QString type = global["core:datatype"].toString();
        m_isReal = type.startsWith(QLatin1Char('r'));
        m_isOf8Bits = type.endsWith(QLatin1Char('8'));
        m_sampleRate = global["core:sample_rate"].toDouble();
        m_bytesPerFrame = (m_isReal ? 1 : 2) * (m_isOf8Bits ? 1 : 2) * global["core:num_channels"].toInt(1);
    }

    const QByteArray& bytes() const { return m_bytes; }
    double sampleRate() const { return m_sampleRate; }
    bool isReal() const { return m_isReal; }
    qsizetype bytesPerFrame() const { return m_bytesPerFrame; }
    qsizetype frames() const { return m_bytes.size() / m_bytesPerFrame; }

    /// Levels of `length` frames from `first` on, in the form of an overview: of real samples the upper half alone,
    /// and a tone counted whole.
    std::vector<double> levels(qsizetype first, std::size_t length) const
    {
        Values values(length);
        for (std::size_t i = 0; i < length; ++i) {
            values[i] = value(first + static_cast<qsizetype>(i));
        }
        std::vector<double> levels = hannLevels(values);
        if (m_isReal) {
            levels.erase(levels.begin(), levels.begin() + static_cast<std::ptrdiff_t>(length / 2));
            for (double& level : levels) {
                level += 20 * std::log10(2.0);
            }
        }
        return levels;
    }

private:
    double number(const char* bytes) const
    {
        return m_isOf8Bits ? qFromLittleEndian<qint8>(bytes) / 128.0 : qFromLittleEndian<qint16>(bytes) / 32768.0;
    }
    std::complex<double> value(qsizetype frame) const
    {
        const char* const bytes = m_bytes.constData() + frame * m_bytesPerFrame;
        return {number(bytes), m_isReal ? 0 : number(bytes + (m_isOf8Bits ? 1 : 2))};
    }

    const QByteArray m_bytes;
    bool m_isReal = false;
    bool m_isOf8Bits = false;
    double m_sampleRate = 0;
    qsizetype m_bytesPerFrame = 1;
};

} // namespace ZelkoTest
