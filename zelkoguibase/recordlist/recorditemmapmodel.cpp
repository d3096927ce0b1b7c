#include <zelkoguibase/recordlist/recorditemmapmodel.h>

#include "recordrows_p.h"

#include <observerbase/errorhandler.h>
#include <observerbase/iobserver.h>
#include <observerbase/trace.h>
#include <valuecore/valueptr.h>
#include <zelkobase/data/recordstate.h>
#include <zelkobase/maps/recorditemmap.h>

#include <QHash>
#include <QMetaMethod>
#include <QScopedValueRollback>

namespace ZelkoGUI {

using zelko::recordmap::RecordItemMap;
using RecordStatus = ZELKO_XML::ZELKO_RecordData::RecordStatus;
using Data = RecordRows::Data;

namespace {

// More than the map keeps by itself: this is the value that changes most, and a reader that falls behind resets the
// list, which costs a view its selection and scroll position.
constexpr unsigned int changesToKeep = 250;

// How many changes are read before the first of them is worked off.
constexpr std::size_t changesAtOnce = 16;

// Stands among the changes that were read for those that were not. No type of change.
constexpr char changesLost = -1;

// A record of which nothing is known counts as one at rest.
RecordStatus statusOf(const Data& data)
{
    return data ? data->GetRecordStatus() : RecordStatus::Finished;
}

bool isBeingRecorded(const Data& data)
{
    return data && ZELKO_XML::isBeingRecorded(*data);
}

void traceUnknownChange(int type)
{
    if (ErrorHandler::Instance()->traces(ErrorHandler::TraceError)) {
        _Q_Trace(QStringLiteral("RecordItemMapModel::Update() -> RecordMap unhandled changeID %1").arg(type), __FILE__,
                 __LINE__);
    }
}

} // namespace

/// Reads the map's log and turns it into row operations. Slots run in the middle of all of this; what was begun for a
/// list that such a slot has emptied is given up, which `m_generation` tells.
class RecordItemMapModel::Private final : public IObserver
{
public:
    explicit Private(RecordItemMapModel* owner)
        : m_owner(owner)
        , m_map(this)
    {}

    bool connect(const QString& path);
    void disconnect();
    void Update(Observable* source, TChangeCode code) override;

    RecordItemMap* map() const { return m_map.get(); }
    const RecordRows& rows() const { return m_rows; }

private:
    using Statuses = QHash<QString, RecordStatus>;

    void followMap();
    struct Change
    {
        std::uint64_t number;
        char type;
        QString id;
        std::size_t hash;
    };

    void readLog();
    bool readChanges();
    const Data& recordOf(const Change& change) const;
    void workOffChanges();
    void workOff(Change change);
    void recordSet(Change change);
    void announceUpdate(int row, const QString& id, RecordStatus now, RecordStatus before);
    void insertQueued();
    bool tellsOfInserted() const;
    void announceInserted(int first);
    void removeListed();
    std::vector<int> takeListedRows();
    void removeRun(int first, int count);
    void announceRemoved();
    void clearRows();
    void dropAll();
    void reload();
    Statuses statuses() const;
    void fillFromMap();
    void announceStatusesSince(const Statuses& before);

