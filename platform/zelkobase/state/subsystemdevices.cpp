#include "subsystemdevices_p.h"

#include <valuecore/node.h>
#include <zelkobase/names/valuenames.h>
#include <zelkobase/state/offereddevice.h>

#include <unordered_map>
#include <utility>

namespace ZelkoCommon {

SubSystemDevices::SubSystemDevices(const QString& devicesPath, std::function<void(const News&)> changed)
    : m_path(devicesPath)
    , m_changed(std::move(changed))
    , m_node(this)
{
    m_soon.setSingleShot(true);
    m_soon.setInterval(0);
    QObject::connect(&m_soon, &QTimer::timeout, &m_soon, [this] {
        const auto tell = m_changed; // who hears of the news may end this object
        const News news = readTree();
        if (!news.added.isEmpty() || !news.removed.isEmpty() || news.isAllowedChanged) {
            tell(news);
        }
    });
    m_node.CreateOrGetNode(m_path);
    readTree();
}

SubSystemDevices::~SubSystemDevices() = default;

// The tree may be in the middle of a change, and a burst of changes makes one look at it.
void SubSystemDevices::Update(Observable*, TChangeCode)
{
    m_soon.start();
}

SubSystemDevices::News SubSystemDevices::readTree()
{
    std::unordered_map<QString, std::unique_ptr<Device>> before;
    for (auto& device : std::exchange(m_devices, {})) {
        const QString name = device->name;
        before.emplace(name, std::move(device));
    }
    News news;
    m_node.GetFromTree(m_path);
    for (TreeItem* const item : m_node ? m_node->GetTreeItems() : std::vector<TreeItem*>()) {
        if (!item->GetNode(QString())) {
            continue;
        }
        auto known = before.extract(item->GetName());
        m_devices.push_back(known ? std::move(known.mapped()) : std::make_unique<Device>(item->GetName(), this));
        const bool isOther = look(*m_devices.back());
        if (!known) {
            news.added.append(item->GetName());
        } else {
            news.isAllowedChanged |= isOther;
        }
    }
    for (const auto& [name, device] : before) {
        news.removed.append(name);
    }
    news.removed.sort(); // a map has no order of its own
    return news;
}

// Whether its being allowed is other than before. A value that stands there is looked up again without effect.
bool SubSystemDevices::look(Device& device) const
{
    const QString path = m_path + QLatin1Char('/') + device.name;
    device.node.GetFromTree(path);
    device.available.GetFromTree(zelko::names::availablePath(path));
    const bool isAllowed = device.available && device.available->GetValue() && isOfferedDevice(path);
    return std::exchange(device.isAllowed, isAllowed) != isAllowed;
}

} // namespace ZelkoCommon
