#include <console/records/recordsortmodel.h>

#include <zelkobase/models/abstractrecordlistmodel.h>

#include <QElapsedTimer>

#include <algorithm>
#include <limits>

namespace ZelkoConsole {
namespace {

using Model = ZelkoCommon::AbstractRecordListModel;

constexpr int pauseOfLoad = 500;

// Letter by letter, as a comparison without regard to case does it.
QString folded(QString text)
{
    std::transform(text.begin(), text.end(), text.begin(), [](QChar c) { return c.toCaseFolded(); });
    return text;
}

bool isQuantity(int column)
{
    switch (column) {
    case Model::SizeColumn:
    case Model::DurationColumn:
    case Model::FrequencyColumn:
    case Model::BandwidthColumn:
    case Model::SampleRateColumn:
        return true;
    default:
        return false;
    }
}

} // namespace

RecordSortModel::RecordSortModel(QObject* parent)
    : QSortFilterProxyModel(parent)
{
    setSortRole(Model::SortRole);
    setSortCaseSensitivity(Qt::CaseInsensitive);
    setDynamicSortFilter(true);
    m_pause.setSingleShot(true);
    connect(&m_pause, &QTimer::timeout, this, &RecordSortModel::renew);
    connect(this, &QAbstractItemModel::rowsInserted, this, &RecordSortModel::pause);
}

RecordSortModel::~RecordSortModel() = default;

// Rows that are put in order as they come cost one insertion each, and a view that lays itself out after each batch
// takes longer than all the rest: a list of 100,000 records would take half a minute so.
void RecordSortModel::setLoading(bool loading)
{
    if (loading == isLoading()) {
        return;
    }
    if (loading) {
        setDynamicSortFilter(false);
        return;
    }
    showHidden();
    withKeys(sortColumn(), [this] { setDynamicSortFilter(true); });
}

// The first rows are shown as they come.
void RecordSortModel::pause()
{
    if (isLoading() && !m_pause.isActive()) {
        m_shown = sourceRows();
        m_pause.start(pauseOfLoad);
    }
}

// What takes long on a machine is not done more often, but less.
void RecordSortModel::renew()
{
    QElapsedTimer taken;
    taken.start();
    const int before = rowCount();
    showHidden();
    if (rowCount() != before) {
        sort(sortColumn(), sortOrder());
        m_pause.start(std::max(pauseOfLoad, static_cast<int>(4 * taken.elapsed())));
    }
}

// The base puts rows that a filter lets through in order among themselves, for nothing: all of them are sorted next.
// With equal keys that costs little.
void RecordSortModel::showHidden()
{
    m_keys.resize(static_cast<std::size_t>(sourceRows()));
    m_pause.stop();
    invalidateRowsFilter();
    m_pause.stop();
    m_keys = {};
}

bool RecordSortModel::filterAcceptsRow(int sourceRow, const QModelIndex& sourceParent) const
{
    return (!m_pause.isActive() || sourceRow < m_shown) &&
           QSortFilterProxyModel::filterAcceptsRow(sourceRow, sourceParent);
}

void RecordSortModel::sort(int column, Qt::SortOrder order)
{
    withKeys(column, [&] { QSortFilterProxyModel::sort(column, order); });
}

// To sort a list each row is compared with many others, and asking the source for the key is what takes the time.
template <typename Sort>
void RecordSortModel::withKeys(int column, Sort sort)
{
    const int rows = column >= 0 ? sourceRows() : 0;
    m_keys.reserve(static_cast<std::size_t>(rows));
    for (int row = 0; row < rows; ++row) {
        m_keys.push_back(keyOf(row, column));
    }
    sort();
    m_keys = {};
}

int RecordSortModel::sourceRows() const
{
    return sourceModel() ? sourceModel()->rowCount() : 0;
}

// What has no key stands behind everything else.
RecordSortModel::Key RecordSortModel::keyOf(int sourceRow, int column) const
{
    const QVariant key = sourceModel()->index(sourceRow, column).data(sortRole());
    if (!key.isValid()) {
        return {std::numeric_limits<double>::infinity(), {}};
    }
    return key.typeId() == QMetaType::QString ? Key{0, folded(key.toString())} : Key{key.toDouble(), {}};
}

bool RecordSortModel::lessThan(const QModelIndex& left, const QModelIndex& right) const
{
    const auto leftRow = static_cast<std::size_t>(left.row());
    const auto rightRow = static_cast<std::size_t>(right.row());
    if (std::max(leftRow, rightRow) >= m_keys.size()) {
        return QSortFilterProxyModel::lessThan(left, right);
    }
    const Key& one = m_keys[leftRow];
    const Key& other = m_keys[rightRow];
    return one.number != other.number ? one.number < other.number : one.text < other.text;
}

QVariant RecordSortModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation == Qt::Horizontal && role == Qt::TextAlignmentRole) {
        return QVariant((isQuantity(section) ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter);
    }
    return QSortFilterProxyModel::headerData(section, orientation, role);
}

} // namespace ZelkoConsole
