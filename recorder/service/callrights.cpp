#include <recorder/service/callrights.h>

#include <zelkobase/orb/callingpeer.h>

#include <omniORB4/CORBA.h>

namespace ZelkoRecorder {

CallRights::CallRights(std::function<Caller()> caller)
    : CallRights(std::move(caller), std::make_shared<RefusalLog>(RefusalLog::Options()))
{}

CallRights::CallRights(std::function<Caller()> caller, std::shared_ptr<RefusalLog> refusals)
    : m_caller(std::move(caller))
    , m_refusals(std::move(refusals))
{}

CallRights CallRights::within(std::shared_ptr<CallGate> gate) const
{
    const auto callerWithin = [caller = m_caller, gate = std::move(gate)] {
        const CallGate::Pass pass(*gate);
        return caller();
    };
    return CallRights(callerWithin, m_refusals);
}

bool CallRights::allow(Action action) const
{
    const Caller caller = m_caller();
    const bool allowed = caller.may(action);
    if (!allowed) {
        m_refusals->tell(
            QStringLiteral("a call of %1 at %2: may not %3")
                .arg(caller.text(), QString::fromStdString(ZelkoCommon::callingPeer()), QString(actionText(action))));
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
