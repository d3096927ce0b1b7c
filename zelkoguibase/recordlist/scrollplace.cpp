#include "scrollplace_p.h"

#include "proxiedrecords_p.h"

#include <QAbstractItemModel>
#include <QScrollBar>
#include <QTableView>

namespace ZelkoGUI {

namespace {

std::vector<ScrollPlace> placesFrom(const QTableView& view, const ProxiedRecords& records, std::size_t most)
{
    std::vector<ScrollPlace> places;
    const QAbstractItemModel& model = *view.model();
    const int height = view.viewport()->height();
    for (int row = view.rowAt(0); row >= 0 && row < model.rowCount() && places.size() < most; ++row) {
        const int top = view.rowViewportPosition(row);
        if (top >= height) {
            break;
        }
        places.push_back({records.idOf(model.index(row, 0)), row, static_cast<int>(places.size()), top});
    }
    return places;
}

} // namespace

std::vector<ScrollPlace> ScrollPlace::inSight(const QTableView& view, const ProxiedRecords& records)
{
    return placesFrom(view, records, static_cast<std::size_t>(view.viewport()->height()));
}

ScrollPlace ScrollPlace::first(const QTableView& view, const ProxiedRecords& records)
{
    const std::vector<ScrollPlace> places = placesFrom(view, records, 1);
    return places.empty() ? ScrollPlace() : places.front();
}

// A view that scrolls by rows counts them in its scroll bar, and none of them is ever cut off at the top.
void ScrollPlace::bring(QTableView& view, int itsRow) const
{
    QScrollBar& bar = *view.verticalScrollBar();
    if (view.verticalScrollMode() == QAbstractItemView::ScrollPerItem) {
        bar.setValue(itsRow - number);
    } else {
        bar.setValue(bar.value() + view.rowViewportPosition(itsRow) - top);
    }
}

} // namespace ZelkoGUI
