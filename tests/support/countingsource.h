#pragma once

#include <recorder/source/signalsource.h>

#include <algorithm>
#include <cstring>

namespace ZelkoTest {

/// A signal of frames of four bytes, each the number of the frame; may break off with an error.
class CountingSource : public ZelkoRecorder::SignalSource
{
public:
    explicit CountingSource(const ZelkoRecorder::SourceDescription& description, qint64 failsAt = -1)
        : SignalSource(description)
        , m_failsAt(failsAt)
    {}

    static ZelkoRecorder::SourceDescription signal(qint64 frames, quint64 rate = 1000)
    {
        ZelkoRecorder::SourceDescription description;
        description.name = QStringLiteral("Counting");
        description.sampleRate = rate;
        description.bandwidth = rate;
        description.totalFrames = frames;
        description.segments[0].centreFrequency = 145'000'000;
        return description;
    }

    static QByteArray bytes(qint64 frames)
    {
        CountingSource source(signal(frames));
        QByteArray result(frames * 4, '\0');
        source.read(result.data(), frames);
        return result;
    }

    qint64 read(char* buffer, qint64 frames) override
    {
        const qint64 total = description().totalFrames;
        qint64 end = total < 0 ? m_next + frames : std::min(total, m_next + frames);
        if (m_failsAt >= 0 && end > m_failsAt) {
            end = m_failsAt;
        }
        const qint64 count = std::max<qint64>(0, end - m_next);
        for (; m_next < end; ++m_next, buffer += 4) {
            const auto number = static_cast<quint32>(m_next);
            std::memcpy(buffer, &number, sizeof number);
        }
        if (count == 0 && m_next == m_failsAt) {
            fail(QStringLiteral("the cable broke"));
        }
        return count;
    }

private:
    const qint64 m_failsAt;
    qint64 m_next = 0;
};

} // namespace ZelkoTest
