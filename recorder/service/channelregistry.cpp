#include <recorder/service/channelregistry.h>

#include <recorder/service/channeldevices.h>
#include <recorder/source/cleantext.h>
#include <recorder/store/recorderlog.h>

#include <zelkobase/orb/hostaddress.h>

#include <QUuid>

#include <algorithm>
#include <semaphore>

namespace ZelkoRecorder {

namespace {

constexpr qsizetype longestName = 128;

} // namespace

ChannelRegistry::ChannelRegistry(ChannelDevices& devices, const Options& options, Publish publish, Publish withdraw,
                                 QObject* parent)
    : QObject(parent)
    , m_devices(devices)
    , m_options(options)
    , m_publish(std::move(publish))
    , m_withdraw(std::move(withdraw))
{}

ChannelRegistry::~ChannelRegistry()
{
    for (const auto& [id, channel] : m_channels) {
        m_withdraw(id);
    }
    sayGoodbye();
    m_channels.clear();
}

ChannelRegistry::Entered ChannelRegistry::enter(const ChannelWish& wish, const Channel::Manager& manager,
                                                const QString& id)
{
    if (auto problem = problemWith(wish)) {
        return {QString(), std::move(problem)};
    }
    const QString newId = id.isEmpty() ? QUuid::createUuid().toString(QUuid::WithoutBraces) : id;
    auto channel = std::make_unique<Channel>(newId, wish, manager, m_devices, optionsFor(wish));
    connect(channel.get(), &Channel::gone, this, [this](const QString& goneId) {
        const auto found = m_channels.find(goneId);
        qCInfo(recorderLog).noquote() << "channel" << goneId << "is gone";
        m_withdraw(goneId);
        found->second.release()->deleteLater();
        m_channels.erase(found);
    });
    m_channels.emplace(newId, std::move(channel));
    m_publish(newId);
    qCInfo(recorderLog).noquote() << "channel" << newId << "registered as" << wish.name;
    return {newId, std::nullopt};
}

Channel::Options ChannelRegistry::optionsFor(const ChannelWish& wish) const
{
    Channel::Options options = m_options.channel;
    if (wish.peer.empty()) {
        options.listenAddress = options.toldAddress = QLatin1String(ZelkoCommon::loopbackAddress);
    }
    return options;
}

Channel* ChannelRegistry::find(const QString& id) const
{
    const auto found = m_channels.find(id);
    return found != m_channels.end() && found->second->state() != ChannelMachine::State::Removed ? found->second.get()
                                                                                                 : nullptr;
}

int ChannelRegistry::count() const
{
    return static_cast<int>(m_channels.size());
}

std::optional<ChannelRegistry::Refusal> ChannelRegistry::problemWith(const ChannelWish& wish) const
{
    using Reason = Refusal::Reason;
    if (!canBeName(wish.name)) {
        return Refusal{Reason::BadParameter, QStringLiteral("a channel has a name of 1 to 128 characters on one line")};
    }
    if (!wish.preferredDevice.isEmpty() && !m_devices.devices().contains(wish.preferredDevice)) {
        return Refusal{Reason::BadParameter, QStringLiteral("there is no device of the name that is preferred")};
    }
    if (isUsed(wish.name)) {
        return Refusal{Reason::NameInUse, QStringLiteral("a channel \"%1\" is registered already").arg(wish.name)};
    }
    if (count() >= m_options.maxChannels) {
        return Refusal{Reason::TooMany, QStringLiteral("there are as many channels as the recorder takes")};
    }
    return std::nullopt;
}

bool ChannelRegistry::rename(const QString& id, const QString& name)
{
    Channel* const channel = find(id);
    const bool done = channel && canBeName(name) && (!isUsed(name) || channel->settings().name == name);
    if (done) {
        channel->setName(name);
    } else {
        qCWarning(recorderLog).noquote() << "channel" << id << "keeps its name: it cannot be"
                                         << cleanText(name, longestName);
    }
    return done;
}

bool ChannelRegistry::canBeName(const QString& name)
{
    return !name.isEmpty() && name == cleanText(name, longestName);
}

bool ChannelRegistry::isUsed(const QString& name) const
{
    return std::any_of(m_channels.begin(), m_channels.end(),
                       [&](const auto& entry) { return find(entry.first) && entry.second->settings().name == name; });
}

// All hear of it at the same time, each on its own thread.
void ChannelRegistry::sayGoodbye()
{
    const auto told = std::make_shared<std::counting_semaphore<>>(0);
    for (const auto& [id, channel] : m_channels) {
        channel->tellGoingDown([told] { told->release(); });
    }
    const auto end = std::chrono::steady_clock::now() + m_options.farewell;
    for (std::size_t left = m_channels.size(); left > 0 && told->try_acquire_until(end); --left) {
    }
}

} // namespace ZelkoRecorder
