#pragma once

#include "proxiedrecords_p.h"
#include "scrollplace_p.h"

#include <QObject>

#include <utility>
#include <vector>

class QSortFilterProxyModel;
class QTableView;

namespace ZelkoGUI {

/// Keeps in place what is in sight of a record table while rows come, go and move above it, in it and below it.
///
/// The record at the top stays at the top for as long as it is in the list. When it goes, or itself moves to another
/// part of the list, the first of those in sight that stays keeps its place instead. A list that stands at its very top
/// stays there, so that new records are seen; one that somebody sorts anew stays where its scroll bar is. What is
/// scrolled to while changes are on their way counts.
///
/// However many changes come in one turn of the event loop, they cost what the rows in sight cost, once.
class ScrollAnchor final : public QObject
{
    Q_OBJECT

public:
    /// `view` is to show `proxy`, a proxy over a record list, and does not yet: rows are looked at before the view
    /// hears of their end. Both outlive this object.
    ScrollAnchor(QTableView* view, QSortFilterProxyModel* proxy, QObject* parent);
    ~ScrollAnchor() override;

    /// Does now what is due at the end of this turn of the event loop, for somebody who looks at the rows in sight.
    void settle();

private:
    void look();
    void hold();
    void keep();
    bool isScrolledByOthers() const;
    std::pair<int, Qt::SortOrder> sorting() const;
    std::vector<int> rowsNow() const;
    int typicalShift(const std::vector<int>& rows) const;

    QTableView* const m_view;
    QSortFilterProxyModel* const m_proxy;
    const ProxiedRecords m_records;
    std::pair<int, Qt::SortOrder> m_sorting; // at the end of the last turn
    bool m_isHeld = false;                   // whether the following is of this turn
    bool m_isAtTop = true;
    std::vector<ScrollPlace> m_places; // of the rows in sight; none at the top
    int m_rowCount = 0;
    int m_scrolled = 0;
    int m_scrollMaximum = 0;
};

} // namespace ZelkoGUI
