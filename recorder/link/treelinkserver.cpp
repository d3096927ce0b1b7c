#include <recorder/link/treelinkserver.h>

#include <recorder/link/linkedtree.h>
#include <recorder/link/linksender.h>
#include <recorder/link/linksession.h>
#include <recorder/link/treeserverservant.h>

#include <observerbase/errorhandler.h>
#include <observerbase/trace.h>
#include <valuecore/valuebase.h>
#include <valuecore/valueptr.h>
#include <zelkobase/connection/wakeup.h>
#include <zelkobase/orb/orb.h>

#include <QTimer>

#include <set>
#include <unordered_map>
#include <vector>

namespace ZelkoRecorder {

using ZelkoTreeLink::SessionId;

namespace {

constexpr int housekeepingMilliseconds = 1000;

// Changes are collected for a moment, so that many small ones make one call.
constexpr int collectMilliseconds = 2;

// A client's write, read and not yet executed.
struct PendingWrite
{
    std::uint32_t handle;
    ValuePtr<ValueBase> value;
    std::unique_ptr<Command> command; // none: the client gets the value as it is
    bool refused = false;
};

} // namespace

struct TreeLinkServer::Private
{
    Private(TreeLinkServer* owner, ZelkoCommon::Orb& orb, Tree& tree, const TreeLinkServerOptions& options,
            MayWrite mayWrite, const Authenticate& authenticate);
    ~Private();

    void openSession(SessionId id, const LinkUser& user, ZelkoTreeLink::Subscriber_ptr client);
    void closeSession(SessionId id, const QString& reason);
    void pumpAll();
    void keepHouse();
    LinkWriteVerdict write(SessionId id, const std::string& batch);
    void tellRefusal(const QString& user, const QString& why) const;
    bool readWrites(LinkSession& session, std::vector<PendingWrite>& writes);
    bool readCommands(LinkSession& session, const ZelkoCommon::link::Frame& frame, std::vector<PendingWrite>& writes);
    bool takes(const LinkSession& session, std::uint32_t handle, std::vector<PendingWrite>& writes) const;
    LinkWriteVerdict execute(LinkSession& session, const std::vector<PendingWrite>& writes);

