#pragma once

#include <recorder/served/replays.h>
#include <recorder/service/channelframe.h>
#include <recorder/service/flowsocket.h>
#include <recorder/store/recordpointer.h>

#include <QByteArray>
#include <QFile>

#include <functional>
#include <memory>
#include <optional>
#include <thread>

namespace ZelkoRecorder {

/// Sends the samples of a record as its replay comes to them, in the frames of a channel, over the one connection of
/// its socket. On a thread of its own.
///
/// A frame holds samples that lie evenly in time, and ends at an entry of the index at the latest. The last one is
/// empty, and is not sent where the connection has no room for it. Who takes them slowly gets them late, until the
/// replay has ended.
class ReplayStream
{
public:
    /// A replay that has been begun.
    struct Source
    {
        RecordPointer record;
        QString samples;   ///< file
        quint64 start = 0; ///< microseconds since the epoch, where it has begun
        quint64 stop = 0;  ///< the same, where it will end
        std::function<std::optional<Replays::Position>()> position; ///< nothing once it has ended
        std::function<void()> end;                                  ///< ends it
    };

    /// Begins the replay; what is not `Done` leaves no source. Called on the thread of the stream, once somebody has
    /// connected.
    using Begin = std::function<StoreStatus(Source* source)>;

    /// How it ended.
    enum class End {
        Finished, ///< with the record
        Stopped,  ///< by `stop`, or because somebody else ended the replay
        NobodyCame,
        NotBegun, ///< the status of the ending tells why
        Damaged,  ///< samples are missing
        Lost      ///< the receiver has gone, or took nothing for too long
    };

    struct Ending
    {
        End end = End::Stopped;
        StoreStatus status = StoreStatus::Done;
        quint64 time = 0; ///< where the replay stood; 0 if it was not begun
    };

    /// What it tells, on its thread.
    struct Listener
    {
        std::function<void(const RecordPointer& record)> began;
        /// It stands still, and all that comes before is sent; or it goes on. Not told where it went on for so short a
        /// time that nobody noticed: then it stands still again.
        std::function<void(bool paused)> paused;
        std::function<void(const Ending&)> ended; ///< the last
    };

    struct Options
    {
        std::chrono::milliseconds patience{5000}; ///< with a receiver that does not come, or takes nothing
        std::chrono::milliseconds tick{20};       ///< how often it looks where the replay stands
    };

    /// `socket` is one for a stream. `clock` outlives it.
    ReplayStream(std::unique_ptr<FlowSocket> socket, Begin begin, Listener listener, const Options& options,
                 RecordingClock& clock = RecordingClock::steady());

    /// Ends the replay, and waits for the thread.
    ~ReplayStream();

    /// Ends the replay soon; `ended` follows. Any thread, any number of times.
    void stop() { m_thread.request_stop(); }

private:
    enum class Progress { Done, Waits, Failed };

    void run(const std::stop_token& stop);
    bool awaitReceiver(const std::stop_token& stop);
    bool begin();
    void play(const std::stop_token& stop);
    bool follow(const Replays::Position& position);
    void finish(const std::stop_token& stop);
    bool hasComeToItsEnd() const;
    Progress sendTo(quint64 offset);
    Progress sendWaiting();
    bool takeFrame(quint64 offset);
    void queueFrame(const ChannelFrame& frame, const QByteArray& samples);
    quint64 frameEnd(quint64 offset) const;

    const std::unique_ptr<FlowSocket> m_socket;
    const Begin m_begin;
    const Listener m_listener;
    const Options m_options;
    RecordingClock& m_clock;
    Source m_source;
    std::optional<RecordTimeline> m_timeline;
    QFile m_samples;
    Ending m_ending;
    quint64 m_offset = 0; // up to here samples were taken from the file
    quint32 m_number = 0;
    QByteArray m_waiting; // for the connection
    qsizetype m_written = 0;
    RecordingClock::TimePoint m_lastProgress; // when the connection took something, or had nothing to take
    bool m_standsStill = false;               // as the listener knows
    Replays::Position m_position{};
    RecordingClock::TimePoint m_positionTaken;
    std::jthread m_thread; // goes first
};

} // namespace ZelkoRecorder
