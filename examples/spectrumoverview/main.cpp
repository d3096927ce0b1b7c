// The spectrum overview in a window of one's own, beside the list of a device.
//
//     spectrumoverview SITE DEVICE [--once]
//
// SITE is a site file; zelkoconfiguration.h has what stands in it. A double click into the list shows a recording. With
// --once the first one is shown, and the program ends when all lines of its overview have come, whose number it prints.
#include <overviewdisplay/spectrumoverviewwidget.h>
#include <resources/zelkoicons.h>
#include <valuecore/tree.h>
#include <zelkobase/connection/serverconnectiondata.h>
#include <zelkobase/connection/zelkoconfiguration.h>
#include <zelkobase/orb/orb.h>
#include <zelkobase/service/zelkoguitoservercorbahandler.h>
#include <zelkoguibase/controller/zelkoserverguicontroller.h>
#include <zelkoguibase/recordlist/recordlistwidget.h>

#include <QApplication>
#include <QProgressBar>
#include <QSplitter>
#include <QTextStream>
#include <QTimer>

#include <utility>

using namespace ZelkoCommon;
using namespace ZelkoGUI;
using SPECTRUM_OVERVIEW::SpectrumOverviewWidget;

namespace {

void say(const QString& text)
{
    QTextStream(stdout) << text << Qt::endl;
}

// The overview asks nobody: it tells by signals what it wants, and the controller has the recorder do it. The spectra
// come to the overview itself; all else comes back with the recording in the controller's list.
void connectTo(ZelkoServerGUIController& controller, const SpectrumOverviewWidget& overview)
{
    using Controller = ZelkoServerGUIController;
    using Overview = SpectrumOverviewWidget;
    QObject::connect(&overview, &Overview::si_overviewSpectrumStreamed, &controller,
                     &Controller::sl_overviewSpectrumStreamed);
    QObject::connect(&overview, &Overview::si_resyncRecord, &controller, &Controller::sl_resyncRecord);
    QObject::connect(&overview, &Overview::si_setBookmarkEntries, &controller, &Controller::sl_setBookmarkEntries);
    QObject::connect(&overview, &Overview::si_copyRecord, &controller,
                     qOverload<QString, quint64, quint64, QString, QString>(&Controller::sl_copyRecord));
    QObject::connect(&overview, &Overview::si_errorText, &controller, &Controller::sl_errorText);
}

/// The list of a device, and beside it the overview of one of its recordings.
class OverviewWindow : public QSplitter
{
public:
    /// `address` is that of the recorder, from which alone spectra are taken.
    OverviewWindow(ZelkoServerGUIController* controller, QString address);

    void showRecord(const QString& recordID);

    /// All lines of what is shown; 0 before they have come.
    int lines() const;

private:
    ZelkoServerGUIController* const m_controller;
    const QString m_address;
    SpectrumOverviewWidget* const m_overview;
};

OverviewWindow::OverviewWindow(ZelkoServerGUIController* controller, QString address)
    : m_controller(controller)
    , m_address(std::move(address))
    , m_overview(new SpectrumOverviewWidget(QStringLiteral("Overview"))) // the group of its settings
{
    auto* const list = new RecordListWidget(controller, RecordListWidget::OptionNameFilter,
                                            Filter::ExtendedFilterDialog::NameColumn, this, QStringLiteral("records"));
    addWidget(list);
    addWidget(m_overview);
    connect(list, &RecordListWidget::si_recordDoubleClicked, this, &OverviewWindow::showRecord);
    connectTo(*controller, *m_overview);
}

// The overview follows the recording in the list from here on, and asks again by itself for what is lost on the way.
void OverviewWindow::showRecord(const QString& recordID)
{
    m_overview->setRecord(m_controller->activeDevice(), recordID, m_controller->recordListModel(), m_address);
}

// As its progress bar has it, which is there as long as lines come.
int OverviewWindow::lines() const
{
    const auto* const progress = m_overview->findChild<QProgressBar*>(QStringLiteral("ProgressBar"));
    const bool areThere = progress->isHidden() && progress->value() == progress->maximum();
    return areThere ? progress->value() : 0;
}

} // namespace

int main(int argc, char** argv)
{
    const QApplication application(argc, argv);
    registerZelkoIcons();
    const QStringList arguments = QApplication::arguments();
    QString error;
    const auto site = ZelkoConfiguration::fromFile(arguments.value(1), &error);
    if (!site) {
        say(error);
        return 2;
    }
    Orb orb{OrbOptions{}};
    const auto connection =
        std::make_shared<ServerConnectionData>(orb, Tree::Instance(), std::make_shared<ZelkoConfiguration>(*site));
    ZelkoServerGUIController controller(std::make_shared<ZelkoGuiToServerCorbaHandler>(connection), {}, nullptr);
    controller.sl_activeDeviceChanged(arguments.value(2));
    const AbstractRecordListModel* const records = controller.recordListModel();

    OverviewWindow window(&controller, site->Find(site->GetCurrentSubSystem())->host);
    window.show();

    QTimer poll;
    QObject::connect(&poll, &QTimer::timeout, &poll, [&window] {
        if (window.lines() > 0) {
            say(QStringLiteral("%1 lines").arg(window.lines()));
            QApplication::quit();
        }
    });
    if (arguments.contains(QStringLiteral("--once"))) {
        QObject::connect(records, &QAbstractItemModel::rowsInserted, &window,
                         [&] { window.showRecord(records->recordID(0)); });
        poll.start(100);
    }
    return QApplication::exec();
}
