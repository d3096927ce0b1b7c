#include <process/terminationsignals.h>
#include <recorder/process/newuser.h>
#include <recorder/process/parentwatch.h>
#include <recorder/process/reachableaddress.h>
#include <recorder/process/recorderoptions.h>
#include <recorder/process/stderrlog.h>
#include <recorder/served/refusallog.h>
#include <recorder/served/servedrecorder.h>
#include <recorder/served/sessioncallers.h>
#include <recorder/served/writepolicy.h>
#include <recorder/service/ownchannels.h>
#include <recorder/service/servedchanneldevices.h>
#include <recorder/service/servicehost.h>
#include <recorder/store/recorderlog.h>
#include <recorder/store/storelock.h>

#include <zelkobase/orb/orb.h>

#include <QCoreApplication>
#include <QDir>
#include <QTimer>

#include <algorithm>
#include <cstdio>
#include <optional>
#include <utility>

using namespace ZelkoRecorder;

namespace {

constexpr int cannotServe = 1;

int end(const RecorderOptions::Ending& ending)
{
    std::fprintf(ending.exitCode == 0 ? stdout : stderr, "%s\n", qPrintable(ending.text));
    return ending.exitCode;
}

bool addDevices(ServedRecorder& recorder, const RecorderOptions& options, QString* error)
{
    for (const QString& id : options.devices) {
        const DeviceIdentity identity{id, reachableAddress(options.listenAddress),
                                      QCoreApplication::applicationVersion()};
        DevicePlan plan;
        plan.folder = QDir(options.store).filePath(id);
        plan.sources = options.sources.value(id);
        plan.repeat = options.repeat;
        plan.pace = options.pace;
        plan.preparedRecords = options.preparedRecords;
        plan.churn = options.churn;
        if (!recorder.addDevice(identity, plan, error)) {
            return false;
        }
    }
    return true;
}

// `refusals` outlives the server.
void logSessions(TreeLinkServer& server, RefusalLog& refusals)
{
    QObject::connect(&server, &TreeLinkServer::sessionOpened, &server,
                     [](const QString& user) { qCInfo(recorderLog) << "client of user" << user << "connected"; });
    QObject::connect(&server, &TreeLinkServer::sessionClosed, &server, [](const QString& user, const QString& reason) {
        qCInfo(recorderLog) << "client of user" << user << "gone:" << qUtf8Printable(reason);
    });
    QObject::connect(&server, &TreeLinkServer::writeRefused, &server,
                     [&refusals](const QString&, const QString& reason) { refusals.tell(reason); });
    auto* const timer = new QTimer(&server);
    QObject::connect(timer, &QTimer::timeout, &server, [&refusals] { refusals.tellRest(); });
    timer->start(RefusalLog::Options().period);
}

ZelkoCommon::OrbOptions orbOptions(const RecorderOptions& options)
{
    ZelkoCommon::OrbOptions result;
    result.listenAddress = options.listenAddress;
    result.port = options.port;
    result.tls = options.tls;
    return result;
}

// Nothing for a file that cannot be used; an empty name stands for no users, which is no failure.
bool loadUsers(const QString& path, std::optional<UserFile>* users, QString* error)
{
    if (path.isEmpty()) {
        return true;
    }
    QStringList warnings;
    *users = UserFile::load(path, error, &warnings);
    for (const QString& warning : warnings) {
        qCWarning(recorderLog).noquote() << warning;
    }
    return users->has_value();
}

// What is recorded of channels comes in where the service is.
std::unique_ptr<ServiceHost> serveCalls(ZelkoCommon::Orb& orb, ServedRecorder& recorder, ChannelDevices& channelDevices,
                                        const TreeLinkServer& server, const RecorderOptions& options)
{
    ServiceHost::Options serviceOptions;
    serviceOptions.channels.channel.listenAddress = options.listenAddress;
    serviceOptions.channels.channel.toldAddress = reachableAddress(options.listenAddress);
    serviceOptions.channels.channel.dataPatience = options.dataPatience;
    return std::make_unique<ServiceHost>(orb, servedBy(recorder, channelDevices), CallRights(callersBySession(server)),
                                         serviceOptions);
}

bool addChannels(OwnChannels& channels, ServiceHost& service, const RecorderOptions& options, QString* error)
{
    return std::all_of(options.channels.cbegin(), options.channels.cend(),
                       [&](const OwnChannels::Plan& plan) { return channels.add(service.channels(), plan, error); });
}

// Nothing is recorded before store and port are known to be ours, and the devices are on the tree before anybody can
// ask for it.
int serve(const RecorderOptions& options)
{
    QString error;
    std::optional<UserFile> users;
    StoreLock lock;
    if (!loadUsers(options.usersFile, &users, &error) || !lock.acquire(options.store, &error)) {
        return end({error, cannotServe});
    }
    Authenticator authenticator(std::move(users)); // calls that ask it end with the ORB
    ZelkoCommon::Orb orb(orbOptions(options));
    ServedRecorder recorder{ExportFolders(options.exportFolders)};
    if (!addDevices(recorder, options, &error)) {
        return end({error, cannotServe});
    }
    RefusalLog refusals({});
    TreeLinkServer server(orb, recorder.tree(), {}, writePolicy(), admission(authenticator));
    logSessions(server, refusals);
    auto channelDevices = std::make_unique<ServedChannelDevices>(recorder);
    OwnChannels channels(orb, options.pace.speed);
    auto service = serveCalls(orb, recorder, *channelDevices, server, options);
    if (!addChannels(channels, *service, options, &error)) {
        return end({error, cannotServe});
    }
    qCInfo(recorderLog).noquote() << "serving sub system" << options.subSystem << "at" << options.listenAddress
                                  << "port" << orb.port() << (orb.usesTls() ? "through TLS" : "without TLS");
    std::printf("READY port=%d\n", int{orb.port()});
    std::fflush(stdout);
    const int result = QCoreApplication::exec();
    service.reset();
    channelDevices.reset();
    recorder.close();
    return result;
}

} // namespace

int main(int argc, char** argv)
{
    logToStderr();
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("zelko-recorder"));
    QCoreApplication::setApplicationVersion(QStringLiteral(ZELKO_VERSION));

    RecorderOptions::Ending ending;
    const auto options = RecorderOptions::parse(QCoreApplication::arguments(), &ending);
    if (!options) {
        return end(ending);
    }
    if (options->newUser) {
        return end(makeUser(*options->newUser));
    }
    const ZelkoCommon::TerminationSignals signals;
    QObject::connect(&signals, &ZelkoCommon::TerminationSignals::received, &application, &QCoreApplication::quit);
    if (options->exitWithParent && !endWithParent()) {
        return 0;
    }
    try {
        return serve(*options);
    } catch (const ZelkoCommon::OrbError& error) {
        return end({QString::fromUtf8(error.what()), cannotServe});
    }
}
