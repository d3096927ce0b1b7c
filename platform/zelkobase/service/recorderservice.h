#pragma once

#include <zelkobase/service/serviceaddress.h>
#include <zelkobase/service/servicestatus.h>
#include <zelkobase/service/zelkobaseservice_export.h>

#include <zelkoidl/recorderservice.hh>

#include <chrono>
#include <functional>
#include <memory>

namespace ZelkoCommon {

/// The client's way to the service of one recorder: finds it, keeps the references, finds it again after a restart, and
/// turns whatever goes wrong into a status. Every call on the service goes through here.
///
/// Synchronous: a question blocks its caller, for no longer than the limit. All that a question takes, the way to the
/// service included, shares one limit. Nothing throws. GUI thread only.
class ZELKOBASESERVICE_EXPORT RecorderService
{
public:
    static constexpr std::chrono::milliseconds DefaultLimit{5000};

    /// Looked at before each question, since the sub system that an application works on can change.
    using AddressSource = std::function<ServiceAddress()>;

    /// A call on the entry point or on the administration. What it returns is the status of the answer; it may throw.
    /// It may be run a second time if the first was certainly not executed.
    using Call = std::function<unsigned long(QD_ZLK::IF_ZLK_c_ZLK_ptr)>;
    using AdminCall = std::function<unsigned long(QD_ZLK::IF_ZELKO_Admin_ptr)>;

    explicit RecorderService(AddressSource address);
    ~RecorderService();

    /// The limit of each question; below a millisecond it is a millisecond.
    void setLimit(std::chrono::milliseconds limit);
    std::chrono::milliseconds limit() const;

    /// Makes a call on the entry point. The status is what the call returned, or why there is no answer.
    unsigned long ask(const Call& call);

    /// The same on the administration, whose reference is asked for first where it is not known.
    unsigned long askAdmin(const AdminCall& call);

    /// Finds the service if it is not found yet; does not ask whether it still runs if it is.
    unsigned long connect();

    /// Lets the references go: the next question finds the service afresh.
    void forget();

    /// The text of the last question's status, with what the recorder said about it where it said something. Empty
    /// after a question that succeeded.
    QString lastErrorText() const;

private:
    struct Private;
    const std::unique_ptr<Private> d;
};

} // namespace ZelkoCommon
