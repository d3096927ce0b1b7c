#include <recorder/service/ownchannels.h>

#include <recorder/service/channelregistry.h>
#include <recorder/service/ownmanager.h>
#include <recorder/source/sourcefactory.h>
#include <recorder/store/recording.h>

#include <zelkobase/orb/orb.h>

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

OwnChannels::~OwnChannels()
{
    for (const PortableServer::ObjectId_var& manager : m_managers) {
        m_orb.rootPoa()->deactivate_object(manager);
    }
}

bool OwnChannels::add(ChannelRegistry& registry, const Plan& plan, QString* error)
{
    const auto wish = wishOf(plan, error);
    if (!wish) {
        *error = QStringLiteral("channel \"%1\" cannot have the source \"%2\": %3").arg(plan.name, plan.source, *error);
        return false;
    }
    auto* const manager = new OwnManager(plan.name, plan.source, m_speed);
    const PortableServer::ServantBase_var guard(manager);
    m_managers.emplace_back(m_orb.rootPoa()->activate_object(manager));
    const Channel::Manager reference = manager->_this();
    const auto entered = registry.enter(*wish, reference, idOf(plan.name));
    if (entered.refusal) {
        *error = entered.refusal->text;
    }
    return !entered.refusal;
}

QString OwnChannels::idOf(const QString& name)
{
    return QUuid::createUuidV5(idSpace, name).toString(QUuid::WithoutBraces);
}

} // namespace ZelkoRecorder
