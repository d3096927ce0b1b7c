#pragma once

#include <QObject>

#include <chrono>
#include <memory>

class QSortFilterProxyModel;
class QTableView;

namespace ZelkoGUI {

/// Keeps selection, current row and scroll position of a record table by record ID while all its rows go and come back,
/// as they do when a recorder is restarted.
///
/// Rows that come back are selected as they arrive. When none has come for a while, or rows have come for long, what is
/// still missing is gone and forgotten. A key, a click or the wheel in the table, its headers or scroll bars ends all
/// that: what the user does then counts. A batch of rows costs the same however many are awaited.
class SelectionKeeper final : public QObject
{
    Q_OBJECT

public:
    /// `view`, which has its headers already, shows `proxy`, a proxy over a record list; both outlive this object.
    /// `pause` is how long no row must come for the list to count as complete, whichever row; those that come when all
    /// that was remembered is back do not prolong it. After twelve times as long the list is complete anyway.
    SelectionKeeper(QTableView* view, QSortFilterProxyModel* proxy, std::chrono::milliseconds pause, QObject* parent);
    ~SelectionKeeper() override;

    /// Nothing that is remembered comes back: another list is shown from here on, or something else selected.
    void forget();

    /// How many records were selected and are not back yet.
    int awaited() const;

Q_SIGNALS:
    /// All rows were replaced at once, a turn of the event loop ago; of what was selected, that which came with the new
    /// ones is selected by now. The selection model has not told what went.
    void replaced();

    /// The list counts as complete: what did not come back is forgotten.
    void ended();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    struct Private;

    void followTimers(std::chrono::milliseconds pause);
    void followRows();
    void watchTheUser();

    const std::unique_ptr<Private> d;
};

} // namespace ZelkoGUI
