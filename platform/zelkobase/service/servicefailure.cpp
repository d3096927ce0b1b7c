#include <zelkobase/service/servicefailure_p.h>

#include <zelkobase/orb/corbacall.h>
#include <zelkobase/orb/corbatext.h>
#include <zelkobase/service/recorderends.h>
#include <zelkobase/service/refusaltext.h>

#include <zelkoidl/recorderservice.hh>

#include <omniORB4/minorCode.h>

#include <map>
#include <string_view>

namespace ZelkoCommon {
namespace {

using Status = ServiceStatus;

Status statusOf(QD_ZLK::IF_ZLK_c_ZLK::ZLKCode code)
{
    switch (code) {
    case QD_ZLK::IF_ZLK_c_ZLK::ZLK_UNKNOWN_DEVICE:
        return Status::NoSuchDevice;
    case QD_ZLK::IF_ZLK_c_ZLK::ZLK_UNKNOWN_RECORD:
        return Status::NoSuchRecord;
    case QD_ZLK::IF_ZLK_c_ZLK::ZLK_NOT_PERMITTED:
        return Status::NotAllowed;
    default: // the text says which
        return Status::InternalError;
    }
}

Status statusOf(QD_ZLK::GenCode code)
{
    switch (code) {
    case QD_ZLK::GEN_BAD_PARAMETER:
        return Status::BadArgument;
    case QD_ZLK::GEN_NOT_PERMITTED:
        return Status::NotAllowed;
    case QD_ZLK::GEN_NO_RESOURCES:
        return Status::LimitReached;
    case QD_ZLK::GEN_NAME_IN_USE:
        return Status::NameInUse;
    default:
        return Status::InternalError;
    }
}

// What the recorder says on purpose: it got the call, and the way to it is good. Where the code says no more than that
// it failed the text may say why.
ServiceFailure refusal(Status status, const char* text)
{
    const QString words = fromCorba(text);
    const RefusalText refused = refusalOf(words);
    ServiceFailure failure;
    failure.status = status == Status::InternalError ? refused.status : status;
    failure.detail = failure.status == refused.status ? refused.words : presentable(words);
    return failure;
}

bool isTimeout(const CORBA::SystemException& exception)
{
    using namespace std::string_view_literals;
    return exception._name() == "TIMEOUT"sv ||
           (exception._name() == "TRANSIENT"sv && exception.minor() == omni::TRANSIENT_CallTimedout);
}

// Where the same exception means one thing before the call reached the recorder and another one after it.
struct Meaning
{
    Status notExecuted;
    Status otherwise;
};

bool saysThatItEnds(const CORBA::SystemException& exception)
{
    return std::string_view(exception._name()) == "BAD_INV_ORDER" && exception.minor() == recorderEndsMinor;
}

// The recorder did not understand what the first request of the connection said of its texts.
bool missesCodeSets(const CORBA::SystemException& exception)
{
    return std::string_view(exception._name()) == "BAD_INV_ORDER" &&
           exception.minor() == omni::BAD_INV_ORDER_CodeSetNotKnownYet;
}

Meaning meaningOf(std::string_view name)
{
    static const std::map<std::string_view, Meaning> meanings{
        {"TRANSIENT", {Status::NotReachable, Status::RecorderGone}},
        {"COMM_FAILURE", {Status::NotReachable, Status::RecorderGone}},
        {"OBJECT_NOT_EXIST", {Status::RecorderRestarted, Status::RecorderRestarted}},
        {"INV_OBJREF", {Status::ServiceNotOffered, Status::ServiceNotOffered}},
        {"MARSHAL", {Status::NotTransmittable, Status::BadAnswer}},
        {"DATA_CONVERSION", {Status::NotTransmittable, Status::BadAnswer}},
        {"CODESET_INCOMPATIBLE", {Status::NotTransmittable, Status::BadAnswer}},
        {"BAD_PARAM", {Status::NotTransmittable, Status::BadAnswer}},
        {"NO_PERMISSION", {Status::CallRefused, Status::CallRefused}},
        {"BAD_OPERATION", {Status::NotUnderstood, Status::NotUnderstood}},
        {"NO_IMPLEMENT", {Status::NotUnderstood, Status::NotUnderstood}},
        {"NO_RESOURCES", {Status::RecorderOverloaded, Status::RecorderFailed}},
        {"NO_MEMORY", {Status::RecorderOverloaded, Status::RecorderFailed}},
        {"IMP_LIMIT", {Status::RecorderOverloaded, Status::RecorderFailed}},
        {"BAD_INV_ORDER", {Status::NotStarted, Status::NotStarted}},
    };
    const auto found = meanings.find(name);
    return found == meanings.end() ? Meaning{Status::RecorderFailed, Status::RecorderFailed} : found->second;
}

bool losesReference(Status status)
{
    return status == Status::Timeout || status == Status::NotReachable || status == Status::RecorderGone ||
           status == Status::RecorderRestarted || status == Status::ServiceNotOffered;
}

ServiceFailure failureOf(const CORBA::SystemException& exception)
{
    ServiceFailure failure;
    const Meaning meaning = meaningOf(exception._name());
    failure.isNotExecuted = exception.completed() == CORBA::COMPLETED_NO;
    failure.status = failure.isNotExecuted ? meaning.notExecuted : meaning.otherwise;
    if (saysThatItEnds(exception)) {
        failure.status = Status::ShuttingDown;
    } else if (missesCodeSets(exception)) {
        failure.status = Status::NotTransmittable;
    } else if (isTimeout(exception)) {
        failure.status = Status::Timeout;
        failure.isNotExecuted = false; // and a repetition would have no time left
    }
    failure.isConnectionCut = std::string_view(exception._name()) == "COMM_FAILURE";
    failure.isReferenceLost = losesReference(failure.status);
    failure.isGarbled = failure.status == Status::NotTransmittable || failure.status == Status::BadAnswer;
    failure.detail = describe(exception);
    return failure;
}

} // namespace

ServiceFailure failureInFlight()
{
    try {
        throw;
    } catch (const ServiceFailure& failure) {
        return failure;
    } catch (const QD_ZLK::IF_ZLK_c_ZLK::exZLK& exception) {
        return refusal(statusOf(exception.code), exception.text);
    } catch (const QD_ZLK::IF_ZELKO_Admin::exAdmin& exception) {
        return refusal(Status::InternalError, exception.text); // its code has one value
    } catch (const QD_ZLK::exGen& exception) {
        return refusal(statusOf(exception.code), exception.text);
    } catch (const CORBA::SystemException& exception) {
        return failureOf(exception);
    } catch (const CORBA::Exception& exception) {
        return refusal(Status::RecorderFailed, exception._name());
    } catch (const std::exception& exception) {
        return refusal(Status::ClientFailed, exception.what());
    } catch (...) {
        return refusal(Status::ClientFailed, "");
    }
}

} // namespace ZelkoCommon
