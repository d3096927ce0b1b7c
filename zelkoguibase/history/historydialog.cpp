#include <zelkoguibase/history/historydialog.h>

#include <observerbase/errorhandler.h>
#include <observerbase/trace.h>
#include <widgetbase/elidedlabel.h>
#include <widgetbase/plaintooltip.h>
#include <widgetbase/warningbox.h>
#include <zelkoguibase/history/historywidget.h>
#include <zelkoguibase/recordlist/followrecords_p.h>

#include <QDialogButtonBox>
#include <QPointer>
#include <QVBoxLayout>

namespace ZelkoGUI {

using ZelkoCommon::AbstractRecordListModel;

HistoryDialog::HistoryDialog(QWidget* parent)
    : QDialog(parent, Qt::WindowTitleHint | Qt::WindowSystemMenuHint)
{
    setWindowTitle(tr("Edit History Comments"));
    setSizeGripEnabled(true);
    createParts();
    resize(500, 500);
    resetRecord();
}

HistoryDialog::~HistoryDialog()
{
    if (ErrorHandler::Instance()->traces(ErrorHandler::TraceWarning)) {
        _Q_Trace(QStringLiteral("HistoryDialog::~HistoryDialog"), __FILE__, __LINE__);
    }
}

void HistoryDialog::createParts()
{
    m_widget = new HistoryWidget(this);
    m_widget->setObjectName(QStringLiteral("HistoryWidget"));
    m_recordLabel = new guiHelper::ElidedLabel(QString(), this);
    m_recordLabel->setObjectName(QStringLiteral("RecordLabel"));
    auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    buttons->setObjectName(QStringLiteral("DialogButtonBox"));
    auto* const layout = new QVBoxLayout(this);
    layout->addWidget(m_widget, 1);
    layout->addWidget(m_recordLabel);
    layout->addWidget(buttons);
    connect(buttons, &QDialogButtonBox::clicked, this, &HistoryDialog::accept);
    connect(m_widget, &HistoryWidget::si_addHistoryEntry, this, &HistoryDialog::si_addHistoryEntry);
    connect(m_widget, &HistoryWidget::si_deleteHistoryEntry, this, &HistoryDialog::si_deleteHistoryEntry);
}

void HistoryDialog::setRecord(const QString& recordID, AbstractRecordListModel* model)
{
    follow(model);
    m_widget->setRecord(recordID, model);
    m_recordID = recordID;
    sl_allRecordsChanged();
}

void HistoryDialog::resetRecord()
{
    m_recordID.clear();
    follow(nullptr);
    m_widget->resetRecord();
    sl_allRecordsChanged();
}

void HistoryDialog::follow(AbstractRecordListModel* model)
{
    followRecords(m_recordModel, model, this, &HistoryDialog::sl_recordChanged, &HistoryDialog::sl_recordDeleted,
                  &HistoryDialog::sl_allRecordsChanged, &HistoryDialog::sl_modelDeleted);
}

void HistoryDialog::sl_recordChanged(const QString& recordID)
{
    if (recordID == m_recordID) {
        sl_allRecordsChanged();
    }
}

// While the user reads the message the window may be given another record, or go.
void HistoryDialog::sl_recordDeleted(const QString& recordID)
{
    if (recordID != m_recordID) {
        return;
    }
    const QPointer<HistoryDialog> self(this);
    if (isVisible()) {
        const QString deletedID = recordID;
        guiHelper::warn(this, tr("Record Deleted"), tr("The record has been deleted"), QMessageBox::Ok);
        if (!self || deletedID != m_recordID) {
            return;
        }
    }
    resetRecord();
}

void HistoryDialog::sl_allRecordsChanged()
{
    const auto record = m_recordModel ? m_recordModel->getRecordData(m_recordID) : nullptr;
    if (record) {
        const QString name = record->GetRecordName();
        showOnLabel(name.isEmpty() ? tr("n/a") : name, tr("Record ID:") + m_recordID);
    } else {
        showOnLabel(QString(), tr("no record set"));
    }
}

void HistoryDialog::showOnLabel(const QString& name, const QString& toolTip)
{
    m_recordLabel->setText(tr("Record: ") + name);
    m_recordLabel->setToolTip(guiHelper::plainToolTip(toolTip));
}

void HistoryDialog::sl_modelDeleted()
{
    resetRecord();
}

} // namespace ZelkoGUI
