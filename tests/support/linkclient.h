#pragma once

#include "treedigest.h"

#include <zelkobase/connection/serverconnectiondata.h>
#include <zelkobase/connection/zelkoconfiguration.h>
#include <zelkobase/orb/orb.h>

#include <valuecore/tree.h>

/// A client of one sub system with a log of what its connection tells, and why writes were refused.
struct LinkClient
{
    static ZelkoCommon::LinkOptions quickOptions()
    {
        using namespace std::chrono_literals;
        ZelkoCommon::LinkOptions options;
        options.callTimeout = 2000ms;
        options.heartbeat = 100ms;
        options.firstRetry = 20ms;
        options.lastRetry = 200ms;
        return options;
    }

    LinkClient(ZelkoCommon::Orb& orb, quint16 port, const ZelkoCommon::LinkOptions& options = quickOptions(),
               Tree* usedTree = nullptr)
        : tree(usedTree ? *usedTree : ownTree)
        , connection(orb, &tree, site(port), options)
    {
        using Data = ZelkoCommon::AbstractServerConnectionData;
        QObject::connect(&connection, &Data::si_allTicsConnected, &connection, [this] { log << "connected"; });
        QObject::connect(&connection, &ZelkoCommon::ServerConnectionData::writeRefused, &connection,
                         [this](const QString&, const QString& reason) { refusals << reason; });
        QObject::connect(&connection, &ZelkoCommon::ServerConnectionData::writeNotSent, &connection,
                         [this](const QString&, const QString& reason) { notSent << reason; });
        QObject::connect(&connection, &Data::si_allTicsDisconnected, &connection, [this] {
            log << (treeList(tree, root).isEmpty() ? "disconnected" : "disconnected, and something still stands there");
        });
    }

    static std::shared_ptr<ZelkoCommon::ZelkoConfiguration> site(quint16 port)
    {
        auto configuration = std::make_shared<ZelkoCommon::ZelkoConfiguration>();
        configuration->AddSubSystem({"north", "127.0.0.1", port});
        return configuration;
    }

    template <typename T>
    T* find(const QString& path) const
    {
        return tree.Find<T>(root + path);
    }
    QString digest() const { return treeDigest(tree, root); }

    /// Of one value; empty when it is not there.
    QString digest(const QString& path) const
    {
        auto* const value = find<ValueBase>(path);
        return value ? digestOf(*value) : QString();
    }
    bool isConnected() const { return connection.isConnected("north"); }
    std::shared_ptr<IVtClient> writer() const
    {
        return connection.getVtClient("north", ZelkoCommon::ConnectionType::Client);
    }

    const QString root = ZelkoCommon::ZelkoConfiguration::MakeRootPath("north");
    Tree ownTree;
    Tree& tree;
    QStringList log;
    QStringList refusals; // of the server
    QStringList notSent;
    ZelkoCommon::ServerConnectionData connection;
};
