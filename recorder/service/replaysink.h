#pragma once

#include <recorder/service/flowconnection.h>
#include <recorder/service/framereader.h>
#include <recorder/store/recordingclock.h>

#include <functional>
#include <thread>

namespace ZelkoRecorder {

/// Takes the samples of a replay at a port of this host as fast as they come, and keeps none of them. On a thread of
/// its own, which ends with the replay.
class ReplaySink
{
public:
    /// What has come until the end. Told once, on that thread.
    struct Taken
    {
        quint64 sampleBytes = 0;
        bool isWhole = false; ///< the last frame was among them
    };
    using Ended = std::function<void(const Taken&)>;

    /// `clock` outlives the sink.
    ReplaySink(quint16 port, Ended ended, RecordingClock& clock = RecordingClock::steady());

    /// Takes no more, and waits for the thread.
    ~ReplaySink();

private:
    void run(const std::stop_token& stop);
    bool take(std::string_view bytes);

    const quint16 m_port;
    const Ended m_ended;
    RecordingClock& m_clock;
    FrameReader m_reader;
    Taken m_taken;
    std::jthread m_thread; // goes first
};

} // namespace ZelkoRecorder
