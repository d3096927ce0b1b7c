#pragma once

#include <recorder/service/channelframe.h>

#include <QByteArray>

namespace ZelkoTest {

/// Frame `number` of a signal of 1000 samples a second that begins at second 10; `bytes` of samples of 4 bytes.
inline ZelkoRecorder::ChannelFrame frameOf(quint32 number, quint32 bytes = 400)
{
    ZelkoRecorder::ChannelFrame frame;
    frame.number = number;
    frame.sampleBytes = bytes;
    frame.stream = 7;
    frame.time = 10'000'000 + quint64{number} * bytes / 4 * 1000;
    frame.centreFrequency = 145'000'000;
    frame.sampleRate = 1000;
    frame.bandwidth = 800;
    return frame;
}

/// Samples that tell frames apart.
inline QByteArray samplesOf(const ZelkoRecorder::ChannelFrame& frame)
{
    return QByteArray(static_cast<qsizetype>(frame.sampleBytes), static_cast<char>('a' + frame.number % 26));
}

/// As it travels.
inline QByteArray wire(const ZelkoRecorder::ChannelFrame& frame)
{
    QByteArray bytes(ZelkoRecorder::ChannelFrame::headSize, '\0');
    frame.writeHead(bytes.data());
    return bytes + samplesOf(frame);
}

} // namespace ZelkoTest
