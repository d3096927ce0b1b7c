#include <zelkoguibase/filter/extendedfilterdialog.h>

#include "filterfile_p.h"
#include "filterrow_p.h"

#include <zelkoguibase/archive/file_dialog.h>
#include <zelkoguibase/filter/multifiltersortproxymodel.h>

#include <observerbase/errorhandler.h>
#include <observerbase/trace.h>
#include <vornappstartup/cfgcenter.h>
#include <widgetbase/warningbox.h>
#include <zelkobase/models/abstractrecordlistmodel.h>

#include <QComboBox>
#include <QDateTimeEdit>
#include <QDialogButtonBox>
#include <QFileInfo>
#include <QFormLayout>
#include <QHash>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>

#include <algorithm>

namespace ZelkoGUI::Filter {
namespace {

QString folderKey()
{
    return QStringLiteral("ExtendedRecordListFilterFolder");
}

QString rememberedFolder()
{
    return CfgCenter::GetAppCfg(ICfg::UserView)->GetString(folderKey(), QString());
}

// Where the configuration cannot be written now it is written when the application ends; until then the folder is
// remembered all the same.
void rememberFolderOf(const QString& fileName)
{
    ICfg* const configuration = CfgCenter::GetAppCfg(ICfg::UserView);
    configuration->SetString(folderKey(), QFileInfo(fileName).absolutePath());
    configuration->Flush();
}

QString withSuffix(const QString& fileName)
{
    const QString suffix = QStringLiteral("xml");
    return QFileInfo(fileName).suffix() == suffix ? fileName : fileName + QLatin1Char('.') + suffix;
}

// The class is called so in these traces, for whoever searches old ones.
void traceException(const char* what, const RGException& exception, int line)
{
    if (ErrorHandler::Instance()->traces(ErrorHandler::TraceError)) {
        _Q_Trace(QStringLiteral("ExtendedFileDialog: Exception while %1 filter %2")
                     .arg(QLatin1String(what), exception.GetMessage()),
                 __FILE__, line);
    }
}

void describe(QPushButton& button, const char* name, const char* icon, const QString& toolTip)
{
    button.setObjectName(QLatin1String(name));
    button.setIcon(QIcon(QStringLiteral(":/Filter/Icons/%1.svg").arg(QLatin1String(icon))));
    button.setToolTip(toolTip);
}

QString fileFilter()
{
    return ExtendedFilterDialog::tr("XML Files (*.xml)");
}

// As high as the row, with the text in the middle.
QWidget* centredLabel(const QString& text, QWidget* editor)
{
    auto* const widget = new QWidget(editor->parentWidget());
    auto* const label = new QLabel(text, widget);
    label->setBuddy(editor);
    auto* const layout = new QVBoxLayout(widget);
    layout->setContentsMargins({});
    layout->addStretch(1);
    layout->addWidget(label);
    layout->addStretch(1);
    return widget;
}

// The buttons below have no margin beside them, so the editors end where those do.
void endWithoutMargin(QWidget& editor)
{
    QLayout& row = *editor.layout();
    QMargins margins = row.contentsMargins();
    margins.setRight(0);
    row.setContentsMargins(margins);
}

// What stands below each other in different rows gets the width of the widest.
template <typename Part>
void makeEquallyWide(const QWidget& window, const QString& name = QString())
{
    const QList<Part*> parts = window.findChildren<Part*>(name);
    int width = 0;
    for (const Part* const part : parts) {
        width = std::max(width, part->sizeHint().width());
    }
    for (Part* const part : parts) {
        part->setMinimumWidth(width);
    }
}

// Whoever does not see the row a part stands in must hear its name. The editors themselves know nothing of columns.
void nameAfterRow(QWidget& editor, const QString& label)
{
    editor.setAccessibleName(label);
    for (QWidget* const part : editor.findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly)) {
        if (part->focusPolicy() != Qt::NoFocus) {
            const auto* const button = qobject_cast<QAbstractButton*>(part);
            const QString own = part->accessibleName().isEmpty() && button ? button->text() : part->accessibleName();
            const QString name = ExtendedFilterDialog::tr("%1: %2").arg(label, own);
            part->setAccessibleName(name);
            if (qobject_cast<QComboBox*>(part)) {
                part->setAccessibleDescription(name); // the name that Qt tells of one is its choice, on some systems
            }
        }
    }
}

} // namespace

