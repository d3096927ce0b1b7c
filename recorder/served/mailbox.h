#pragma once

#include <QObject>
#include <QSocketNotifier>

#include <functional>
#include <memory>
#include <mutex>
#include <vector>

namespace ZelkoRecorder {

/// Runs functions of other threads on the thread that it lives on, in the order in which they were posted.
class Mailbox : public QObject
{
    Q_OBJECT

public:
    explicit Mailbox(QObject* parent = nullptr);

    /// Functions that were not run yet are destroyed. Nobody may post any more.
    ~Mailbox() override;

    /// Any thread. Never runs the function itself.
    void post(std::function<void()> function);

private:
    void deliver();

    const int m_wakeUp;
    std::unique_ptr<QSocketNotifier> m_notifier;
    std::mutex m_mutex;
    std::vector<std::function<void()>> m_waiting;
};

} // namespace ZelkoRecorder
