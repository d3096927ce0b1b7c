#pragma once

#include <recorder/service/framereader.h>

#include <QTcpSocket>

namespace ZelkoTest {

/// Takes the samples of a replay at a port of this host. Needs an event loop.
class ReplayReceiver
{
public:
    explicit ReplayReceiver(quint16 port)
    {
        QObject::connect(&m_socket, &QTcpSocket::readyRead, &m_socket, [this] { read(); });
        m_socket.connectToHost(QHostAddress::LocalHost, port);
    }

    bool isConnected() const { return m_socket.state() == QAbstractSocket::ConnectedState; }
    bool waitUntilConnected(int milliseconds) { return m_socket.waitForConnected(milliseconds); }

    /// Whether the last frame has come, and whether everything was frames.
    bool hasEnded() const { return !m_frames.isEmpty() && m_frames.constLast().isLast; }
    bool isWellFormed() const { return m_isWellFormed; }

    const QVector<ZelkoRecorder::ChannelFrame>& frames() const { return m_frames; }
    const QByteArray& samples() const { return m_samples; }

    void disconnect() { m_socket.abort(); }

private:
    void read()
    {
        using ZelkoRecorder::FrameReader;
        const QByteArray bytes = m_socket.readAll();
        m_reader.append({bytes.constData(), static_cast<std::size_t>(bytes.size())});
        ZelkoRecorder::ChannelFrame frame;
        std::string_view samples;
        auto result = m_reader.next(&frame, &samples);
        for (; result == FrameReader::Result::Frame; result = m_reader.next(&frame, &samples)) {
            m_frames.append(frame);
            m_samples.append(samples.data(), static_cast<qsizetype>(samples.size()));
        }
        m_isWellFormed = m_isWellFormed && result != FrameReader::Result::Malformed;
    }

    QTcpSocket m_socket;
    ZelkoRecorder::FrameReader m_reader;
    QVector<ZelkoRecorder::ChannelFrame> m_frames;
    QByteArray m_samples;
    bool m_isWellFormed = true;
};

} // namespace ZelkoTest
