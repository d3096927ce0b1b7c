#pragma once

#include <recorder/service/flowsocket.h>
#include <recorder/service/framereader.h>
#include <recorder/service/framerecording.h>

#include <atomic>
#include <functional>
#include <memory>
#include <thread>
#include <vector>

namespace ZelkoRecorder {

/// Receives the data of a channel and records them, on a thread of its own.
class ChannelReceiver
{
public:
    /// What it tells, on its thread.
    struct Listener
    {
        std::function<void(const QString& recordID)> born; ///< before anything of the record is on disk
        std::function<void(const RecordPointer&)> changed; ///< a durable state of the record
        std::function<void()> dataCame;                    ///< the first samples of the stream are there
        std::function<void()> dataEnded;                   ///< the source has ended the flow, or broke its form
        std::function<void()> full;                        ///< the record has its largest size, no more is taken
        std::function<void(const QString& why)> diskRefused;
        /// The last: nobody writes to the record any more. `recordID` is empty if there is none.
        std::function<void(const QString& recordID)> closed;
    };

    /// What is taken.
    struct Flow
    {
        quint64 stream = 0;     ///< of other streams nothing is
        quint64 sampleRate = 0; ///< of frames that do not name theirs
        quint64 mostBytes = 0;  ///< of samples; 0: no limit
    };

    /// Records what comes through `socket`. `birth` and `clock` as FrameRecording wants them.
    ChannelReceiver(std::unique_ptr<FlowSocket> socket, const Flow& flow, const DeviceStore& store,
                    const DeviceClock& clock, const ZELKO_XML::ZELKO_RecordData& birth, Listener listener);

    /// Closes the record, durably.
    ~ChannelReceiver();

    quint16 port() const { return m_port; }

    /// Takes edits of the record until it is closed. One that comes before the record is there is answered at
    /// once: the record is born with it.
    const std::shared_ptr<EditQueue>& edits() const { return m_edits; }

    /// Takes what has come until now and closes the record; `closed` follows. Any thread, any number of times.
    void close();

private:
    void run();
    bool receive();
    bool takeDatagram(std::string_view datagram);
    bool takeStream(std::string_view bytes);
    bool take(ChannelFrame frame, std::string_view samples);
    void tellOfMissing() const;
    void waitForData() const;
    void endData();

    const std::unique_ptr<FlowSocket> m_socket;
    const quint16 m_port;
    const Flow m_flow;
    const DeviceStore m_store;
    const Listener m_listener;
    const int m_wakeUp;
    const std::shared_ptr<EditQueue> m_edits;
    QString m_bornID;
    FrameRecording m_recording;
    FrameReader m_reader;
    std::vector<char> m_buffer;
    bool m_dataCame = false;
    bool m_dataEnded = false; // nothing is taken any more
    std::atomic<bool> m_closing = false;
    std::thread m_thread;
};

} // namespace ZelkoRecorder
