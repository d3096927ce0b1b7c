#pragma once

#include <zelkobase/connection/zelkobaseconnection_export.h>

#include <QObject>

#include <functional>

namespace ZelkoCommon {

/// Makes one thread run a function at the wish of others. Carries no data: what is to be handed over stands in a queue
/// of the caller's, behind a mutex of its own.
class ZELKOBASECONNECTION_EXPORT WakeUp : public QObject
{
    Q_OBJECT

public:
    /// `what` runs on the thread that this object lives on.
    explicit WakeUp(std::function<void()> what);
    ~WakeUp() override;

    /// Any thread; the function runs once per call, in a later turn of the event loop.
    void call();

protected:
    bool event(QEvent* event) override;

private:
    const std::function<void()> m_what;
};

} // namespace ZelkoCommon
