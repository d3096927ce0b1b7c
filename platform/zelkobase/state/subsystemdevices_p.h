#pragma once

#include <observerbase/iobserver.h>
#include <valuecore/nodeptr.h>
#include <valuecore/valueptr.h>
#include <valuecore/valuetypes.h>

#include <QStringList>
#include <QTimer>

#include <functional>
#include <memory>
#include <vector>

namespace ZelkoCommon {

/// The devices of one sub system that is connected: follows the node that holds them.
class SubSystemDevices final : public IObserver
{
public:
    struct Device
    {
        Device(const QString& deviceName, IObserver* client)
            : name(deviceName)
            , node(client)
            , available(client)
        {}

        const QString name;
        NodeObservingPtr node;
        ValueObservingPtr<Value<bool>> available;
        bool isAllowed = false;
    };

    /// What one look at the tree found to be other than before.
    struct News
    {
        QStringList added;
        QStringList removed;
        bool isAllowedChanged = false; ///< of a device that was there before and still is
    };

    /// Reads the tree at once, without news. `changed` is called from the event loop, when there are news.
    SubSystemDevices(const QString& devicesPath, std::function<void(const News&)> changed);
    ~SubSystemDevices() override;

    /// In the order in which they came.
    const std::vector<std::unique_ptr<Device>>& devices() const { return m_devices; }

    void Update(Observable* source, TChangeCode code) override;

private:
    News readTree();
    bool look(Device& device) const;

    const QString m_path;
    const std::function<void(const News&)> m_changed;
    NodeObservingPtr m_node;
    std::vector<std::unique_ptr<Device>> m_devices;
    QTimer m_soon;
};

} // namespace ZelkoCommon
