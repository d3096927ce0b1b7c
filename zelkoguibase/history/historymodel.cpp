#include <zelkoguibase/history/historymodel.h>

#include <observerbase/datetime.h>
#include <zelkoguibase/recordlist/followrecords_p.h>

#include <QHash>
#include <QIcon>

#include <utility>

namespace ZelkoGUI {

using ZelkoCommon::AbstractRecordListModel;

namespace {

/// What the header of a row shows: an icon, and what a click on it does.
struct HeaderButton
{
    const char* icon;
    const char* text;
};

constexpr HeaderButton deleteButton{":/Zelko/History/DeleteHistory.svg",
                                    QT_TRANSLATE_NOOP("ZelkoGUI::HistoryModel", "Delete the history entry")};
constexpr HeaderButton editButton{":/Zelko/History/EditHistory.svg",
                                  QT_TRANSLATE_NOOP("ZelkoGUI::HistoryModel", "edit the history text")};
constexpr HeaderButton addButton{":/Zelko/History/AddHistory.svg",
                                 QT_TRANSLATE_NOOP("ZelkoGUI::HistoryModel", "add the history entry")};

// Each is drawn once: a header asks for all of them, at every turn. They outlive the application, whose end they could
// not do without otherwise.
QIcon iconOf(const HeaderButton& button)
{
    static auto* const icons = new QHash<const char*, QIcon>;
    QIcon& icon = (*icons)[button.icon];
    if (icon.isNull()) {
        icon = QIcon(QLatin1String(button.icon));
    }
    return icon;
}

QVariant shownBy(const HeaderButton& button, int role)
{
    switch (role) {
    case Qt::DecorationRole:
        return iconOf(button);
    case Qt::ToolTipRole:
    case Qt::AccessibleTextRole: // an icon says nothing to who does not see it
        return HistoryModel::tr(button.text);
    default:
        return {};
    }
}

QVariant title(int column, int role)
{
    if (role != Qt::DisplayRole) {
        return {};
    }
    switch (column) {
    case HistoryModel::TimeColumn:
        return HistoryModel::tr("Date and Time");
    case HistoryModel::TextColumn:
        return HistoryModel::tr("Text");
    default:
        return {};
    }
}

} // namespace

struct HistoryModel::Private
{
    struct Row
    {
        ZELKO_XML::HistoryEntry entry;
        bool isDeleting = false;
    };

    explicit Private(HistoryModel* model)
        : owner(model)
    {}

    int newRow() const { return static_cast<int>(rows.size()); }
    bool isCell(const QModelIndex& index) const { return index.isValid() && index.row() < owner->rowCount(); }
    const Row& row(const QModelIndex& index) const { return rows[index.row()]; }
    bool isNewText(const QModelIndex& index) const { return index.row() == newRow() && index.column() == TextColumn; }

    template <typename Change>
    void reset(Change change);
    void take(const QString& id, AbstractRecordListModel* model);
    void follow(AbstractRecordListModel* model);
    void read();
    void clear(const QString& id, AbstractRecordListModel* model);

    QVariant entryCell(const Row& row, int column, int role) const;
    QVariant newCell(int column, int role) const;
    void remove(int section);
    void commit();
    void announceRow(int row, int firstColumn);

    HistoryModel* const owner;
    QString newEntry;
    QString recordID;
    AbstractRecordListModel* recordModel = nullptr;
    QList<Row> rows;
    bool isPresent = false;
    bool addsImmediately = false;
};

template <typename Change>
void HistoryModel::Private::reset(Change change)
{
    owner->beginResetModel();
    change();
    read();
    owner->endResetModel();
}

void HistoryModel::Private::take(const QString& id, AbstractRecordListModel* model)
{
    reset([&] {
        recordID = id;
        follow(model);
        newEntry.clear();
    });
}

void HistoryModel::Private::follow(AbstractRecordListModel* model)
{
    followRecords(recordModel, model, owner, &HistoryModel::sl_recordChanged, &HistoryModel::sl_recordDeleted,
                  &HistoryModel::sl_allRecordsChanged, &HistoryModel::sl_modelDeleted);
}

// Whether the record is there is remembered: it leaves its list a moment before it is told, and a view must not find
// fewer rows than it was told of.
void HistoryModel::Private::read()
{
    rows.clear();
    isPresent = recordModel && recordModel->hasRecord(recordID);
    const auto record = isPresent ? recordModel->getRecordData(recordID) : nullptr;
    if (record && record->IsHistoryEntrySet()) {
        for (const ZELKO_XML::HistoryEntry& entry : record->GetHistoryEntry()) {
            rows.append({entry});
        }
    }
}

QVariant HistoryModel::Private::entryCell(const Row& row, int column, int role) const
{
    if (role != Qt::DisplayRole && role != Qt::EditRole) {
        return {};
    }
    if (column == TimeColumn) {
        return Vorn::DateTime::UTCtoLocalString(row.entry.GetTimestamp());
    }
    return row.isDeleting ? tr("deleting...") : row.entry.GetHistoryEntry();
}

QVariant HistoryModel::Private::newCell(int column, int role) const
{
    if (column != TextColumn) {
        return {};
    }
    switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
        return newEntry;
    case Qt::ToolTipRole:
        return tr("please enter a new history comment");
    default:
        return {};
    }
}

