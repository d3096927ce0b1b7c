#include <console/demo/scenepainter.h>
#include <console/demo/scenes.h>
#include <console/hands/operatorhands.h>

#include <zelkobase/models/abstractrecordlistmodel.h>
#include <zelkoguibase/filter/booleanbuttonfilterwidget.h>
#include <zelkoguibase/filter/booleancombofilterwidget.h>
#include <zelkoguibase/filter/booleanfiltercondition.h>
#include <zelkoguibase/filter/datetimefilterwidget.h>
#include <zelkoguibase/filter/enumerationfilterwidget.h>
#include <zelkoguibase/filter/sizefilterwidget.h>
#include <zelkoguibase/filter/stringfiltercondition.h>
#include <zelkoguibase/filter/textfilterwidget.h>

#include <QApplication>
#include <QCheckBox>
#include <QFormLayout>
#include <QLineEdit>
#include <QListView>
#include <QPushButton>
#include <QTest>

namespace ZelkoConsole {
namespace {

using namespace ZelkoGUI::Filter;
using Status = ZELKO_XML::ZELKO_RecordData::RecordStatus;

constexpr int cellRole = ZelkoCommon::AbstractRecordListModel::ValueRole;

QList<QPair<Status, QString>> statuses()
{
    return EnumerationFilterWidget<Status>::numbered(ZELKO_XML::ZELKO_RecordData::GetGUIRecordStatuss());
}

/// One editor of each kind below the other, each with conditions of its own.
class PaintedEditors
{
public:
    PaintedEditors();

    QWidget& window() { return m_window; }
    QWidget& status() { return *m_status; }
    void activate();
    void switchEverythingOn();
    QListView* openStatuses();

private:
    template <typename T>
    QList<NumberFilterCondition<T>*> limits(int column)
    {
        return {new NumberFilterCondition<T>(T(), column, cellRole, &m_conditions),
                new NumberFilterCondition<T>(T(), column, cellRole, &m_conditions)};
    }
    void addFlags(QFormLayout* rows);

    QObject m_conditions;
    QWidget m_window;
    QWidget* m_text;
    QWidget* m_status;
};

PaintedEditors::PaintedEditors()
    : m_text(new TextFilterWidget(new StringFilterCondition(0, cellRole, &m_conditions), nullptr))
    , m_status(new EnumerationFilterWidget<Status>(
          new EnumerationFilterCondition<Status>(static_cast<int>(statuses().size()), 8, cellRole, &m_conditions),
          statuses(), nullptr))
{
    const QList<QPair<QString, double>> units{{QStringLiteral("Byte"), 1}, {QStringLiteral("kByte"), 1024}};
    auto* const rows = new QFormLayout(&m_window);
    rows->addRow(QStringLiteral("Name"), m_text);
    rows->addRow(QStringLiteral("Size"), new SizeFilterWidget(limits<double>(1), units, nullptr));
    rows->addRow(QStringLiteral("Start Time"), new DateTimeFilterWidget(limits<QDateTime>(2), nullptr));
    rows->addRow(QStringLiteral("Duration"), new DateTimeFilterWidget(limits<QTime>(4), nullptr));
    rows->addRow(QStringLiteral("Status"), m_status);
    addFlags(rows);
    for (QHBoxLayout* const row : m_window.findChildren<QHBoxLayout*>()) {
        row->setContentsMargins({}); // labels stand beside the first line of a row
    }
}

void PaintedEditors::addFlags(QFormLayout* rows)
{
    auto* const button =
        new BooleanButtonFilterWidget(new BooleanFilterCondition(12, cellRole, &m_conditions), nullptr);
    button->setLabels({QStringLiteral("no"), QIcon(QStringLiteral(":/Zelko/RecordList/ResetDeletable.svg"))},
                      {QStringLiteral("yes"), QIcon(QStringLiteral(":/Zelko/RecordList/SetDeletable.svg"))});
    rows->addRow(QStringLiteral("Deletable"), button);
    rows->addRow(QStringLiteral("Kept"),
                 new BooleanComboFilterWidget(new BooleanFilterCondition(12, cellRole, &m_conditions),
                                              QStringLiteral("for good"), QStringLiteral("for now"), nullptr));
}

// The keys of an operator go to the window that is active.
void PaintedEditors::activate()
{
    m_window.resize(720, m_window.sizeHint().height());
    m_window.show();
    m_window.activateWindow();
    QApplication::processEvents();
    m_window.setFocus();
}

void PaintedEditors::switchEverythingOn()
{
    for (QCheckBox* const check : m_window.findChildren<QCheckBox*>()) {
        operatorhands::toggle(*check);
    }
    operatorhands::type(*m_text->findChild<QLineEdit*>(QStringLiteral("TextEdit")), QStringLiteral("Tower"));
}

/// The list of values, with one that is taken away by a click; null if there is none.
QListView* PaintedEditors::openStatuses()
{
    QTest::mouseClick(m_status->findChild<QPushButton*>(QStringLiteral("SelectButton")), Qt::LeftButton);
    for (QWidget* const top : QApplication::topLevelWidgets()) {
        if (auto* const list = qobject_cast<QListView*>(top); list && list->isVisible()) {
            const QRect row = list->visualRect(list->model()->index(3, 0));
            QTest::mouseClick(list->viewport(), Qt::LeftButton, Qt::NoModifier, row.center());
            return list;
        }
    }
    return nullptr;
}

} // namespace

void paintFilterEditorScenes(ScenePainter& painter)
{
    PaintedEditors editors;
    editors.activate();
    painter.paint(editors.window(), "filter-editors");
    editors.switchEverythingOn();
    painter.paint(editors.window(), "filter-editors-in-use");
    if (QListView* const list = editors.openStatuses()) {
        list->activateWindow();
        list->setFocus();
        painter.paint(*list, "filter-editor-values");
        list->close();
    }
    painter.paint(editors.status(), "filter-editor-values-chosen");
}

} // namespace ZelkoConsole
