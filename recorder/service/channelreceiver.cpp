#include <recorder/service/channelreceiver.h>

#include <recorder/store/recorderlog.h>

#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

namespace ZelkoRecorder {

namespace {

constexpr std::size_t bufferSize = 256 * 1024; // more than any datagram

// A sender that never pauses does not keep a record from being closed.
constexpr int mostReadsAfterClose = 1024;

} // namespace

ChannelReceiver::ChannelReceiver(std::unique_ptr<FlowSocket> socket, const Flow& flow, const DeviceStore& store,
                                 const DeviceClock& clock, const ZELKO_XML::ZELKO_RecordData& birth, Listener listener)
    : m_socket(std::move(socket))
    , m_port(m_socket->port())
    , m_flow(flow)
    , m_store(store)
    , m_listener(std::move(listener))
    , m_wakeUp(::eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC))
    , m_edits(std::make_shared<EditQueue>([wakeUp = m_wakeUp] { eventfd_write(wakeUp, 1); }))
    , m_recording(
          m_store, clock, birth,
          [this](const QString& id) {
              m_bornID = id;
              m_listener.born(id);
          },
          m_listener.changed)
    , m_buffer(bufferSize)
{
    m_recording.limitTo(flow.mostBytes);
    m_thread = std::thread([this] { run(); });
}

ChannelReceiver::~ChannelReceiver()
{
    close();
    m_thread.join();
    ::close(m_wakeUp);
}

void ChannelReceiver::close()
{
    m_closing = true;
    eventfd_write(m_wakeUp, 1);
}

void ChannelReceiver::run()
{
    while (!m_closing) {
        waitForData();
        receive();
        m_recording.makeEdits(*m_edits);
    }
    for (int reads = 0; reads < mostReadsAfterClose && receive(); ++reads) {
    }
    if (!m_recording.finish(*m_edits)) {
        m_listener.diskRefused(QStringLiteral("the disk does not take the end of the record"));
    }
    tellOfMissing();
    m_listener.closed(m_bornID);
}

void ChannelReceiver::tellOfMissing() const
{
    if (m_recording.lostFrames() > 0 || m_recording.refusedFrames() > 0) {
        qCWarning(recorderLog).noquote() << "record" << m_bornID << ":" << m_recording.lostFrames()
                                         << "frames of its channel were lost and" << m_recording.refusedFrames()
                                         << "came twice or late";
    }
}

void ChannelReceiver::waitForData() const
{
    pollfd waiting[] = {{m_wakeUp, POLLIN, 0}, {m_socket->descriptor(), POLLIN, 0}};
    ::poll(waiting, m_dataEnded ? 1 : 2, -1);
    eventfd_t wakeUps = 0;
    eventfd_read(m_wakeUp, &wakeUps);
}

// False when there was nothing to be had.
bool ChannelReceiver::receive()
{
    std::size_t size = 0;
    if (m_dataEnded) {
        return false;
    }
    switch (m_socket->read(m_buffer.data(), m_buffer.size(), &size)) {
    case FlowSocket::Got::Nothing:
        return false;
    case FlowSocket::Got::End:
        endData();
        return false;
    case FlowSocket::Got::Bytes:
        break;
    }
    const std::string_view bytes(m_buffer.data(), size);
    return m_socket->kind() == FlowSocket::Kind::Datagrams ? takeDatagram(bytes) : takeStream(bytes);
}

// Anybody can send a datagram, so one that is no frame means nothing.
bool ChannelReceiver::takeDatagram(std::string_view datagram)
{
    ChannelFrame frame;
    std::string_view samples;
    const bool isFrame = readDatagram(datagram, &frame, &samples) == FrameReader::Result::Frame;
    return !isFrame || take(frame, samples);
}

bool ChannelReceiver::takeStream(std::string_view bytes)
{
    m_reader.append(bytes);
    ChannelFrame frame;
    std::string_view samples;
    FrameReader::Result result = m_reader.next(&frame, &samples);
    for (; result == FrameReader::Result::Frame; result = m_reader.next(&frame, &samples)) {
        if (!take(frame, samples)) {
            return false;
        }
    }
    if (result == FrameReader::Result::Malformed) {
        qCWarning(recorderLog) << "the data of a channel do not parse";
        endData();
    }
    return !m_dataEnded;
}

// False when nothing is taken any more.
bool ChannelReceiver::take(ChannelFrame frame, std::string_view samples)
{
    if (frame.stream != m_flow.stream) {
        return true;
    }
    if (frame.sampleRate == 0) {
        frame.sampleRate = m_flow.sampleRate;
    }
    QString error;
    if (!m_recording.take(frame, samples, &error)) {
        m_dataEnded = true;
        m_listener.diskRefused(error);
        return false;
    }
    if (!m_dataCame && !m_recording.recordID().isEmpty()) {
        m_dataCame = true;
        m_listener.dataCame();
    }
    if (frame.isLast) {
        endData();
    } else if (m_recording.isFull()) {
        m_dataEnded = true;
        m_listener.full();
    }
    return !m_dataEnded;
}

void ChannelReceiver::endData()
{
    m_dataEnded = true;
    m_listener.dataEnded();
}

} // namespace ZelkoRecorder