class ExtendedFilterDialog::Private
{
public:
    explicit Private(ExtendedFilterDialog* dialog)
        : q(dialog)
    {}

    QFormLayout* makeRows(MultiFilterSortProxyModel& model, QFlags<enFilterColumn> columns);
    void addRow(const FilterRow& row, MultiFilterSortProxyModel& model, QFormLayout& form);
    QDialogButtonBox* makeButtons();
    void leaveReturnToFocus();
    void followFilters();

    ExtendedFilterDialog* const q;
    QList<QPointer<AbstractFilterCondition>> filters;
    QList<IFilterUI*> filterUIs;
    QPushButton* resetButton = nullptr;
    QHash<enFilterColumn, QPair<QWidget*, QWidget*>> rows;
    const QObject lifetime; // of this; the children of the window live a little longer
};

QFormLayout* ExtendedFilterDialog::Private::makeRows(MultiFilterSortProxyModel& model, QFlags<enFilterColumn> columns)
{
    auto* const form = new QFormLayout;
    form->setSpacing(0);
    for (const FilterRow& row : FilterRow::all()) {
        if (columns.testFlag(row.bit)) {
            addRow(row, model, *form);
        }
    }
    makeEquallyWide<QDateTimeEdit>(*q);
    makeEquallyWide<QComboBox>(*q, QStringLiteral("UnitCombobox"));
    return form;
}

void ExtendedFilterDialog::Private::addRow(const FilterRow& row, MultiFilterSortProxyModel& model, QFormLayout& form)
{
    const FilterRow::Conditions conditions = row.makeConditions();
    for (AbstractFilterCondition* const condition : conditions) {
        filters.append(condition);
        model.addFilter(condition);
    }
    const FilterRow::Editor editor = row.makeEditor(conditions, q);
    editor.widget->setContentsMargins({});
    const QString label = FilterRow::tr(row.label);
    nameAfterRow(*editor.widget, label);
    endWithoutMargin(*editor.widget);
    QWidget* const labelWidget = centredLabel(label, editor.widget);
    form.addRow(labelWidget, editor.widget);
    filterUIs.append(editor.filterUI);
    rows.insert(row.bit, {labelWidget, editor.widget});
}

QDialogButtonBox* ExtendedFilterDialog::Private::makeButtons()
{
    auto* const box = new QDialogButtonBox(q);
    box->setObjectName(QStringLiteral("DialogButtonBox"));
    resetButton = box->addButton(tr("Reset All"), QDialogButtonBox::ResetRole);
    describe(*resetButton, "ResetAllFilterButton", "Reset", tr("reset all filter settings"));
    connect(resetButton, &QPushButton::clicked, q, &ExtendedFilterDialog::sl_resetFilter);
    auto* const save = box->addButton(tr("Save..."), QDialogButtonBox::ActionRole);
    describe(*save, "SaveFilterButton", "Save", tr("save extended filter settings to file"));
    connect(save, &QPushButton::clicked, q, &ExtendedFilterDialog::sl_saveFilterSettings);
    auto* const restore = box->addButton(tr("Restore..."), QDialogButtonBox::ActionRole);
    describe(*restore, "RestoreFilterButton", "OpenFolder", tr("restore extended filter settings from file"));
    connect(restore, &QPushButton::clicked, q, &ExtendedFilterDialog::sl_restoreFilterSettings);
    return box;
}

// A window makes one of its buttons the one that Return presses, wherever the focus is. Here that would reset all.
void ExtendedFilterDialog::Private::leaveReturnToFocus()
{
    for (QPushButton* const button : q->findChildren<QPushButton*>()) {
        button->setAutoDefault(false);
    }
}

