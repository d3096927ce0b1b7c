#include <zelkobase/orb/orb.h>

#include <zelkobase/orb/boundedtransport_p.h>
#include <zelkobase/orb/callbreaker.h>
#include <zelkobase/orb/callingpeer.h>
#include <zelkobase/orb/callingsession.h>
#include <zelkobase/orb/corbacall.h>
#include <zelkobase/orb/corbareference_p.h>
#include <zelkobase/orb/corbatext.h>
#include <zelkobase/orb/hostname.h>
#include <zelkobase/orb/tlscontext_p.h>

#include <omniORB4/IIOP.h>
#include <omniORB4/omniIOR.h>
#include <omniORB4/omniORB.h>

#include <atomic>
#include <string>
#include <vector>

namespace ZelkoCommon {
namespace {

// Name and value pairs in the form that ORB_init takes, with their texts kept alive.
class OptionTable
{
public:
    void add(const char* name, const std::string& value) { m_entries.emplace_back(name, value); }
    void add(const char* name, long value) { add(name, std::to_string(value)); }

    CORBA::ORB_ptr initialise()
    {
        std::vector<const char*> flat;
        for (const auto& [name, value] : m_entries) {
            flat.push_back(name.c_str());
            flat.push_back(value.c_str());
        }
        flat.push_back(nullptr);
        flat.push_back(nullptr);
        int argc = 0;
        return CORBA::ORB_init(argc, nullptr, "omniORB4", reinterpret_cast<const char*(*)[2]>(flat.data()));
    }

private:
    std::vector<std::pair<std::string, std::string>> m_entries;
};

std::string quoted(const QString& host)
{
    const std::string name = host.toStdString();
    return name.find(':') == std::string::npos ? name : '[' + name + ']';
}

std::string address(const QString& host, quint16 port)
{
    return quoted(host) + ':' + std::to_string(port);
}

// One transport and no other: what is to be secret does not travel another way because that one is at hand.
void addTransport(OptionTable& table, const OrbOptions& options)
{
    const std::string transport = options.tls ? "ssl" : "tcp";
    const std::string scheme = "giop:" + transport + ':';
    table.add("endPoint", boundedEndpoint(scheme + address(options.listenAddress, options.port)));
    if (options.publishedPort != 0) {
        table.add("endPointPublish", scheme + address(options.publishedHost, options.publishedPort));
    }
    table.add("clientTransportRule", "* " + transport);
    table.add("serverTransportRule", "* " + transport);
    table.add("resolveNamesForTransportRules", options.tls ? 0 : 1); // a certificate is compared with the name
    table.add("sslAcceptTimeOut", static_cast<long>(options.receiveTimeout.count()));
}

OptionTable optionTable(const OrbOptions& options)
{
    OptionTable table;
    addTransport(table, options);
    table.add("clientCallTimeOutPeriod", static_cast<long>(options.callTimeout.count()));
    table.add("clientConnectTimeOutPeriod", static_cast<long>(options.connectTimeout.count()));
    table.add("serverCallTimeOutPeriod", static_cast<long>(options.receiveTimeout.count()));
    table.add("scanGranularity", 5);
    table.add("inConScanPeriod", static_cast<long>(options.idleTime.count()));
    table.add("outConScanPeriod", static_cast<long>(options.idleTime.count()));
    table.add("threadPerConnectionPolicy", 0); // a pool: silent peers cost a socket, not a thread
    table.add("maxServerThreadPerConnection", 1);
    table.add("maxServerThreadPoolSize", options.maxConnections); // nobody ever waits for another peer's thread
    table.add("giopMaxMsgSize", options.maxMessageBytes);
    table.add("nativeCharCodeSet", "UTF-8");
    table.add("supportPerThreadTimeOut", 1); // CallDeadline
    table.add("supportBootstrapAgent", 0L);
    table.add("strictIIOP", 0L); // strict, it ends a connection and forgets what it had allocated for the call
    return table;
}

ConnectionBounds boundsOf(const OrbOptions& options)
{
    return {options.maxConnections, options.maxConnectionsPerHost, static_cast<std::size_t>(options.maxRequestBytes),
            options.answerTimeout};
}

// Closes the gap between a host that people write and one that a corbaloc takes.
std::string corbaloc(const char* protocol, const QString& host, quint16 port, const char* key)
{
    return std::string("corbaloc:") + protocol + ':' + address(host, port) + '/' + key;
}

// With TLS the port stands in a component of its own, behind what it supports and requires; 0 for another component.
quint16 tlsPort(const IOP::TaggedComponent& component)
{
    if (component.tag != IOP::TAG_SSL_SEC_TRANS) {
        return 0;
    }
    cdrEncapsulationStream stream(component.component_data.get_buffer(), component.component_data.length(), true);
    CORBA::UShort supported = 0;
    CORBA::UShort required = 0;
    CORBA::UShort port = 0;
    supported <<= stream;
    required <<= stream;
    port <<= stream;
    return port;
}

quint16 portInProfile(const IIOP::ProfileBody& body)
{
    quint16 port = body.address.port;
    for (CORBA::ULong i = 0; port == 0 && i < body.components.length(); ++i) {
        port = tlsPort(body.components[i]);
    }
    return port;
}

// The ORB does not tell its port, but every reference that it makes carries it.
quint16 portInReference(CORBA::Object_ptr object)
{
    const omniIOR_var reference = object->_PR_getobj()->_getIOR();
    const IOP::TaggedProfileList& profiles = reference->iopProfiles();
    for (CORBA::ULong i = 0; i < profiles.length(); ++i) {
        if (profiles[i].tag == IOP::TAG_INTERNET_IOP) {
            IIOP::ProfileBody body;
            IIOP::unmarshalProfile(profiles[i], body);
            return portInProfile(body);
        }
    }
    return 0;
}

// It takes calls from here on.
void activate(PortableServer::POA_ptr poa)
{
    const PortableServer::POAManager_var manager = poa->the_POAManager(); // a reference of our own
    manager->activate();
}

std::atomic_flag exists;
std::atomic<Orb*> running = nullptr;

} // namespace

struct Orb::Private
{
    CORBA::ORB_var orb;
    PortableServer::POA_var rootPoa;
    PortableServer::POA_var namedPoa; // keys in it are the names themselves, so references outlive the process
    quint16 port = 0;
    bool usesTls = false;

