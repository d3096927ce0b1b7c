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
/// Rows that come back are selected as they arrive; what has not come back when the list is complete again is gone and
/// forgotten. A key, a click or the wheel ends all that: what the operator does then counts. A batch of rows costs the
/// same however many are awaited. All three objects outlive this one.
class SelectionKeeper : public QObject
{
    Q_OBJECT

public:
    SelectionKeeper(QTableView* view, QSortFilterProxyModel* proxy, const ZelkoCommon::AbstractRecordListModel* records,
                    QObject* parent = nullptr);
    ~SelectionKeeper() override;

    /// Nothing that is remembered comes back: another list is shown from here on.
    void forget();

    /// The list is complete: restores what there is with the next turn of the event loop, and nothing from there on.
    void finish();

    /// How many records were selected and are not back yet.
    int awaited() const;

Q_SIGNALS:
    /// All that can be restored is, and nothing is awaited any more: the list was complete after `finish()`.
    void done();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    struct Private;
    const std::unique_ptr<Private> d;
};

} // namespace ZelkoConsole
