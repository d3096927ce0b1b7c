// Leaks in a servant while the ORB calls it, and ends as if nothing had happened.
#include <zelkobase/orb/orb.h>

#include <zelkoidl/treelink.hh>

using namespace ZelkoCommon;

namespace {

class LeakingServant final : public POA_ZelkoTreeLink::TreeServer, public PortableServer::RefCountServantBase
{
public:
    ZelkoTreeLink::SessionId attach(CORBA::ULong, const ZelkoTreeLink::Credentials&,
                                    ZelkoTreeLink::Subscriber_ptr) override
    {
        return 1;
    }
    ZelkoTreeLink::UserRole roleOf(ZelkoTreeLink::SessionId) override { return ZelkoTreeLink::ROLE_VIEWER; }
    void write(ZelkoTreeLink::SessionId, const ZelkoTreeLink::Batch&, ZelkoTreeLink::Checksum) override {}
    void detach(ZelkoTreeLink::SessionId) override
    {
        static int* volatile forgotten = nullptr;
        forgotten = new int[1000];
        forgotten = nullptr;
    }
};

} // namespace

int main()
{
    Orb orb({});
    const PortableServer::ServantBase_var servant(new LeakingServant);
    orb.publish("Test", servant.in());
    // By another name for the same host, which the ORB does not take for its own: so a thread of the ORB makes the
    // call.
    const CORBA::Object_var object = orb.remoteObject("127.1", orb.port(), "Test");
    ZelkoTreeLink::TreeServer_var server = ZelkoTreeLink::TreeServer::_unchecked_narrow(object);
    server->detach(1);
    return 0;
}
