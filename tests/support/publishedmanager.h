#pragma once

#include "channelmanager.h"

#include <zelkobase/orb/orb.h>

namespace ZelkoTest {

/// A channel manager that is reached through a connection, as that of another process.
class PublishedManager
{
public:
    using Interface = QD_ZLK::IF_ZLK_c_ChanMan;

    /// `orb` outlives every use of it but the destructor. Two of them at one ORB have different keys.
    explicit PublishedManager(ZelkoCommon::Orb& orb, const std::string& key = "Manager")
        : m_orb(orb)
        , m_key(key)
    {
        orb.publish(m_key.c_str(), m_manager);
    }

    ChannelManager& manager() const { return *m_manager; }

    /// At another port: through whatever relays from there.
    Interface::_var_type reference(quint16 port = 0) const
    {
        const QString place = QStringLiteral("corbaloc::1.2@127.1:%1/%2"); // which the ORB does not take for its own
        const CORBA::Object_var object =
            m_orb.reference(place.arg(port == 0 ? m_orb.port() : port).arg(QString::fromStdString(m_key)));
        return Interface::_unchecked_narrow(object);
    }

    /// From here on there is no such object.
    void vanish() { m_orb.withdraw(m_key.c_str()); }

private:
    ZelkoCommon::Orb& m_orb;
    const std::string m_key;
    ChannelManager* const m_manager = new ChannelManager;
    const PortableServer::ServantBase_var m_guard = m_manager;
};

} // namespace ZelkoTest
