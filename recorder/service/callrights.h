#pragma once

#include <recorder/served/refusallog.h>
#include <recorder/service/callgate.h>
#include <recorder/users/caller.h>

#include <functional>
#include <memory>

namespace ZelkoRecorder {

/// Whether the client whose call a thread of the ORB is serving may do what it asks. Threads of the ORB.
class CallRights
{
public:
    /// `caller` tells for whom the call of its thread is made.
    explicit CallRights(std::function<Caller()> caller);

    /// The same, with a log of its own for refusals.
    CallRights(std::function<Caller()> caller, std::shared_ptr<RefusalLog> refusals);

    /// The same rights, where the caller is only asked for within the gate.
    CallRights within(std::shared_ptr<CallGate> gate) const;

    /// Where he may not, a line in the log says who wanted what; few of them where he goes on trying.
    bool allow(Action action) const;

    /// Throws CORBA::NO_PERMISSION where he may not: for operations that have no other way to say it.
    void require(Action action) const;

    /// Has the log tell what it has only counted, as RefusalLog does. Any thread.
    void tellRest() const { m_refusals->tellRest(); }

private:
    const std::function<Caller()> m_caller;
    const std::shared_ptr<RefusalLog> m_refusals; // of all rights that were made of the same
};

} // namespace ZelkoRecorder