// Marked before it is told: the record may come back changed in between, and its rows are others then.
void HistoryModel::Private::remove(int section)
{
    Row& row = rows[section];
    if (!std::exchange(row.isDeleting, true)) {
        Q_EMIT owner->si_removeHistoryEntry(row.entry.GetTimestamp());
    }
    announceRow(section, TimeColumn);
}

void HistoryModel::Private::commit()
{
    if (!newEntry.isEmpty()) {
        Q_EMIT owner->si_addHistoryEntry(newEntry);
        newEntry.clear();
    }
}

void HistoryModel::Private::announceRow(int row, int firstColumn)
{
    if (row < owner->rowCount()) {
        Q_EMIT owner->dataChanged(owner->index(row, firstColumn), owner->index(row, TextColumn));
        Q_EMIT owner->headerDataChanged(Qt::Vertical, row, row);
    }
}

HistoryModel::HistoryModel(QObject* parent)
    : QAbstractTableModel(parent)
    , d(std::make_unique<Private>(this))
{}

HistoryModel::~HistoryModel() = default;

void HistoryModel::setRecord(const QString& recordID, AbstractRecordListModel* model)
{
    if (recordID != d->recordID) {
        d->take(recordID, model);
    }
}

void HistoryModel::resetRecord()
{
    setRecord(QString(), nullptr);
}

QString HistoryModel::recordID() const
{
    return d->recordID;
}

bool HistoryModel::addTextImmediately() const
{
    return d->addsImmediately;
}

int HistoryModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() || !d->isPresent ? 0 : d->newRow() + 1;
}

int HistoryModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(ColumnCount);
}

Qt::ItemFlags HistoryModel::flags(const QModelIndex& index) const
{
    if (!d->isCell(index)) {
        return Qt::NoItemFlags;
    }
    Qt::ItemFlags all = Qt::ItemIsSelectable;
    all.setFlag(Qt::ItemIsEnabled, index.row() == d->newRow() || !d->row(index).isDeleting);
    all.setFlag(Qt::ItemIsEditable, d->isNewText(index));
    return all;
}

QVariant HistoryModel::data(const QModelIndex& index, int role) const
{
    if (!d->isCell(index)) {
        return {};
    }
    return index.row() == d->newRow() ? d->newCell(index.column(), role)
                                      : d->entryCell(d->row(index), index.column(), role);
}

QVariant HistoryModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation == Qt::Horizontal) {
        return d->isPresent ? title(section, role) : QVariant();
    }
    if (section < 0 || section >= rowCount()) {
        return {};
    }
    if (section == d->newRow()) {
        return shownBy(d->newEntry.isEmpty() ? editButton : addButton, role);
    }
    return d->rows[section].isDeleting ? QVariant() : shownBy(deleteButton, role);
}

bool HistoryModel::setData(const QModelIndex& index, const QVariant& value, int role)
{
    if (role != Qt::EditRole || !d->isCell(index) || !d->isNewText(index)) {
        return false;
    }
    d->newEntry = value.toString();
    if (d->addsImmediately) {
        d->commit();
    }
    d->announceRow(d->newRow(), TextColumn);
    return true;
}

void HistoryModel::sl_verticalHeaderClicked(int section)
{
    if (section < 0 || section >= rowCount()) {
        return;
    }
    if (section < d->newRow()) {
        d->remove(section);
    } else if (d->newEntry.isEmpty()) {
        Q_EMIT si_edit(index(section, TextColumn));
    } else {
        d->commit();
        d->announceRow(d->newRow(), TimeColumn);
    }
}

void HistoryModel::sl_addTextImmediately(bool immediately)
{
    d->addsImmediately = immediately;
}

void HistoryModel::sl_recordChanged(const QString& recordID)
{
    if (recordID == d->recordID) {
        sl_allRecordsChanged();
    }
}

void HistoryModel::sl_recordDeleted(const QString& recordID)
{
    if (recordID == d->recordID) {
        d->take(QString(), d->recordModel);
    }
}

void HistoryModel::sl_allRecordsChanged()
{
    d->reset([] {});
}

void HistoryModel::sl_modelDeleted()
{
    d->take(d->recordID, nullptr);
}

} // namespace ZelkoGUI
