#include <console/demo/scenepainter.h>
#include <console/demo/scenes.h>
#include <console/demo/windowscene.h>
#include <console/devices/workdevice.h>
#include <console/records/recordpane.h>
#include <console/window/consolewindow.h>

#include <zelkoguibase/state/devicecombo.h>

#include <QAbstractItemView>
#include <QApplication>

namespace ZelkoConsole {
namespace {

ConsoleWindow& openWithDevices(WindowScene& scene)
{
    scene.site().addDevice(WindowScene::north(), QStringLiteral("Recorder3"));
    ConsoleWindow& window = scene.open();
    scene.connectNorth();
    scene.fill(WindowScene::north(), WindowScene::recorder1(), 17);
    QApplication::processEvents();
    return window;
}

void paintDeviceCombo(ScenePainter& painter)
{
    WindowScene scene;
    WorkDevice& work = *openWithDevices(scene).records()->workDevice();
    painter.paint(work, "work-device");
    ZelkoCommon::DeviceCombo& combo = *work.combo();
    combo.showPopup();
    painter.paint(*combo.view(), "work-device-list");
    combo.hidePopup();
    combo.SetRecordingOn(true);
    painter.paint(work, "work-device-recording");
}

void paintConsole(ScenePainter& painter)
{
    WindowScene scene;
    painter.paint(openWithDevices(scene), "console-work-device");
}

} // namespace

void paintReplayScenes(ScenePainter& painter)
{
    paintDeviceCombo(painter);
    paintConsole(painter);
    paintReplayConsoleScenes(painter);
    paintReplayBarScenes(painter);
    paintReplayWidgetScenes(painter);
}

} // namespace ZelkoConsole
