// The recordings of a site's devices, and all that users can do with them.
//
//     recordactions SITE [--once]
//
// SITE is a site file; zelkoconfiguration.h has what stands in it. With --once it does by itself what a user does who
// protects the first recording, or takes the protection off again, and ends when the recorder has done so.
#include <host/activedevicecontrol.h>
#include <host/userrights.h>
#include <observerbase/errorhandler.h>
#include <resources/zelkoicons.h>
#include <valuecore/tree.h>
#include <zelkobase/connection/serverconnectiondata.h>
#include <zelkobase/connection/zelkoconfiguration.h>
#include <zelkobase/orb/orb.h>
#include <zelkobase/service/zelkoguitoservercorbahandler.h>
#include <zelkobase/state/devicehandler.h>
#include <zelkoguibase/controller/zelkoserverguicontroller.h>
#include <zelkoguibase/recordlist/recordlistwidget.h>
#include <zelkoguibase/state/devicecombo.h>

#include <QAction>
#include <QApplication>
#include <QMessageBox>
#include <QTextStream>
#include <QTimer>
#include <QVBoxLayout>

#include <optional>

using namespace ZelkoCommon;
using namespace ZelkoGUI;

namespace {

void say(const QString& text)
{
    QTextStream(stdout) << text << Qt::endl;
}

// What users may do is for the application to say and for the recorder to grant. Here it is what that takes him for.
void takeRights(const ServerConnectionData& connection, const QString& subSystem)
{
    const bool works = connection.GetRole(subSystem) >= Role::Operator;
    const auto all = UserRights::DeleteRecords | UserRights::HistoryComment | UserRights::ResetRecord;
    UserRights::Instance()->SetUser(connection.GetConfiguration()->Find(subSystem)->credentials.user,
                                    works ? all : UserRights::Rights());
}

/// A box with the devices, and below it the list of the one that is chosen. The list shows the actions in its tool bar
/// and its menu.
class RecordWindow : public QWidget
{
public:
    explicit RecordWindow(const std::shared_ptr<ServerConnectionData>& connection);

    /// Has the recorder protect the first recording, or not protect it any more; false while that is not possible.
    bool toggleFirst();

    const AbstractRecordListModel& records() const { return *m_controller.recordListModel(); }

private:
    void choose(const QString& device, const QString& subSystem);

    const std::shared_ptr<ServerConnectionData> m_connection;
    ActiveDeviceControl m_activeDevice;
    DeviceHandler m_devices;
    ZelkoServerGUIController m_controller;
    RecordListWidget* const m_list;
};

RecordWindow::RecordWindow(const std::shared_ptr<ServerConnectionData>& connection)
    : m_connection(connection)
    , m_devices(connection)
    , m_controller(std::make_shared<ZelkoGuiToServerCorbaHandler>(connection), &m_activeDevice, QString(),
                   IZelkoGUIController::UserActions(QFlag(1023)), nullptr)
    , m_list(new RecordListWidget(&m_controller, RecordListWidget::Options(QFlag(1023)),
                                  Filter::ExtendedFilterDialog::NameColumn | Filter::ExtendedFilterDialog::StatusColumn,
                                  this, QStringLiteral("records")))
{
    auto* const device = new DeviceCombo(this, &m_devices, QString(), QString());
    connect(device, &DeviceCombo::signalItemChanged, this, &RecordWindow::choose);
    auto* const layout = new QVBoxLayout(this);
    layout->addWidget(device);
    layout->addWidget(m_list, 1);
}

// With a lost connection all devices go. The controller waits by itself for the one that it had.
void RecordWindow::choose(const QString& device, const QString& subSystem)
{
    if (!device.isEmpty()) {
        m_connection->GetConfiguration()->SetCurrentSubSystem(subSystem); // in which the controller looks for it
        m_activeDevice.setActiveDevice(device, subSystem);
    }
}

bool RecordWindow::toggleFirst()
{
    if (records().rowCount() == 0) {
        return false;
    }
    m_list->select(records().recordID(0), true); // which the controller hears of
    QAction* const toggle = m_controller.recordAction(IZelkoGUIController::UserActionDeletable);
    const bool isPossible = toggle->isEnabled();
    toggle->trigger(); // which does nothing while it is off
    return isPossible;
}

// Ends the application when the recording comes back with another flag than it had.
void actOnce(RecordWindow& window)
{
    auto* const poll = new QTimer(&window);
    QObject::connect(poll, &QTimer::timeout, &window, [&window, before = std::optional<bool>()]() mutable {
        const auto record = window.records().recordData(0);
        const bool isDeletable = record && record->GetDeletable();
        if (record && before && *before != isDeletable) {
            say(record->GetRecordName() +
                (isDeletable ? QStringLiteral(" may be deleted") : QStringLiteral(" is protected")));
            QApplication::quit();
        } else if (!before && window.toggleFirst()) {
            before = isDeletable;
        }
    });
    poll->start(100);
}

} // namespace

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    registerZelkoIcons();
    QString error;
    const auto site = ZelkoConfiguration::fromFile(application.arguments().value(1), &error);
    if (!site) {
        say(error);
        return 2;
    }
    Orb orb{OrbOptions{}};
    const auto connection =
        std::make_shared<ServerConnectionData>(orb, Tree::Instance(), std::make_shared<ZelkoConfiguration>(*site));
    RecordWindow window(connection);
    QObject::connect(connection.get(), &ServerConnectionData::si_allTicsConnected, &window,
                     [&](const QString& subSystem) { takeRights(*connection, subSystem); });
    ErrorHandler::Instance()->SetMessageSink(
        [&](const QString& text) { QMessageBox::warning(&window, window.windowTitle(), text); });
    if (application.arguments().contains(QStringLiteral("--once"))) {
        actOnce(window);
    }
    window.show();
    return application.exec();
}
