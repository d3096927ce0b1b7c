#pragma once

#include <recorder/served/mailbox.h>
#include <recorder/service/sourceflow.h>

#include <zelkoidl/recorderservice.hh>

#include <QString>

#include <vector>

namespace ZelkoCommon {
class Orb;
}

namespace ZelkoRecorder {

class ChannelRegistry;
class OwnManager;

/// The channels that a recorder has of its own, beside those that managers register: each has a source in place of a
/// receiver. A source that fails, or whose data nobody takes, is a fault of its channel. Lives on the recorder's
/// thread.
class OwnChannels
{
public:
    struct Plan
    {
        QString name;   ///< that no other channel has
        QString source; ///< as SourceFactory takes it

        bool operator==(const Plan&) const = default;
    };

    /// `speed`: seconds of the sources' signals that go by in a second; 0: as fast as they are taken. `orb` outlives
    /// the channels.
    OwnChannels(ZelkoCommon::Orb& orb, double speed);

    /// To go after all registries that they were added to.
    ~OwnChannels();

    OwnChannels(const OwnChannels&) = delete;
    OwnChannels& operator=(const OwnChannels&) = delete;

    /// Registers a channel, which can record and replay. False, and a text for people in `error`, for a source that
    /// cannot be used, or has several channels itself, and for what the registry refuses.
    bool add(ChannelRegistry& registry, const Plan& plan, QString* error);

    /// The ID of the own channel of a name, which is the same after each start.
    static QString idOf(const QString& name);

private:
    struct Served
    {
        PortableServer::ObjectId_var id;
        OwnManager* manager; // lives as long as the ID is active
    };

    SourceFlow::Failed faultOf(ChannelRegistry& registry, const QString& channelId);

    ZelkoCommon::Orb& m_orb;
    const double m_speed;
    Mailbox m_faults; // of the flows
    std::vector<Served> m_managers;
};

} // namespace ZelkoRecorder
