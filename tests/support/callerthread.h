#pragma once

#include <QCoreApplication>

#include <chrono>
#include <future>

namespace ZelkoTest {

/// Runs `call` on a thread of its own while the event loop of this thread goes on, and gives what it gives or throws.
template <typename Call>
auto onCallerThread(Call call)
{
    auto result = std::async(std::launch::async, std::move(call));
    while (result.wait_for(std::chrono::milliseconds(1)) != std::future_status::ready) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    }
    return result.get();
}

} // namespace ZelkoTest
