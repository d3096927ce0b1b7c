#pragma once

#include <recorder/service/callrights.h>
#include <recorder/service/channelpanel.h>
#include <recorder/service/channelregistry.h>
#include <recorder/service/devicecalls.h>
#include <recorder/service/devicedirectory.h>
#include <recorder/service/errands.h>
#include <recorder/service/overviewdesk.h>
#include <recorder/service/zlkservant.h>
#include <recorder/users/turnstile.h>

#include <zelkobase/connection/wakeup.h>

#include <QTimer>

#include <map>
#include <memory>

class Tree;

namespace ZelkoRecorder {
class ServedRecorder;
}

namespace ZelkoCommon {
class Orb;
}

namespace ZelkoRecorder {

/// The recorder's service with all its objects: makes them reachable, and ends that. Lives on the recorder's thread.
class ServiceHost
{
public:
    struct Options
    {
        /// For how long a call may wait for the recorder's thread; less than a client waits for its answer.
        std::chrono::milliseconds patience{4000};

        /// Bytes of an answer; leaves room for its head in what the ORB sends.
        std::size_t largestAnswer = 4 * 1024 * 1024 - 4096;

        /// The same of a list of all records: of 100,000 records with a dozen index entries each.
        std::size_t largestList = 64 * 1024 * 1024 - 4096;

        /// Lists of all records that are being made and sent, each of which takes about four times its bytes of memory.
        /// Others wait for a moment.
        Turnstile::Options lists{
            .atOnce = 2, .atOncePerHost = 1, .waitingPerHost = 16, .patience = std::chrono::seconds(4)};

        /// How many records the recorder's thread gives before it turns to something else.
        std::size_t recordsAtOnce = 8192;

        /// Copies of records under way, each of which has a thread of the ORB for as long as the disk takes. Nobody
        /// waits: who comes when there is no place is told so.
        Turnstile::Options copies{.atOnce = 4, .atOncePerHost = 2, .waitingPerHost = 0};

        /// How often the log is asked to tell of refusals that it has only counted.
        std::chrono::milliseconds refusalsTold{10'000};

        ChannelRegistry::Options channels;
        OverviewDesk::Options overviews;
    };

    /// What it serves. All of it outlives the host.
    struct Recorder
    {
        Tree& tree;
        QStringList devices; ///< that have their branches on the tree
        ChannelDevices& channelDevices;
        decltype(ZlkServant::Sources::beginExport) beginExport;
        decltype(ZlkServant::Sources::cancelExport) cancelExport;
        DeviceCalls::Devices services; ///< what may be asked of each device; any thread
    };

    /// Begins to serve. `orb` outlives the host. `rights` is asked on threads of the ORB until the host goes.
    ServiceHost(ZelkoCommon::Orb& orb, const Recorder& recorder, const CallRights& rights, const Options& options);

    /// From here on every call is refused; those that wait are told so, channel managers hear that the recorder ends,
    /// and what they feed is closed.
    ~ServiceHost();

    ServiceHost(const ServiceHost&) = delete;
    ServiceHost& operator=(const ServiceHost&) = delete;

    ChannelRegistry& channels() { return m_channels; }

private:
    void publish(const std::string& key, PortableServer::ServantBase* servant);
    void publishChannel(const QString& id);
    void withdrawChannel(const QString& id);
    void withdraw(const std::string& key);

    ZelkoCommon::Orb& m_orb;
    const std::shared_ptr<CallGate> m_gate = std::make_shared<CallGate>();
    const CallRights m_rights;
    const DeviceDirectory m_directory;
    const std::shared_ptr<Errands> m_errands;
    ZelkoCommon::WakeUp m_wakeUp;
    const std::shared_ptr<OverviewDesk> m_overviews;
    const std::function<void()> m_endServices;
    Tree& m_tree;
    std::map<QString, std::unique_ptr<ChannelPanel>> m_panels; // by ID of the channel
    ChannelRegistry m_channels;
    QTimer m_tellRefusals;
};

/// What there is to be served of a recorder that has all its devices.
ServiceHost::Recorder servedBy(ServedRecorder& recorder, ChannelDevices& channelDevices);

} // namespace ZelkoRecorder
