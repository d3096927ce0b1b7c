#include <zelkobase/orb/boundedtransport_p.h>

#include <omniORB4/CORBA.h>
#include <omniORB4/omniServer.h>

#include <omniORB4/giopEndpoint.h>

#include <algorithm>
#include <atomic>
#include <list>
#include <memory>
#include <mutex>

namespace ZelkoCommon {
namespace {

using omni::giopConnection;
using omni::giopEndpoint;

constexpr const char* schemePrefix = "giop:";
constexpr const char* boundedType = "giop:bounded";

std::atomic<int> connectionBound = 0; // of the next endpoint

class BoundedConnection; // NOLINT(cppcoreguidelines-virtual-class-destructor)

// The connections of an endpoint, oldest first. Those that had to leave stand in it until they are gone, and do not
// count.
class ConnectionList
{
public:
    explicit ConnectionList(int most)
        : m_most(most)
    {}

    /// False when there is no room.
    bool add(BoundedConnection* connection);
    void remove(BoundedConnection* connection);

    /// The connection around another one; null when it is over.
    BoundedConnection* around(const giopConnection* inner);

private:
    struct Entry
    {
        BoundedConnection* connection;
        bool leaving = false;
    };

    bool makeRoom();

    const int m_most;
    std::mutex m_mutex;
    std::list<Entry> m_entries;
    int m_staying = 0;
};

// A connection of TCP or TLS that counts for as long as it exists. Whom it belongs to the ORB counts, as for all
// connections.
class BoundedConnection final : public giopConnection // NOLINT(cppcoreguidelines-virtual-class-destructor)
{
public:
    BoundedConnection(giopConnection* inner, std::shared_ptr<ConnectionList> list)
        : m_inner(inner)
        , m_list(std::move(list))
    {}

    bool enter() { return m_list->add(this); }

    const giopConnection* inner() const { return m_inner; }

    /// A peer is answered when it has sent a whole message, not before.
    bool wasAnswered() const { return m_answered; }

    int Send(void* bytes, std::size_t size, const omni_time_t& deadline) override
    {
        m_answered = true;
        return m_inner->Send(bytes, size, deadline);
    }
    int Recv(void* bytes, std::size_t size, const omni_time_t& deadline) override
    {
        return m_inner->Recv(bytes, size, deadline);
    }
    void Shutdown() override { m_inner->Shutdown(); }
    const char* myaddress() override { return m_inner->myaddress(); }
    const char* peeraddress() override { return m_inner->peeraddress(); }
    const char* peeridentity() override { return m_inner->peeridentity(); }
    void* peerdetails() override { return m_inner->peerdetails(); }
    bool gatekeeperCheckSpecific(omni::giopStrand* strand) override { return m_inner->gatekeeperCheckSpecific(strand); }
    void setSelectable(int now, bool dataInBuffer) override { m_inner->setSelectable(now, dataInBuffer); }
    void clearSelectable() override { m_inner->clearSelectable(); }
    bool isSelectable() override { return m_inner->isSelectable(); }
    bool Peek() override { return m_inner->Peek(); }

protected:
    ~BoundedConnection() override
    {
        m_list->remove(this);
        m_inner->decrRefCount(true);
    }

private:
    giopConnection* const m_inner;
    const std::shared_ptr<ConnectionList> m_list; // outlives the endpoint, which may go first
    std::atomic<bool> m_answered = false;
};

bool ConnectionList::add(BoundedConnection* connection)
{
    const std::lock_guard lock(m_mutex);
    if (m_staying >= m_most && !makeRoom()) {
        return false;
    }
    m_entries.push_back({connection});
    ++m_staying;
    return true;
}

// Whoever serves or watches the connection finds it ended, and destroys it.
bool ConnectionList::makeRoom()
{
    const auto oldest = std::find_if(m_entries.begin(), m_entries.end(), [](const Entry& entry) {
        return !entry.leaving && !entry.connection->wasAnswered();
    });
    if (oldest == m_entries.end()) {
        return false;
    }
    oldest->leaving = true;
    --m_staying;
    oldest->connection->Shutdown();
    return true;
}

void ConnectionList::remove(BoundedConnection* connection)
{
    const std::lock_guard lock(m_mutex);
    const auto found = std::find_if(m_entries.begin(), m_entries.end(),
                                    [=](const Entry& entry) { return entry.connection == connection; });
    if (found != m_entries.end()) {
        m_staying -= found->leaving ? 0 : 1;
        m_entries.erase(found);
    }
}

BoundedConnection* ConnectionList::around(const giopConnection* inner)
{
    const std::lock_guard lock(m_mutex);
    const auto found = std::find_if(m_entries.begin(), m_entries.end(),
                                    [=](const Entry& entry) { return entry.connection->inner() == inner; });
    return found == m_entries.end() ? nullptr : found->connection;
}

// An endpoint of TCP or TLS that gives its connections away inside bounded ones.
class BoundedEndpoint final : public giopEndpoint
{
public:
    BoundedEndpoint(const char* inside, int maxConnections)
        : m_uri(schemePrefix + std::string(inside))
        , m_inner(giopEndpoint::str2Endpoint(m_uri.c_str()))
        , m_list(std::make_shared<ConnectionList>(maxConnections))
    {}

