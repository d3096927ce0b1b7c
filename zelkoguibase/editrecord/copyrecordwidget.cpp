#include <zelkoguibase/editrecord/copyrecordwidget.h>

#include "rangetexts_p.h"
#include "recordspan_p.h"

#include <zelkoguibase/bookmarks/bookmarkmodel.h>
#include <zelkoguibase/editrecord/positionwidget.h>
#include <zelkoguibase/recordlist/followrecords_p.h>
#include <zelkoguibase/replaybar/replaybarwidget.h>

#include <QGridLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QSignalBlocker>
#include <QStyle>
#include <QToolButton>

#include <algorithm>

namespace ZelkoGUI {

using Record = ZELKO_XML::ZELKO_RecordData;
using ZelkoCommon::AbstractRecordListModel;

namespace {

constexpr int noStatus = -1;

template <typename Widget>
Widget* named(Widget* widget, const char* name)
{
    widget->setObjectName(QLatin1String(name));
    return widget;
}

QString nameOfCopy(const Record* record)
{
    if (!record) {
        return QStringLiteral("Copy");
    }
    const QString name = record->GetRecordName().isEmpty() ? record->GetRecordID() : record->GetRecordName();
    return name.isEmpty() ? QStringLiteral("Copy") : name + QStringLiteral("_Copy");
}

} // namespace

struct CopyRecordWidget::Private
{
    Private(BookmarkModel* model, bool emptyName)
        : bookmarks(model)
        , allowsEmptyName(emptyName)
    {}

    std::shared_ptr<const Record> record() const { return records ? records->getRecordData(recordID) : nullptr; }
    bool hasRange() const { return start->value() < stop->value(); }
    bool canBeSaved() const;
    void createLabels(CopyRecordWidget* owner);
    void createName(CopyRecordWidget* owner);
    QGridLayout* createGrid(CopyRecordWidget* owner);
    void show(const Record* record);
    void showPositions(bool enabled);

