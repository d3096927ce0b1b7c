#include <recorder/served/sessioncallers.h>

#include <recorder/store/recorderlog.h>
#include <zelkobase/orb/callingpeer.h>
#include <zelkobase/orb/callingsession.h>

namespace ZelkoRecorder {

namespace {

LinkAdmission::Outcome outcomeOnLink(Authenticator::Outcome outcome)
{
    switch (outcome) {
    case Authenticator::Outcome::Admitted:
        return LinkAdmission::Outcome::Admitted;
    case Authenticator::Outcome::TooManyTries:
        return LinkAdmission::Outcome::TooManyTries;
    case Authenticator::Outcome::Busy:
        return LinkAdmission::Outcome::Busy;
    case Authenticator::Outcome::Denied:
        break;
    }
    return LinkAdmission::Outcome::Denied;
}

} // namespace

CallerOfCall callersBySession(const TreeLinkServer& server)
{
    return [users = server.users()] {
        const auto user = users(ZelkoCommon::CallingSession::current(), ZelkoCommon::callingPeer());
        return user ? Caller{user->name, user->role} : Caller{};
    };
}

// Tries that are not looked at are not logged, so that nobody fills the log with them.
TreeLinkServer::Authenticate admission(Authenticator& authenticator)
{
    return [&authenticator](const QString& user, const QString& password, const std::string& host) {
        const auto answer = authenticator.check(user, password, host);
        if (answer.outcome == Authenticator::Outcome::Denied) {
            qCWarning(recorderLog) << "access denied to user" << user.left(UserEntry::maximumName) << "at"
                                   << host.c_str();
        }
        return LinkAdmission{outcomeOnLink(answer.outcome), answer.role};
    };
}

} // namespace ZelkoRecorder
