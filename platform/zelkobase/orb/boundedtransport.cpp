#include <zelkobase/orb/boundedtransport_p.h>

#include <zelkobase/orb/callingpeer.h>
#include <zelkobase/orb/messagemeter_p.h>
#include <zelkobase/orb/orbtime_p.h>

#include <omniORB4/CORBA.h>
#include <omniORB4/omniServer.h>

#include <omniORB4/giopEndpoint.h>

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <list>
#include <memory>
#include <mutex>

namespace ZelkoCommon {
namespace {

using omni::giopConnection;
using omni::giopEndpoint;

constexpr const char* schemePrefix = "giop:";
constexpr const char* boundedType = "giop:bounded";
constexpr std::chrono::milliseconds stepOfAnAnswer(250);
constexpr std::chrono::milliseconds momentAtTheEnd(1000);

ConnectionBounds nextBounds; // of the next endpoint; whoever starts the ORB sets them, and makes the endpoint

class BoundedConnection; // NOLINT(cppcoreguidelines-virtual-class-destructor)

// The connections of an endpoint, oldest first. Those that had to leave stand in it until they are gone, and do not
// count.
class ConnectionList
{
public:
    ConnectionList(int most, int mostOfAHost)
        : m_most(most)
        , m_mostOfAHost(mostOfAHost)
    {}

    /// False when there is no room.
    bool add(BoundedConnection* connection);
    void remove(BoundedConnection* connection);

    /// The connection around another one; null when it is over.
    BoundedConnection* around(const giopConnection* inner);

    /// From here on nobody gets a place, and nobody is waited for who takes nothing of his answer. Closes what never
    /// had an answer, and waits for a moment until it is gone.
    void end();
    bool isEnding() const { return m_isEnding; }

private:
    struct Entry
    {
        BoundedConnection* connection;
        bool leaving = false;
    };

    template <typename Counts>
    bool hasRoom(int most, Counts counts); // makes it if it can

    const int m_most;
    const int m_mostOfAHost;
    std::atomic<bool> m_isEnding = false;
    std::mutex m_mutex;
    std::condition_variable m_removed;
    std::list<Entry> m_entries;
};

// A connection of TCP or TLS that counts for as long as it exists. Whom it belongs to the ORB counts, as for all
// connections.
class BoundedConnection final : public giopConnection // NOLINT(cppcoreguidelines-virtual-class-destructor)
{
public:
    BoundedConnection(giopConnection* inner, std::shared_ptr<ConnectionList> list, const ConnectionBounds& bounds)
        : m_inner(inner)
        , m_host(hostOfTransportAddress(inner->peeraddress()))
        , m_list(std::move(list))
        , m_meter(bounds.messageBytes)
        , m_answerLimit(bounds.answerLimit)
    {}

    bool enter() { return m_list->add(this); }

    const giopConnection* inner() const { return m_inner; }

    /// Empty where the transport does not tell it in numbers; those connections count as of one host.
    const std::string& host() const { return m_host; }

    /// A peer is answered when it has sent a whole message, not before.
    bool wasAnswered() const { return m_answered; }