    BookmarkModel* const bookmarks;
    AbstractRecordListModel* records = nullptr;
    QString recordID;
    const bool allowsEmptyName;
    PositionWidget* start = nullptr;
    PositionWidget* stop = nullptr;
    QLabel* recordInfo = nullptr;
    QLabel* warning = nullptr;
    QLabel* durationInfo = nullptr;
    QLineEdit* name = nullptr;
    QToolButton* save = nullptr;
    RecordSpan span;
    int status = noStatus;
};

bool CopyRecordWidget::Private::canBeSaved() const
{
    return status == static_cast<int>(Record::RecordStatus::Finished) && span.startOffset < span.stopOffset &&
           hasRange() && !recordID.isEmpty() && records && (allowsEmptyName || !name->text().isEmpty());
}

void CopyRecordWidget::Private::createLabels(CopyRecordWidget* owner)
{
    recordInfo = named(new QLabel(owner), "RecordInfoLabel");
    durationInfo = named(new QLabel(owner), "DurationInfoLabel");
    warning = named(new QLabel(owner), "RecordWarningLabel");
    const int size = owner->style()->pixelMetric(QStyle::PM_SmallIconSize, nullptr, owner);
    const QIcon icon = owner->style()->standardIcon(QStyle::SP_MessageBoxWarning, nullptr, owner);
    warning->setPixmap(icon.pixmap(QSize(size, size), owner->devicePixelRatioF()));
    warning->setToolTip(tr("the current record has invalid record parameter (offsets,timestamps) - saving a new record "
                           "is not possible"));
    warning->setAccessibleName(warning->toolTip());
    warning->hide();
}

void CopyRecordWidget::Private::createName(CopyRecordWidget* owner)
{
    name = named(new QLineEdit(owner), "RecordNameEdit");
    save = named(new QToolButton(owner), "SaveButton");
    save->setIcon(QIcon(QStringLiteral(":/Zelko/CopyRecord/Save.svg")));
    save->setToolTip(tr("Save selected range as new record"));
    save->setAccessibleName(save->toolTip());
}

QGridLayout* CopyRecordWidget::Private::createGrid(CopyRecordWidget* owner)
{
    auto* const grid = new QGridLayout;
    auto* const nameLabel = new QLabel(tr("Record Name:"), owner);
    nameLabel->setBuddy(name);
    grid->addWidget(new QLabel(tr("Record Range:"), owner), 0, 0);
    grid->addWidget(recordInfo, 0, 1, 1, 2);
    grid->addWidget(warning, 0, 3);
    grid->addWidget(new QLabel(tr("Selected Range:"), owner), 1, 0);
    grid->addWidget(durationInfo, 1, 1, 1, 3);
    grid->addWidget(nameLabel, 2, 0);
    grid->addWidget(name, 2, 1);
    grid->addWidget(save, 2, 2);
    grid->setColumnStretch(1, 1);
    return grid;
}

// The signal of the stop, which comes last, is that of the whole range.
void CopyRecordWidget::Private::showPositions(bool enabled)
{
    {
        const QSignalBlocker blocker(start);
        start->setRange(span.startTime, span.stopTime, enabled);
    }
    stop->setRange(span.startTime, span.stopTime, enabled);
}

void CopyRecordWidget::Private::show(const Record* record)
{
    span = record ? RecordSpan(*record) : RecordSpan();
    status = record ? static_cast<int>(record->GetRecordStatus()) : noStatus;
    showPositions(record != nullptr);
    name->setText(nameOfCopy(record));
    name->setEnabled(record != nullptr);
    recordInfo->setText(record ? rangeText(span.startTime, span.stopTime) : tr("n/a"));
    recordInfo->setToolTip(record ? tr(" duration: ") + durationText(span.startTime, span.stopTime) : QString());
    warning->setVisible(record && !span.isRising());
}

CopyRecordWidget::CopyRecordWidget(ReplayBarWidget* replayBar, BookmarkModel* bookmarkModel, bool allowEmptyName,
                                   QWidget* parent)
    : QWidget(parent)
    , d(std::make_unique<Private>(bookmarkModel, allowEmptyName))
{
    setObjectName(QStringLiteral("CopyRecordWidget"));
    createParts(replayBar);
    connectPosition(d->start, &CopyRecordWidget::sl_startPositionChanged);
    connectPosition(d->stop, &CopyRecordWidget::sl_stopPositionChanged);
    connect(d->name, &QLineEdit::textChanged, this, &CopyRecordWidget::sl_updateSaveButton);
    connect(d->save, &QToolButton::clicked, this, &CopyRecordWidget::sl_save);
    if (replayBar) {
        connectReplayBar(replayBar);
    }
    if (bookmarkModel) {
        connectBookmarks();
    }
    d->show(nullptr);
    sl_updateSelectedRange();
    sl_updateSaveButton();
}

CopyRecordWidget::~CopyRecordWidget() = default;

void CopyRecordWidget::createParts(ReplayBarWidget* replayBar)
{
    d->start = named(new PositionWidget(this, true, replayBar), "StartPosition");
    d->stop = named(new PositionWidget(this, false, replayBar), "StopPosition");
    d->createLabels(this);
    d->createName(this);
    auto* const row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    auto* const positions = new QVBoxLayout;
    positions->addWidget(d->start);
    positions->addWidget(d->stop);
    row->addLayout(positions);
    row->addLayout(d->createGrid(this), 1);
}

void CopyRecordWidget::connectPosition(const PositionWidget* position, void (CopyRecordWidget::*changed)(quint64))
{
    connect(position, &PositionWidget::si_valueChanged, this, changed);
    connect(position, &PositionWidget::si_valueChanged, this, &CopyRecordWidget::sl_updateSaveButton);
    connect(position, &PositionWidget::si_valueChanged, this, &CopyRecordWidget::sl_updateSelectedRange);
}

void CopyRecordWidget::connectReplayBar(ReplayBarWidget* replayBar)
{
    connect(replayBar, &ReplayBarWidget::si_currentPosChanged, this, &CopyRecordWidget::sl_currentPosChanged);
    connect(this, &CopyRecordWidget::si_setRange, replayBar, &ReplayBarWidget::sl_setRange);
    connect(this, &CopyRecordWidget::si_resetRange, replayBar, &ReplayBarWidget::sl_resetRange);
    Q_EMIT si_resetRange();
}

void CopyRecordWidget::connectBookmarks()
{
    connect(d->bookmarks, &BookmarkModel::dataChanged, this, &CopyRecordWidget::sl_bookmarksChanged);
    connect(d->bookmarks, &BookmarkModel::modelReset, this, &CopyRecordWidget::sl_bookmarksChanged);
    connect(d->bookmarks, &BookmarkModel::rowsInserted, this, &CopyRecordWidget::sl_bookmarksChanged);
    connect(d->bookmarks, &BookmarkModel::rowsRemoved, this, &CopyRecordWidget::sl_bookmarksChanged);
    sl_bookmarksChanged();
}

void CopyRecordWidget::setRecord(const QString& recordID, AbstractRecordListModel* model)
{
    d->recordID = recordID;
    follow(model);
    sl_allRecordsChanged();
    sl_updateSaveButton();
}

void CopyRecordWidget::resetRecord()
{
    setRecord(QString(), nullptr);
}

void CopyRecordWidget::follow(AbstractRecordListModel* model)
{
    followRecords(d->records, model, this, &CopyRecordWidget::sl_recordChanged, &CopyRecordWidget::sl_recordDeleted,
                  &CopyRecordWidget::sl_allRecordsChanged, &CopyRecordWidget::sl_modelDeleted);
}

// The window of this may have a default button, which is not what somebody means who ends a name or a time.
void CopyRecordWidget::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        event->accept();
    } else {
        QWidget::keyPressEvent(event);
    }
}

