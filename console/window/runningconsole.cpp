#include <console/window/runningconsole.h>

#include <console/session/consolesession.h>
#include <console/session/consoleuser.h>
#include <console/session/listenaddress.h>
#include <console/session/storefolder.h>
#include <console/session/unusablesite.h>
#include <console/translation.h>
#include <console/window/consolewindow.h>
#include <console/window/usermenu.h>
#include <console/window/usermessages.h>

#include <process/terminationsignals.h>
#include <zelkobase/orb/orb.h>

#include <QApplication>
#include <QIcon>
#include <QSettings>
#include <QTimer>

// The macro wants a function outside of namespaces.
static void initResources()
{
    Q_INIT_RESOURCE(console);
}

namespace ZelkoConsole {

using ZelkoCommon::Orb;
using ZelkoCommon::OrbOptions;
using ZelkoCommon::ZelkoConfiguration;

namespace {

// A desktop has signs of its own for message boxes. Without one Qt's are small pictures that are scaled up.
void provideSigns()
{
    if (!QIcon::hasThemeIcon(QStringLiteral("dialog-warning"))) {
        QIcon::setThemeName(QStringLiteral("console"));
    }
}

} // namespace

void prepareApplication()
{
    initResources();
    provideSigns();
    QApplication::setOrganizationName(QStringLiteral("Zelko"));
    QApplication::setApplicationName(QStringLiteral("zelko-console"));
    QApplication::setApplicationDisplayName(tr("Recorder Console"));
    QApplication::setApplicationVersion(QStringLiteral(ZELKO_VERSION));
    QApplication::setWindowIcon(QIcon(QStringLiteral(":/console/console.svg")));
}

// In the order in which the parts are made; they go the other way round.
struct RunningConsole::Private
{
    bool openSite(const QString& siteFile, QString* error);
    void connectSite(const ZelkoConfiguration& site);
    void openOwn(const ConsoleOptions& options);
    void listen(const QString& address, const std::optional<ZelkoCommon::TlsOptions>& tls = {});

    QSettings settings;
    QString userToAsk; // is named in the site file without his password
    std::unique_ptr<StoreFolder> store;
    std::unique_ptr<Orb> orb;
    std::unique_ptr<Session> session;
    QString problem; // with which nothing can be connected
    std::unique_ptr<ConsoleUser> user;
    std::unique_ptr<ConsoleWindow> window;
};

bool RunningConsole::Private::openSite(const QString& siteFile, QString* error)
{
    const auto site = ZelkoConfiguration::fromFile(siteFile, error);
    if (!site) {
        return false;
    }
    try {
        connectSite(*site);
    } catch (const ZelkoCommon::OrbError& unusable) {
        problem = QString::fromUtf8(unusable.what());
        session = std::make_unique<UnusableSite>(*site, problem);
    }
    return true;
}

void RunningConsole::Private::connectSite(const ZelkoConfiguration& site)
{
    listen(listenAddress(site), site.Tls());
    session = std::make_unique<ConsoleSession>(*orb, site);
    const auto* const current = site.Find(site.GetCurrentSubSystem());
    userToAsk = current && !current->hasCredentials() ? current->credentials.user : QString();
}

void RunningConsole::Private::openOwn(const ConsoleOptions& options)
{
    EmbeddedRecorderOptions recorder = options.recorderOptions(QApplication::applicationDirPath());
    if (options.storeFolder.isEmpty()) {
        store = std::make_unique<StoreFolder>(recorder.storeFolder);
        recorder.storeFolder = store->path();
    }
    listen(OrbOptions().listenAddress);
    session = std::make_unique<ConsoleSession>(*orb, recorder);
}

// Recorders call the console back with what changes.
void RunningConsole::Private::listen(const QString& address, const std::optional<ZelkoCommon::TlsOptions>& tls)
{
    OrbOptions options;
    options.listenAddress = address;
    options.tls = tls;
    orb = std::make_unique<Orb>(options);
}

std::unique_ptr<RunningConsole> RunningConsole::open(const ConsoleOptions& options, QString* error)
{
    std::unique_ptr<RunningConsole> console(new RunningConsole);
    Private& d = *console->d;
    try {
        if (options.siteFile.isEmpty()) {
            d.openOwn(options);
        } else if (!d.openSite(options.siteFile, error)) {
            return nullptr;
        }
    } catch (const ZelkoCommon::OrbError& problem) {
        *error = QString::fromUtf8(problem.what());
        return nullptr;
    }
    d.user = std::make_unique<ConsoleUser>(*d.session);
    d.window = std::make_unique<ConsoleWindow>(d.session.get(), d.user.get(), &d.settings);
    return console;
}

RunningConsole::RunningConsole()
    : d(std::make_unique<Private>())
{}

RunningConsole::~RunningConsole() = default;

// Whoever looks at the console is told in the window; whoever started it somewhere else, in the log.
void RunningConsole::show()
{
    d->window->show();
    if (!d->problem.isEmpty()) {
        qWarning("%s", qUtf8Printable(d->problem));
        d->window->messages()->show(
            tr("Nothing can be connected: %1.\n\nPut that right and start the console again.").arg(d->problem));
    }
    if (!d->userToAsk.isEmpty()) {
        QTimer::singleShot(0, d->window->userMenu(), [this] { d->window->userMenu()->logIn(d->userToAsk); });
    }
}

int RunningConsole::run()
{
    const ZelkoCommon::TerminationSignals signals;
    QObject::connect(&signals, &ZelkoCommon::TerminationSignals::received, qApp, &QCoreApplication::quit);
    show();
    return QApplication::exec();
}

Session& RunningConsole::session() const
{
    return *d->session;
}

ConsoleUser& RunningConsole::user() const
{
    return *d->user;
}

ConsoleWindow& RunningConsole::window() const
{
    return *d->window;
}

} // namespace ZelkoConsole
