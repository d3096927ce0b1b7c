#include <console/records/selectionreporter.h>

#include <zelkobase/models/abstractrecordlistmodel.h>

#include <QItemSelectionModel>

#include <algorithm>
#include <vector>

namespace ZelkoConsole {
namespace {

std::vector<int> selectedRows(const QItemSelection& selection)
{
    std::vector<int> rows;
    for (const QItemSelectionRange& range : selection) {
        for (int row = range.top(); row <= range.bottom(); ++row) {
            rows.push_back(row);
        }
    }
    std::sort(rows.begin(), rows.end());
    rows.erase(std::unique(rows.begin(), rows.end()), rows.end()); // ranges side by side share their rows
    return rows;
}

} // namespace

SelectionReporter::SelectionReporter(const QItemSelectionModel* selection, QObject* parent)
    : QObject(parent)
    , m_selection(selection)
{
    m_soon.setSingleShot(true);
    m_soon.setInterval(0);
    connect(&m_soon, &QTimer::timeout, this, &SelectionReporter::report);
    connect(selection, &QItemSelectionModel::selectionChanged, this, &SelectionReporter::selectionChanged);
}

SelectionReporter::~SelectionReporter() = default;

// Keys that waited while the list was busy come all in one turn of the event loop: what they do must not be done to the
// selection before.
void SelectionReporter::selectionChanged()
{
    if (isSmall()) {
        report();
    } else if (!m_soon.isActive()) {
        m_soon.start();
        Q_EMIT selected({});
    }
}

// By the ranges, of which there are fewer than rows.
bool SelectionReporter::isSmall() const
{
    int rows = 0;
    const QItemSelection selection = m_selection->selection();
    return std::all_of(selection.begin(), selection.end(), [&rows](const QItemSelectionRange& range) {
        rows += range.height();
        return rows <= smallSelection;
    });
}

void SelectionReporter::report()
{
    m_soon.stop();
    QStringList records;
    for (const int row : selectedRows(m_selection->selection())) {
        records.append(
            m_selection->model()->index(row, ZelkoCommon::AbstractRecordListModel::RecordIDColumn).data().toString());
    }
    Q_EMIT selected(records);
}

} // namespace ZelkoConsole
