#pragma once

#include <recorder/store/devicestore.h>

#include <zelkobase/data/recordfiles.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QtEndian>

#include <cmath>
#include <cstdlib>
#include <numbers>
#include <random>

/// A record of 1 GiB of a device: IQ with 16 bits, noise and a tone. Its file is in memory when it has been made, as
/// far as the machine has room for it.
class LargeRecord
{
public:
    static constexpr quint64 size = quint64{1} << 30;
    static constexpr quint64 frames = size / 4;
    static constexpr quint64 sampleRate = 10'000'000;

    LargeRecord()
    {
        m_record.SetRecordID(QStringLiteral("large"));
        m_record.SetDataFormat(ZELKO_XML::ZELKO_RecordData::DataFormat::IQ16);
        m_record.SetStartTime(begin);
        m_record.SetStopTime(begin + duration);
        m_record.SetSize(size);
        m_record.SetStopPosition(size);
        m_record.SetIndexEntry({entry(begin, 0), entry(begin + duration, size)});
        writeSamples();
    }

    const ZELKO_XML::ZELKO_RecordData& metadata() const { return m_record; }
    ZelkoRecorder::DeviceStore store() const { return ZelkoRecorder::DeviceStore(m_folder.path()); }
    QString samples() const
    {
        const QString id = m_record.GetRecordID();
        return QDir(store().recordFolder(id)).filePath(ZELKO_XML::sampleFileName(id, m_record.GetDataFormat()));
    }

private:
    static constexpr quint64 begin = 1'700'000'000'000'000;
    static constexpr quint64 duration = frames * 1'000'000 / sampleRate;

    static ZELKO_XML::IndexEntry entry(quint64 time, quint64 offset)
    {
        ZELKO_XML::IndexEntry result;
        result.SetTimestamp(time);
        result.SetRecordOffset(offset);
        result.SetTunerFrequency(145'000'000);
        result.SetSampleRate(sampleRate);
        return result;
    }

    static QByteArray oneMebibyte()
    {
        std::mt19937 random(1);
        std::normal_distribution<double> noise(0, 300);
        QByteArray bytes(1 << 20, '\0');
        for (qsizetype i = 0; i < bytes.size() / 4; ++i) {
            const double phase = 2 * std::numbers::pi * 0.1 * static_cast<double>(i);
            qToLittleEndian(static_cast<qint16>(3000 * std::cos(phase) + noise(random)), bytes.data() + 4 * i);
            qToLittleEndian(static_cast<qint16>(3000 * std::sin(phase) + noise(random)), bytes.data() + 4 * i + 2);
        }
        return bytes;
    }

    void writeSamples() const
    {
        QDir().mkpath(store().recordFolder(m_record.GetRecordID()));
        QFile file(samples());
        const QByteArray part = oneMebibyte();
        bool isWritten = file.open(QIODevice::WriteOnly);
        for (quint64 at = 0; isWritten && at < size; at += static_cast<quint64>(part.size())) {
            isWritten = file.write(part) == part.size();
        }
        if (!isWritten) {
            std::abort();
        }
    }

    const QTemporaryDir m_folder;
    ZELKO_XML::ZELKO_RecordData m_record;
};
