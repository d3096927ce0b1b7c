#include <zelkoguibase/editrecord/editrecorddialog.h>

#include <widgetbase/elidedlabel.h>
#include <widgetbase/plaintooltip.h>
#include <widgetbase/rowheadertable.h>
#include <widgetbase/warningbox.h>
#include <zelkoguibase/bookmarks/bookmarkedittimedelegate.h>
#include <zelkoguibase/bookmarks/bookmarkmodel.h>
#include <zelkoguibase/editrecord/copyrecordwidget.h>
#include <zelkoguibase/recordlist/followrecords_p.h>
#include <zelkoguibase/replaybar/replaybarwidget.h>

#include <QDialogButtonBox>
#include <QHeaderView>
#include <QPointer>
#include <QPushButton>
#include <QTableView>
#include <QVBoxLayout>

namespace ZelkoGUI {

using ZelkoCommon::AbstractRecordListModel;

namespace {

QPushButton* addButton(QDialogButtonBox& box, const char* name, const char* icon, const QString& text,
                       const QString& toolTip)
{
    QPushButton* const button = box.addButton(text, QDialogButtonBox::ActionRole);
    button->setObjectName(QLatin1String(name));
    button->setIcon(QIcon(QLatin1String(icon)));
    button->setToolTip(toolTip);
    return button;
}

} // namespace

EditRecordDialog::EditRecordDialog(const QFlags<enOption>& options, QWidget* parent)
    : QDialog(parent, Qt::WindowTitleHint | Qt::WindowSystemMenuHint)
    , m_bookmarkModel(new BookmarkModel(!options.testFlag(OptionEditBookmarks), this))
{
    setObjectName(QStringLiteral("EditRecordDialog"));
    setWindowTitle(tr("Edit Record"));
    setSizeGripEnabled(true);
    connect(m_bookmarkModel, &BookmarkModel::si_updateBookmarks, this, &EditRecordDialog::si_setBookmarkEntries);
    createParts(options);
    resetRecord();
    const bool hasTable = options.testFlag(OptionEditBookmarks);
    resize(hasTable || m_replayBar ? 500 : 200, hasTable ? 500 : 200);
}

EditRecordDialog::~EditRecordDialog() = default;

// The copy widget shows its range on the bar, and so comes behind it.
void EditRecordDialog::createParts(Options options)
{
    QTableView* const table = options.testFlag(OptionEditBookmarks) ? createTable() : nullptr;
    if (options.testFlag(OptionReplayBar)) {
        createReplayBar();
    }
    if (options.testFlag(OptionRecordInfo)) {
        m_recordInfoLabel = new guiHelper::ElidedLabel(QString(), this);
        m_recordInfoLabel->setObjectName(QStringLiteral("RecordInfoLabel"));
    }
    if (options.testFlag(OptionCopyRecord)) {
        createCopyWidget(!options.testFlag(OptionRequireRecordName));
    }
    layOut(table, createButtonBox());
}

// A time with its date and a warning has room in its column.
QTableView* EditRecordDialog::createTable()
{
    QTableView* const table = guiHelper::makeRowHeaderTable(m_bookmarkModel, QStringLiteral("BookmarkTableView"), this);
    table->setAccessibleName(tr("bookmarks"));
    table->setAccessibleDescription(tr("Insert adds a bookmark, Delete deletes the selected one"));
    table->setColumnWidth(BookmarkModel::TimeColumn, table->fontMetrics().horizontalAdvance(QString(25, u'0')));
    table->setItemDelegateForColumn(BookmarkModel::TimeColumn, new BookmarkEditTimeDelegate(table));
    connect(table->verticalHeader(), &QHeaderView::sectionClicked, m_bookmarkModel,
            &BookmarkModel::sl_verticalHeaderClicked);
    return table;
}

void EditRecordDialog::createReplayBar()
{
    m_replayBar = new ReplayBarWidget(m_bookmarkModel, this);
    m_replayBar->setObjectName(QStringLiteral("ReplayBarWidget"));
    connect(m_replayBar, &ReplayBarWidget::si_currentPosChanged, m_bookmarkModel,
            &BookmarkModel::sl_setNewBookmarkTime);
}

void EditRecordDialog::createCopyWidget(bool allowEmptyName)
{
    m_copyWidget = new CopyRecordWidget(m_replayBar, m_bookmarkModel, allowEmptyName, this);
    m_copyWidget->setObjectName(QStringLiteral("CopyRecordWidget"));
    connect(m_copyWidget, &CopyRecordWidget::si_copyRecord, this, &EditRecordDialog::si_copyRecord);
}

QDialogButtonBox* EditRecordDialog::createButtonBox()
{
    const bool readOnly = m_bookmarkModel->readOnly();
    auto* const box = new QDialogButtonBox(readOnly ? QDialogButtonBox::Close : QDialogButtonBox::Ok, this);
    box->setObjectName(QStringLiteral("DialogButtonBox"));
    if (!readOnly) {
        addEditButtons(*box);
    }
    connect(box, &QDialogButtonBox::accepted, this, &EditRecordDialog::accept);
    connect(box, &QDialogButtonBox::rejected, this, &EditRecordDialog::reject);
    return box;
}

void EditRecordDialog::addEditButtons(QDialogButtonBox& box)
{
    const QPushButton* const normalize =
        addButton(box, "NormalizeButton", ":/Zelko/Bookmarks/Normalize.svg", tr("Normalize"),
                  tr("create unique timestamps in the correct sequence"));
    connect(m_bookmarkModel, &BookmarkModel::si_normalizedChanged, normalize, &QWidget::setHidden);
    connect(normalize, &QPushButton::clicked, m_bookmarkModel, &BookmarkModel::sl_normalize);
    const QPushButton* const cut =
        addButton(box, "ApplyRangeButton", ":/Zelko/Bookmarks/ApplyRange.svg", tr("Cut Range"),
                  tr("remove all entries which do not fit into the record range"));
    connect(m_bookmarkModel, &BookmarkModel::si_timestampsOutOfRange, cut, &QWidget::setVisible);
    connect(cut, &QPushButton::clicked, m_bookmarkModel, &BookmarkModel::sl_removeOutOfRange);
}

void EditRecordDialog::layOut(QTableView* table, QDialogButtonBox* buttons)
{
    auto* const layout = new QVBoxLayout(this);
    if (m_copyWidget) {
        layout->addWidget(m_copyWidget);
    }
    if (m_replayBar) {
        layout->addWidget(m_replayBar);
    }
    if (table) {
        layout->addWidget(table, 1);
    } else {
        layout->addStretch();
    }
    if (m_recordInfoLabel) {
        layout->addWidget(m_recordInfoLabel);
    }
    layout->addWidget(buttons);
}

void EditRecordDialog::setRecord(const QString& recordID, AbstractRecordListModel* model, bool delayed,
                                 const QString& deviceID)
{
    m_recordID = recordID;
    follow(model);
    if (m_replayBar) {
        m_replayBar->setRecord(recordID, model, deviceID);
    }
    m_bookmarkModel->setRecord(recordID, model, delayed, deviceID);
    if (m_copyWidget) {
        m_copyWidget->setRecord(recordID, model);
    }
    updateRecordData();
}

void EditRecordDialog::resetRecord()
{
    setRecord(QString(), nullptr, false, QString());
}

void EditRecordDialog::follow(AbstractRecordListModel* model)
{
    followRecords(m_recordModel, model, this, &EditRecordDialog::sl_recordChanged, &EditRecordDialog::sl_recordDeleted,
                  &EditRecordDialog::sl_allRecordsChanged, &EditRecordDialog::sl_modelDeleted);
}

void EditRecordDialog::setPromptUnsavedChanged(bool prompt)
{
    m_promptUnsavedChanged = prompt;
}

bool EditRecordDialog::promptUnsavedChanged() const
{
    return m_promptUnsavedChanged;
}

BookmarkModel* EditRecordDialog::bookmarkModel() const
{
    return m_bookmarkModel;
}

// The recorder may take the record away, and the device the window, while the user makes up his mind.
bool EditRecordDialog::mayClose()
{
    const bool asks = !m_bookmarkModel->readOnly() && m_promptUnsavedChanged &&
                      m_bookmarkModel->getSynchState() == BookmarkModel::SynchLocalChange;
    if (!asks) {
        return true;
    }
    const QPointer<EditRecordDialog> self(this);
    const auto answer = guiHelper::ask(this, tr("Save Bookmarks"),
                                       tr("The changes made to the bookmarks have not been saved. Do you want to save "
                                          "them before closing the window?"),
                                       QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel);
    if (self && answer == QMessageBox::Yes) {
        m_bookmarkModel->sl_synchronize();
    }
    return self && (answer == QMessageBox::Yes || answer == QMessageBox::No);
}

void EditRecordDialog::accept()
{
    if (mayClose()) {
        QDialog::accept();
    }
}

// A key that closes windows must not cost what was edited.
void EditRecordDialog::reject()
{
    if (mayClose()) {
        QDialog::reject();
    }
}

void EditRecordDialog::sl_recordChanged(const QString& recordID)
{
    if (recordID == m_recordID) {
        updateRecordData();
    }
}

void EditRecordDialog::sl_recordDeleted(const QString& recordID)
{
    if (recordID == m_recordID) {
        resetRecord();
    }
}

void EditRecordDialog::sl_allRecordsChanged()
{
    updateRecordData();
}

void EditRecordDialog::sl_modelDeleted()
{
    resetRecord();
}

// Without a record nothing follows the colon, not even a blank.
void EditRecordDialog::updateRecordData()
{
    if (!m_recordInfoLabel) {
        return;
    }
    const auto record = m_recordModel ? m_recordModel->getRecordData(m_recordID) : nullptr;
    if (record) {
        const QString name = record->GetRecordName().isEmpty() ? tr("n/a") : record->GetRecordName();
        m_recordInfoLabel->setText(tr("Record: ") + name);
        m_recordInfoLabel->setToolTip(guiHelper::plainToolTip(tr("Record ID:") + m_recordID));
    } else {
        m_recordInfoLabel->setText(tr("Record:"));
        m_recordInfoLabel->setToolTip(QString());
    }
}

} // namespace ZelkoGUI
