#pragma once

#include <QObject>
#include <QSocketNotifier>

#include <memory>

namespace ZelkoRecorder {

/// Turns SIGTERM and SIGINT into a signal on the thread that made this object, which is to be the first of the process:
/// threads that are started later inherit that they leave both alone. One at a time.
class TerminationSignals : public QObject
{
    Q_OBJECT

public:
    explicit TerminationSignals(QObject* parent = nullptr);
    ~TerminationSignals() override;

Q_SIGNALS:
    void received();

private:
    int m_descriptor;
    std::unique_ptr<QSocketNotifier> m_notifier;
};

} // namespace ZelkoRecorder
