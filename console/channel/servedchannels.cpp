#include <console/channel/servedchannels.h>

#include <console/treepaths.h>

#include <valuecore/node.h>

#include <algorithm>

namespace ZelkoConsole {

namespace names = zelko::names;

ServedChannels::ServedChannels(const QString& subSystem, QObject* parent)
    : QObject(parent)
    , m_root(ZelkoCommon::ZelkoConfiguration::MakeRootPath(subSystem))
    , m_soon([this] {
        look();
        Q_EMIT changed();
    })
    , m_observer([this](TChangeCode) { m_soon.ask(); })
    , m_recorder(&m_observer)
    , m_node(&m_observer)
{
    look();
}

ServedChannels::~ServedChannels() = default;

const ServedChannels::Channel* ServedChannels::find(const QString& id) const
{
    const auto found =
        std::find_if(m_channels.begin(), m_channels.end(), [&](const Channel& channel) { return channel.id == id; });
    return found == m_channels.end() ? nullptr : &*found;
}

void ServedChannels::lookSoon()
{
    m_soon.ask();
}

void ServedChannels::look()
{
    m_channels.clear();
    m_watched.clear();
    m_recorder.GetFromTree(m_root + names::zelko);
    if (!m_node.GetFromTree(m_root + names::zelkoChannel)) {
        return;
    }
    for (TreeItem* const item : m_node->GetTreeItems()) {
        if (item->GetNode(QString())) {
            watch(item->GetName());
        }
    }
}

void ServedChannels::watch(const QString& id)
{
    const QString path = names::channelBasePath(m_root) + id;
    const auto& watched = m_watched.emplace_back(std::make_unique<Watched>(&m_observer));
    watched->node.GetFromTree(path);
    const bool isNamed = watched->name.GetFromTree(names::join(path, names::channelName));
    const QString name = isNamed ? watched->name->GetValue() : QString();
    m_channels.push_back({id, name.isEmpty() ? id : name});
}

} // namespace ZelkoConsole