void ExtendedFilterDialog::Private::followFilters()
{
    for (const auto& filter : std::as_const(filters)) {
        connect(filter, &AbstractFilterCondition::si_filterChanged, q, &ExtendedFilterDialog::sl_filterChanged);
        connect(filter, &QObject::destroyed, &lifetime, [this] { q->sl_filterChanged(); });
    }
    q->sl_filterChanged();
}

ExtendedFilterDialog::ExtendedFilterDialog(MultiFilterSortProxyModel* model, const QFlags<enFilterColumn>& columns,
                                           QWidget* parent)
    : QDialog(parent, Qt::WindowTitleHint | Qt::WindowSystemMenuHint | Qt::WindowMinMaxButtonsHint)
    , d(std::make_unique<Private>(this))
{
    setObjectName(QStringLiteral("ExtendedFilterDialog"));
    setWindowTitle(tr("Extended Filter Settings"));
    setWindowIcon(QIcon(QStringLiteral(":/Filter/Icons/FilterActive.svg")));
    QFormLayout* const form = d->makeRows(*model, columns);
    auto* const layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addWidget(d->makeButtons());
    d->leaveReturnToFocus();
    d->followFilters();
}

ExtendedFilterDialog::~ExtendedFilterDialog() = default;

void ExtendedFilterDialog::keyPressEvent(QKeyEvent* event)
{
    if (event->key() != Qt::Key_Return && event->key() != Qt::Key_Enter) {
        QDialog::keyPressEvent(event);
    } else if (auto* const button = qobject_cast<QPushButton*>(focusWidget())) {
        button->click();
    }
}

QList<QPointer<AbstractFilterCondition>> ExtendedFilterDialog::filters() const
{
    return d->filters;
}

bool ExtendedFilterDialog::hasActiveFilter() const
{
    return std::any_of(d->filters.cbegin(), d->filters.cend(),
                       [](const auto& filter) { return filter && filter->filterActive(); });
}

void ExtendedFilterDialog::enableInterfaceFilter(bool enable)
{
    for (const auto& filter : std::as_const(d->filters)) {
        if (filter && filter->filterKeyColumn() == ZelkoCommon::AbstractRecordListModel::InterfaceColumn) {
            filter->setEnabled(enable);
        }
    }
    if (const auto row = d->rows.constFind(InterfaceColumn); row != d->rows.cend()) {
        row->first->setVisible(enable);
        row->second->setVisible(enable);
    }
}

void ExtendedFilterDialog::resetFilter()
{
    for (IFilterUI* const editor : std::as_const(d->filterUIs)) {
        editor->resetFilter();
    }
}

void ExtendedFilterDialog::sl_resetFilter()
{
    resetFilter();
}

void ExtendedFilterDialog::sl_filterChanged()
{
    d->resetButton->setEnabled(hasActiveFilter());
}

// A file that cannot be saved is traced and nothing else: the user has the filters before him, and tries again. While
// the file dialog is open everything goes on, and whoever has this window may drop it; so in restoring.
void ExtendedFilterDialog::sl_saveFilterSettings()
{
    const QPointer guard(this);
    try {
        const QString chosen =
            file_dialog::getSaveFileName(this, tr("Save Settings to file"), rememberedFolder(), fileFilter());
        if (!guard || chosen.isEmpty()) {
            return;
        }
        const QString fileName = withSuffix(chosen);
        filterfile::save(d->filters, fileName);
        rememberFolderOf(fileName);
    } catch (const RGException& exception) {
        traceException("saving", exception, __LINE__);
    }
}

void ExtendedFilterDialog::sl_restoreFilterSettings()
{
    const QPointer guard(this);
    try {
        const QString fileName =
            file_dialog::getOpenFileName(this, tr("Restore Settings from file"), rememberedFolder(), fileFilter());
        if (!guard || fileName.isEmpty()) {
            return;
        }
        filterfile::restore(d->filters, fileName);
        rememberFolderOf(fileName);
    } catch (const RGException& exception) {
        traceException("loading", exception, __LINE__);
        if (guard) {
            guiHelper::warn(this, tr("unable to load file"), exception.GetMessage(), QMessageBox::Ok,
                            filterfile::Failure::reasonOf(exception));
        }
    }
}

} // namespace ZelkoGUI::Filter
