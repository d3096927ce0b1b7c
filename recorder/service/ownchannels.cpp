#include <recorder/service/ownchannels.h>

#include <recorder/service/channelregistry.h>
#include <recorder/service/ownmanager.h>
#include <recorder/source/sourcefactory.h>
#include <recorder/store/recording.h>

#include <zelkobase/orb/orb.h>

#include <QPointer>
#include <QUuid>

#include <optional>

namespace ZelkoRecorder {

namespace {

// Of no meaning but that it stays as it is.
constexpr QUuid idSpace(0x6d0c2f5e, 0x8a41, 0x4b7d, 0x9e, 0x33, 0x1f, 0x27, 0xc4, 0x50, 0xaa, 0x16);

// Frames of a channel have the samples of one channel.
std::optional<ChannelWish> wishOf(const OwnChannels::Plan& plan, QString* error)
{
    const auto source = SourceFactory::create(plan.source, error);
    if (!source) {
        return std::nullopt;
    }
    if (source->description().format.channels != 1) {
        *error = QStringLiteral("it has %1 channels itself").arg(source->description().format.channels);
        return std::nullopt;
    }
    const auto record = recordOf(source->description(), 0);
    ChannelWish wish;
    wish.name = plan.name;
    wish.dataRate = record.GetDataRate();
    wish.format = record.GetDataFormat();
    wish.canRecord = true;
    wish.canReplay = true;
    wish.isOwn = true;
    return wish;
}

} // namespace

OwnChannels::OwnChannels(ZelkoCommon::Orb& orb, double speed)
    : m_orb(orb)
    , m_speed(speed)
{}

// A channel that could not say goodbye has left its flow running, which has nobody to tell any more.
OwnChannels::~OwnChannels()
{
    for (const Served& served : m_managers) {
        served.manager->goingDown();
        m_orb.rootPoa()->deactivate_object(served.id);
    }
}

bool OwnChannels::add(ChannelRegistry& registry, const Plan& plan, QString* error)
{
    const auto wish = wishOf(plan, error);
    if (!wish) {
        *error = QStringLiteral("channel \"%1\" cannot have the source \"%2\": %3").arg(plan.name, plan.source, *error);
        return false;
    }
    const QString id = idOf(plan.name);
    auto* const manager = new OwnManager(plan.name, plan.source, m_speed, faultOf(registry, id));
    const PortableServer::ServantBase_var guard(manager);
    m_managers.push_back({m_orb.rootPoa()->activate_object(manager), manager});
    const Channel::Manager reference = manager->_this();
    const auto entered = registry.enter(*wish, reference, id);
    if (entered.refusal) {
        *error = entered.refusal->text;
    }
    return !entered.refusal;
}

// The flow tells it on its own thread, and the registry may be gone when its turn comes.
SourceFlow::Failed OwnChannels::faultOf(ChannelRegistry& registry, const QString& channelId)
{
    return [this, channels = QPointer(&registry), channelId](const QString& why) {
        m_faults.post([channels, channelId, why] {
            if (Channel* const channel = channels ? channels->find(channelId) : nullptr) {
                channel->fault(why);
            }
        });
    };
}

QString OwnChannels::idOf(const QString& name)
{
    return QUuid::createUuidV5(idSpace, name).toString(QUuid::WithoutBraces);
}

} // namespace ZelkoRecorder
