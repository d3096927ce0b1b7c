#pragma once

#include <QCursor>
#include <QGuiApplication>

namespace ZelkoGUI {

/// Shows, for as long as it exists, that the application waits for an answer. What talks to the user comes after it.
class WaitCursor
{
public:
    WaitCursor() { QGuiApplication::setOverrideCursor(Qt::WaitCursor); }
    ~WaitCursor() { QGuiApplication::restoreOverrideCursor(); }
    WaitCursor(const WaitCursor&) = delete;
    WaitCursor& operator=(const WaitCursor&) = delete;
};

/// The answer of a request that blocks.
template <typename Request>
auto askWaiting(const Request& request)
{
    const WaitCursor waiting;
    return request();
}

} // namespace ZelkoGUI
