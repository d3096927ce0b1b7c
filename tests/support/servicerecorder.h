#pragma once

#include "callerthread.h"
#include "patience.h"
#include "recordervalues.h"
#include "storedrecord.h"

#include <recorder/served/servedrecorder.h>
#include <recorder/service/servedchanneldevices.h>
#include <recorder/service/servicehost.h>
#include <recorder/service/servicekeys.h>

#include <zelkobase/orb/corbatext.h>
#include <zelkobase/orb/orb.h>

#include <QTemporaryDir>
#include <qtestsupport_core.h>

#include <atomic>
#include <memory>

namespace ZelkoTest {

/// A recorder with the devices D1 and D2 and its service, and the way of a client to it: through a connection of TCP,
/// as that of another process. Calls are made by `onCallerThread`, for the recorder answers on this one.
struct ServiceRecorder
{
    using Role = ZelkoCommon::Role;

    /// Puts records into the folders of the devices before they are served.
    using Fill = std::function<void(const QString& folderOfD1)>;

    explicit ServiceRecorder(const Fill& fill = {}, const ZelkoRecorder::ServiceHost::Options& hostOptions = {},
                             const QStringList& exportFolders = {})
        : recorder(ZelkoRecorder::ExportFolders(exportFolders))
        , options(hostOptions)
    {
        if (fill) {
            fill(deviceFolder("D1"));
        }
        for (const char* const device : {"D1", "D2"}) {
            ZelkoRecorder::DevicePlan plan;
            plan.folder = deviceFolder(device);
            QString error;
            const bool added = recorder.addDevice({device, QStringLiteral("192.0.2.1"), "1.0"}, plan, &error);
            Q_ASSERT(added);
            Q_UNUSED(added)
        }
        channelDevices = std::make_unique<ZelkoRecorder::ServedChannelDevices>(recorder);
        serve();
    }

    /// As the constructor, but waits until all records are loaded. Null if that takes too long.
    static std::unique_ptr<ServiceRecorder> loaded(const Fill& fill = {},
                                                   const ZelkoRecorder::ServiceHost::Options& hostOptions = {},
                                                   const QStringList& exportFolders = {})
    {
        auto made = std::make_unique<ServiceRecorder>(fill, hostOptions, exportFolders);
        return QTest::qWaitFor([&] { return made->isLoaded(); }, patience) ? std::move(made) : nullptr;
    }

    ~ServiceRecorder()
    {
        host.reset();
        channelDevices.reset();
        recorder.close();
    }

    void serve()
    {
        const auto caller = [this] { return ZelkoRecorder::Caller{QStringLiteral("anna"), role}; };
        host = std::make_unique<ZelkoRecorder::ServiceHost>(orb, ZelkoRecorder::servedBy(recorder, *channelDevices),
                                                            ZelkoRecorder::CallRights(caller), options);
    }

    bool isLoaded() { return values("D1").isLoaded() && values("D2").isLoaded(); }
    RecorderValues values(const QString& device) { return RecorderValues(recorder.tree(), QString(), device); }
    QString deviceFolder(const QString& device) const { return folder.filePath(device); }

    /// By another name for the same host, which the ORB does not take for its own.
    template <typename Interface>
    typename Interface::_var_type remoteAs(const std::string& key) const
    {
        const CORBA::Object_var object =
            orb.reference(QStringLiteral("corbaloc::1.2@127.1:%1/%2").arg(orb.port()).arg(QString::fromStdString(key)));
        return Interface::_unchecked_narrow(object);
    }
    QD_ZLK::IF_ZLK_c_ZLK_var entry() const { return remoteAs<QD_ZLK::IF_ZLK_c_ZLK>(ZelkoRecorder::entryKey); }
    QD_ZLK::IF_ZELKO_Admin_var admin() const { return remoteAs<QD_ZLK::IF_ZELKO_Admin>(ZelkoRecorder::adminKey); }
    QD_ZLK::IF_ZELKO_Replay_var replay() const { return remoteAs<QD_ZLK::IF_ZELKO_Replay>(ZelkoRecorder::replayKey); }

    QTemporaryDir folder;
    ZelkoCommon::Orb orb{{}};
    ZelkoRecorder::ServedRecorder recorder;
    std::atomic<Role> role = Role::Administrator;
    const ZelkoRecorder::ServiceHost::Options options;
    std::unique_ptr<ZelkoRecorder::ServedChannelDevices> channelDevices;
    std::unique_ptr<ZelkoRecorder::ServiceHost> host;
};

} // namespace ZelkoTest
