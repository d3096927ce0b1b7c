#pragma once

#include <recorder/service/managercaller.h>
#include <recorder/service/replaystream.h>

#include <zelkobase/data/admin.h>

#include <QObject>

#include <string>

namespace ZelkoRecorder {

class ChannelDevices;
class DeviceService;

/// The replay of a channel: one stored record at a time, in real time, whose samples go to the channel's manager. Lives
/// on the recorder's thread and never makes it wait, but in its destructor.
///
/// The manager is asked whether it is available, and told at which port of the recorder it gets the samples; the replay
/// begins once it has connected there. Until then a pause waits, and so does a stop.
class ChannelReplay : public QObject
{
    Q_OBJECT

public:
    using State = ZELKO_XML::Admin::RecordReplayMode;

    /// What is replayed. Times are microseconds since the epoch; a start outside of the record is its beginning, 0 as
    /// stop its end.
    struct Wish
    {
        QString device;
        QString record;
        quint64 start = 0;
        quint64 stop = 0;
    };

    struct Options
    {
        QString listenAddress; ///< where managers connect; empty: on all interfaces
        QString toldAddress;   ///< where they are told to
        std::string peer;      ///< address that may connect
        ReplayStream::Options stream;
    };

    /// `caller` and `devices` outlive the replay.
    ChannelReplay(const QString& channelId, ManagerCaller& caller, ChannelDevices& devices, const Options& options,
                  QObject* parent = nullptr);

    /// Ends the replay under way; the manager is not told.
    ~ChannelReplay() override;

    State state() const { return m_state; }
    bool isIdle() const { return m_state == State::Stopped; }

    /// Where the replay stands or, without one, where the last one ended; 0 as long as it has not begun.
    quint64 position();

    /// @name Wishes. False where the state does not allow it, and then nothing happens
    /// @{
    bool start(const Wish& wish); ///< false, too, for a device that is none; of the record `failed` tells
    bool pause();
    bool goOn();
    bool stop();
    /// @}

    /// Ends the replay under way at once; the manager is told nothing more.
    void abandon();

Q_SIGNALS:
    void changed(); ///< the state is another one

    /// The record is being replayed from now on.
    void began(const ZelkoRecorder::RecordPointer& record);

    /// It did not begin, or ended early; `why` is for people.
    void failed(const QString& why);

private:
    void enter(State state);
    void fail(const QString& why);
    void askManager();
    void asked(const ManagerCaller::Outcome& outcome);
    bool openSocket();
    void connectManager();
    void connected(const ManagerCaller::Outcome& outcome);
    ReplayStream::Listener listener();
    void begin(const RecordPointer& record);
    void hold();
    void noteStandstill(bool standsStill);
    void end(const ReplayStream::Ending& ending);
    void rest();

    const std::string m_channelId;
    const Options m_options;
    ManagerCaller& m_caller;
    ChannelDevices& m_devices;
    State m_state = State::Stopped;
    Wish m_wish;
    bool m_isToPause = false;          // as soon as it has begun
    DeviceService* m_device = nullptr; // of the wish
    quint64 m_position = 0;
    bool m_hasBegun = false;
    bool m_isConnected = false;           // the manager has agreed, and is to be told of the end
    std::unique_ptr<FlowSocket> m_socket; // until the stream has it
    Mailbox m_news;
    std::unique_ptr<ReplayStream> m_stream; // goes first
};

} // namespace ZelkoRecorder
