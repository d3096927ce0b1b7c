#pragma once

#include "recorderprocess.h"
#include "storedrecord.h"
#include "workplace.h"

#include <observerbase/errorhandler.h>

#include <QAbstractItemModelTester>
#include <QAction>
#include <QMainWindow>
#include <QTcpServer>
#include <QTemporaryDir>
#include <QTest>
#include <QToolBar>

#include <memory>

namespace ZelkoTest {

/// A recorder process with a store of its own, and an application that works on it, with a window that has the actions.
/// The process has one ORB, which outlives it.
class ActionSite
{
public:
    using Controller = Workplace::Controller;
    using Record = ZELKO_XML::ZELKO_RecordData;
    using Role = ZelkoCommon::Role;

    static constexpr int patience = 30'000; ///< milliseconds, for what must happen
    static QString device() { return Workplace::device(); }
    static QString subSystem() { return Workplace::subSystem(); }

    ActionSite(ZelkoCommon::Orb& orb, const QString& program)
        : m_orb(orb)
        , m_program(program)
        , m_messagesBefore(
              ErrorHandler::Instance()->SetMessageSink([this](const QString& text) { m_messages.append(text); }))
    {}
    ActionSite(const ActionSite&) = delete;
    ActionSite& operator=(const ActionSite&) = delete;
    ~ActionSite()
    {
        m_window.reset();
        m_workplace.reset();
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
        m_workplace = nullptr; // one user goes before the next one comes
        m_workplace = std::make_unique<Workplace>(m_orb, m_port, role);
        makeWindow();
    }

    /// Has the list of records watched for what no model may do.
    void watchModel() { m_modelTester = std::make_unique<QAbstractItemModelTester>(controller().recordListModel()); }

    /// Whether the controller has all that it needs of the device, and the list all records.
    bool isReady() const { return m_workplace->isReady(); }

    /// Selects records and clicks on an action with the mouse. False where the action is not enabled.
    bool click(Controller::enUserAction action, const QStringList& records)
    {
        controller().sl_selectedRecordsChanged(records);
        QAction* const clicked = controller().recordAction(action);
        if (clicked->isEnabled()) {
            QTest::mouseClick(m_toolBar->widgetForAction(clicked), Qt::LeftButton);
            return true;
        }
        return false;
    }

    /// What the row of a record shows; an empty record if there is no row.
    Record row(const QString& id) const
    {
        const auto data = controller().recordListModel()->getRecordData(id);
        return data ? *data : Record();
    }

    /// IDs of all rows.
    QStringList rows() const
    {
        QStringList ids;
        for (int i = 0; i < controller().recordListModel()->rowCount(); ++i) {
            ids.append(controller().recordListModel()->recordID(i));
        }
        ids.sort();
        return ids;
    }

    quint16 port() const { return m_port; }

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
    static RecorderValues values() { return Workplace::values(); }

    RecorderProcess& recorder() { return *m_recorder; }
    ZelkoCommon::ServerConnectionData& data() { return *m_workplace->data(); }
    const std::shared_ptr<ZelkoCommon::ServerConnectionData>& connection() const { return m_workplace->data(); }
    std::shared_ptr<ZelkoGUI::ZelkoGuiToServerCorbaHandler> handler() const { return m_workplace->handler(); }
    ZelkoGUI::GuiToServerAdminCorbaHandler& admin() { return m_workplace->admin(); }
    Controller& controller() const { return m_workplace->controller(); }
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
        m_toolBar->addActions(controller().recordActions());
        controller().setDialogParent(m_window.get());
        m_window->show();
    }

    ZelkoCommon::Orb& m_orb;
    const QString m_program;
    QStringList m_messages;
    const ErrorHandler::MessageSink m_messagesBefore;
    const QTemporaryDir m_store;
    std::unique_ptr<RecorderProcess> m_recorder;
    quint16 m_port = 0;
    std::unique_ptr<Workplace> m_workplace;
    std::unique_ptr<QAbstractItemModelTester> m_modelTester;
    std::unique_ptr<QMainWindow> m_window;
    QToolBar* m_toolBar = nullptr;
};

} // namespace ZelkoTest
