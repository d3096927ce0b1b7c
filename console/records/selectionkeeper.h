#pragma once

#include <QObject>

#include <memory>

class QSortFilterProxyModel;
class QTableView;

namespace ZelkoCommon {
class AbstractRecordListModel;
}

namespace ZelkoConsole {

/// Keeps selection, current row and scroll position of a record table by record ID while all its rows go and come back,
/// as they do when the recorder is restarted.
///
/// Rows that come back are selected as they arrive. A key, a click or the wheel ends that: what the operator does then
/// counts. All three objects outlive this one.
class SelectionKeeper : public QObject
{
    Q_OBJECT

public:
    SelectionKeeper(QTableView* view, QSortFilterProxyModel* proxy, const ZelkoCommon::AbstractRecordListModel* records,
                    QObject* parent = nullptr);
    ~SelectionKeeper() override;

    /// Nothing that is remembered comes back: another list is shown from here on.
    void forget();

    /// The list is complete again: restores what there is, and leaves the scroll position to the operator from there
    /// on. Nothing happens while there are no rows.
    void finish();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    struct Private;
    const std::unique_ptr<Private> d;
};

} // namespace ZelkoConsole
