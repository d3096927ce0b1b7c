#include <console/demo/scenes.h>

#include <console/demo/scenepainter.h>
#include <console/demo/windowscene.h>
#include <console/hands/dialoganswer.h>
#include <console/hands/operatorhands.h>
#include <console/records/recordactions.h>
#include <console/records/recordpane.h>
#include <console/window/consolewindow.h>
#include <console/window/logindialog.h>
#include <console/window/usermenu.h>
#include <console/window/usermessages.h>

#include <observerbase/errorhandler.h>
#include <zelkoguibase/controller/zelkoserverguicontroller.h>

#include <QApplication>
#include <QLineEdit>
#include <QMessageBox>
#include <QTableView>
#include <QTest>
#include <QToolBar>

namespace ZelkoConsole {
namespace {

constexpr int patience = 10'000;

using Controller = ZelkoGUI::IZelkoGUIController;

void select(ConsoleWindow& window, int row)
{
    window.records()->table()->setFocus();
    operatorhands::clickRow(*window.records()->table(), row);
    QApplication::processEvents();
}

// Triggers an action that opens a dialog, and paints that.
void paintDialogOf(ScenePainter& painter, QAction* action, const char* scene)
{
    const DialogAnswer answer([&](QWidget* dialog) { painter.paint(*dialog, scene); });
    action->trigger();
}

void paintOperator(ScenePainter& painter)
{
    WindowScene scene;
    ConsoleWindow& window = scene.openFilled(12);
    const RecordPane& pane = *window.records();
    painter.paint(*pane.toolBar(), "tool-bar-disabled");
    select(window, 1);
    painter.paint(window, "actions-window");
    painter.paint(*pane.toolBar(), "tool-bar-enabled");
    painter.paintMenu(*pane.actions()->menu(), "record-menu");
    painter.paintMenu(*window.userMenu(), "user-menu");
    paintDialogOf(painter, pane.controller()->recordAction(Controller::UserActionDelete), "delete-box");
    paintDialogOf(painter, pane.controller()->recordAction(Controller::UserActionRename), "rename-dialog");
}

void paintMessage(ScenePainter& painter)
{
    WindowScene scene;
    ConsoleWindow& window = scene.openFilled(12);
    ErrorHandler::Instance()->ShowMessage(QStringLiteral(
        "The recorder did not answer in time. It may be busy, or the network may be slow. Try again, and "
        "look at the recorder if this goes on."));
    painter.paint(*window.messages()->box(), "message");
    window.messages()->box()->close();
}

void paintViewer(ScenePainter& painter)
{
    WindowScene scene;
    ConsoleWindow& window = scene.openFilled(12);
    scene.user().switchTo(QStringLiteral("viewer"));
    select(window, 1);
    QAction* const remove = window.records()->controller()->recordAction(Controller::UserActionDelete);
    operatorhands::enter(*window.records()->toolBar()->widgetForAction(remove));
    painter.paint(window, "viewer-window");
    painter.paintMenu(*window.records()->actions()->menu(), "record-menu-viewer");
}

void paintDenied(ScenePainter& painter)
{
    WindowScene scene({WindowScene::north(), WindowScene::south()}, WindowScene::recorder1(), false);
    scene.user().logIn({QStringLiteral("mallory"), QStringLiteral("guess")});
    ConsoleWindow& window = scene.open();
    const DialogAnswer again([&](QWidget* dialog) { painter.paint(*dialog, "login-dialog-denied"); });
    scene.site().setStatus(WindowScene::north(), {LinkState::Denied, QStringLiteral("user or password are wrong")});
    if (!QTest::qWaitFor([&again] { return again.wasGiven(); }, patience)) {
        qWarning("the pictures lack the dialog that comes again");
    }
    painter.paint(window, "denied-window");
    painter.paintMenu(*window.userMenu(), "user-menu-login");
}

void paintLogin(ScenePainter& painter)
{
    LoginDialog dialog(QStringLiteral("operator"));
    dialog.show();
    dialog.findChild<QLineEdit*>(QStringLiteral("password"))->setText(QStringLiteral("secret"));
    painter.paint(dialog, "login-dialog");
}

} // namespace

void paintActionScenes(ScenePainter& painter)
{
    paintOperator(painter);
    paintMessage(painter);
    paintViewer(painter);
    paintDenied(painter);
    paintLogin(painter);
}

} // namespace ZelkoConsole
