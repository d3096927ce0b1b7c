#pragma once

#include "fakeconnectiondata.h"
#include "notedvtclient.h"

#include <valuecore/tree.h>
#include <valuecore/valuetypes.h>

/// A client of the sub systems "north", the current one, and "south", on an empty tree.
struct StateSite
{
    /// Connected to those sub systems only.
    explicit StateSite(const QStringList& connected = {})
    {
        data->client = client;
        for (const QString& subSystem : connected) {
            data->setConnected(subSystem, true);
        }
    }
    StateSite(const StateSite&) = delete;
    StateSite& operator=(const StateSite&) = delete;
    ~StateSite()
    {
        for (const char* const branch : {"/SubSystems", "/ZELKO", "/ADMINISTRATION", "/Window"}) {
            Tree::Instance()->Remove(QLatin1String(branch));
        }
    }

    static ZelkoCommon::ZelkoConfiguration configuration()
    {
        ZelkoCommon::ZelkoConfiguration site;
        site.AddSubSystem({QStringLiteral("north"), QStringLiteral("192.0.2.1"), 8104, {}});
        site.AddSubSystem({QStringLiteral("south"), QStringLiteral("192.0.2.2"), 8204, {}});
        return site;
    }

    /// A text value of the tree that belongs to a window.
    static Value<QString>* putText(const QString& name, const QString& content = QString())
    {
        auto value = std::make_unique<Value<QString>>(name);
        value->SetValue(content, nullptr);
        return Tree::Instance()->Emplace(QStringLiteral("/Window"), std::move(value));
    }

    const std::shared_ptr<NotedVtClient> client = std::make_shared<NotedVtClient>();
    const std::shared_ptr<FakeConnectionData> data = std::make_shared<FakeConnectionData>(configuration());
};
