#include <zelkobase/orb/callingsession.h>

#include <omniORB4/CORBA.h>
#include <omniORB4/IOP_S.h>
#include <omniORB4/omniInterceptors.h>
#include <omniORB4/omniORB.h>

// Each of them needs those before it.
#include <omniORB4/giopEndpoint.h>

#include <omniORB4/internal/giopStream.h>

#include <omniORB4/internal/giopStrand.h>

#include <omniORB4/internal/GIOP_S.h>

#include <omniORB4/internal/GIOP_C.h>

#include <algorithm>
#include <mutex>
#include <utility>
#include <vector>

namespace ZelkoCommon {
namespace {

using SendRequest = omni::omniInterceptors::clientSendRequest_T;
using ReceiveReply = omni::omniInterceptors::clientReceiveReply_T;
using ReceiveRequest = omni::omniInterceptors::serverReceiveRequest_T;
using SendReply = omni::omniInterceptors::serverSendReply_T;
using SendException = omni::omniInterceptors::serverSendException_T;

// An encapsulation begins with its byte order; what has eight bytes stands at a multiple of eight.
constexpr CORBA::ULong numberPosition = 8;
constexpr CORBA::ULong contextSize = numberPosition + sizeof(std::uint64_t);
constexpr CORBA::Octet bigEndian = 0;

thread_local std::uint64_t currentSession = 0;
thread_local std::string calledAddress;

// The passes that are valid now, those for one address in the order in which they were made.
class PassList
{
public:
    std::uint64_t add(std::uint64_t session, const std::string& address)
    {
        const std::lock_guard lock(m_mutex);
        m_passes.push_back({++m_lastNumber, session, address});
        return m_lastNumber;
    }

    void remove(std::uint64_t number)
    {
        const std::lock_guard lock(m_mutex);
        std::erase_if(m_passes, [&](const Entry& entry) { return entry.number == number; });
    }

    std::uint64_t sessionFor(const char* address)
    {
        const std::lock_guard lock(m_mutex);
        const auto found = std::find_if(m_passes.rbegin(), m_passes.rend(),
                                        [&](const Entry& entry) { return entry.address == address; });
        return found == m_passes.rend() ? 0 : found->session;
    }

private:
    struct Entry
    {
        std::uint64_t number;
        std::uint64_t session;
        std::string address;
    };

    std::mutex m_mutex;
    std::vector<Entry> m_passes;
    std::uint64_t m_lastNumber = 0;
};

PassList& passes()
{
    static PassList list;
    return list;
}

void appendContext(IOP::ServiceContextList& list, std::uint64_t session)
{
    const CORBA::ULong index = list.length();
    list.length(index + 1);
    IOP::ServiceContext& context = list[index];
    context.context_id = CallingSession::contextId;
    context.context_data.length(contextSize);
    std::fill_n(context.context_data.get_buffer(), numberPosition, bigEndian);
    for (CORBA::ULong i = contextSize; i > numberPosition; session >>= 8U) {
        context.context_data[--i] = static_cast<CORBA::Octet>(session & 0xffU);
    }
}

// 0 for data that is not of the form above: other clients may send anything.
std::uint64_t readContext(const IOP::ServiceContext& context)
{
    if (context.context_data.length() != contextSize || context.context_data[0] != bigEndian) {
        return 0;
    }
    std::uint64_t session = 0;
    for (CORBA::ULong i = numberPosition; i < contextSize; ++i) {
        session = session << 8U | context.context_data[i];
    }
    return session;
}

// A connection that is only made when the call is sent has no peer yet, but a place to which it leads.
std::uint64_t sessionFor(SendRequest::info_T& request)
{
    const char* const peer = request.peeraddress();
    if (const std::uint64_t session = peer ? passes().sessionFor(peer) : 0) {
        return session;
    }
    const omni::giopAddress* const target = request.giop_c.strand().address;
    return target ? passes().sessionFor(target->address()) : 0;
}

CORBA::Boolean nameSession(SendRequest::info_T& request)
{
    if (const std::uint64_t session = sessionFor(request)) {
        appendContext(request.service_contexts, session);
    }
    return true;
}

CORBA::Boolean noteAddress(ReceiveReply::info_T& reply)
{
    const char* const address = reply.peeraddress();
    calledAddress = address ? address : "";
    return true;
}

CORBA::Boolean noteSession(ReceiveRequest::info_T& request)
{
    currentSession = 0;
    const IOP::ServiceContextList& contexts = request.giop_s.service_contexts();
    for (CORBA::ULong i = 0; i < contexts.length(); ++i) {
        if (contexts[i].context_id == CallingSession::contextId) {
            currentSession = readContext(contexts[i]);
        }
    }
    return true;
}

template <typename Answer>
CORBA::Boolean forgetSession(typename Answer::info_T&)
{
    currentSession = 0;
    return true;
}

} // namespace

std::uint64_t CallingSession::current()
{
    return currentSession;
}

const std::string& CallingSession::lastCalledAddress()
{
    return calledAddress;
}

CallingSession::Pass::Pass(std::uint64_t session, const std::string& address)
    : m_number(passes().add(session, address))
{}

CallingSession::Pass::~Pass()
{
    passes().remove(m_number);
}

CallingSession::Pass::Pass(Pass&& other) noexcept
    : m_number(std::exchange(other.m_number, 0))
{}

CallingSession::Pass& CallingSession::Pass::operator=(Pass&& other) noexcept
{
    std::swap(m_number, other.m_number);
    return *this;
}

void CallingSession::prepare()
{
    omni::omniInterceptors* const interceptors = omniORB::getInterceptors();
    interceptors->clientSendRequest.add(nameSession);
    interceptors->clientReceiveReply.add(noteAddress);
    interceptors->serverReceiveRequest.add(noteSession);
    interceptors->serverSendReply.add(forgetSession<SendReply>);
    interceptors->serverSendException.add(forgetSession<SendException>);
}

} // namespace ZelkoCommon
