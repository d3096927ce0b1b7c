#include <console/demo/scenes.h>

#include <console/demo/samplesite.h>
#include <console/demo/scenepainter.h>
#include <console/demo/windowscene.h>
#include <console/devices/devicelistview.h>
#include <console/hands/dialoganswer.h>
#include <console/records/recordpane.h>
#include <console/records/recordtable.h>
#include <console/widgets/connectionbadge.h>
#include <console/window/consolewindow.h>

#include <QApplication>
#include <QHBoxLayout>
#include <QItemSelectionModel>
#include <QMenu>
#include <QTableView>

namespace ZelkoConsole {
namespace {

using Status = SampleSite::Record::RecordStatus;

void paintLive(ScenePainter& painter)
{
    WindowScene scene;
    ConsoleWindow& window = scene.openFilled(17);
    painter.paint(window, "console-window");
    window.records()->table()->setFocus();
    window.records()->table()->selectRow(2);
    window.records()->table()->selectionModel()->select(window.records()->table()->model()->index(4, 0),
                                                        QItemSelectionModel::Select | QItemSelectionModel::Rows);
    painter.paint(*window.records(), "record-pane-selection");
    painter.paint(*window.devices(), "device-list");
    painter.paintMenu(*window.records()->recordTable()->columnMenu(), "column-menu");
    painter.paintMenu(*window.records()->recordTable()->sortMenu(), "sort-menu");
}

void paintLoading(ScenePainter& painter)
{
    WindowScene scene;
    scene.site().setLoad(WindowScene::north(), WindowScene::recorder1(), 30, false);
    scene.fill(WindowScene::north(), WindowScene::recorder1(), 12);
    ConsoleWindow& window = scene.open();
    scene.connectNorth();
    painter.paint(window, "console-window-loading");
}

void paintNarrow(ScenePainter& painter)
{
    WindowScene scene;
    ConsoleWindow& window = scene.openFilled(17);
    window.resize(720, 400);
    painter.paint(window, "console-window-narrow");
}

void paintLongNames(ScenePainter& painter)
{
    const QString subSystem = QStringLiteral("Monitoring station at the northern border, building 7");
    const QString device = QStringLiteral("Wideband-recorder-with-a-name-that-somebody-thought-about-for-long");
    WindowScene scene({subSystem, WindowScene::south()}, device);
    ConsoleWindow& window = scene.open();
    scene.connect(subSystem);
    scene.fill(subSystem, device, 9);
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
    WindowScene scene;
    ConsoleWindow& window = scene.open();
    painter.paint(window, "console-window-connecting");
    scene.connectNorth();
    QApplication::processEvents();
    painter.paint(window, "console-window-no-recordings");
    scene.site().lose(WindowScene::north(), QStringLiteral("the recorder server does not answer"));
    painter.paint(window, "console-window-not-reachable");
}

void paintBadges(ScenePainter& painter)
{
    QWidget row;
    auto* const layout = new QHBoxLayout(&row);
    for (const auto state :
         {LinkState::Starting, LinkState::Connecting, LinkState::Connected, LinkState::Unreachable}) {
        auto* const badge = new ConnectionBadge;
        badge->show(WindowScene::north(), {state, {}});
        layout->addWidget(badge);
    }
    row.show();
    painter.paint(row, "connection-badges");
}

void paintAbout(ScenePainter& painter)
{
    WindowScene scene;
    ConsoleWindow& window = scene.open();
    const DialogAnswer answer([&painter](QWidget* box) { painter.paint(*box, "about"); });
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
