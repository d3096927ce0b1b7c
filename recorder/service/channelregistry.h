#pragma once

#include <recorder/service/channel.h>

#include <QObject>

#include <map>
#include <memory>
#include <optional>

namespace ZelkoRecorder {

/// The channels that managers have registered. Lives on the recorder's thread.
class ChannelRegistry : public QObject
{
    Q_OBJECT

public:
    struct Options
    {
        int maxChannels = 64;
        Channel::Options channel;
        std::chrono::milliseconds farewell{2000}; ///< how long the managers may take to hear that the recorder ends
    };

    /// Why a channel was not registered.
    struct Refusal
    {
        enum class Reason { BadParameter, NameInUse, TooMany };
        Reason reason;
        QString text; ///< for people
    };

    /// The ID of a new channel, or why there is none.
    struct Entered
    {
        QString channelId;
        std::optional<Refusal> refusal;
    };

    /// Makes a channel reachable, or ends that. Called with its ID.
    using Publish = std::function<void(const QString& id)>;

    /// `devices` outlive the registry.
    ChannelRegistry(ChannelDevices& devices, const Options& options, Publish publish, Publish withdraw,
                    QObject* parent = nullptr);

    /// Tells the managers that the recorder ends, waits for them no longer than the farewell, and closes all
    /// recordings.
    ~ChannelRegistry() override;

    /// Names are 1 to 128 characters on one line, each used once at a time. The device that is preferred is there. A
    /// manager in this process is talked to at the loopback address, wherever others are. `id` is one that no other
    /// channel has; empty: one is made.
    Entered enter(const ChannelWish& wish, const Channel::Manager& manager, const QString& id = QString());

    /// Null for a channel that was removed, or never was.
    Channel* find(const QString& id) const;
    bool contains(const QString& id) const { return find(id); }

    /// Gives a channel another name. False, with the name as it was, if it cannot have it.
    bool rename(const QString& id, const QString& name);

    int count() const;

private:
    std::optional<Refusal> problemWith(const ChannelWish& wish) const;
    Channel::Options optionsFor(const ChannelWish& wish) const;
    static bool canBeName(const QString& name);
    bool isUsed(const QString& name) const;
    void sayGoodbye();

    ChannelDevices& m_devices;
    const Options m_options;
    const Publish m_publish;
    const Publish m_withdraw;
    std::map<QString, std::unique_ptr<Channel>> m_channels;
};

} // namespace ZelkoRecorder
