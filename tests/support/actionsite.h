#pragma once

#include "recorderprocess.h"
#include "recordervalues.h"
#include "storedrecord.h"
#include "userlogin.h"

#include <observerbase/errorhandler.h>
#include <zelkobase/connection/serverconnectiondata.h>
#include <zelkobase/connection/zelkoconfiguration.h>
#include <zelkobase/maps/itemmaptypes.h>
#include <zelkobase/orb/orb.h>
#include <zelkobase/service/guitoserveradmincorbahandler.h>
#include <zelkobase/service/zelkoguitoservercorbahandler.h>
#include <zelkoguibase/controller/zelkoserverguicontroller.h>

#include <QAbstractItemModelTester>
#include <QAction>
#include <QMainWindow>
#include <QTcpServer>
#include <QTemporaryDir>
#include <QTest>
#include <QToolBar>

#include <memory>

namespace ZelkoTest {

/// A recorder process with a store of its own, and an application that works on it: the tree link of a user, the
/// handlers, a controller, and a window with the actions. The user of the application may do everything as far as the
/// application knows, so that what stops him is the recorder. The process has one ORB, which outlives it.
class ActionSite
{
public:
    using Controller = ZelkoGUI::ZelkoServerGUIController;
    using Record = ZELKO_XML::ZELKO_RecordData;
    using Role = ZelkoCommon::Role;

    static constexpr int patience = 30'000; ///< milliseconds, for what must happen
    static QString device() { return QStringLiteral("Recorder1"); }
    static QString subSystem() { return QStringLiteral("north"); }

    ActionSite(ZelkoCommon::Orb& orb, const QString& program)
        : m_orb(orb)
        , m_program(program)
        , m_messagesBefore(
              ErrorHandler::Instance()->SetMessageSink([this](const QString& text) { m_messages.append(text); }))
    {
        zelko::registerItemMapTypes();
    }
    ActionSite(const ActionSite&) = delete;
    ActionSite& operator=(const ActionSite&) = delete;
    ~ActionSite()
    {
        m_window.reset();
        m_controller.reset();
        m_admin.reset();
        m_handler.reset();
        m_data.reset();
        ErrorHandler::Instance()->SetMessageSink(m_messagesBefore);
    }

    /// Starts the recorder, again on the port that it had; false if it does not serve then.
    bool start(const QStringList& more = {})
    {
        bool serves = m_port != 0 && startAt(m_port, more);
        for (int tries = 0; m_port == 0 && tries < 10; ++tries) { // somebody else may take the port in between
            serves = startAt(freePort(), more);
            m_port = serves ? m_recorder->port() : 0;
        }
        return serves;
    }

    /// Begins to act for a user of that role; `isReady` follows.
    void connectAs(Role role)
    {
        ZelkoCommon::ZelkoConfiguration site;
        site.AddSubSystem({subSystem(), QStringLiteral("127.0.0.1"), m_port, {}, TestUsers::credentials(role)});
        ZelkoCommon::LinkOptions options;
        options.firstRetry = options.lastRetry = std::chrono::milliseconds(50);
        options.heartbeat = std::chrono::milliseconds(100);
        options.callTimeout = std::chrono::seconds(60); // a loaded machine is no failure
        m_data = std::make_shared<ZelkoCommon::ServerConnectionData>(
            m_orb, Tree::Instance(), std::make_shared<ZelkoCommon::ZelkoConfiguration>(site), options);
        m_handler = std::make_shared<ZelkoGUI::ZelkoGuiToServerCorbaHandler>(m_data);
        m_handler->setLimit(std::chrono::seconds(60)); // for the same reason
        m_admin = std::make_unique<ZelkoGUI::GuiToServerAdminCorbaHandler>(m_handler);
        m_controller =
            std::make_unique<Controller>(m_handler, nullptr, QString(), Controller::UserActions(QFlag(1023)), nullptr);
        m_controller->sl_activeDeviceChanged(device());
        makeWindow();
    }

    /// Has the list of records watched for what no model may do.
    void watchModel() { m_modelTester = std::make_unique<QAbstractItemModelTester>(m_controller->recordListModel()); }

    /// Whether the controller has all that it needs of the device, and the list all records.
    bool isReady() const { return m_controller->isConnected() && values().isLoaded(); }

