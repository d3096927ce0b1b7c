#pragma once

#include <QTimer>

#include <functional>

namespace ZelkoConsole {

/// Puts something off to the next turn of the event loop and does it once then, however often it was asked for: when
/// whatever changes is at rest. Not any more once this object is gone. GUI thread.
class Soon
{
public:
    explicit Soon(std::function<void()> function);
    ~Soon();

    void ask() { m_timer.start(); }

private:
    const std::function<void()> m_function;
    QTimer m_timer;
};

} // namespace ZelkoConsole
