#pragma once

#include <QString>

#include <vector>

class QTableView;

namespace ZelkoGUI {

class ProxiedRecords;

/// A record in sight, and where its row stands.
struct ScrollPlace
{
    QString id;
    int row = 0;    ///< in the proxy
    int number = 0; ///< of its row in sight, from 0
    int top = 0;    ///< of its row, in pixels from the top of what is in sight; negative for one that is cut off there

    /// The records in sight, from top to bottom. As many as fit: the length of the list does not matter.
    static std::vector<ScrollPlace> inSight(const QTableView& view, const ProxiedRecords& records);

    /// The first one of them; without an ID where there are no rows.
    static ScrollPlace first(const QTableView& view, const ProxiedRecords& records);

    /// Scrolls up or down such that a row, which may not be the one of before, stands at this place, or as near to it
    /// as the list reaches. The view has laid its rows out already.
    void bring(QTableView& view, int itsRow) const;
};

} // namespace ZelkoGUI
