#pragma once

#include <console/soon.h>
#include <console/treeobserver.h>

#include <valuecore/nodeptr.h>
#include <valuecore/valueptr.h>
#include <valuecore/valuetypes.h>

#include <QObject>
#include <QString>

#include <memory>
#include <vector>

namespace ZelkoConsole {

/// The channels that the recorder of a sub system serves, as they stand on the client's tree. Changes are looked at
/// once per turn of the event loop. GUI thread.
class ServedChannels : public QObject
{
    Q_OBJECT

public:
    struct Channel
    {
        QString id;
        QString name; ///< for people; the ID where the recorder names none

        bool operator==(const Channel&) const = default;
    };
    using Channels = std::vector<Channel>;

    /// What stands there already is seen at once.
    explicit ServedChannels(const QString& subSystem, QObject* parent = nullptr);
    ~ServedChannels() override;

    /// In the order in which they came.
    const Channels& channels() const { return m_channels; }

    /// Null for an ID that is not served.
    const Channel* find(const QString& id) const;

    /// Looks for the branch itself from the next turn of the event loop on: after a connection came, when nothing of it
    /// was there before.
    void lookSoon();

Q_SIGNALS:
    /// A channel came, went, or got another name; or values of one came or went.
    void changed();

private:
    struct Watched
    {
        explicit Watched(IObserver* observer)
            : node(observer)
            , name(observer)
        {}

        NodeObservingPtr node;
        ValueObservingPtr<Value<QString>> name;
    };

    void look();
    void watch(const QString& id);

    const QString m_root;
    Soon m_soon;
    TreeObserver m_observer;
    NodeObservingPtr m_recorder; // the node that gets that of the channels with the first of them
    NodeObservingPtr m_node;
    std::vector<std::unique_ptr<Watched>> m_watched;
    Channels m_channels;
};

} // namespace ZelkoConsole
