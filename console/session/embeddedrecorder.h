#pragma once

#include <QObject>
#include <QStringList>

#include <chrono>
#include <memory>

namespace ZelkoConsole {

class RecorderUsers;

/// How the console starts a recorder of its own.
struct EmbeddedRecorderOptions
{
    QString program;     ///< path of the recorder server
    QString storeFolder; ///< is created when it is missing
    QString subSystem;
    QStringList devices;  ///< empty: the recorder's own default
    QStringList sources;  ///< descriptions, each may begin with "DEVICE="; after a restart only what is missing
    QStringList channels; ///< of its own, each "NAME=" and the description of a source

    /// Its users; without them it takes every client for a viewer.
    std::shared_ptr<RecorderUsers> users = {};

    /// A start that takes longer counts as failed.
    std::chrono::milliseconds readyTimeout{20000};
    /// Wait before the next start: the first one, doubled each time up to the last one.
    std::chrono::milliseconds firstRestart{1000};
    std::chrono::milliseconds lastRestart{15000};
};

/// The recorder server beside the console, as a child process: started, watched, and started again when it dies.
///
/// The system chooses its port, another one after each start. Nothing blocks but `stop()` and the destructor, which
/// give the recorder some seconds to close its recordings. GUI thread.
class EmbeddedRecorder : public QObject
{
    Q_OBJECT

public:
    enum class State {
        Stopped,  ///< not started yet, or stopped by `stop()`
        Starting, ///< the process runs but does not serve yet
        Running,  ///< it serves
        Failed    ///< it died or could not be started; a restart follows by itself
    };

    explicit EmbeddedRecorder(const EmbeddedRecorderOptions& options, QObject* parent = nullptr);
    ~EmbeddedRecorder() override;

    /// Starts the process; nothing happens when it is started already.
    void start();

    /// Ends the process in good order; waits for it, at most 5 s, then kills it. No restart follows.
    void stop();

    State state() const;

    /// Why it failed, for people, without a full stop; empty in the other states.
    QString failure() const;

    /// The port it serves on, or served on last; 0 before it has served for the first time.
    quint16 port() const;

    /// Of the running process; 0 when there is none.
    qint64 processId() const;

Q_SIGNALS:
    /// `state()` or `failure()` changed.
    void changed();

private:
    struct Private;
    const std::unique_ptr<Private> d;
};

} // namespace ZelkoConsole