    TreeLinkServer* const q;
    ZelkoCommon::Orb& orb;
    const TreeLinkServerOptions options;
    const MayWrite mayWrite;
    LinkedTree tree;
    std::shared_ptr<LinkSessionRegister> sessionRegister;
    ZelkoCommon::WakeUp wakeUp{[this] { gate->run(); }};
    std::shared_ptr<TreeThreadGate> gate;
    std::unordered_map<SessionId, std::unique_ptr<LinkSession>> sessions;
    std::vector<std::unique_ptr<LinkSender>> ending; // stopped senders whose last call may still be under way
    QTimer pumpTimer;
    QTimer houseTimer;
    int pastRestarts = 0;
};

TreeLinkServer::Private::Private(TreeLinkServer* owner, ZelkoCommon::Orb& usedOrb, Tree& served,
                                 const TreeLinkServerOptions& serverOptions, MayWrite writePolicy,
                                 const Authenticate& authenticate)
    : q(owner)
    , orb(usedOrb)
    , options(serverOptions)
    , mayWrite(std::move(writePolicy))
    , tree(served)
    , sessionRegister(std::make_shared<LinkSessionRegister>(options))
    , gate(std::make_shared<TreeThreadGate>([this] { wakeUp.call(); }))
{
    pumpTimer.setInterval(collectMilliseconds);
    pumpTimer.setSingleShot(true);
    QObject::connect(&pumpTimer, &QTimer::timeout, q, [this] { pumpAll(); });
    houseTimer.setInterval(housekeepingMilliseconds);
    QObject::connect(&houseTimer, &QTimer::timeout, q, [this] { keepHouse(); });
    houseTimer.start();

    TreeServerServant::Handlers handlers;
    handlers.attached = [this](SessionId id, const LinkUser& user, ZelkoTreeLink::Subscriber_ptr client) {
        openSession(id, user, client);
    };
    handlers.written = [this](SessionId id, const std::string& batch) { return write(id, batch); };
    handlers.detached = [this](SessionId id) { closeSession(id, QStringLiteral("the client left")); };
    auto* const servant = new TreeServerServant(sessionRegister, gate, handlers, authenticate, options);
    const PortableServer::ServantBase_var guard(servant);
    orb.publish(ZelkoTreeLink::OBJECT_KEY, servant);
}

TreeLinkServer::Private::~Private()
{
    gate->close();
    for (const auto& [id, session] : sessions) {
        sessionRegister->leave(id);
        ending.push_back(session->releaseSender()); // all stop before the first one is waited for
    }
    try {
        orb.withdraw(ZelkoTreeLink::OBJECT_KEY);
    } catch (const CORBA::Exception&) { // the ORB went first
    }
}

void TreeLinkServer::Private::openSession(SessionId id, const LinkUser& user, ZelkoTreeLink::Subscriber_ptr client)
{
    LinkSender::Callbacks callbacks;
    callbacks.sent = [this, id] {
        gate->post([this, id] {
            if (const auto found = sessions.find(id); found != sessions.end()) {
                found->second->pump();
            }
        });
    };
    callbacks.failed = [this, id](const std::string& why) {
        gate->post([this, id, why] { closeSession(id, QString::fromStdString(why)); });
    };
    auto sender = std::make_unique<LinkSender>(client, id, std::move(callbacks));
    const auto wantsPump = [this] {
        if (!pumpTimer.isActive()) {
            pumpTimer.start();
        }
    };
    const auto opened = sessions.emplace(
        id, std::make_unique<LinkSession>(tree, std::move(sender), user, options.maxBacklogBytes, wantsPump));
    opened.first->second->pump();
    Q_EMIT q->sessionOpened(user.name);
}

// The thread of the sender may still wait for an answer. It is joined later, when it has ended.
void TreeLinkServer::Private::closeSession(SessionId id, const QString& reason)
{
    sessionRegister->leave(id);
    const auto found = sessions.find(id);
    if (found == sessions.end()) {
        return;
    }
    const std::unique_ptr<LinkSession> session = std::move(found->second);
    sessions.erase(found);
    pastRestarts += session->restarts();
    ending.push_back(session->releaseSender());
    Q_EMIT q->sessionClosed(session->user().name, reason);
}

void TreeLinkServer::Private::pumpAll()
{
    for (const auto& [id, session] : sessions) {
        session->pump();
    }
}

void TreeLinkServer::Private::keepHouse()
{
    for (const SessionId id : sessionRegister->silentFor(options.maxSilence)) {
        closeSession(id, QStringLiteral("nothing was heard of the client"));
    }
    std::erase_if(ending, [](const std::unique_ptr<LinkSender>& sender) { return sender->hasEnded(); });
}

// Of a client that writes what cannot be read it is not known where its next frame begins.
LinkWriteVerdict TreeLinkServer::Private::write(SessionId id, const std::string& batch)
{
    const auto found = sessions.find(id);
    if (found == sessions.end()) {
        return {ZelkoTreeLink::REFUSED_SESSION, "it does not know this session any more"};
    }
    const QString user = found->second->user().name;
    std::vector<PendingWrite> writes;
    LinkWriteVerdict verdict;
    found->second->writes().append(batch);
    if (readWrites(*found->second, writes)) {
        verdict = execute(*found->second, writes);
    } else {
        verdict = {ZelkoTreeLink::REFUSED_DAMAGED, "the batch does not parse"};
        tellRefusal(user, QString::fromStdString(verdict.why));
        closeSession(id, QStringLiteral("the client wrote what cannot be read"));
    }
    return verdict;
}

void TreeLinkServer::Private::tellRefusal(const QString& user, const QString& why) const
{
    if (ErrorHandler::Instance()->traces(ErrorHandler::TraceWarning)) {
        _Q_Trace(QStringLiteral("TreeLinkServer: refused a write: %1").arg(why), __FILE__, __LINE__);
    }
    Q_EMIT q->writeRefused(user, why);
}

// False when what came does not parse as a whole.
bool TreeLinkServer::Private::readWrites(LinkSession& session, std::vector<PendingWrite>& writes)
{
    using ZelkoCommon::link::ReadResult;
    WriteStream& stream = session.writes();
    ZelkoCommon::link::Frame frame;
    ReadResult result = stream.next(frame);
    for (; result == ReadResult::Frame; result = stream.next(frame)) {
        if (takes(session, frame.handle, writes) && !readCommands(session, frame, writes)) {
            return false;
        }
    }
    if (result == ReadResult::Malformed) {
        return false;
    }
    const auto begun = stream.begunHandle();
    if (begun && !takes(session, *begun, writes)) {
        stream.passOver();
    }
    return true;
}

// Whether a frame is looked into. Where the client may not write, what it would do is not even kept; where the value
// went while the write was on its way, there is nothing to say.
bool TreeLinkServer::Private::takes(const LinkSession& session, std::uint32_t handle,
                                    std::vector<PendingWrite>& writes) const
{
    ValueBase* const value = tree.value(handle);
    const bool allowed = value && mayWrite && mayWrite(session.user(), *value);
    if (value && !allowed) {
        writes.push_back({handle, value, nullptr, true});
    }
    return allowed;
}

bool TreeLinkServer::Private::readCommands(LinkSession& session, const ZelkoCommon::link::Frame& frame,
                                           std::vector<PendingWrite>& writes)
{
    ValueBase* const value = tree.value(frame.handle);
    if (frame.payload.empty()) {
        writes.push_back({frame.handle, value, nullptr});
    }
    const char* position = frame.payload.data();
    CommandReader reader(&position, static_cast<std::ptrdiff_t>(frame.payload.size()));
    while (reader.remaining() > 0) {
        auto command = value->ReadCommand(reader, &session);
        if (!command) {
            return false;
        }
        writes.push_back({frame.handle, value, std::move(command)});
    }
    return true;
}

// What stands in one batch came together by chance, so each write is judged by itself. Where one is refused, the client
// gets the value as it is. Each value is told of once; the client hears of the last.
LinkWriteVerdict TreeLinkServer::Private::execute(LinkSession& session, const std::vector<PendingWrite>& writes)
{
    LinkWriteVerdict verdict;
    std::set<std::uint32_t> toCorrect;
    for (const PendingWrite& write : writes) {
        if (!write.value) {
            continue;
        }
        if (write.command) {
            write.command->Execute();
            continue;
        }
        const bool isFirst = toCorrect.insert(write.handle).second;
        if (write.refused && isFirst) {
            const QString why =
                QStringLiteral("user \"%1\" may not write %2").arg(session.user().name, write.value->GetPathName());
            tellRefusal(session.user().name, why);
            verdict = {ZelkoTreeLink::REFUSED_BATCH, why.toStdString()};
        }
    }
    for (const std::uint32_t handle : toCorrect) {
        session.correct(handle);
    }
    return verdict;
}

TreeLinkServer::TreeLinkServer(ZelkoCommon::Orb& orb, Tree& tree, const TreeLinkServerOptions& options,
                               MayWrite mayWrite, const Authenticate& authenticate, QObject* parent)
    : QObject(parent)
    , d(std::make_unique<Private>(this, orb, tree, options, std::move(mayWrite), authenticate))
{}

TreeLinkServer::~TreeLinkServer() = default;

int TreeLinkServer::sessionCount() const
{
    return static_cast<int>(d->sessions.size());
}

TreeLinkServer::UserOfSession TreeLinkServer::users() const
{
    return [sessions = d->sessionRegister](std::uint64_t session, const std::string& host) {
        return sessions->userOf(session, host);
    };
}

std::size_t TreeLinkServer::backlogBytes() const
{
    std::size_t bytes = 0;
    for (const auto& [id, session] : d->sessions) {
        bytes += session->backlogBytes();
    }
    return bytes;
}

int TreeLinkServer::restartCount() const
{
    int restarts = d->pastRestarts;
    for (const auto& [id, session] : d->sessions) {
        restarts += session->restarts();
    }
    return restarts;
}

} // namespace ZelkoRecorder