    bool isValid() const { return m_inner; }

    const char* type() const override { return m_inner->type(); }
    const char* address() const override { return m_inner->address(); }
    const omni::orbServer::EndpointList* addresses() const override { return m_inner->addresses(); }
    bool publish(const omni::orbServer::PublishSpecs& specs, bool allSpecs, bool allEndpoints,
                 omni::orbServer::EndpointList& published) override
    {
        if (no_publish()) {
            m_inner->set_no_publish();
        }
        return m_inner->publish(specs, allSpecs, allEndpoints, published);
    }
    bool Bind() override { return m_inner->Bind(); }
    giopConnection* AcceptAndMonitor(giopConnection::notifyReadable_t notify, void* cookie) override;

    // Ends AcceptAndMonitor, by a connection or without one.
    void Poke() override
    {
        m_poked = true;
        m_inner->Poke();
    }

    // An endpoint that was shut down is not used any more; the one inside goes with its last connection.
    void Shutdown() override
    {
        m_inner->Shutdown();
        delete this;
    }

private:
    static void passOn(void* self, giopConnection* inner);

    const std::string m_uri; // the endpoint inside keeps a pointer into it
    giopEndpoint* const m_inner;
    const std::shared_ptr<ConnectionList> m_list;
    giopConnection::notifyReadable_t m_notify = nullptr;
    void* m_cookie = nullptr;
    std::atomic<bool> m_poked = false;
};

giopConnection* BoundedEndpoint::AcceptAndMonitor(giopConnection::notifyReadable_t notify, void* cookie)
{
    m_notify = notify;
    m_cookie = cookie;
    while (giopConnection* const inner = m_inner->AcceptAndMonitor(passOn, this)) {
        auto* const connection = new BoundedConnection(inner, m_list);
        if (connection->enter() || m_poked) {
            return connection;
        }
        connection->Shutdown();
        connection->decrRefCount(true); // destroys it
    }
    return nullptr;
}

void BoundedEndpoint::passOn(void* self, giopConnection* inner)
{
    const auto* const endpoint = static_cast<BoundedEndpoint*>(self);
    if (BoundedConnection* const connection = endpoint->m_list->around(inner)) {
        endpoint->m_notify(endpoint->m_cookie, connection);
    }
}

// Makes endpoints, and nothing else: what they publish are addresses of what is inside.
class BoundedTransport final : public omni::giopTransportImpl
{
public:
    BoundedTransport()
        : giopTransportImpl(boundedType)
    {}

    giopEndpoint* toEndpoint(const char* inside) override
    {
        auto endpoint = std::make_unique<BoundedEndpoint>(inside, connectionBound);
        return endpoint->isValid() ? endpoint.release() : nullptr;
    }
    omni::giopAddress* toAddress(const char*) override { return nullptr; }
    bool isValid(const char*) override { return false; }
    bool addToIOR(const char*, omni::IORPublish*) override { return false; }
    const omnivector<const char*>* getInterfaceAddress() override { return nullptr; }
};

} // namespace

void boundConnections(int maxConnections)
{
    static const BoundedTransport transport; // registers itself
    connectionBound = maxConnections;
}

std::string boundedEndpoint(const std::string& endpoint)
{
    return std::string(boundedType) + ':' + endpoint.substr(std::string_view(schemePrefix).size());
}

} // namespace ZelkoCommon
