#pragma once

#include "framestream.h"
#include "treedigest.h"

#include <recorder/link/treelinkserver.h>

#include <valuecore/tree.h>
#include <valuecore/valuetypes.h>
#include <zelkobase/connection/treemirror.h>
#include <zelkobase/orb/orb.h>
#include <zelkoidl/treelink.hh>

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QStringList>

#include <future>
#include <mutex>
#include <utility>

namespace ZelkoTest {

using namespace ZelkoRecorder;
using namespace std::chrono_literals;

inline const QString root = QStringLiteral("/SubSystems/north");
inline const std::string here; // where calls of this process come from

/// A client by hand: keeps what it is sent, and takes it only when it is let.
class LinkServerClient final : public POA_ZelkoTreeLink::Subscriber, public PortableServer::RefCountServantBase
{
public:
    void deliver(ZelkoTreeLink::SessionId, CORBA::ULong number, const ZelkoTreeLink::Batch& commands,
                 ZelkoTreeLink::Checksum check) override
    {
        const std::lock_guard taking(m_taking);
        const std::lock_guard lock(m_mutex);
        const std::string bytes(reinterpret_cast<const char*>(commands.get_buffer()), commands.length());
        if (number != m_batches++ || ZelkoCommon::link::checksum(bytes) != check) {
            m_bytes += "out of order, or damaged";
        }
        m_bytes += bytes;
    }
    std::string take()
    {
        const std::lock_guard lock(m_mutex);
        return std::exchange(m_bytes, {});
    }

    /// Takes nothing while the lock is held.
    std::unique_lock<std::mutex> hold() { return std::unique_lock(m_taking); }

private:
    std::mutex m_taking;
    std::mutex m_mutex;
    std::string m_bytes;
    CORBA::ULong m_batches = 0;
};

/// Calls of a client wait for the thread of the tree, which is this one.
template <typename Call>
auto elsewhere(Call call)
{
    auto result = std::async(std::launch::async, call);
    while (result.wait_for(0ms) != std::future_status::ready) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    }
    return result.get();
}

/// A server of a small tree, with a client by hand; the user "operator" may write all but what is "Locked".
struct LinkServerFixture
{
    explicit LinkServerFixture(const TreeLinkServerOptions& options = {},
                               TreeLinkServer::Authenticate authenticate = {})
        : server(
              orb, tree, options,
              [](const LinkUser& user, const ValueBase& value) {
                  return user.name == "operator" && value.GetName() != "Locked";
              },
              std::move(authenticate))
    {
        const CORBA::Object_var object = orb.remoteObject("127.0.0.1", orb.port(), ZelkoTreeLink::OBJECT_KEY);
        remote = ZelkoTreeLink::TreeServer::_unchecked_narrow(object);
        client = new LinkServerClient;
        owner = client;
        const PortableServer::ObjectId_var id = orb.rootPoa()->activate_object(client);
        reference = client->_this();
    }

    ZelkoTreeLink::SessionId attach(const char* user = "operator",
                                    CORBA::ULong version = ZelkoTreeLink::PROTOCOL_VERSION)
    {
        return elsewhere([&] { return remote->attach(version, {user, "secret"}, reference); });
    }

    // Empty when it went well, otherwise the text of the refusal.
    QString refusalOfAttach(const char* user, CORBA::ULong version = ZelkoTreeLink::PROTOCOL_VERSION)
    {
        try {
            attach(user, version);
        } catch (const ZelkoTreeLink::Refused& refused) {
            return describe(refused);
        }
        return {};
    }

    QString write(ZelkoTreeLink::SessionId session, const std::string& bytes, std::uint64_t damage = 0)
    {
        return elsewhere([&] { return call(session, bytes, damage); });
    }

    // The same again and again while the answer is that the server is busy, as clients do.
    QString writeUntilTaken(ZelkoTreeLink::SessionId session, const std::string& bytes)
    {
        const QDeadlineTimer end(30s);
        QString answer = write(session, bytes);
        while (answer.startsWith("6: ") && !end.hasExpired()) {
            answer = write(session, bytes);
        }
        return answer;
    }

    // The same while the thread of the tree is busy.
    QString writeToBusyTree(ZelkoTreeLink::SessionId session, const std::string& bytes)
    {
        return std::async(std::launch::async, [&] { return call(session, bytes, 0); }).get();
    }

    QString call(ZelkoTreeLink::SessionId session, const std::string& bytes, std::uint64_t damage)
    {
        ZelkoTreeLink::Batch batch;
        batch.length(static_cast<CORBA::ULong>(bytes.size()));
        std::copy(bytes.begin(), bytes.end(), batch.get_buffer());
        try {
            remote->write(session, batch, ZelkoCommon::link::checksum(bytes) + damage);
        } catch (const ZelkoTreeLink::Refused& refused) {
            return describe(refused);
        }
        return {};
    }

    // What a client that applies all it was sent has.
    QStringList received()
    {
        stream += client->take();
        Tree copy;
        ZelkoCommon::TreeMirror mirror(&copy, root, nullptr, {});
        mirror.append(stream);
        return mirror.apply(1h) == ZelkoCommon::TreeMirror::Progress::Idle ? treeList(copy, root)
                                                                           : QStringList("malformed");
    }

    static QString describe(const ZelkoTreeLink::Refused& refused)
    {
        return QStringLiteral("%1: %2")
            .arg(int(refused.reason))
            .arg(QString::fromUtf8(static_cast<const char*>(refused.text)));
    }

    ZelkoCommon::Orb orb{{}};
    Tree tree;
    Value<int>* number = tree.Emplace("/A", std::make_unique<Value<int>>("Number")); // handle 2
    Value<int>* locked = tree.Emplace("/A", std::make_unique<Value<int>>("Locked")); // handle 3
    TreeLinkServer server;
    ZelkoTreeLink::TreeServer_var remote;
    LinkServerClient* client = nullptr;
    PortableServer::ServantBase_var owner;
    ZelkoTreeLink::Subscriber_var reference;
    std::string stream;
};

inline std::string setInt(int value)
{
    Value<int> source;
    std::string commands;
    Value<int>::CommandSet(&source, value, false, nullptr).AddCommandString(commands);
    return commands;
}

} // namespace ZelkoTest
