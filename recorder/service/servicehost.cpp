#include <recorder/service/servicehost.h>

#include <recorder/served/servedrecorder.h>
#include <recorder/service/adminservant.h>
#include <recorder/service/channelservant.h>
#include <recorder/service/replayservant.h>
#include <recorder/service/servicekeys.h>

#include <zelkobase/orb/orb.h>

#include <QCoreApplication>

namespace ZelkoRecorder {

ServiceHost::ServiceHost(ZelkoCommon::Orb& orb, const Recorder& recorder, const CallRights& rights,
                         const Options& options)
    : m_orb(orb)
    , m_rights(rights.within(m_gate))
    , m_directory(recorder.tree, recorder.devices)
    , m_errands(std::make_shared<Errands>([this] { m_wakeUp.call(); }, options.patience))
    , m_wakeUp([this] { m_errands->run(); })
    , m_overviews(std::make_shared<OverviewDesk>(options.overviews))
    , m_endServices([devices = recorder.devices, services = recorder.services] {
        for (const QString& device : devices) {
            services(device)->beginEnding();
        }
    })
    , m_tree(recorder.tree)
    , m_channels(
          recorder.channelDevices, options.channels, [this](const QString& id) { publishChannel(id); },
          [this](const QString& id) { withdrawChannel(id); })
{
    QObject::connect(&m_tellRefusals, &QTimer::timeout, &m_tellRefusals, [this] { m_rights.tellRest(); });
    m_tellRefusals.start(options.refusalsTold);
    const DeviceCalls calls(m_gate, m_rights, recorder.services);
    publish(adminKey, new AdminServant(calls, m_overviews, options.copies, options.largestAnswer));
    publish(replayKey, new ReplayServant(calls));
    const auto reference = [&orb](const std::string& key) { return orb.published(key.c_str()); };
    publish(entryKey, new ZlkServant(m_errands, m_gate, m_rights,
                                     {m_directory, m_channels, reference, recorder.beginExport, recorder.cancelExport},
                                     {options.largestList, options.recordsAtOnce, options.lists}));
}

ServiceHost::~ServiceHost()
{
    for (const char* const key : {entryKey, adminKey, replayKey}) {
        withdraw(key);
    }
    m_gate->close([] { QCoreApplication::processEvents(); },
                  [this] {
                      m_errands->close();
                      m_endServices();
                  });
    m_overviews->close();
    m_errands->close();
}

// The object adapter keeps the servant from here on.
void ServiceHost::publish(const std::string& key, PortableServer::ServantBase* servant)
{
    const PortableServer::ServantBase_var guard(servant);
    m_orb.publish(key.c_str(), servant);
}

void ServiceHost::publishChannel(const QString& id)
{
    publish(channelKey(id.toStdString()), new ChannelServant(id, m_errands, m_rights, m_channels));
    m_panels.emplace(id, std::make_unique<ChannelPanel>(m_tree, *m_channels.find(id)));
}

void ServiceHost::withdrawChannel(const QString& id)
{
    m_panels.erase(id);
    withdraw(channelKey(id.toStdString()));
}

void ServiceHost::withdraw(const std::string& key)
{
    try {
        m_orb.withdraw(key.c_str());
    } catch (const CORBA::Exception&) { // the ORB went first
    }
}

ServiceHost::Recorder servedBy(ServedRecorder& recorder, ChannelDevices& channelDevices)
{
    return {recorder.tree(),
            recorder.deviceIds(),
            channelDevices,
            [&recorder](const QString& device, const QString& record, const QString& target, StoreStatus* status) {
                return recorder.exportRecord(device, record, target, status);
            },
            [&recorder](const QString& exportId, bool removeTarget) {
                return recorder.exports().cancel(exportId, removeTarget ? RecordExport::Partial::Removed
                                                                        : RecordExport::Partial::Kept);
            },
            [&recorder](const QString& device) { return recorder.service(device); }};
}

} // namespace ZelkoRecorder
