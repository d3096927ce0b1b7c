#include <zelkoguibase/bookmarks/bookmarkmodel.h>

#include "bookmarkbars_p.h"
#include "bookmarkcells_p.h"
#include "bookmarklist_p.h"
#include "bookmarkrecord_p.h"
#include "bookmarktimes_p.h"

#include <chartcontrols/vcreplaybar.h>
#include <observerbase/datetime.h>
#include <zelkobase/data/zelko_recorddata.h>
#include <zelkoguibase/bookmarks/bookmarkmodelconnector.h>
#include <zelkoguibase/recordlist/followrecords_p.h>

namespace ZelkoGUI {

using ZelkoCommon::AbstractRecordListModel;

struct BookmarkModel::Private
{
    Private(BookmarkModel* theOwner, bool readOnly)
        : owner(theOwner)
        , isReadOnly(readOnly)
    {}

    bool isEditable() const;
    bool isEntry(const QModelIndex& index) const { return index.isValid() && list.has(index.row()); }
    void setState(enSynchState newState);
    void unlock();
    void unlockLater();
    void announceHeader();
    void announceWholeList();
    template <typename Change>
    void reset(Change change);

    void followRecordModel(AbstractRecordListModel* model);
    void refresh();
    void takeEntries(const Entries& entries);
    void updateLimits(const BookmarkRecord::Data* data);

    void changed();
    void showOnBars() { bars.show(list.entries(), isEditable()); }
    void change(int row, const Entry& entry);
    void setTime(int row, const QDateTime& time);
    void setText(int row, const QString& text);

