#pragma once

#include <QString>

namespace ZelkoRecorder {

/// In which order a channel, its manager and its data are dealt with. It has no thread, no clock and no connection:
/// what is to be done it has done by `Work`, and is told of the outcome. The recorder's thread.
class ChannelMachine
{
public:
    enum class State {
        Idle,
        Asking,     ///< the manager was asked whether it is available
        Connecting, ///< it was asked where its data come from
        Starting,   ///< it was asked to let them flow; they may come already
        Recording,
        Stopping, ///< it was asked to stop the flow
        Closing,  ///< the record is being closed
        Removed   ///< nothing happens any more
    };

    /// What went wrong with a recording, for the manager. The numbers travel.
    enum class Fault {
        NotAvailable = 1, ///< the manager did not say that the source is available
        NotConnected = 2, ///< it did not connect
        NoFlow = 3,       ///< it did not start the flow, there is no socket for it, or no data have come
        Disk = 4          ///< the disk takes no more
    };

    /// Each of these begins and returns at once; none calls back before it has returned.
    class Work
    {
    public:
        virtual ~Work() = default;

        /// @name Answered by the function of the machine that is named here
        /// @{
        virtual void ask() = 0;           ///< `asked`
        virtual void connectSource() = 0; ///< `connected`
        virtual void startFlow() = 0;     ///< `flowStarted`
        virtual void stopFlow() = 0;      ///< `flowStopped`
        virtual void closeRecord() = 0;   ///< `recordClosed`
        /// @}

        /// @name Not answered
        /// @{
        virtual void disconnectSource() = 0;
        virtual void tellStarted() = 0;
        virtual void tellStopping() = 0;
        virtual void tellFinished() = 0;
        virtual void tellFault(Fault fault, const QString& text) = 0;
        virtual void tellRemoved() = 0;
        virtual void ended() = 0;        ///< the last that happens
        virtual void stateChanged() = 0; ///< `state`, `isStopWanted` or `hasData` is another one
        /// @}
    };

    /// `work` outlives the machine.
    explicit ChannelMachine(Work& work);

    State state() const { return m_state; }
    bool isIdle() const { return m_state == State::Idle; }
    bool isRemoved() const { return m_state == State::Removed; }

    /// Whether the recording that was begun is to end as soon as its manager has answered.
    bool isStopWanted() const { return m_stopWanted; }

    /// Whether data of the recording that was begun have come.
    bool hasData() const { return m_dataCame; }

    /// @name Wishes. False where the state does not allow it, and then nothing happens
    /// @{
    bool start();
    bool stop();   ///< of a recording that was begun
    bool remove(); ///< only of a channel at rest
    void removeForced();
    /// @}

    /// @name What happens
    /// @{
    void asked(bool available, const QString& why);
    void connected(bool done, const QString& why);
    void flowStarted(bool done, const QString& why);
    bool dataCame();                      ///< false if it means nothing: not the first, or the recording is ending
    void dataEnded();                     ///< the source itself has stopped
    void dataMissing(const QString& why); ///< they have not come in time; means nothing once they have
    void diskRefused(const QString& why); ///< nothing more can be recorded
    void timeIsOver();                    ///< the recording has its length
    void flowStopped();
    void recordClosed();
    void managerLost();
    /// @}

private:
    void enter(State state);
    void stopOnOwnAccord();
    void stopFlow();
    void closeRecord();
    void fail(Fault fault, const QString& why);
    void rest();
    void endRemoved();

    Work& m_work;
    State m_state = State::Idle;
    bool m_stopWanted = false;
    bool m_removeWanted = false;
    bool m_managerLost = false;
    bool m_dataCame = false;
    bool m_connected = false;
};

} // namespace ZelkoRecorder
