#include <recorder/service/callrights.h>

#include <recorder/store/recorderlog.h>
#include <zelkobase/orb/callingpeer.h>

#include <omniORB4/CORBA.h>

namespace ZelkoRecorder {

CallRights::CallRights(std::function<Caller()> caller)
    : m_caller(std::move(caller))
{}

CallRights CallRights::within(std::shared_ptr<CallGate> gate) const
{
    return CallRights([caller = m_caller, gate = std::move(gate)] {
        const CallGate::Pass pass(*gate);
        return caller();
    });
}

bool CallRights::allow(Action action) const
{
    const Caller caller = m_caller();
    const bool allowed = caller.may(action);
    if (!allowed) {
        qCWarning(recorderLog).noquote() << "refused a call of" << caller.text() << "at"
                                         << ZelkoCommon::callingPeer().c_str() << ": may not" << actionText(action);
    }
    return allowed;
}

void CallRights::require(Action action) const
{
    if (!allow(action)) {
        throw CORBA::NO_PERMISSION(0, CORBA::COMPLETED_NO);
    }
}

} // namespace ZelkoRecorder
