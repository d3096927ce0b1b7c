#pragma once

#include "devicebranch.h"
#include "fakeconnectiondata.h"
#include "notedvtclient.h"
#include "shownmessages.h"
#include "tracetexts.h"
#include "userlogin.h"

#include <zelkobase/service/zelkoguitoservercorbahandler.h>
#include <zelkoguibase/controller/zelkoserverguicontroller.h>

/// FakeConnectionData that counts how often it was asked for the writing end.
class AskedConnectionData final : public FakeConnectionData
{
public:
    using FakeConnectionData::FakeConnectionData;

    std::shared_ptr<IVtClient> getVtClient(const QString& subSystem, ConnectionType type) const override
    {
        ++timesAsked;
        lastAsked = subSystem + QStringLiteral(" %1").arg(static_cast<int>(type));
        return FakeConnectionData::getVtClient(subSystem, type);
    }

    mutable int timesAsked = 0;
    mutable QString lastAsked;
};

/// The signals of a controller in order, one text each: "selected A,B", "progress 1/2", "device D1 in north",
/// "established D1", "action 2 A", "download A from 192.0.2.7 protected B". May outlive the controller.
class ControllerLog
{
public:
    using Controller = ZelkoGUI::IZelkoGUIController;

    explicit ControllerLog(const Controller* controller)
    {
        const auto add = [this](const QString& text) { m_texts.append(text); };
        const auto ids = [](const QStringList& list) { return list.join(QLatin1Char(',')); };
        QObject::connect(controller, &Controller::si_selectedRecordsChanged, &m_context,
                         [=](const QStringList& list) { add(QStringLiteral("selected ") + ids(list)); });
        QObject::connect(controller, &Controller::si_loadProgress, &m_context, [=](int current, int total) {
            add(QStringLiteral("progress %1/%2").arg(current).arg(total));
        });
        QObject::connect(controller, &Controller::si_activeDeviceChanged, &m_context,
                         [=](const QString& device, const QString& subSystem) {
                             add(QStringLiteral("device %1 in %2").arg(device, subSystem));
                         });
        QObject::connect(controller, &Controller::si_connectionEstablished, &m_context,
                         [=](const QString& device) { add(QStringLiteral("established ") + device); });
        QObject::connect(controller, &Controller::si_userActionTriggered, &m_context,
                         [=](const QStringList& list, Controller::enUserAction action) {
                             add(QStringLiteral("action %1 ").arg(action) + ids(list));
                         });
        QObject::connect(
            controller, &Controller::si_downloadRecordings, &m_context,
            [=](const QStringList& list, const QString& address, const QStringList& writeProtected) {
                add(QStringLiteral("download %1 from %2 protected %3").arg(ids(list), address, ids(writeProtected)));
            });
    }
    ControllerLog(const ControllerLog&) = delete;
    ControllerLog& operator=(const ControllerLog&) = delete;

    QStringList take() { return std::exchange(m_texts, {}); }

private:
    QObject m_context;
    QStringList m_texts;
};

/// A user with all rights at a client of the sub systems "north", the current one, and "south". North is connected,
/// with the tree as the test fills it; the service of both is found at a port of this machine.
struct ControllerSite
{
    explicit ControllerSite(quint16 servicePort = 1)
        : data(std::make_shared<AskedConnectionData>(configuration(servicePort)))
        , handler(std::make_shared<ZelkoGUI::ZelkoGuiToServerCorbaHandler>(data))
    {
        data->client = client;
        data->setConnected(QStringLiteral("north"), true);
    }
    ControllerSite(const ControllerSite&) = delete;
    ControllerSite& operator=(const ControllerSite&) = delete;
    ~ControllerSite() { Tree::Instance()->Remove(QStringLiteral("/SubSystems")); }

    static ZelkoCommon::ZelkoConfiguration configuration(quint16 port)
    {
        ZelkoCommon::ZelkoConfiguration site;
        site.AddSubSystem({QStringLiteral("north"), QStringLiteral("127.0.0.1"), port, {}});
        site.AddSubSystem({QStringLiteral("south"), QStringLiteral("127.0.0.1"), port, {}});
        return site;
    }

    UserLogin login;
    const std::shared_ptr<NotedVtClient> client = std::make_shared<NotedVtClient>();
    const std::shared_ptr<AskedConnectionData> data;
    const std::shared_ptr<ZelkoGUI::ZelkoGuiToServerCorbaHandler> handler;
};
