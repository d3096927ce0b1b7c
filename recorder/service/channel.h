#pragma once

#include <recorder/service/channelmachine.h>
#include <recorder/service/channelreceiver.h>
#include <recorder/service/channelreplay.h>
#include <recorder/service/channelwish.h>
#include <recorder/service/longtimer.h>
#include <recorder/service/managercaller.h>

#include <QObject>
#include <QStringList>
#include <QTimer>

#include <memory>

namespace ZelkoRecorder {

class ChannelDevices;
class FlowSource;

/// One channel that a manager has registered: its settings, its recording, and the calls to its manager. Lives on the
/// recorder's thread and never makes it wait, but in its destructor.
class Channel : public QObject, private ChannelMachine::Work
{
    Q_OBJECT

public:
    using Manager = QD_ZLK::IF_ZLK_c_ChanMan_var;

    /// How channels are kept.
    struct Options
    {
        QString listenAddress = QStringLiteral("127.0.0.1"); ///< where data come in; empty: on all interfaces
        QString toldAddress = QStringLiteral("127.0.0.1");   ///< where managers are told to send them
        std::chrono::milliseconds callLimit{5000};           ///< of each call to a manager
        std::chrono::milliseconds pingInterval{10000};       ///< from one sign of life of a manager to the next
        std::chrono::milliseconds dataPatience{60000};       ///< with a source that was started, until its first data
        ReplayStream::Options replay;
    };

    /// What a recording is to be.
    struct Recording
    {
        int seconds = 0;       ///< from its first data on; 0: until it is stopped
        QString name;          ///< of the record; empty: that of the channel
        QString device;        ///< empty: as the manager prefers
        quint64 mostBytes = 0; ///< of samples; 0: no limit
        bool isLoop = false;   ///< with so many bytes it does not end, but goes on without the eldest
    };

    using RecordingState = ZELKO_XML::Admin::RecordReplayAllModes;

    /// Why something was not done.
    enum class Verdict {
        Done,
        Removed,
        Busy,
        NotRecording,
        NoDevice,
        NotAble,  ///< not what it was registered for
        NoSize,   ///< of a loop
        NotStored ///< the disk refuses
    };

    /// Takes a verdict, once, on whatever thread it is found.
    using Answer = std::function<void(Verdict)>;

    /// `wish` was looked at. `devices` outlive the channel.
    Channel(const QString& id, const ChannelWish& wish, const Manager& manager, ChannelDevices& devices,
            const Options& options, QObject* parent = nullptr);

    /// Closes the recording under way, durably.
    ~Channel() override;

    const QString& id() const { return m_id; }
    const ChannelWish& settings() const { return m_wish; }
    ChannelMachine::State state() const { return m_machine.state(); }

    /// The same as clients see it: it records from the first data on.
    RecordingState recordingState() const;

    /// Where a recording would go that does not say so; empty: nowhere.
    QString device() const { return chooseDevice({}); }

    ChannelReplay& replay() { return m_replay; }

    /// @name Wishes of the manager, and of clients
    /// NotAble, and nothing happens, for what cannot be done with a channel of the recorder's own.
    /// @{
    /// Done means that it was begun: whatever fails later the manager is told, and `failed` tells it. That is so, too,
    /// when no data have come after the length of the recording or, if that is longer, the options' patience. Without a
    /// length it waits for data until it is stopped.
    Verdict startRecording(const Recording& recording);
    /// An empty name leaves the record the one that it has; with any other it is answered when the record has the name,
    /// durably. NotRecording, too, for a name that comes when the record is as good as closed; NotStored for one that
    /// the disk does not take. In both cases the recording ends all the same.
    void stopRecording(const QString& recordName, const Answer& answer);
    /// Done means that it was begun. An empty device is the one that would record.
    Verdict startReplay(const ChannelReplay::Wish& wish);
    Verdict remove();
    Verdict removeForced();
    void fault(const QString& text); ///< ends a recording under way
    void dataStopped() { m_machine.dataEnded(); }
    Verdict setManager(const Manager& manager);
    /// What the next recording is to be. Those that are refused while one is under way say so.
    Verdict setFormat(ChannelWish::DataFormat format);
    Verdict setDataRate(ChannelWish::DataRate dataRate);
    Verdict setCanRecord(bool canRecord);
    Verdict setCanReplay(bool canReplay);
    void setName(const QString& name);
    /// In Hz; for data that do not name theirs. 0: not known.
    void setRequestedSampleRate(quint64 sampleRate) { m_sampleRate = sampleRate; }
    /// The devices that may record, the best first. Done if one of them is there.
    Verdict setDevices(const QStringList& devices);
    /// @}

    /// Tells the manager that the recorder ends, and calls `done` on the thread of the calls when it was told or could
    /// not be.
    void tellGoingDown(std::function<void()> done);

Q_SIGNALS:
    /// The state of the recording or of the replay, or a setting, is another one.
    void changed();

    /// A durable state of the record that is being recorded, or the record whose replay has begun.
    void recordChanged(const ZelkoRecorder::RecordPointer& record);

    /// A recording or a replay was not begun, or ended early; `why` is for people.
    void failed(const QString& why);

    /// Nothing happens any more. May be deleted, but later.
    void gone(const QString& id);

private:
    void ask() override;
    void connectSource() override;
    void startFlow() override;
    void stopFlow() override;
    void closeRecord() override;
    void disconnectSource() override;
    void tellStarted() override;
    void tellStopping() override;
    void tellFinished() override;
    void tellFault(ChannelMachine::Fault fault, const QString& text) override;
    void tellRemoved() override;
    void ended() override;
    void stateChanged() override { Q_EMIT changed(); }

    void beginFlow();
    bool openReceiver(QString* error);
    void awaitData();
    void noteFirstData();
    void noteTimeIsOver();
    ChannelReceiver::Listener receiverListener();
    void beginRecord(const QString& recordID);
    void changeRecord(const RecordPointer& record);
    ZELKO_XML::ZELKO_RecordData birth() const;
    QString chooseDevice(const QString& wanted) const;
    void rename(const Answer& answer);
    void endRecord(const QString& recordID);
    void tell(std::function<void(QD_ZLK::IF_ZLK_c_ChanMan_ptr, const char* id)> call);

    const QString m_id;
    const std::string m_wireId;
    const Options m_options;
    ChannelDevices& m_devices;
    ChannelWish m_wish;
    QStringList m_allowedDevices;
    quint64 m_sampleRate = 0;
    Recording m_recording;
    QString m_newName; // that came with the wish to stop; empty: none
    QString m_device;
    QString m_recordID;
    std::shared_ptr<FlowSource> m_source; // what the manager said when it connected
    ChannelMachine m_machine{*this};
    // Until the first data, and from there to the end.
    LongTimer m_durationTimer{[this] { noteTimeIsOver(); }};
    QTimer m_pingTimer;
    Mailbox m_news;
    ManagerCaller m_caller;
    ChannelReplay m_replay;
    std::unique_ptr<ChannelReceiver> m_receiver; // goes first
};

} // namespace ZelkoRecorder
