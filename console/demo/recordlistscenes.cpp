#include <console/demo/scenepainter.h>
#include <console/demo/scenes.h>
#include <console/demo/windowscene.h>
#include <console/hands/operatorhands.h>
#include <console/records/recordpane.h>
#include <console/window/consolewindow.h>

#include <zelkoguibase/controller/zelkoserverguicontroller.h>
#include <zelkoguibase/recordlist/recordlistwidget.h>

#include <QApplication>
#include <QDialog>
#include <QLineEdit>
#include <QMenu>
#include <QTableView>
#include <QTest>
#include <QToolButton>

namespace ZelkoConsole {
namespace {

using ZelkoGUI::RecordListWidget;

// A part of a record list by its object name.
template <typename Part>
Part& part(const RecordListWidget& list, const char* name)
{
    return *list.findChild<Part*>(QLatin1String(name));
}

void type(QWidget& filter, const QString& text)
{
    filter.window()->activateWindow();
    QApplication::processEvents();
    operatorhands::type(*filter.findChild<QLineEdit*>(QStringLiteral("TextEdit")), text);
}

void paintFilteredByName(ScenePainter& painter)
{
    WindowScene scene;
    ConsoleWindow& window = scene.openFilled(17);
    const RecordListWidget& list = *window.records()->list();
    type(part<QWidget>(list, "RecordNameFilterWidget"), QStringLiteral("tower"));
    painter.paint(window, "record-list-name-filter");
    type(part<QWidget>(list, "RecordNameFilterWidget"), QStringLiteral(" of babel"));
    painter.paint(window, "record-list-filtered-out");
}

void paintFilteredByDialog(ScenePainter& painter)
{
    WindowScene scene;
    ConsoleWindow& window = scene.openFilled(17);
    const RecordListWidget& list = *window.records()->list();
    QTest::mouseClick(&part<QToolButton>(list, "ShowExtendedFilterButton"), Qt::LeftButton);
    auto& dialog = part<QDialog>(list, "ExtendedFilterDialog");
    type(*dialog.findChild<QWidget*>(QStringLiteral("NameFilterWidget")), QStringLiteral("voice"));
    painter.paint(dialog, "record-list-filter-dialog");
    painter.paint(window, "record-list-extended-filter");
}

void paintMenus(ScenePainter& painter)
{
    WindowScene scene;
    ConsoleWindow& window = scene.openFilled(17);
    const RecordListWidget& list = *window.records()->list();
    operatorhands::clickRow(*window.records()->table(), 1);
    operatorhands::clickRow(*window.records()->table(), 4, Qt::ControlModifier);
    painter.paint(window, "record-list-selection");
    painter.paintMenu(part<QMenu>(list, "RecordListWidgetPopupMenu"), "record-list-menu");
    painter.paintMenu(part<QMenu>(list, "CopyToClipboardMenu"), "record-list-clipboard-menu");
}

// The widget as the library makes it, without what the console adds.
void paintPlain(ScenePainter& painter)
{
    WindowScene scene;
    ConsoleWindow& window = scene.openFilled(17);
    constexpr RecordListWidget::Options everything =
        RecordListWidget::OptionToolbar | RecordListWidget::OptionNameFilter | RecordListWidget::OptionExtendedFilter |
        RecordListWidget::OptionDeviceLabel | RecordListWidget::OptionLoadProgress |
        RecordListWidget::OptionActionMenu | RecordListWidget::OptionClipboardMenu |
        RecordListWidget::OptionMultiSelection | RecordListWidget::OptionRecordCount |
        RecordListWidget::OptionSelectHeader;
    RecordListWidget list(window.records()->controller(), everything, {}, nullptr, QString());
    list.resize(1000, 360);
    list.show();
    list.select(QStringLiteral("R20260504003"), false);
    painter.paint(list, "record-list-widget");
    Q_EMIT window.records()->controller()->si_loadProgress(17, 40);
    painter.paint(list, "record-list-widget-loading");
}

} // namespace

void paintRecordListScenes(ScenePainter& painter)
{
    paintPlain(painter);
    paintMenus(painter);
    paintFilteredByName(painter);
    paintFilteredByDialog(painter);
}

} // namespace ZelkoConsole
