#include <zelkobase/connection/treelink.h>

#include <observerbase/errorhandler.h>
#include <observerbase/iobserver.h>
#include <observerbase/trace.h>
#include <zelkobase/connection/linkqueue.h>
#include <zelkobase/connection/linkvtclient_p.h>
#include <zelkobase/connection/linkworker_p.h>
#include <zelkobase/connection/treemirror.h>
#include <zelkobase/connection/wakeup.h>

#include <QTimer>

#include <utility>

namespace ZelkoCommon {
namespace {

// What is fetched from the queue at once: enough for a fold, little enough to be forgotten when the connection ends.
constexpr std::size_t fetchBytes = 256 * 1024;

// Stands for the server as the origin of changes. It observes nothing.
class ServerOrigin final : public IObserver
{
public:
    void Update(Observable*, TChangeCode) override {}
};

std::chrono::microseconds timeUntil(std::chrono::steady_clock::time_point end)
{
    return std::chrono::duration_cast<std::chrono::microseconds>(end - std::chrono::steady_clock::now());
}

void traceWarning(const QString& text, int line)
{
    if (ErrorHandler::Instance()->traces(ErrorHandler::TraceWarning)) {
        _Q_Trace(text, __FILE__, line);
    }
}

} // namespace

struct TreeLink::Private
{
    Private(TreeLink* owner, Orb& orb, Tree* tree, const ZelkoConfiguration::SubSystem& subSystem,
            const LinkOptions& options);
    ~Private();

    void stop();
    void drain();
    void applySlice();
    bool fetch();
    bool passesOver(const LinkQueue::Entry& entry);
    void giveUp(const char* reason);
    void handle(LinkQueue::Batch& batch) { mirror.append(std::move(batch.bytes)); }
    void handle(const LinkQueue::Disconnected& entry) { reset(QString::fromStdString(entry.reason)); }
    void handle(const LinkQueue::ConnectFailed& entry);
    void handle(const LinkQueue::WriteRefused& entry) { Q_EMIT q->writeRefused(QString::fromStdString(entry.reason)); }
    void becomeReady();
    void send(const ValueBase& value, const std::string& frame);
    void reset(const QString& reason);
    void reportFailure(const QString& reason, bool isDenied);
    void setCredentials(const LinkCredentials& credentials);

