#pragma once

#include "recordervalues.h"
#include "testusers.h"
#include "userlogin.h"

#include <zelkobase/connection/serverconnectiondata.h>
#include <zelkobase/connection/zelkoconfiguration.h>
#include <zelkobase/maps/itemmaptypes.h>
#include <zelkobase/orb/orb.h>
#include <zelkobase/service/guitoserveradmincorbahandler.h>
#include <zelkobase/service/zelkoguitoservercorbahandler.h>
#include <zelkoguibase/controller/zelkoserverguicontroller.h>

#include <memory>

namespace ZelkoTest {

/// An application that works on the device of a recorder: the tree link of a user, the handlers, and a controller. The
/// user may do everything as far as the application knows, so that what stops him is the recorder. The process has one
/// ORB, which outlives it.
class Workplace
{
public:
    using Controller = ZelkoGUI::ZelkoServerGUIController;
    using Role = ZelkoCommon::Role;

    static QString device() { return QStringLiteral("Recorder1"); }
    static QString subSystem() { return QStringLiteral("north"); }

    /// Begins to act for a user of that role at the recorder on that port; `isReady` follows.
    Workplace(ZelkoCommon::Orb& orb, quint16 port, Role role)
        : m_data(connectionAs(orb, port, role))
        , m_handler(std::make_shared<ZelkoGUI::ZelkoGuiToServerCorbaHandler>(m_data))
        , m_admin(m_handler)
        , m_controller(m_handler, nullptr, QString(), Controller::UserActions(QFlag(1023)), nullptr)
    {
        m_handler->setLimit(limit);
        m_controller.sl_activeDeviceChanged(device());
    }
    Workplace(const Workplace&) = delete;
    Workplace& operator=(const Workplace&) = delete;

    /// Whether the controller has all that it needs of the device, and the list all records.
    bool isReady() const { return m_controller.isConnected() && values().isLoaded(); }

    /// The device's values on the client's tree.
    static RecorderValues values()
    {
        return {*Tree::Instance(), ZelkoCommon::ZelkoConfiguration::MakeRootPath(subSystem()), device()};
    }

    const std::shared_ptr<ZelkoCommon::ServerConnectionData>& data() const { return m_data; }
    const std::shared_ptr<ZelkoGUI::ZelkoGuiToServerCorbaHandler>& handler() const { return m_handler; }
    ZelkoGUI::GuiToServerAdminCorbaHandler& admin() { return m_admin; }
    Controller& controller() { return m_controller; }

private:
    static constexpr std::chrono::seconds limit{60}; // a loaded machine is no failure

    static std::shared_ptr<ZelkoCommon::ServerConnectionData> connectionAs(ZelkoCommon::Orb& orb, quint16 port,
                                                                           Role role)
    {
        zelko::registerItemMapTypes();
        auto site = std::make_shared<ZelkoCommon::ZelkoConfiguration>();
        site->AddSubSystem({subSystem(), QStringLiteral("127.0.0.1"), port, {}, TestUsers::credentials(role)});
        ZelkoCommon::LinkOptions options;
        options.firstRetry = options.lastRetry = std::chrono::milliseconds(50);
        options.heartbeat = std::chrono::milliseconds(100);
        options.callTimeout = limit;
        return std::make_shared<ZelkoCommon::ServerConnectionData>(orb, Tree::Instance(), site, options);
    }

    const UserLogin m_login;
    const std::shared_ptr<ZelkoCommon::ServerConnectionData> m_data;
    const std::shared_ptr<ZelkoGUI::ZelkoGuiToServerCorbaHandler> m_handler;
    ZelkoGUI::GuiToServerAdminCorbaHandler m_admin;
    Controller m_controller;
};

} // namespace ZelkoTest
