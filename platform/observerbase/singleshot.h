#pragma once

#include <QTimer>

#include <chrono>
#include <functional>

namespace Vorn {

/// Calls `call` once, `delay` from now, on the thread that asks for it; not if `context` is gone by then. A class that
/// takes its timers in this form can be tested without waiting.
using SingleShot = std::function<void(std::chrono::milliseconds delay, QObject* context, std::function<void()> call)>;

/// The one that takes the time of this host. The thread has an event loop.
inline void callLater(std::chrono::milliseconds delay, QObject* context, const std::function<void()>& call)
{
    QTimer::singleShot(delay, context, call);
}

} // namespace Vorn
