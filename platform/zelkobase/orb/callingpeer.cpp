#include <zelkobase/orb/callingpeer.h>

#include <zelkobase/orb/hostaddress.h>

#include <omniORB4/omniInterceptors.h>
#include <omniORB4/omniORB.h>

namespace ZelkoCommon {
namespace {

using Request = omni::omniInterceptors::serverReceiveRequest_T;

thread_local std::string peer;
thread_local std::string called;

std::string hostOf(const char* address)
{
    return hostOfTransportAddress(address ? address : "");
}

// The thread that reads a request is the one that serves it.
CORBA::Boolean notePeer(Request::info_T& request)
{
    peer = hostOf(request.peeraddress());
    called = hostOf(request.myaddress());
    return true;
}

} // namespace

const std::string& callingPeer()
{
    return peer;
}

const std::string& calledAddress()
{
    return called;
}

void noteCallingPeers()
{
    omniORB::getInterceptors()->serverReceiveRequest.add(notePeer);
}

std::string hostOfTransportAddress(const std::string& address)
{
    const std::size_t scheme = address.find(':', address.find(':') + 1);
    const std::size_t port = address.rfind(':');
    return scheme < port ? plainAddress(address.substr(scheme + 1, port - scheme - 1)) : std::string();
}

} // namespace ZelkoCommon
