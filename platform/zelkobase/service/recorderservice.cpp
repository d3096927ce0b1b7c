#include <zelkobase/service/recorderservice.h>

#include <zelkobase/orb/callbreaker.h>
#include <zelkobase/orb/calldeadline.h>
#include <zelkobase/service/servicefailure_p.h>
#include <zelkobase/service/servicereference_p.h>

#include <algorithm>

namespace ZelkoCommon {

struct RecorderService::Private
{
    /// Finds what it needs, tells so by `isFound`, and calls.
    using Step = std::function<unsigned long(bool& isFound)>;

    AddressSource address;
    std::chrono::milliseconds limit = DefaultLimit;
    ServiceReference references;
    std::chrono::steady_clock::time_point end; // of the question
    QString lastError;

    unsigned long run(const Step& step);
    unsigned long runWithinLimit(const Step& step);
    unsigned long attempt(const Step& step, ServiceFailure& failure);
    std::chrono::milliseconds timeLeft() const;
    QString textOf(unsigned long code, const QString& detail) const;
};

unsigned long RecorderService::Private::run(const Step& step)
{
    lastError.clear();
    try {
        return runWithinLimit(step);
    } catch (...) { // the ORB has no limits for this thread, or there is no memory
        lastError = failureInFlight().detail;
        return statusCode(ServiceStatus::ClientFailed);
    }
}

unsigned long RecorderService::Private::runWithinLimit(const Step& step)
{
    const CallDeadline deadline(limit);
    end = std::chrono::steady_clock::now() + limit;
    const bool wasKnown = references.isKnown();
    ServiceFailure failure;
    unsigned long code = attempt(step, failure);
    // References from before a restart lead nowhere, and so does a connection that nobody has used since.
    if (failure.isReferenceLost && failure.isNotExecuted && (wasKnown || failure.isConnectionCut)) {
        failure = {};
        code = attempt(step, failure);
    }
    if (code != 0) {
        lastError = textOf(code, failure.detail);
    }
    return code;
}

unsigned long RecorderService::Private::attempt(const Step& step, ServiceFailure& failure)
{
    bool isFound = false;
    CallBreaker breaker;
    const CallBreaker::Scope scope(breaker);
    try {
        const unsigned long code = step(isFound);
        return code < firstClientStatus ? code : statusCode(ServiceStatus::BadAnswer); // ours never travel
    } catch (...) {
        failure = failureInFlight();
    }
    if (failure.isGarbled) {
        breaker.breakCalls(); // what was agreed on once for this connection may be what is wrong; another is tried
    }
    if (!isFound) {
        failure.isNotExecuted = failure.status != ServiceStatus::Timeout;
        if (failure.status == ServiceStatus::RecorderRestarted) {
            failure.status = ServiceStatus::ServiceNotOffered;
        }
    }
    if (failure.isReferenceLost) {
        references.forget();
    }
    return statusCode(failure.status);
}

std::chrono::milliseconds RecorderService::Private::timeLeft() const
{
    const auto left = end - std::chrono::steady_clock::now();
    return std::max(std::chrono::duration_cast<std::chrono::milliseconds>(left), std::chrono::milliseconds(0));
}

QString RecorderService::Private::textOf(unsigned long code, const QString& detail) const
{
    const QString text = serviceStatusText(code);
    return detail.isEmpty() ? text : QStringLiteral("%1 (%2)").arg(text, detail);
}

RecorderService::RecorderService(AddressSource address)
    : d(std::make_unique<Private>())
{
    d->address = std::move(address);
}

RecorderService::~RecorderService() = default;

void RecorderService::setLimit(std::chrono::milliseconds limit)
{
    d->limit = std::max(limit, std::chrono::milliseconds(1));
}

std::chrono::milliseconds RecorderService::limit() const
{
    return d->limit;
}

unsigned long RecorderService::ask(const Call& call)
{
    return d->run([&](bool& isFound) {
        QD_ZLK::IF_ZLK_c_ZLK_ptr root = d->references.root(d->address(), d->timeLeft());
        isFound = true;
        return call(root);
    });
}

unsigned long RecorderService::askAdmin(const AdminCall& call)
{
    return d->run([&](bool& isFound) {
        QD_ZLK::IF_ZELKO_Admin_ptr admin = d->references.admin(d->address(), d->timeLeft());
        isFound = true;
        return call(admin);
    });
}

unsigned long RecorderService::connect()
{
    return ask([](QD_ZLK::IF_ZLK_c_ZLK_ptr) { return statusCode(ServiceStatus::None); });
}

void RecorderService::forget()
{
    d->references.forget();
}

QString RecorderService::lastErrorText() const
{
    return d->lastError;
}

} // namespace ZelkoCommon
