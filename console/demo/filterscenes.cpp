#include <console/demo/scenepainter.h>
#include <console/demo/scenes.h>

#include <zelkoguibase/filter/extendedfilterdialog.h>
#include <zelkoguibase/filter/multifiltersortproxymodel.h>

#include <QApplication>
#include <QCheckBox>
#include <QLineEdit>
#include <QListView>
#include <QPushButton>
#include <QTest>

#include <algorithm>

namespace ZelkoConsole {
namespace {

using ZelkoGUI::Filter::ExtendedFilterDialog;

/// The window, shown and active, with a row for each column.
class ShownFilter
{
public:
    ShownFilter()
        : m_proxy(nullptr)
        , m_dialog(&m_proxy, QFlags<ExtendedFilterDialog::enFilterColumn>(~0), nullptr)
    {
        m_dialog.show();
        m_dialog.activateWindow();
        QApplication::processEvents();
    }

    ExtendedFilterDialog& dialog() { return m_dialog; }

    template <typename W>
    W* part(const char* editor, const char* name) const
    {
        return m_dialog.findChild<QWidget*>(QLatin1String(editor))->findChild<W*>(QLatin1String(name));
    }

    void check(const char* editor, const char* name) const
    {
        auto* const box = part<QCheckBox>(editor, name);
        box->setFocus();
        QTest::keyClick(box, Qt::Key_Space);
    }

    void type(const char* editor, const char* name, const char* text) const
    {
        auto* const field = part<QLineEdit>(editor, name);
        field->setFocus();
        field->selectAll();
        QTest::keyClicks(field, QLatin1String(text));
    }

    /// The list of the values of an enumeration, opened. Null if there is none.
    QListView* openValues(const char* editor) const
    {
        QTest::mouseClick(part<QPushButton>(editor, "SelectButton"), Qt::LeftButton);
        const QWidgetList windows = QApplication::topLevelWidgets();
        const auto list = std::find_if(windows.begin(), windows.end(), [](const QWidget* window) {
            return window->isVisible() && window->objectName() == QStringLiteral("ValuesListView");
        });
        return list == windows.end() ? nullptr : qobject_cast<QListView*>(*list);
    }

private:
    ZelkoGUI::Filter::MultiFilterSortProxyModel m_proxy;
    ExtendedFilterDialog m_dialog;
};

void pressValue(QListView& list, int value)
{
    constexpr int commands = 2; // all and nothing come first
    const QModelIndex index = list.model()->index(value + commands, 0);
    QTest::mouseClick(list.viewport(), Qt::LeftButton, Qt::NoModifier, list.visualRect(index).center());
}

void paintValues(ScenePainter& painter, const ShownFilter& filter)
{
    QListView* const values = filter.openValues("StatusFilterWidget");
    if (!values) {
        return;
    }
    pressValue(*values, 0);
    pressValue(*values, 3);
    painter.paint(*values, "extended-filter-values");
    values->close();
}

} // namespace

void paintFilterScenes(ScenePainter& painter)
{
    ShownFilter filter;
    painter.paint(filter.dialog(), "extended-filter");
    paintValues(painter, filter);
    filter.check("SizeFilterWidget", "LowerLimitCheckbox");
    filter.type("SizeFilterWidget", "LowerLimitEdit", "250");
    filter.check("StartTimeFilterWidget", "LowerLimitCheckbox");
    filter.check("FrequencyFilterWidget", "UpperLimitCheckbox");
    filter.check("DeletableFilterWidget", "EnableFilter");
    filter.type("NameFilterWidget", "TextEdit", "tower");
    painter.paint(filter.dialog(), "extended-filter-active");
}

} // namespace ZelkoConsole
