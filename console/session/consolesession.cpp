#include <console/session/consolesession.h>

#include <console/session/recorderusers.h>
#include <console/session/siteconnection.h>

#include <valuecore/tree.h>
#include <zelkobase/connection/serverconnectiondata.h>

namespace ZelkoConsole {

using ZelkoCommon::LinkOptions;
using ZelkoCommon::ServerConnectionData;
using ZelkoCommon::ZelkoConfiguration;

namespace {

// A recorder on the same machine is asked again soon: nobody is spared by waiting.
LinkOptions localLink()
{
    LinkOptions options;
    options.lastRetry = std::chrono::milliseconds(1000);
    return options;
}

} // namespace

struct ConsoleSession::Private
{
    Private(ConsoleSession* owner, ZelkoCommon::Orb& theOrb, const ZelkoConfiguration& theSite,
            const LinkOptions& linkOptions)
        : q(owner)
        , orb(theOrb)
        , link(linkOptions)
        , site(std::make_shared<ZelkoConfiguration>(theSite))
        , shared(std::make_shared<SiteConnection>(site))
    {}

    void connectAll();
    void recorderChanged();
    SubSystemStatus linkStatus(const QString& subSystem) const;

    ConsoleSession* const q;
    ZelkoCommon::Orb& orb;
    LinkOptions link;
    QString configuredUser;
    const std::shared_ptr<ZelkoConfiguration> site;
    const std::shared_ptr<SiteConnection> shared;
    std::shared_ptr<RecorderUsers> users;
    QStringList names;
    std::unique_ptr<EmbeddedRecorder> recorder;
    std::unique_ptr<ServerConnectionData> connection;
};

void ConsoleSession::Private::connectAll()
{
    connection = std::make_unique<ServerConnectionData>(orb, Tree::Instance(), site, link);
    shared->follow(connection.get());
    const auto changed = [this](const QString& subSystem) { Q_EMIT q->statusChanged(subSystem); };
    connect(connection.get(), &ServerConnectionData::si_allTicsConnected, q, changed);
    connect(connection.get(), &ServerConnectionData::si_allTicsDisconnected, q, changed);
    connect(connection.get(), &ServerConnectionData::connectFailed, q, changed);
    connect(connection.get(), &ServerConnectionData::writeRefused, q, &Session::writeRefused);
    connect(connection.get(), &ServerConnectionData::writeNotSent, q, &Session::writeNotSent);
}

// The process is watched, so its end need not be found out by the link: what it had is taken from the tree at once.
void ConsoleSession::Private::recorderChanged()
{
    connection.reset();
    shared->follow(nullptr);
    if (recorder->state() == EmbeddedRecorder::State::Running) {
        site->AddSubSystem({names.constFirst(), QStringLiteral("127.0.0.1"), recorder->port()});
        connectAll();
    }
    Q_EMIT q->statusChanged(names.constFirst());
}

SubSystemStatus ConsoleSession::Private::linkStatus(const QString& subSystem) const
{
    if (connection->isConnected(subSystem)) {
        return {LinkState::Connected, {}};
    }
    const QString reason = connection->lastError(subSystem);
    if (connection->isDenied(subSystem)) {
        return {LinkState::Denied, reason.section(QLatin1String(": "), -1)}; // without who says so and to what
    }
    return {reason.isEmpty() ? LinkState::Connecting : LinkState::Unreachable, reason};
}

ConsoleSession::ConsoleSession(ZelkoCommon::Orb& orb, const ZelkoConfiguration& site, const LinkOptions& link,
                               QObject* parent)
    : Session(parent)
    , d(std::make_unique<Private>(this, orb, site, link))
{
    for (const auto& subSystem : site.SubSystems()) {
        d->names.append(subSystem.name);
    }
    if (const auto* const current = site.Find(site.GetCurrentSubSystem())) {
        d->configuredUser = current->hasCredentials() ? current->credentials.user : link.credentials.user;
    }
    d->connectAll();
}

ConsoleSession::ConsoleSession(ZelkoCommon::Orb& orb, const EmbeddedRecorderOptions& recorder, QObject* parent)
    : Session(parent)
    , d(std::make_unique<Private>(this, orb, ZelkoConfiguration(), localLink()))
{
    d->names.append(recorder.subSystem);
    d->site->AddSubSystem({recorder.subSystem, QStringLiteral("127.0.0.1")}); // its port is known when it serves
    d->users = recorder.users ? recorder.users : std::make_shared<RecorderUsers>();
    EmbeddedRecorderOptions options = recorder;
    options.users = d->users;
    d->recorder = std::make_unique<EmbeddedRecorder>(options);
    connect(d->recorder.get(), &EmbeddedRecorder::changed, this, [this] { d->recorderChanged(); });
    d->recorder->start();
}

ConsoleSession::~ConsoleSession()
{
    blockSignals(true);
    d->connection.reset();
    d->shared->follow(nullptr);
    d->recorder.reset();
}

QStringList ConsoleSession::subSystems() const
{
    return d->names;
}

SubSystemStatus ConsoleSession::status(const QString& subSystem) const
{
    if (!d->names.contains(subSystem)) {
        return {};
    }
    if (d->recorder && d->recorder->state() == EmbeddedRecorder::State::Failed) {
        return {LinkState::Unreachable, d->recorder->failure()};
    }
    if (d->recorder && d->recorder->state() != EmbeddedRecorder::State::Running) {
        return {LinkState::Starting, {}};
    }
    return d->linkStatus(subSystem);
}

std::shared_ptr<ZelkoCommon::AbstractServerConnectionData> ConsoleSession::connectionData() const
{
    return d->shared;
}

const std::vector<KnownUser>& ConsoleSession::knownUsers() const
{
    return d->users ? d->users->users() : Session::knownUsers();
}

QString ConsoleSession::configuredUser() const
{
    return d->configuredUser;
}

void ConsoleSession::actFor(const ZelkoCommon::LinkCredentials& user)
{
    QHash<QString, SubSystemStatus> before;
    for (const QString& name : std::as_const(d->names)) {
        before.insert(name, status(name));
    }
    d->link.credentials = user; // of the connections that come with another start of the recorder
    if (d->connection) {
        d->connection->SetCredentials(user);
    }
    for (const QString& name : std::as_const(d->names)) {
        if (status(name) != before.value(name)) {
            Q_EMIT statusChanged(name);
        }
    }
}

std::optional<ZelkoCommon::Role> ConsoleSession::role(const QString& subSystem) const
{
    return d->connection ? d->connection->GetRole(subSystem) : std::nullopt;
}

const EmbeddedRecorder* ConsoleSession::recorder() const
{
    return d->recorder.get();
}

} // namespace ZelkoConsole
