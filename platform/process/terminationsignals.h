#pragma once

#include <QObject>
#include <QSocketNotifier>

#include <memory>

namespace ZelkoCommon {

/// Turns SIGTERM and SIGINT into a signal on the thread that made this object. One at a time.
class TerminationSignals : public QObject
{
    Q_OBJECT

public:
    /// From here on both wait for an object of this class. To be called while the process has one thread: those that
    /// are started later, and programs that are started from here, inherit that they leave both alone.
    static void hold();

    /// Holds them, where that was not done before.
    explicit TerminationSignals(QObject* parent = nullptr);
    ~TerminationSignals() override;

Q_SIGNALS:
    void received();

private:
    int m_descriptor;
    std::unique_ptr<QSocketNotifier> m_notifier;
};

} // namespace ZelkoCommon