    RecordItemMapModel* const m_owner;
    ValueObservingPtr<RecordItemMap> m_map;
    std::uint64_t m_cursor = 0;
    RecordRows m_rows;
    std::vector<Change> m_changes; // read and not worked off
    std::vector<QString> m_idsToRemove;
    std::vector<std::pair<QString, bool>> m_removed; // of one run: ID, and whether it was being recorded
    unsigned int m_generation = 0;                   // counts how often the rows went all at once
    bool m_atWork = false;
    bool m_toldMeanwhile = false;
};

bool RecordItemMapModel::Private::connect(const QString& path)
{
    disconnect();
    m_map = Tree::Instance()->Find<RecordItemMap>(path);
    if (m_map) {
        m_cursor = 0;
        m_map->SetChangeLogSize(changesToKeep);
        Update(m_map.get(), TChangeCode::ValueChanged);
    }
    return m_map.get() != nullptr;
}

void RecordItemMapModel::Private::disconnect()
{
    dropAll();
    m_map = nullptr;
}

void RecordItemMapModel::Private::Update(Observable*, TChangeCode code)
{
    switch (code) {
    case TChangeCode::ValueChanged:
        followMap();
        break;
    case TChangeCode::StateChanged:
        if (m_map && m_map->GetState() == TValueState::Deleted) {
            dropAll();
        }
        break;
    case TChangeCode::ChildRemoved:
        dropAll();
        break;
    default:
        break;
    }
}

// A notification that a slot of ours causes waits until the rows are as the present one leaves them.
void RecordItemMapModel::Private::followMap()
{
    m_toldMeanwhile = true;
    if (m_atWork) {
        return;
    }
    const QScopedValueRollback atWork(m_atWork, true);
    while (m_toldMeanwhile) {
        m_toldMeanwhile = false;
        readLog();
        insertQueued();
        removeListed();
    }
}

// The map is looked at anew each time: a slot may have let go of it.
void RecordItemMapModel::Private::readLog()
{
    if (const RecordItemMap* const map = m_map.get()) {
        m_rows.reserve(map->ExpectedSize());
    }
    while (m_map && readChanges()) {
        workOffChanges();
    }
}

// Reads a handful: the places of all their rows are fetched from memory before the first is looked for. False when
// there is nothing to read.
bool RecordItemMapModel::Private::readChanges()
{
    while (m_changes.size() < changesAtOnce) {
        Change& change = m_changes.emplace_back();
        change.number = m_cursor;
        const signed char result = m_map->GetChangeLog().ReadNext(m_cursor, change.type, change.id);
        if (result == 0) {
            m_changes.pop_back();
            break;
        }
        if (result < 0) {
            change.type = changesLost;
        } else {
            change.hash = m_rows.expect(change.id);
        }
    }
    return !m_changes.empty();
}

const Data& RecordItemMapModel::Private::recordOf(const Change& change) const
{
    static const Data none;
    const auto* const item = m_map->ItemOfChange(change.number, change.id);
    return item ? item->GetRecordData() : none;
}

// A slot that lets go of the map drops what is not worked off.
void RecordItemMapModel::Private::workOffChanges()
{
    std::size_t next = 0;
    while (next < m_changes.size()) {
        workOff(std::move(m_changes[next++]));
    }
    m_changes.clear();
}

void RecordItemMapModel::Private::workOff(Change change)
{
    switch (change.type) {
    case valueitemmap::ChangeSet:
        recordSet(std::move(change));
        break;
    case valueitemmap::ChangeErased:
        // Only rows are erased, not what is queued: a record that came and went within one notification keeps the row
        // that it is about to get, until the next change of it.
        if (m_rows.rowOf(change.id) >= 0) {
            m_idsToRemove.push_back(change.id);
        }
        break;
    case valueitemmap::ChangeCleared:
        // What was queued before the clear outlives it, and what was listed for removal stays listed.
        clearRows();
        break;
    case changesLost:
        reload();
        break;
    default:
        traceUnknownChange(change.type);
        break;
    }
}

void RecordItemMapModel::Private::recordSet(Change change)
{
    const Data& data = recordOf(change);
    if (!data) {
        if (m_rows.rowOf(change.id) >= 0) {
            m_idsToRemove.push_back(change.id);
        }
    } else if (const auto found = m_rows.replace(change.id, change.hash, data); !found) {
        m_rows.queue(std::move(change.id), change.hash, data);
    } else if (found->row >= 0) {
        announceUpdate(found->row, change.id, statusOf(data), statusOf(found->before));
    }
}

// `id` is the reader's own: a slot may take the row away.
void RecordItemMapModel::Private::announceUpdate(int row, const QString& id, RecordStatus now, RecordStatus before)
{
    const unsigned int generation = m_generation;
    Q_EMIT m_owner->dataChanged(m_owner->index(row, 0), m_owner->index(row, m_owner->columnCount() - 1));
    if (generation == m_generation) {
        Q_EMIT m_owner->si_recordChanged(id);
    }
    if (generation == m_generation && now != before) {
        Q_EMIT m_owner->si_recordStatusChanged(id, now, before);
    }
}

void RecordItemMapModel::Private::insertQueued()
{
    if (m_rows.queuedCount() == 0) {
        return;
    }
    const int first = m_rows.count();
    m_owner->beginInsertRows(QModelIndex(), first, first + m_rows.queuedCount() - 1);
    m_rows.showQueued();
    m_owner->endInsertRows();
    if (tellsOfInserted()) {
        announceInserted(first);
    }
}

// A first load has many rows and mostly nobody yet who wants to hear of each.
bool RecordItemMapModel::Private::tellsOfInserted() const
{
    static const QMetaMethod changed = QMetaMethod::fromSignal(&RecordItemMapModel::si_recordChanged);
    static const QMetaMethod statusChanged = QMetaMethod::fromSignal(&RecordItemMapModel::si_recordStatusChanged);
    return m_owner->isSignalConnected(changed) || m_owner->isSignalConnected(statusChanged);
}

void RecordItemMapModel::Private::announceInserted(int first)
{
    const unsigned int generation = m_generation;
    for (int row = first; generation == m_generation && row < m_rows.count(); ++row) {
        const QString id = m_rows.id(row);
        const RecordStatus status = statusOf(m_rows.data(row));
        Q_EMIT m_owner->si_recordChanged(id);
        if (status != RecordStatus::Finished) {
            Q_EMIT m_owner->si_recordStatusChanged(id, status, RecordStatus::Finished);
        }
    }
}

void RecordItemMapModel::Private::removeListed()
{
    const std::vector<int> rows = takeListedRows();
    if (rows.empty()) {
        return;
    }
    const unsigned int generation = m_generation;
    for (std::size_t end = rows.size(); end > 0 && generation == m_generation;) {
        std::size_t first = end - 1;
        while (first > 0 && rows[first - 1] == rows[first] - 1) {
            --first;
        }
        removeRun(rows[first], static_cast<int>(end - first));
        end = first;
    }
    m_rows.closeGap();
}

// A record may be listed twice, and one that was listed may have gone with all others.
std::vector<int> RecordItemMapModel::Private::takeListedRows()
{
    std::vector<int> rows;
    rows.reserve(m_idsToRemove.size());
    for (const QString& id : m_idsToRemove) {
        if (const int row = m_rows.rowOf(id); row >= 0) {
            rows.push_back(row);
        }
    }
    m_idsToRemove.clear();
    std::sort(rows.begin(), rows.end());
    rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
    return rows;
}

void RecordItemMapModel::Private::removeRun(int first, int count)
{
    m_owner->beginRemoveRows(QModelIndex(), first, first + count - 1);
    m_removed.clear();
    for (int row = first; row < first + count; ++row) {
        m_removed.emplace_back(m_rows.id(row), isBeingRecorded(m_rows.data(row)));
    }
    m_rows.removeRun(first, count);
    m_owner->endRemoveRows();
    announceRemoved();
}

void RecordItemMapModel::Private::announceRemoved()
{
    for (const auto& [id, beingRecorded] : m_removed) {
        Q_EMIT m_owner->si_recordDeleted(id);
        if (beingRecorded) {
            Q_EMIT m_owner->si_recordDeletedWhileRecording(id);
        }
    }
}

void RecordItemMapModel::Private::clearRows()
{
    if (m_rows.count() == 0) {
        return;
    }
    ++m_generation;
    m_owner->beginResetModel();
    m_rows.clearRows();
    m_owner->endResetModel();
    Q_EMIT m_owner->si_allRecordsChanged();
}

// Also of what is only half worked off, where a slot lets go of the map in the middle of a notification.
void RecordItemMapModel::Private::dropAll()
{
    m_changes.clear();
    m_rows.clearQueue();
    m_idsToRemove.clear();
    clearRows();
}

void RecordItemMapModel::Private::reload()
{
    const Statuses before = statuses();
    ++m_generation;
    m_idsToRemove.clear();
    m_owner->beginResetModel();
    m_rows.clearQueue();
    m_rows.clearRows();
    fillFromMap();
    m_owner->endResetModel();
    Q_EMIT m_owner->si_allRecordsChanged();
    announceStatusesSince(before);
}

RecordItemMapModel::Private::Statuses RecordItemMapModel::Private::statuses() const
{
    Statuses result;
    result.reserve(m_rows.count());
    for (int row = 0; row < m_rows.count(); ++row) {
        result.insert(m_rows.id(row), statusOf(m_rows.data(row)));
    }
    return result;
}

void RecordItemMapModel::Private::fillFromMap()
{
    for (const auto& [id, item] : m_map->data()) {
        m_rows.queue(id, m_rows.expect(id), item.GetRecordData());
    }
    m_rows.showQueued();
}

void RecordItemMapModel::Private::announceStatusesSince(const Statuses& before)
{
    const unsigned int generation = m_generation;
    for (int row = 0; generation == m_generation && row < m_rows.count(); ++row) {
        const QString id = m_rows.id(row);
        const RecordStatus now = statusOf(m_rows.data(row));
        if (const RecordStatus last = before.value(id, RecordStatus::Finished); now != last) {
            Q_EMIT m_owner->si_recordStatusChanged(id, now, last);
        }
    }
}

RecordItemMapModel::RecordItemMapModel(QObject* parent)
    : AbstractRecordListModel(parent)
    , d(std::make_unique<Private>(this))
{}

RecordItemMapModel::RecordItemMapModel(const QString& path, QObject* parent)
    : RecordItemMapModel(parent)
{
    connect(path);
}

RecordItemMapModel::~RecordItemMapModel() = default;

bool RecordItemMapModel::connect(const QString& path)
{
    return d->connect(path);
}

bool RecordItemMapModel::connected() const
{
    return d->map() != nullptr;
}

const QString RecordItemMapModel::connectionPath() const
{
    return connected() ? d->map()->GetPathName() : QString();
}

void RecordItemMapModel::disconnect()
{
    d->disconnect();
}

std::shared_ptr<ZELKO_XML::ZELKO_RecordData> RecordItemMapModel::recordData(int row) const
{
    return row >= 0 && row < recordCount() ? d->rows().data(row) : nullptr;
}

QString RecordItemMapModel::recordID(int row) const
{
    return row >= 0 && row < recordCount() ? d->rows().id(row) : QString();
}

int RecordItemMapModel::recordCount() const
{
    return d->rows().count();
}

int RecordItemMapModel::recordRow(const QString& recordID) const
{
    return d->rows().rowOf(recordID);
}

QVariant RecordItemMapModel::cell(int row, Column column, int role) const
{
    const Data& record = d->rows().data(row);
    return record ? cellOf(*record, column, role) : cellWithoutData(row, column);
}

} // namespace ZelkoGUI
