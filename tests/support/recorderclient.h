#pragma once

#include <recordervalues.h>
#include <shownchannel.h>
#include <testusers.h>

#include <valuecore/node.h>
#include <zelkobase/connection/ivtclient.h>
#include <zelkobase/connection/treelink.h>
#include <zelkobase/maps/itemmaptypes.h>
#include <zelkobase/orb/orb.h>

namespace ZelkoTest {

/// A client of a recorder, with a tree of its own, that acts for one of TestUsers. The process has one ORB, which
/// outlives it.
class RecorderClient
{
public:
    RecorderClient(ZelkoCommon::Orb& orb, quint16 port, ZelkoCommon::Role role = ZelkoCommon::Role::Operator)
        : RecorderClient(orb, port, TestUsers::credentials(role))
    {}
    RecorderClient(ZelkoCommon::Orb& orb, quint16 port, const ZelkoCommon::LinkCredentials& credentials)
        : m_link(orb, &m_tree, {subSystem(), QStringLiteral("127.0.0.1"), port}, options(credentials))
    {}

    bool isConnected() const { return m_link.isConnected(); }
    ZelkoCommon::TreeLink& link() { return m_link; }

    RecorderValues values(const QString& device = QStringLiteral("Recorder1"))
    {
        return {m_tree, ZelkoCommon::ZelkoConfiguration::MakeRootPath(subSystem()), device};
    }

    /// The channel of that ID.
    ShownChannel channel(const QString& id)
    {
        return {m_tree, ZelkoCommon::ZelkoConfiguration::MakeRootPath(subSystem()), id};
    }

    /// The IDs of the channels that the recorder shows.
    QStringList channelIds()
    {
        const auto* const channels = dynamic_cast<const Node*>(m_tree.GetItem(
            ZelkoCommon::ZelkoConfiguration::MakeRootPath(subSystem()) + QStringLiteral("/ZELKO/Channel")));
        QStringList ids;
        if (channels) {
            for (const auto& item : channels->GetTreeItems()) {
                ids.append(item->GetName());
            }
        }
        return ids;
    }

    /// Sets a value here, from where it travels to the recorder.
    template <typename T, typename Content>
    void write(T* value, const Content& content)
    {
        m_link.client()->AddValue(value, 0);
        value->SetValue(content, nullptr);
    }
    void select(ValueSelection* value, int key)
    {
        m_link.client()->AddValue(value, 0);
        value->SetCurrentKey(key, nullptr);
    }

private:
    static QString subSystem() { return QStringLiteral("test"); }
    static ZelkoCommon::LinkOptions options(const ZelkoCommon::LinkCredentials& credentials)
    {
        zelko::registerItemMapTypes();
        ZelkoCommon::LinkOptions options;
        options.credentials = credentials;
        options.firstRetry = options.lastRetry = std::chrono::milliseconds(50);
        return options;
    }

    Tree m_tree;
    ZelkoCommon::TreeLink m_link;
};

} // namespace ZelkoTest
