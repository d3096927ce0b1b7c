#pragma once

#include <recorder/service/flowsocket.h>
#include <recorder/service/framereader.h>

#include <QByteArray>
#include <QString>
#include <QVector>

#include <vector>

namespace ZelkoTest {

/// Takes the frames of a flow that comes to it as a stream, whenever it is asked what has come.
class FlowTaker
{
public:
    quint16 port() const { return m_socket->port(); }

    /// Takes what is there; whether anything ever came, and whether the sender has closed the connection.
    bool hasFrames() { return take() && !m_frames.isEmpty(); }
    bool isClosed() { return take() && m_isClosed; }

    /// Whether the frame has come that is the last.
    bool hasLast() { return hasFrames() && m_frames.constLast().isLast; }

    /// Bytes of samples until now.
    qsizetype size() { return take() ? m_samples.size() : -1; }

    const QVector<ZelkoRecorder::ChannelFrame>& frames() const { return m_frames; }
    const QByteArray& samples() const { return m_samples; }

private:
    using Got = ZelkoRecorder::FlowSocket::Got;
    using Result = ZelkoRecorder::FrameReader::Result;

    // False for what is no frame.
    bool take()
    {
        std::size_t size = 0;
        Got got = m_socket->read(m_buffer.data(), m_buffer.size(), &size);
        for (; got == Got::Bytes; got = m_socket->read(m_buffer.data(), m_buffer.size(), &size)) {
            m_reader.append({m_buffer.data(), size});
        }
        m_isClosed = m_isClosed || got == Got::End;
        return readFrames() != Result::Malformed;
    }
    Result readFrames()
    {
        ZelkoRecorder::ChannelFrame frame;
        std::string_view samples;
        Result result = m_reader.next(&frame, &samples);
        for (; result == Result::Frame; result = m_reader.next(&frame, &samples)) {
            m_frames.append(frame);
            m_samples.append(samples.data(), static_cast<qsizetype>(samples.size()));
        }
        return result;
    }

    QString m_error;
    const std::unique_ptr<ZelkoRecorder::FlowSocket> m_socket = ZelkoRecorder::FlowSocket::open(
        ZelkoRecorder::FlowSocket::Kind::Stream, QStringLiteral("127.0.0.1"), 0, "127.0.0.1", &m_error);
    std::vector<char> m_buffer = std::vector<char>(65536);
    ZelkoRecorder::FrameReader m_reader;
    QVector<ZelkoRecorder::ChannelFrame> m_frames;
    QByteArray m_samples;
    bool m_isClosed = false;
};

} // namespace ZelkoTest