    void start(const OrbOptions& options);
    void stop();
};

void Orb::Private::start(const OrbOptions& options)
{
    boundConnections(boundsOf(options));
    prepareTls(options.tls);
    usesTls = options.tls.has_value();
    orb = optionTable(options).initialise();
    noteCallingPeers();
    CallingSession::prepare();
    CallBreaker::prepare();
    const CORBA::Object_var root = orb->resolve_initial_references("RootPOA");
    const CORBA::Object_var named = orb->resolve_initial_references("omniINSPOA");
    rootPoa = PortableServer::POA::_narrow(root);
    namedPoa = PortableServer::POA::_narrow(named);
    activate(rootPoa);
    activate(namedPoa);
    const CORBA::Object_var probe = rootPoa->create_reference("IDL:omg.org/CORBA/Object:1.0");
    port = options.port != 0 ? options.port : portInReference(probe);
}

void Orb::Private::stop()
{
    try {
        if (!CORBA::is_nil(orb)) {
            endConnections();
            orb->destroy();
        }
    } catch (const CORBA::Exception&) { // there is nobody left to tell
    }
    exists.clear();
}

Orb::Orb(const OrbOptions& options)
    : d(std::make_unique<Private>())
{
    if (exists.test_and_set()) {
        throw OrbError("CORBA runs in this process already");
    }
    try {
        d->start(options);
    } catch (const OrbError&) {
        d->stop();
        throw;
    } catch (const CORBA::Exception& exception) {
        d->stop();
        throw OrbError("CORBA could not be started on " + options.listenAddress.toStdString() + " port " +
                       std::to_string(options.port) + ": " + describe(exception).toStdString());
    }
    running = this;
}

Orb::~Orb()
{
    running = nullptr;
    d->stop();
}

Orb* Orb::current()
{
    return running;
}

CORBA::ORB_ptr Orb::orb() const
{
    return d->orb;
}

PortableServer::POA_ptr Orb::rootPoa() const
{
    return d->rootPoa;
}

void Orb::publish(const char* key, PortableServer::ServantBase* servant)
{
    const PortableServer::ObjectId_var id = PortableServer::string_to_ObjectId(key);
    d->namedPoa->activate_object_with_id(id, servant);
}

void Orb::withdraw(const char* key)
{
    const PortableServer::ObjectId_var id = PortableServer::string_to_ObjectId(key);
    d->namedPoa->deactivate_object(id);
}

CORBA::Object_ptr Orb::published(const char* key) const
{
    const PortableServer::ObjectId_var id = PortableServer::string_to_ObjectId(key);
    return d->namedPoa->create_reference_with_id(id, "");
}

quint16 Orb::port() const
{
    return d->port;
}

bool Orb::usesTls() const
{
    return d->usesTls;
}

CORBA::Object_ptr Orb::remoteObject(const QString& host, quint16 port, const char* key) const
{
    if (!canBeHost(host) || port == 0) {
        return CORBA::Object::_nil();
    }
    try {
        return reference(QString::fromStdString(corbaloc(d->usesTls ? "ssliop" : "", host, port, key)));
    } catch (const CORBA::Exception&) {
        return CORBA::Object::_nil();
    }
}

CORBA::Object_ptr Orb::reference(const QString& text) const
{
    const CORBA::Object_var object = d->orb->string_to_object(toCorba(text));
    return withCodeSets(object);
}

} // namespace ZelkoCommon