void CopyRecordWidget::sl_recordChanged(const QString& recordID)
{
    if (recordID == d->recordID) {
        sl_allRecordsChanged();
    }
}

void CopyRecordWidget::sl_recordDeleted(const QString& recordID)
{
    if (recordID == d->recordID) {
        resetRecord();
    }
}

void CopyRecordWidget::sl_allRecordsChanged()
{
    d->show(d->record().get());
}

void CopyRecordWidget::sl_modelDeleted()
{
    resetRecord();
}

void CopyRecordWidget::sl_bookmarksChanged()
{
    QList<PositionWidget::Bookmark> bookmarks;
    for (const BookmarkModel::Entry& entry : d->bookmarks->entries()) {
        bookmarks.append({entry.GetTimestamp(), entry.GetBookmark()});
    }
    std::sort(bookmarks.begin(), bookmarks.end());
    d->start->setBookmarks(bookmarks);
    d->stop->setBookmarks(bookmarks);
}

// Each end of the range follows the bar by itself.
void CopyRecordWidget::sl_currentPosChanged(quint64) {}

void CopyRecordWidget::sl_startPositionChanged(quint64 value)
{
    if (value >= d->stop->value()) {
        d->stop->setValueSilently(d->span.stopTime);
    }
}

void CopyRecordWidget::sl_stopPositionChanged(quint64 value)
{
    if (value <= d->start->value()) {
        d->start->setValueSilently(d->span.startTime);
    }
}

void CopyRecordWidget::sl_updateSaveButton()
{
    d->save->setEnabled(d->canBeSaved());
}

void CopyRecordWidget::sl_updateSelectedRange()
{
    if (d->hasRange()) {
        Q_EMIT si_setRange(d->start->value(), d->stop->value());
        d->durationInfo->setText(durationText(d->start->value(), d->stop->value()));
    } else {
        Q_EMIT si_resetRange();
        d->durationInfo->setText(tr("n/a"));
    }
}

// The start of a record that does not begin with a millisecond is shown a little before it.
void CopyRecordWidget::sl_save()
{
    const quint64 start = std::max(d->start->value(), d->span.startTime);
    Q_EMIT si_copyRecord(d->recordID, d->span.offsetAt(start), d->span.offsetAt(d->stop->value()), d->name->text());
}

} // namespace ZelkoGUI
