#include <zelkobase/orb/callingpeer.h>

#include <zelkobase/orb/hostaddress.h>

#include <omniORB4/omniInterceptors.h>
#include <omniORB4/omniORB.h>

namespace ZelkoCommon {
namespace {

using Request = omni::omniInterceptors::serverReceiveRequest_T;

thread_local std::string peer;

// The thread that reads a request is the one that serves it.
CORBA::Boolean notePeer(Request::info_T& request)
{
    const char* const address = request.peeraddress();
    peer = hostOfTransportAddress(address ? address : "");
    return true;
}

} // namespace

const std::string& callingPeer()
{
    return peer;
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