    BookmarkModel* const owner;
    const bool isReadOnly;
    BookmarkBars bars;
    BookmarkRecord record;
    BookmarkTimes times;
    BookmarkList list;
    enSynchState state = SynchNoRecord;
    quint64 newBookmarkTime = 0;
    SingleShot singleShot = Vorn::callLater;
    bool isResetting = false;
    bool isHeaderDue = false; // once the reset has ended
    std::unique_ptr<BookmarkModelConnector> connector;
};

bool BookmarkModel::Private::isEditable() const
{
    return state != SynchNoRecord && state != SynchPending;
}

void BookmarkModel::Private::setState(enSynchState newState)
{
    if (newState == state) {
        return;
    }
    state = newState;
    Q_EMIT owner->si_synchStateChanged(state);
    bars.setEditable(isEditable());
}

void BookmarkModel::Private::unlock()
{
    if (state == SynchPending && !isReadOnly) {
        setState(SynchInSync);
        announceHeader();
    }
}

// Never taken back: one that comes too late finds nothing to unlock.
void BookmarkModel::Private::unlockLater()
{
    singleShot(UnlockDelay, owner, [this] { owner->sl_resetSynchState(); });
}

// A proxy knows the rows of before until the reset has ended, and would look for the new ones among those.
void BookmarkModel::Private::announceHeader()
{
    isHeaderDue = isResetting;
    if (isHeaderDue) {
        return;
    }
    Q_EMIT owner->headerDataChanged(Qt::Vertical, 0, list.count());
}

void BookmarkModel::Private::announceWholeList()
{
    Q_EMIT owner->si_normalizedChanged(owner->normalized());
    Q_EMIT owner->si_timestampsOutOfRange(owner->timesOutOfRange());
}

// A step of a reset may be one by itself elsewhere; to views they are one.
template <typename Change>
void BookmarkModel::Private::reset(Change change)
{
    if (isResetting) {
        change();
        return;
    }
    owner->beginResetModel();
    isResetting = true;
    change();
    isResetting = false;
    owner->endResetModel();
    if (isHeaderDue) {
        announceHeader();
    }
}

void BookmarkModel::Private::followRecordModel(AbstractRecordListModel* model)
{
    if (record.lookIn(model, owner) && model) {
        connectRecords(model, owner, &BookmarkModel::sl_recordChanged, &BookmarkModel::sl_recordDeleted,
                       &BookmarkModel::sl_allRecordsChanged, &BookmarkModel::sl_modelDeleted);
    }
}

// What a user has changed is left alone.
void BookmarkModel::Private::refresh()
{
    const auto data = record.data();
    updateLimits(data.get());
    if (!data) {
        reset([this] {
            setState(SynchNoRecord);
            list.assign({});
        });
        showOnBars();
    } else if (!isEditable()) {
        takeEntries(data->GetBookmarkEntry());
    } else if (state != SynchLocalChange) {
        setState(data->GetBookmarkEntry() == list.entries() ? SynchInSync : SynchExternalChange);
    }
}

void BookmarkModel::Private::takeEntries(const Entries& entries)
{
    reset([&] { list.assign(entries); });
    setState(SynchPending);
    showOnBars();
    announceHeader();
}

void BookmarkModel::Private::updateLimits(const BookmarkRecord::Data* data)
{
    times.setExtent(BookmarkRecord::extent(data));
    list.setLimits(BookmarkRecord::limits(data));
}

void BookmarkModel::Private::changed()
{
    setState(SynchLocalChange);
    showOnBars();
}

void BookmarkModel::Private::change(int row, const Entry& entry)
{
    if (entry != list.entries()[row]) {
        list.replace(row, entry);
        changed();
    }
}

void BookmarkModel::Private::setTime(int row, const QDateTime& time)
{
    if (!times.accepts(time)) {
        times.traceRefused(time);
        return;
    }
    Entry entry = list.entries()[row];
    entry.SetTimestamp(toBookmarkEntry(time));
    change(row, entry);
}

// A bookmark has a text, even if there is nothing in it.
void BookmarkModel::Private::setText(int row, const QString& text)
{
    Entry entry = list.entries()[row];
    entry.SetBookmark(text.isNull() ? QStringLiteral("") : text);
    change(row, entry);
}

BookmarkModel::BookmarkModel(bool readOnly, QObject* parent)
    : QAbstractTableModel(parent)
    , d(std::make_unique<Private>(this, readOnly))
{}

BookmarkModel::~BookmarkModel() = default;

void BookmarkModel::setRecord(const QString& recordID, AbstractRecordListModel* model, bool delayed,
                              const QString& deviceID)
{
    d->reset([&] {
        d->record.setIDs(recordID, deviceID);
        d->followRecordModel(model);
        d->setState(SynchNoRecord);
        d->refresh();
        if (delayed && d->state == SynchPending) {
            d->unlockLater();
        } else {
            d->unlock();
        }
    });
    d->announceWholeList();
}

void BookmarkModel::resetRecord()
{
    setRecord({}, nullptr, false, {});
}

void BookmarkModel::createItemMap(const QString& path)
{
    if (d->connector) {
        d->connector->bind(path);
    } else {
        d->connector = std::make_unique<BookmarkModelConnector>(path, this);
    }
}

void BookmarkModel::setSingleShot(SingleShot singleShot)
{
    d->singleShot = std::move(singleShot);
}

void BookmarkModel::connectVCReplayBar(VCReplayBar* bar)
{
    VCReplayBar* const before = d->bars.main();
    if (bar == before) {
        return;
    }
    if (before) {
        before->disconnect(this);
    }
    d->bars.setMain(bar);
    if (bar) {
        connect(bar, &VCReplayBar::signalBookmarksChanged, this, &BookmarkModel::sl_replayBarBookmarksChanged);
    }
    d->showOnBars();
}

void BookmarkModel::connectAdditionalReplayBar(VCReplayBar* bar)
{
    d->bars.add(bar, entries());
}

void BookmarkModel::disconnectAdditionalReplayBar(VCReplayBar* bar)
{
    d->bars.remove(bar);
}

void BookmarkModel::disconnectAllAdditionReplayBars()
{
    d->bars.removeAll();
}

BookmarkModel::enSynchState BookmarkModel::getSynchState() const
{
    return d->state;
}

bool BookmarkModel::readOnly() const
{
    return d->isReadOnly;
}

QDateTime BookmarkModel::minDateTime() const
{
    return d->times.first();
}

QDateTime BookmarkModel::maxDateTime() const
{
    return d->times.last();
}

int BookmarkModel::entryCount() const
{
    return d->list.count();
}

const BookmarkModel::Entries& BookmarkModel::entries() const
{
    return d->list.entries();
}

const BookmarkModel::Entry& BookmarkModel::entry(int row) const
{
    return d->list.entries()[row];
}

bool BookmarkModel::normalized() const
{
    return d->list.isNormalized();
}

bool BookmarkModel::timesOutOfRange() const
{
    return d->list.anyOutOfRange();
}

int BookmarkModel::appendEntry(const Entry& entry)
{
    if (!d->isEditable()) {
        return -1;
    }
    const int row = d->list.count();
    beginInsertRows({}, row, row);
    d->list.append(entry);
    endInsertRows();
    d->changed();
    d->announceWholeList();
    return row;
}

bool BookmarkModel::removeEntry(int row)
{
    if (!d->isEditable() || !d->list.has(row)) {
        return false;
    }
    beginRemoveRows({}, row, row);
    d->list.remove(row);
    endRemoveRows();
    d->changed();
    d->announceWholeList();
    return true;
}

bool BookmarkModel::changeEntry(int row, const Entry& entry)
{
    if (!d->isEditable() || !d->list.has(row)) {
        return false;
    }
    d->change(row, entry);
    Q_EMIT dataChanged(index(row, 0), index(row, ColumnCount - 1));
    d->announceWholeList();
    return true;
}

bool BookmarkModel::setEntries(const Entries& entries)
{
    if (!d->isEditable()) {
        return false;
    }
    d->reset([&] {
        if (entries != d->list.entries()) {
            d->list.assign(entries);
            d->changed();
        }
    });
    d->announceWholeList();
    return true;
}

bool BookmarkModel::clear()
{
    return setEntries({});
}

QDateTime BookmarkModel::datetimeFromEntry(quint64 timestamp)
{
    return Vorn::DateTime::fromMicroseconds(timestamp);
}

QDateTime BookmarkModel::datetimeFromEntry(const Entry& entry)
{
    return datetimeFromEntry(entry.GetTimestamp());
}

quint64 BookmarkModel::toBookmarkEntry(const QDateTime& time)
{
    return Vorn::DateTime::toMicroseconds(time);
}

int BookmarkModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : d->list.count() + 1;
}

int BookmarkModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(ColumnCount);
}

Qt::ItemFlags BookmarkModel::flags(const QModelIndex& index) const
{
    if (!index.isValid()) {
        return Qt::NoItemFlags;
    }
    const Qt::ItemFlags always = Qt::ItemIsSelectable | Qt::ItemIsEnabled;
    return d->isEntry(index) && d->isEditable() ? always | Qt::ItemIsEditable : always;
}

QVariant BookmarkModel::data(const QModelIndex& index, int role) const
{
    if (!d->isEntry(index)) {
        return {};
    }
    const Entry& bookmark = entry(index.row());
    return index.column() == TimeColumn
               ? BookmarkCells::time(bookmark, d->times, d->list.isOutOfRange(index.row()), role)
               : BookmarkCells::text(bookmark, role);
}

QVariant BookmarkModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation == Qt::Horizontal) {
        return BookmarkCells::title(section, role);
    }
    const bool hasButton = d->isEditable() && section >= 0 && section <= entryCount();
    return hasButton ? BookmarkCells::button(section == entryCount(), role) : QVariant();
}

bool BookmarkModel::setData(const QModelIndex& index, const QVariant& value, int role)
{
    if (role != Qt::EditRole || !d->isEditable() || !d->isEntry(index)) {
        return false;
    }
    if (index.column() == TimeColumn) {
        d->setTime(index.row(), value.toDateTime());
    } else {
        d->setText(index.row(), value.toString());
    }
    Q_EMIT dataChanged(index, index);
    d->announceWholeList();
    return true;
}

void BookmarkModel::sl_synchronize()
{
    if (d->state != SynchLocalChange) {
        return;
    }
    d->setState(SynchPending);
    d->announceHeader();
    Q_EMIT si_updateBookmarks(d->record.recordID(), d->list.normalized(), d->record.deviceID());
    d->unlockLater();
    d->announceWholeList();
}

void BookmarkModel::sl_reset()
{
    d->setState(SynchPending);
    d->refresh();
    d->unlock();
    d->announceWholeList();
}

void BookmarkModel::sl_verticalHeaderClicked(int section)
{
    if (!d->isEditable()) {
        return;
    }
    if (section < entryCount()) {
        removeEntry(section);
        return;
    }
    Entry entry;
    entry.SetTimestamp(d->times.startUnlessWithin(d->newBookmarkTime));
    entry.SetBookmark(QStringLiteral(""));
    appendEntry(entry);
}

void BookmarkModel::sl_setNewBookmarkTime(quint64 time)
{
    d->newBookmarkTime = time;
}

void BookmarkModel::sl_normalize()
{
    if (!normalized() && d->state == SynchLocalChange) {
        d->reset([this] {
            d->list.assign(d->list.normalized());
            d->showOnBars();
        });
    }
    Q_EMIT si_normalizedChanged(normalized());
}

// Not from a list that is locked: it follows the record, and a change here would unlock it before its time.
void BookmarkModel::sl_removeOutOfRange()
{
    if (timesOutOfRange() && d->isEditable()) {
        d->reset([this] {
            d->list.assign(d->list.withinRange());
            d->changed();
        });
    }
    Q_EMIT si_timestampsOutOfRange(timesOutOfRange());
}

void BookmarkModel::sl_recordChanged(const QString& recordID)
{
    if (recordID == d->record.recordID()) {
        sl_allRecordsChanged();
    }
}

void BookmarkModel::sl_recordDeleted(const QString& recordID)
{
    if (recordID == d->record.recordID()) {
        resetRecord();
    }
}

void BookmarkModel::sl_allRecordsChanged()
{
    d->refresh();
    d->announceWholeList();
}

void BookmarkModel::sl_modelDeleted()
{
    resetRecord();
}

void BookmarkModel::sl_replayBarBookmarksChanged()
{
    if (!d->isEditable()) {
        return;
    }
    const Entries onBar = d->bars.onMain();
    if (onBar != entries()) {
        d->reset([&] {
            d->list.assign(onBar);
            d->setState(SynchLocalChange);
        });
    }
    d->bars.copyToOthers();
    d->announceWholeList();
}

void BookmarkModel::sl_resetSynchState()
{
    d->unlock();
}

} // namespace ZelkoGUI