    TreeLink* const q;
    const ZelkoConfiguration::SubSystem subSystem;
    const LinkOptions options;
    ServerOrigin origin;
    TreeMirror mirror;
    std::shared_ptr<LinkVtClient> client;
    QString lastError;
    bool denied = false;
    bool connected = false;
    bool ignoring = false; // what still comes of a connection that was given up here, its end included
    bool draining = false;
    bool stopped = false;
    bool missed = false;                                        // a wake-up in the middle of a slice
    TreeMirror::Progress progress = TreeMirror::Progress::Idle; // of the last slice
    QTimer nextSlice;
    WakeUp wakeUp{[this] { nextSlice.start(); }};
    std::shared_ptr<LinkQueue> queue;
    std::unique_ptr<LinkWorker> worker;
};

TreeLink::Private::Private(TreeLink* owner, Orb& orb, Tree* tree, const ZelkoConfiguration::SubSystem& which,
                           const LinkOptions& linkOptions)
    : q(owner)
    , subSystem(which)
    , options(linkOptions)
    , mirror(tree, ZelkoConfiguration::MakeRootPath(which.name), &origin,
             {[this] { becomeReady(); }, [this](const QString& path) { Q_EMIT q->nodeCreated(path); }})
{
    // A timer of 0 ms comes round once per turn of the event loop, behind what users do. A queued call would come
    // before it, again and again.
    nextSlice.setInterval(0);
    QObject::connect(&nextSlice, &QTimer::timeout, q, [this] { drain(); });
    queue = std::make_shared<LinkQueue>([this] { wakeUp.call(); }, options.maxPendingBytes);
    worker = std::make_unique<LinkWorker>(orb, subSystem, options, queue);
}

TreeLink::Private::~Private()
{
    stop();
    worker.reset();
    if (client) {
        client->close();
    }
    mirror.clear();
}

void TreeLink::Private::stop()
{
    stopped = true;
    queue->shutDown();
    worker->stop();
}

// An observer may open a window with an event loop of its own. What comes meanwhile waits: a change must not overtake
// the one that is being told.
void TreeLink::Private::drain()
{
    if (draining || stopped) {
        nextSlice.stop();
        missed = true;
        return;
    }
    draining = true;
    applySlice();
    draining = false;
}

// Fetches and applies until the time is over or there is nothing more. Many small batches are fetched at once, so that
// what they change is told in one go. What maps held that are gone is destroyed with a part of the time, and with what
// is left of it.
void TreeLink::Private::applySlice()
{
    const auto end = std::chrono::steady_clock::now() + options.sliceBudget;
    mirror.tidy(options.sliceBudget / 4);
    for (;;) {
        const bool thatIsAll = progress != TreeMirror::Progress::MoreToDo && !fetch();
        progress = mirror.apply(timeUntil(end));
        if (progress == TreeMirror::Progress::MoreToDo) {
            break;
        }
        if (progress == TreeMirror::Progress::Malformed) {
            giveUp("the recorder server sent what cannot be read");
        } else if (thatIsAll && !std::exchange(missed, false)) {
            if (!mirror.tidy(timeUntil(end))) {
                nextSlice.stop();
                return;
            }
            break;
        }
        if (std::chrono::steady_clock::now() >= end) {
            break;
        }
    }
    nextSlice.start();
}

// Moves what waits to the mirror, up to what it can work on for a while. False when the queue is empty.
bool TreeLink::Private::fetch()
{
    for (std::size_t bytes = 0; bytes < fetchBytes;) {
        auto entry = queue->take();
        if (!entry) {
            return false;
        }
        if (const auto* const batch = std::get_if<LinkQueue::Batch>(&*entry)) {
            bytes += batch->bytes.size();
        }
        if (passesOver(*entry)) {
            continue;
        }
        std::visit([this](auto& what) { handle(what); }, *entry);
    }
    return true;
}

// Of a connection that was given up here nothing more is looked at, up to and including its end. An attempt that failed
// belongs to the next one.
bool TreeLink::Private::passesOver(const LinkQueue::Entry& entry)
{
    const bool belongsToNew = std::holds_alternative<LinkQueue::ConnectFailed>(entry);
    const bool isEnd = std::holds_alternative<LinkQueue::Disconnected>(entry);
    const bool passedOver = ignoring && !belongsToNew;
    ignoring = passedOver && !isEnd;
    return passedOver;
}

void TreeLink::Private::giveUp(const char* reason)
{
    traceWarning(QStringLiteral("TreeLink: %1: %2; starting over").arg(subSystem.name, QLatin1String(reason)),
                 __LINE__);
    worker->drop(reason);
    ignoring = true;
    reset(QString::fromLatin1(reason));
}

void TreeLink::Private::becomeReady()
{
    if (connected) {
        return; // the server started over with a client that was too slow
    }
    connected = true;
    denied = false;
    lastError.clear();
    client = std::make_shared<LinkVtClient>(
        &origin, [this](const ValueBase& value) { return mirror.handleOf(value); },
        [this](const ValueBase& value, const std::string& frame) { send(value, frame); });
    Q_EMIT q->connected();
}

// Told behind the write, in the middle of which nobody expects to be called.
void TreeLink::Private::send(const ValueBase& value, const std::string& frame)
{
    const QString refusal = worker->write(frame);
    if (refusal.isEmpty()) {
        return;
    }
    worker->askFor(mirror.handleOf(value));
    const QString reason = QStringLiteral("a write to %1 is not sent: %2").arg(value.GetPathName(), refusal);
    traceWarning(QStringLiteral("TreeLink: ") + reason, __LINE__);
    QMetaObject::invokeMethod(
        q, [link = q, reason] { Q_EMIT link->writeNotSent(reason); }, Qt::QueuedConnection);
}

void TreeLink::Private::reset(const QString& reason)
{
    if (client) {
        client->close();
        client.reset();
    }
    mirror.clear();
    progress = TreeMirror::Progress::Idle;
    if (!connected) {
        reportFailure(reason, false);
        return;
    }
    connected = false;
    lastError = reason;
    Q_EMIT q->disconnected();
}

// That the user before was not admitted says nothing of the one who it is now.
void TreeLink::Private::handle(const LinkQueue::ConnectFailed& entry)
{
    if (!entry.isDenied || worker->isDenied()) {
        reportFailure(QString::fromStdString(entry.reason), entry.isDenied);
    }
}

void TreeLink::Private::setCredentials(const LinkCredentials& credentials)
{
    if (worker->setCredentials(credentials) && std::exchange(denied, false)) {
        lastError.clear();
    }
}

void TreeLink::Private::reportFailure(const QString& reason, bool isDenied)
{
    lastError = reason;
    denied = isDenied;
    Q_EMIT q->connectFailed(reason);
}

TreeLink::TreeLink(Orb& orb, Tree* tree, const ZelkoConfiguration::SubSystem& subSystem, const LinkOptions& options,
                   QObject* parent)
    : QObject(parent)
    , d(std::make_unique<Private>(this, orb, tree, subSystem, options))
{}

TreeLink::~TreeLink() = default;

void TreeLink::stop()
{
    d->stop();
}

const QString& TreeLink::subSystem() const
{
    return d->subSystem.name;
}

bool TreeLink::isConnected() const
{
    return d->connected;
}

std::shared_ptr<IVtClient> TreeLink::client() const
{
    return d->client;
}

void TreeLink::setCredentials(const LinkCredentials& credentials)
{
    d->setCredentials(credentials);
}

std::optional<Role> TreeLink::role() const
{
    return d->connected ? d->worker->role() : std::nullopt;
}

QString TreeLink::lastError() const
{
    return d->lastError;
}

bool TreeLink::isDenied() const
{
    return d->denied;
}

} // namespace ZelkoCommon