    int Send(void* bytes, std::size_t size, const omni_time_t&) override;
    int Recv(void* bytes, std::size_t size, const omni_time_t& deadline) override;
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
    const std::string m_host;
    const std::shared_ptr<ConnectionList> m_list; // outlives the endpoint, which may go first
    MessageMeter m_meter;                         // of the one thread that reads
    const std::chrono::milliseconds m_answerLimit;
    std::chrono::steady_clock::time_point m_answerEnd; // of the one thread that writes
    std::atomic<bool> m_isAnswering = false;
    std::atomic<bool> m_answered = false;
};

// The time runs from the first piece of an answer on. The ORB would allow it no more than the rest of a request, which
// is little for a long one. It is waited in steps, as the end of the ORB waits for all answers.
int BoundedConnection::Send(void* bytes, std::size_t size, const omni_time_t&)
{
    m_answered = true;
    if (!m_isAnswering.exchange(true)) {
        m_answerEnd = std::chrono::steady_clock::now() + m_answerLimit;
    }
    int sent = 0;
    do {
        sent = m_inner->Send(bytes, size, orbTimeAfter(stepOfAnAnswer));
    } while (sent == 0 && !m_list->isEnding() && std::chrono::steady_clock::now() < m_answerEnd);
    return sent;
}

int BoundedConnection::Recv(void* bytes, std::size_t size, const omni_time_t& deadline)
{
    const int received = m_inner->Recv(bytes, size, deadline);
    m_isAnswering = false;
    if (received > 0 && !m_meter.take(static_cast<const char*>(bytes), static_cast<std::size_t>(received))) {
        Shutdown();
        return -1;
    }
    return received;
}

bool ConnectionList::add(BoundedConnection* connection)
{
    const std::lock_guard lock(m_mutex);
    const auto isOfHost = [&](const Entry& entry) { return entry.connection->host() == connection->host(); };
    const bool enters =
        !m_isEnding && hasRoom(m_mostOfAHost, isOfHost) && hasRoom(m_most, [](const Entry&) { return true; });
    if (enters) {
        m_entries.push_back({connection});
    }
    return enters;
}

// Where one has to go, whoever serves or watches it finds it ended, and destroys it.
template <typename Counts>
bool ConnectionList::hasRoom(int most, Counts counts)
{
    const auto stays = [&](const Entry& entry) { return !entry.leaving && counts(entry); };
    if (std::count_if(m_entries.begin(), m_entries.end(), stays) < most) {
        return true;
    }
    const auto oldest = std::find_if(m_entries.begin(), m_entries.end(), [&](const Entry& entry) {
        return stays(entry) && !entry.connection->wasAnswered();
    });
    if (oldest == m_entries.end()) {
        return false;
    }
    oldest->leaving = true;
    oldest->connection->Shutdown();
    return true;
}

void ConnectionList::remove(BoundedConnection* connection)
{
    const std::lock_guard lock(m_mutex);
    const auto found = std::find_if(m_entries.begin(), m_entries.end(),
                                    [=](const Entry& entry) { return entry.connection == connection; });
    if (found != m_entries.end()) {
        m_entries.erase(found);
        m_removed.notify_all();
    }
}

void ConnectionList::end()
{
    const auto isUnanswered = [](const Entry& entry) { return !entry.connection->wasAnswered(); };
    std::unique_lock lock(m_mutex);
    m_isEnding = true;
    for (const Entry& entry : m_entries) {
        if (isUnanswered(entry)) {
            entry.connection->Shutdown();
        }
    }
    m_removed.wait_for(lock, momentAtTheEnd,
                       [&] { return std::none_of(m_entries.begin(), m_entries.end(), isUnanswered); });
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
    BoundedEndpoint(const char* inside, const ConnectionBounds& bounds)
        : m_uri(schemePrefix + std::string(inside))
        , m_inner(giopEndpoint::str2Endpoint(m_uri.c_str()))
        , m_bounds(bounds)
        , m_list(std::make_shared<ConnectionList>(bounds.connections, bounds.connectionsPerHost))
    {}

    bool isValid() const { return m_inner != nullptr; }
    std::shared_ptr<ConnectionList> list() const { return m_list; }

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
        m_inner.release()->Shutdown();
        delete this;
    }

private:
    static void passOn(void* self, giopConnection* inner);

    const std::string m_uri;               // the endpoint inside keeps a pointer into it
    std::unique_ptr<giopEndpoint> m_inner; // ours until it is shut down, which it may never be: its port may be taken
    const ConnectionBounds m_bounds;
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
        auto* const connection = new BoundedConnection(inner, m_list, m_bounds);
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

// Of the endpoint that was made last.
std::weak_ptr<ConnectionList>& lastList()
{
    static std::weak_ptr<ConnectionList> list;
    return list;
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
        auto endpoint = std::make_unique<BoundedEndpoint>(inside, nextBounds);
        lastList() = endpoint->list();
        return endpoint->isValid() ? endpoint.release() : nullptr;
    }
    omni::giopAddress* toAddress(const char*) override { return nullptr; }
    bool isValid(const char*) override { return false; }
    bool addToIOR(const char*, omni::IORPublish*) override { return false; }
    const omnivector<const char*>* getInterfaceAddress() override { return nullptr; }
};

} // namespace

void boundConnections(const ConnectionBounds& bounds)
{
    static const BoundedTransport transport; // registers itself
    nextBounds = bounds;
}

void endConnections()
{
    if (const auto list = lastList().lock()) {
        list->end();
    }
}

std::string boundedEndpoint(const std::string& endpoint)
{
    return std::string(boundedType) + ':' + endpoint.substr(std::string_view(schemePrefix).size());
}

} // namespace ZelkoCommon