    /// Selects records and clicks on an action with the mouse. False where the action is not enabled.
    bool click(Controller::enUserAction action, const QStringList& records)
    {
        m_controller->sl_selectedRecordsChanged(records);
        QAction* const clicked = m_controller->recordAction(action);
        if (clicked->isEnabled()) {
            QTest::mouseClick(m_toolBar->widgetForAction(clicked), Qt::LeftButton);
            return true;
        }
        return false;
    }

    /// What the row of a record shows; an empty record if there is no row.
    Record row(const QString& id) const
    {
        const auto data = m_controller->recordListModel()->getRecordData(id);
        return data ? *data : Record();
    }

    /// IDs of all rows.
    QStringList rows() const
    {
        QStringList ids;
        for (int i = 0; i < m_controller->recordListModel()->rowCount(); ++i) {
            ids.append(m_controller->recordListModel()->recordID(i));
        }
        ids.sort();
        return ids;
    }

    /// The record as it is in the store; an empty one if it is not there.
    Record stored(const QString& id) const
    {
        Record record;
        const bool isThere = record.LoadXml(recordFolder(id) + QLatin1Char('/') + ZELKO_XML::metaDataFileName);
        return isThere ? record : Record();
    }
    QStringList storedIds() const
    {
        return QDir(deviceFolder()).entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name);
    }
    QString storeFolder() const { return m_store.path(); }
    QString deviceFolder() const { return m_store.filePath(device()); }
    QString recordFolder(const QString& id) const { return deviceFolder() + QLatin1Char('/') + id; }

    /// The device's values on the client's tree.
    static RecorderValues values()
    {
        return {*Tree::Instance(), ZelkoCommon::ZelkoConfiguration::MakeRootPath(subSystem()), device()};
    }

    RecorderProcess& recorder() { return *m_recorder; }
    ZelkoCommon::ServerConnectionData& data() { return *m_data; }
    std::shared_ptr<ZelkoCommon::ServerConnectionData> connection() const { return m_data; }
    std::shared_ptr<ZelkoGUI::ZelkoGuiToServerCorbaHandler> handler() const { return m_handler; }
    ZelkoGUI::GuiToServerAdminCorbaHandler& admin() { return *m_admin; }
    Controller& controller() const { return *m_controller; }
    QMainWindow& window() { return *m_window; }

    /// What the user was told in message boxes, since the last time.
    QStringList takeMessages() { return std::exchange(m_messages, {}); }

private:
    // A port that a recorder is told can be taken over by the next one at once. One that it is given while it asks for
    // any cannot, for as long as old connections linger.
    static quint16 freePort()
    {
        QTcpServer server;
        return server.listen(QHostAddress::LocalHost) ? server.serverPort() : 0;
    }
    bool startAt(quint16 port, const QStringList& more)
    {
        m_recorder = nullptr; // so that the store is free
        m_recorder = std::make_unique<RecorderProcess>(m_program);
        return m_recorder->start(
            QStringList{QStringLiteral("--store"), m_store.path(), QStringLiteral("--port"), QString::number(port)} +
            more);
    }
    void makeWindow()
    {
        m_window = std::make_unique<QMainWindow>();
        m_window->resize(1200, 200);
        m_toolBar = m_window->addToolBar(QStringLiteral("actions"));
        m_toolBar->addActions(m_controller->recordActions());
        m_controller->setDialogParent(m_window.get());
        m_window->show();
    }

    ZelkoCommon::Orb& m_orb;
    const QString m_program;
    QStringList m_messages;
    const ErrorHandler::MessageSink m_messagesBefore;
    const UserLogin m_login;
    const QTemporaryDir m_store;
    std::unique_ptr<RecorderProcess> m_recorder;
    quint16 m_port = 0;
    std::shared_ptr<ZelkoCommon::ServerConnectionData> m_data;
    std::shared_ptr<ZelkoGUI::ZelkoGuiToServerCorbaHandler> m_handler;
    std::unique_ptr<ZelkoGUI::GuiToServerAdminCorbaHandler> m_admin;
    std::unique_ptr<Controller> m_controller;
    std::unique_ptr<QAbstractItemModelTester> m_modelTester;
    std::unique_ptr<QMainWindow> m_window;
    QToolBar* m_toolBar = nullptr;
};

} // namespace ZelkoTest
