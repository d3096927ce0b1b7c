#include <console/demo/scenes.h>

#include <console/demo/samplesite.h>
#include <console/demo/scenepainter.h>
#include <console/devices/devicelistview.h>
#include <console/records/devicerecords.h>
#include <console/records/recordpane.h>
#include <console/records/recordtableview.h>
#include <console/widgets/connectionbadge.h>
#include <console/window/consolewindow.h>

#include <QApplication>
#include <QDateTime>
#include <QHBoxLayout>
#include <QItemSelectionModel>
#include <QMenu>
#include <QMessageBox>
#include <QSettings>
#include <QTemporaryDir>
#include <QTimer>

namespace ZelkoConsole {
namespace {

using Status = SampleSite::Record::RecordStatus;

const QStringList& names()
{
    static const QStringList list{QStringLiteral("Airband tower"),          QStringLiteral("Telemetry bursts"),
                                  QStringLiteral("Voice channel"),          QStringLiteral("Weather satellite pass"),
                                  QStringLiteral("Noise floor, antenna 2"), QStringLiteral("Time signal")};
    return list;
}

Status statusOf(int number)
{
    switch (number) {
    case 0:
        return Status::Recording;
    case 3:
        return Status::Transferring;
    case 7:
        return Status::Damaged;
    default:
        return Status::Finished;
    }
}

void fill(SampleSite& site, const QString& subSystem, const QString& device, int count)
{
    const QDateTime newest(QDate(2026, 5, 4), QTime(14, 30, 12), Qt::UTC);
    for (int number = 0; number < count; ++number) {
        const auto start = static_cast<quint64>(newest.addSecs(-number * 1740).toMSecsSinceEpoch()) * 1000;
        const auto duration = static_cast<quint64>(7 + number * number * 13) * 1'000'000;
        const auto frequency = 118'100'000 + static_cast<quint64>(number) * 8'330'000;
        site.setRecord(subSystem, device,
                       sampleRecord(QStringLiteral("R%1").arg(20260504000 + number), names()[number % names().size()],
                                    statusOf(number), start, duration, frequency));
    }
}

// One window over one site, and the pictures of it.
class Scene
{
public:
    explicit Scene(const QStringList& subSystems = {north(), south()},
                   const QString& firstDevice = QStringLiteral("Recorder1"))
        : m_site(subSystems)
        , m_settings(m_folder.filePath(QStringLiteral("settings.ini")), QSettings::IniFormat)
    {
        m_site.addDevice(subSystems.constFirst(), firstDevice);
        m_site.addDevice(subSystems.constFirst(), QStringLiteral("Recorder2"), false);
        m_site.setStatus(subSystems.constLast(), {LinkState::Unreachable, QStringLiteral("connection refused")});
    }

    ConsoleWindow& open()
    {
        m_window = std::make_unique<ConsoleWindow>(&m_site, &m_settings);
        m_window->show();
        QApplication::processEvents();
        return *m_window;
    }

    void connectNorth() { m_site.connectTo(north()); }
    SampleSite& site() { return m_site; }

    static QString north() { return QStringLiteral("north"); }
    static QString south() { return QStringLiteral("south"); }

private:
    QTemporaryDir m_folder;
    SampleSite m_site;
    QSettings m_settings;
    std::unique_ptr<ConsoleWindow> m_window;
};

void paintLive(ScenePainter& painter)
{
    Scene scene;
    ConsoleWindow& window = scene.open();
    scene.connectNorth();
    fill(scene.site(), Scene::north(), QStringLiteral("Recorder1"), 17);
    QApplication::processEvents();
    painter.paint(window, "console-window");
    window.records()->table()->setFocus();
    window.records()->table()->selectRow(2);
    window.records()->table()->selectionModel()->select(window.records()->table()->model()->index(4, 0),
                                                        QItemSelectionModel::Select | QItemSelectionModel::Rows);
    painter.paint(*window.records(), "record-pane-selection");
    painter.paint(*window.devices(), "device-list");
    painter.paintMenu(*window.records()->table()->columnMenu(), "column-menu");
    painter.paintMenu(*window.records()->table()->sortMenu(), "sort-menu");
}

void paintLoading(ScenePainter& painter)
{
    Scene scene;
    scene.site().setLoad(Scene::north(), QStringLiteral("Recorder1"), 30, false);
    fill(scene.site(), Scene::north(), QStringLiteral("Recorder1"), 12);
    ConsoleWindow& window = scene.open();
    scene.connectNorth();
    painter.paint(window, "console-window-loading");
}

void paintNarrow(ScenePainter& painter)
{
    Scene scene;
    ConsoleWindow& window = scene.open();
    scene.connectNorth();
    fill(scene.site(), Scene::north(), QStringLiteral("Recorder1"), 17);
    window.resize(720, 400);
    painter.paint(window, "console-window-narrow");
}

void paintLongNames(ScenePainter& painter)
{
    const QString subSystem = QStringLiteral("Monitoring station at the northern border, building 7");
    const QString device = QStringLiteral("Wideband-recorder-with-a-name-that-somebody-thought-about-for-long");
    Scene scene({subSystem, Scene::south()}, device);
    ConsoleWindow& window = scene.open();
    scene.site().connectTo(subSystem);
    fill(scene.site(), subSystem, device, 9);
    auto record = sampleRecord(QStringLiteral("R20260504-with-an-identifier-as-long-as-they-come"),
                               QStringLiteral("A name that an operator wrote a whole sentence into, for later"),
                               Status::LoopRecording, 1'777'900'000'000'000, 900'000'000'000, 1'296'123'456);
    scene.site().setRecord(subSystem, device, record);
    window.resize(900, 400);
    window.records()->table()->selectAll();
    painter.paint(window, "console-window-long-names");
    scene.site().lose(subSystem, QStringLiteral("nobody answers there, or not in time (TRANSIENT); the address is "
                                                "recorder-7.north.monitoring.example and its port 8004"));
    painter.paint(window, "console-window-long-reason");
}

void paintEmpty(ScenePainter& painter)
{
    Scene scene;
    ConsoleWindow& window = scene.open();
    painter.paint(window, "console-window-connecting");
    scene.connectNorth();
    QApplication::processEvents();
    painter.paint(window, "console-window-no-recordings");
    scene.site().lose(Scene::north(), QStringLiteral("the recorder server does not answer"));
    painter.paint(window, "console-window-not-reachable");
}

void paintBadges(ScenePainter& painter)
{
    QWidget row;
    auto* const layout = new QHBoxLayout(&row);
    for (const auto state :
         {LinkState::Starting, LinkState::Connecting, LinkState::Connected, LinkState::Unreachable}) {
        auto* const badge = new ConnectionBadge;
        badge->show(Scene::north(), {state, {}});
        layout->addWidget(badge);
    }
    row.show();
    painter.paint(row, "connection-badges");
}

void paintAbout(ScenePainter& painter)
{
    Scene scene;
    ConsoleWindow& window = scene.open();
    QTimer::singleShot(0, &window, [&painter] {
        QWidget* const box = QApplication::activeModalWidget();
        painter.paint(*box, "about");
        box->close();
    });
    window.showAbout();
}

} // namespace

void paintSpineScenes(ScenePainter& painter)
{
    paintLive(painter);
    paintLoading(painter);
    paintNarrow(painter);
    paintLongNames(painter);
    paintEmpty(painter);
    paintBadges(painter);
    paintAbout(painter);
}

} // namespace ZelkoConsole
