#pragma once

#include <recorder/service/flowconnection.h>
#include <recorder/source/signalsource.h>
#include <recorder/store/signalpace.h>
#include <recorder/store/signaltimeline.h>

#include <QByteArray>

#include <functional>
#include <memory>
#include <thread>
#include <vector>

namespace ZelkoRecorder {

/// Plays a source into a channel: its samples go in frames of stream 0 to a port of this host, as they come due, until
/// the signal ends or nobody takes them. On a thread of its own.
///
/// A frame holds samples of one tuning. A number is left out where the signal has a hole in time. The last frame of a
/// signal that ends is empty and says so; a source that fails has none.
class SourceFlow
{
public:
    struct Start
    {
        quint16 port = 0;
        quint64 time = 0; ///< of the first sample if the signal has none of its own, in microseconds since the epoch
        double speed = 1; ///< seconds of the signal in a second; 0: as fast as they are taken
    };

    /// Told why the flow came to nothing or breaks off, a text for people: nobody listens at the port, or the source
    /// has failed. At most once, on the thread of the flow, before the connection is closed; never because of the end
    /// of the flow itself.
    using Failed = std::function<void(const QString& why)>;

    /// `failed` may be null. `clock` outlives the flow.
    SourceFlow(std::unique_ptr<SignalSource> source, const Start& start, Failed failed,
               RecordingClock& clock = RecordingClock::steady());

    /// Ends the flow behind a whole frame, or in one that nobody takes; waits for the thread.
    ~SourceFlow();

private:
    void run(const std::stop_token& stop);
    bool sendDue(const FlowConnection& connection, const std::stop_token& stop);
    bool send(const FlowConnection& connection, const std::stop_token& stop) const;
    bool takeFrame(qint64 due);
    bool hasSourceFailed() const { return !m_source->errorText().isEmpty(); }
    void fail(const QString& why) const;
    qint64 framesUntil(qint64 due) const;
    bool isBehindHole() const;

    const std::unique_ptr<SignalSource> m_source;
    const quint16 m_port;
    const SignalTimeline m_timeline;
    const Failed m_failed;
    RecordingClock& m_clock;
    const SignalPace m_pace;
    const qint64 m_bytesPerFrame; // of the signal: the values of one moment
    std::vector<char> m_samples;
    QByteArray m_bytes; // of the frame that is being sent
    qint64 m_position = 0;
    quint32 m_number = 0;
    std::jthread m_thread; // goes first
};

} // namespace ZelkoRecorder
