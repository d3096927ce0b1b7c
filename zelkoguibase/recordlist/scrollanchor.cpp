#include "scrollanchor_p.h"

#include <QScrollBar>
#include <QSortFilterProxyModel>
#include <QTableView>

#include <algorithm>
#include <cstdlib>

namespace ZelkoGUI {

ScrollAnchor::ScrollAnchor(QTableView* view, QSortFilterProxyModel* proxy, QObject* parent)
    : QObject(parent)
    , m_view(view)
    , m_proxy(proxy)
    , m_records(*proxy)
    , m_sorting(sorting())
{
    connect(proxy, &QAbstractItemModel::rowsAboutToBeInserted, this, &ScrollAnchor::look);
    connect(proxy, &QAbstractItemModel::rowsAboutToBeRemoved, this, &ScrollAnchor::look);
    connect(proxy, &QAbstractItemModel::layoutAboutToBeChanged, this, &ScrollAnchor::look);
    connect(proxy, &QAbstractItemModel::rowsRemoved, this, &ScrollAnchor::hold);
    connect(proxy, &QAbstractItemModel::modelAboutToBeReset, this, &ScrollAnchor::settle);
}

ScrollAnchor::~ScrollAnchor() = default;

std::pair<int, Qt::SortOrder> ScrollAnchor::sorting() const
{
    return {m_proxy->sortColumn(), m_proxy->sortOrder()};
}

// Queued, which is before the next time that the view is painted.
void ScrollAnchor::look()
{
    if (m_isHeld && !isScrolledByOthers()) {
        return;
    }
    m_isAtTop = m_view->verticalScrollBar()->value() == 0;
    m_places = m_isAtTop ? std::vector<ScrollPlace>() : ScrollPlace::inSight(*m_view, m_records);
    m_rowCount = m_proxy->rowCount();
    if (!std::exchange(m_isHeld, true)) {
        QMetaObject::invokeMethod(this, &ScrollAnchor::settle, Qt::QueuedConnection);
    }
    hold();
}

// A view whose current row goes scrolls to the next one, which nobody has asked for.
void ScrollAnchor::hold()
{
    m_scrolled = m_view->verticalScrollBar()->value();
    m_scrollMaximum = m_view->verticalScrollBar()->maximum();
}

void ScrollAnchor::settle()
{
    const bool isSortedAnew = std::exchange(m_sorting, sorting()) != sorting();
    if (!std::exchange(m_isHeld, false) || isSortedAnew) {
        return;
    }
    if (!m_isAtTop) {
        m_view->doItemsLayout(); // without it the rows have no places yet to scroll to
    }
    if (!isScrolledByOthers()) {
        keep();
    }
}

// A list that became too short for where it stands was scrolled by nobody.
bool ScrollAnchor::isScrolledByOthers() const
{
    const QScrollBar& bar = *m_view->verticalScrollBar();
    const bool isCutShort = bar.value() == bar.maximum() && bar.maximum() < m_scrollMaximum;
    return bar.value() != m_scrolled && !isCutShort;
}

// One that is far from those that it stood among has itself moved; how far they may be apart is what came between them.
void ScrollAnchor::keep()
{
    if (m_isAtTop) {
        m_view->verticalScrollBar()->setValue(0);
        return;
    }
    const std::vector<int> rows = rowsNow();
    const int typical = typicalShift(rows);
    const int farthest = static_cast<int>(m_places.size()) + std::abs(m_proxy->rowCount() - m_rowCount);
    for (std::size_t i = 0; i < rows.size(); ++i) {
        if (rows[i] >= 0 && std::abs(rows[i] - m_places[i].row - typical) <= farthest) {
            m_places[i].bring(*m_view, rows[i]);
            return;
        }
    }
}

// -1 for a record that has none.
std::vector<int> ScrollAnchor::rowsNow() const
{
    std::vector<int> rows;
    for (const ScrollPlace& place : m_places) {
        rows.push_back(m_records.indexOf(place.id).row());
    }
    return rows;
}

// The middle one of those that stayed; 0 if none did.
int ScrollAnchor::typicalShift(const std::vector<int>& rows) const
{
    std::vector<int> shifts;
    for (std::size_t i = 0; i < rows.size(); ++i) {
        if (rows[i] >= 0) {
            shifts.push_back(rows[i] - m_places[i].row);
        }
    }
    if (shifts.empty()) {
        return 0;
    }
    const auto middle = shifts.begin() + static_cast<std::ptrdiff_t>(shifts.size() / 2);
    std::nth_element(shifts.begin(), middle, shifts.end());
    return *middle;
}

} // namespace ZelkoGUI
