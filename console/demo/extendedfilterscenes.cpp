#include <console/demo/scenepainter.h>
#include <console/demo/scenes.h>
#include <console/hands/operatorhands.h>

#include <zelkoguibase/filter/extendedfilterdialog.h>
#include <zelkoguibase/filter/multifiltersortproxymodel.h>

#include <QApplication>
#include <QCheckBox>
#include <QLineEdit>

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

    void check(const char* editor, const char* name) const { operatorhands::toggle(*part<QCheckBox>(editor, name)); }

    void type(const char* editor, const char* name, const char* text) const
    {
        auto* const field = part<QLineEdit>(editor, name);
        field->selectAll();
        operatorhands::type(*field, QLatin1String(text));
    }

private:
    ZelkoGUI::Filter::MultiFilterSortProxyModel m_proxy;
    ExtendedFilterDialog m_dialog;
};

} // namespace

void paintExtendedFilterScenes(ScenePainter& painter)
{
    ShownFilter filter;
    painter.paint(filter.dialog(), "extended-filter");
    filter.check("SizeFilterWidget", "LowerLimitCheckbox");
    filter.type("SizeFilterWidget", "LowerLimitEdit", "250");
    filter.check("StartTimeFilterWidget", "LowerLimitCheckbox");
    filter.check("FrequencyFilterWidget", "UpperLimitCheckbox");
    filter.check("DeletableFilterWidget", "EnableFilter");
    filter.type("NameFilterWidget", "TextEdit", "tower");
    painter.paint(filter.dialog(), "extended-filter-active");
}

} // namespace ZelkoConsole
