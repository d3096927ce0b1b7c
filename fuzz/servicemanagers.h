#pragma once

#include "cdrbytes.h"
#include "channelmanager.h"

#include <zelkobase/orb/orb.h>

#include <QHostAddress>
#include <QTcpServer>

#include <map>
#include <string>

/// The channel managers that clients may name to a recorder, by a byte: those that answer, each in its own way, and all
/// the others. None is outside of this process, whatever the byte.
class ServiceManagers
{
public:
    explicit ServiceManagers(ZelkoCommon::Orb& orb)
        : m_orb(orb)
    {
        m_silent.listen(QHostAddress::LocalHost);
        QTcpServer dead;
        dead.listen(QHostAddress::LocalHost);
        m_deadPort = dead.serverPort();
    }

    /// The reference as an argument, with which others begin at a multiple of 4.
    QByteArray reference(std::uint8_t manager)
    {
        switch (manager % 8U) {
        case 0:
            return marshalled(CORBA::Object::_nil());
        case 1:
            return at(m_deadPort, "manager");
        case 2:
            return at(m_silent.serverPort(), "manager"); // takes connections and says nothing
        case 3:
            return at(m_orb.port(), "nobody");
        case 4:
            return foreign();
        case 5:
            return at(m_orb.port(), "manager").left(manager); // ends too soon
        default:
            return at(m_orb.port(), publish(manager / 8U).c_str());
        }
    }

    /// Takes away those that answer. Nobody may call them any more.
    void clear()
    {
        for (const auto& [answers, key] : m_published) {
            m_orb.withdraw(key.c_str());
        }
        m_published.clear();
    }

private:
    // Each bit is one of its answers.
    const std::string& publish(unsigned answers)
    {
        const auto [found, isNew] = m_published.try_emplace(answers, "manager" + std::to_string(answers));
        if (isNew) {
            auto* const manager = new ZelkoTest::ChannelManager;
            const PortableServer::ServantBase_var guard(manager);
            manager->answers.available = (answers & 1U) == 0;
            manager->answers.connects = (answers & 2U) == 0;
            manager->answers.starts = (answers & 4U) == 0;
            manager->answers.namesEndpoint = (answers & 8U) == 0;
            manager->answers.kind = (answers & 16U) == 0 ? QD_ZLK::ENDPOINT_UDP : QD_ZLK::ENDPOINT_TCP;
            m_orb.publish(found->second.c_str(), manager);
        }
        return found->second;
    }

    QByteArray at(quint16 port, const char* key) const
    {
        const CORBA::Object_var object = m_orb.remoteObject(QStringLiteral("127.0.0.1"), port, key);
        return marshalled(object);
    }

    static QByteArray marshalled(CORBA::Object_ptr object)
    {
        cdr::Stream stream;
        CORBA::Object::_marshalObjRef(object, stream);
        stream.alignOutput(omni::ALIGN_4);
        return stream.bytes();
    }

    // Speaks a protocol that nobody here knows.
    static QByteArray foreign() { return cdr::bytes("02000000 58000000 01000000 4c4f5a7f 04000000 01020304"); }

    ZelkoCommon::Orb& m_orb;
    QTcpServer m_silent;
    quint16 m_deadPort = 0;
    std::map<unsigned, std::string> m_published;
};
