#include <zelkoguibase/history/historywidget.h>

#include "historyediting_p.h"

#include <widgetbase/qheaderviewcolumnhandler.h>
#include <widgetbase/rowheadertable.h>
#include <zelkoguibase/history/historymodel.h>

#include <QCheckBox>
#include <QHeaderView>
#include <QTableView>
#include <QVBoxLayout>

namespace ZelkoGUI {

HistoryWidget::HistoryWidget(QWidget* parent)
    : HistoryWidget(QString(), nullptr, parent)
{}

HistoryWidget::HistoryWidget(const QString& recordID, ZelkoCommon::AbstractRecordListModel* model, QWidget* parent)
    : QWidget(parent)
    , m_model(new HistoryModel(this))
{
    m_model->setRecord(recordID, model);
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(createView(), 1);
    layout->addWidget(createCheckBox());
    connect(m_model, &HistoryModel::si_addHistoryEntry, this, &HistoryWidget::sl_addHistory);
    connect(m_model, &HistoryModel::si_removeHistoryEntry, this, &HistoryWidget::sl_deleteHistory);
}

HistoryWidget::~HistoryWidget()
{
    m_columnHandler->saveColumnStatus();
}

// An editor in a cell that is not the current one would not be scrolled into sight.
QTableView* HistoryWidget::createView()
{
    QTableView* const view = guiHelper::makeRowHeaderTable(m_model, QStringLiteral("HistoryTableView"), this);
    view->setAccessibleName(tr("history comments"));
    view->setAccessibleDescription(tr("Insert adds a comment, Delete deletes the selected one"));
    view->setColumnWidth(HistoryModel::TimeColumn, 120);
    m_columnHandler =
        new guiHelper::QHeaderViewColumnHandler(view->horizontalHeader(), QStringLiteral("HistoryTable"), this);
    m_columnHandler->restoreColumnStatus();
    // A width that a stretched column was given is its least one; the texts are to take what the window has.
    view->horizontalHeader()->resizeSection(HistoryModel::TextColumn, view->horizontalHeader()->minimumSectionSize());
    connect(m_model, &HistoryModel::si_edit, view, &QTableView::setCurrentIndex);
    connect(m_model, &HistoryModel::si_edit, view, qOverload<const QModelIndex&>(&QTableView::edit));
    connect(view->verticalHeader(), &QHeaderView::sectionClicked, m_model, &HistoryModel::sl_verticalHeaderClicked);
    new HistoryEditing(m_model, view);
    return view;
}

QWidget* HistoryWidget::createCheckBox()
{
    auto* const box = new QCheckBox(tr("Add new text immediately"), this);
    box->setObjectName(QStringLiteral("ImmediateCheckbox"));
    box->setChecked(m_model->addTextImmediately());
    connect(box, &QCheckBox::toggled, m_model, &HistoryModel::sl_addTextImmediately);
    return box;
}

void HistoryWidget::setRecord(const QString& recordID, ZelkoCommon::AbstractRecordListModel* model)
{
    m_model->setRecord(recordID, model);
}

void HistoryWidget::resetRecord()
{
    m_model->resetRecord();
}

void HistoryWidget::sl_addHistory(const QString& entry)
{
    Q_EMIT si_addHistoryEntry(m_model->recordID(), entry);
}

void HistoryWidget::sl_deleteHistory(quint64 timestamp)
{
    Q_EMIT si_deleteHistoryEntry(m_model->recordID(), timestamp);
}

} // namespace ZelkoGUI
