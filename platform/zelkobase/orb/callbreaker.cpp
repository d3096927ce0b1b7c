#include <zelkobase/orb/callbreaker.h>

#include <omniORB4/CORBA.h>
#include <omniORB4/omniInterceptors.h>
#include <omniORB4/omniORB.h>

// Each of them needs those before it.
#include <omniORB4/giopEndpoint.h>

#include <omniORB4/internal/giopStream.h>

#include <omniORB4/internal/giopStrand.h>

#include <omniORB4/internal/GIOP_C.h>

#include <omniORB4/internal/SocketCollection.h>

#include <fcntl.h>
#include <sys/socket.h>
#include <unistd.h>

namespace ZelkoCommon {

// What the ORB calls: before a call is sent, and when a connection was made for it.
struct BreakerAccess
{
    static bool watch(CallBreaker& breaker, int socket) { return breaker.watch(socket); }
    static void forget(CallBreaker& breaker) { breaker.forget(); }
};

namespace {

thread_local CallBreaker* ofThisThread = nullptr;

// The ORB keeps the descriptor of a connection to those that derive from what holds it.
struct Holder : omni::SocketHolder
{
    static int socketOf(const omni::SocketHolder& holder) { return holder.*&Holder::pd_socket; }
};

// -1 where the connection is still to be made.
int socketOf(omni::GIOP_C& call)
{
    const auto* const holder = dynamic_cast<const omni::SocketHolder*>(call.strand().connection);
    return holder ? Holder::socketOf(*holder) : -1;
}

template <typename Event>
CORBA::Boolean watchCall(typename Event::info_T& event)
{
    if (ofThisThread && !BreakerAccess::watch(*ofThisThread, socketOf(event.giop_c))) {
        throw CORBA::NO_RESPONSE(0, CORBA::COMPLETED_NO);
    }
    return true;
}

} // namespace

CallBreaker::~CallBreaker()
{
    forget();
}

CallBreaker::Scope::Scope(CallBreaker& breaker)
{
    ofThisThread = &breaker;
}

CallBreaker::Scope::~Scope()
{
    BreakerAccess::forget(*ofThisThread);
    ofThisThread = nullptr;
}

// The ORB may close its descriptor, and get the same number for something else, at any moment.
bool CallBreaker::watch(int socket)
{
    forget();
    const std::lock_guard lock(m_mutex);
    if (socket >= 0) {
        m_socket = ::fcntl(socket, F_DUPFD_CLOEXEC, 0);
    }
    return !m_isBroken;
}

void CallBreaker::forget()
{
    const std::lock_guard lock(m_mutex);
    if (m_socket >= 0) {
        ::close(m_socket);
        m_socket = -1;
    }
}

void CallBreaker::breakCalls()
{
    const std::lock_guard lock(m_mutex);
    m_isBroken = true;
    if (m_socket >= 0) {
        ::shutdown(m_socket, SHUT_RDWR);
    }
}

void CallBreaker::prepare()
{
    omni::omniInterceptors* const interceptors = omniORB::getInterceptors();
    interceptors->clientSendRequest.add(watchCall<omni::omniInterceptors::clientSendRequest_T>);
    interceptors->clientOpenConnection.add(watchCall<omni::omniInterceptors::clientOpenConnection_T>);
}

} // namespace ZelkoCommon
