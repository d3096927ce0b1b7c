#include <console/records/selectionkeeper.h>

#include <zelkobase/models/abstractrecordlistmodel.h>

#include <QEvent>
#include <QItemSelectionModel>
#include <QScrollBar>
#include <QSet>
#include <QSortFilterProxyModel>
#include <QTableView>
#include <QTimer>

#include <algorithm>
#include <utility>
#include <vector>

namespace ZelkoConsole {

using ZelkoCommon::AbstractRecordListModel;

struct SelectionKeeper::Private
{
    Private(SelectionKeeper* owner, QTableView* theView, QSortFilterProxyModel* theProxy,
            const AbstractRecordListModel* theRecords)
        : q(owner)
        , view(theView)
        , proxy(theProxy)
        , records(theRecords)
    {}

    QString idOf(const QModelIndex& proxyIndex) const { return records->getRecordID(proxy->mapToSource(proxyIndex)); }
    QModelIndex indexOf(const QString& id) const { return proxy->mapFromSource(records->recordIndex(id)); }

    void remember();
    void rowsCame(int first, int last);
    void restore();
    void restoreSelection();
    QItemSelection takeArrived();
    void restoreScrolling();
    void forget();

    SelectionKeeper* const q;
    QTableView* const view;
    QSortFilterProxyModel* const proxy;
    const AbstractRecordListModel* const records;
    QTimer soon;
    QSet<QString> away;    // were selected and have no row yet
    QSet<QString> arrived; // have a row again and are not selected yet
    QString current;
    bool complete = false; // whether all rows that will come back are here
    bool scrolled = false; // whether `top` and `left` are still to be restored
    QString top;           // ID of the first row in sight; empty when that is the first row of all, which then stays so
    int left = 0;
};

void SelectionKeeper::Private::remember()
{
    away.unite(std::exchange(arrived, {}));
    if (proxy->rowCount() == 0) {
        return;
    }
    for (const QModelIndex& index : view->selectionModel()->selectedRows()) {
        away.insert(idOf(index));
    }
    if (view->currentIndex().isValid()) {
        current = idOf(view->currentIndex());
    }
    top = view->verticalScrollBar()->value() > 0 ? idOf(view->indexAt(QPoint(0, 0))) : QString();
    scrolled = true;
    complete = false;
    left = view->horizontalScrollBar()->value();
}

void SelectionKeeper::Private::rowsCame(int first, int last)
{
    for (int row = first; row <= last && !away.isEmpty(); ++row) {
        const QString id = idOf(proxy->index(row, 0));
        if (away.remove(id)) {
            arrived.insert(id);
        }
    }
    soon.start();
}

void SelectionKeeper::Private::restore()
{
    restoreSelection();
    if (scrolled) {
        restoreScrolling();
    }
    if (complete) {
        forget();
        Q_EMIT q->done();
    }
}

void SelectionKeeper::Private::restoreSelection()
{
    const QModelIndex currentIndex = indexOf(current);
    if (currentIndex.isValid()) {
        view->selectionModel()->setCurrentIndex(currentIndex, QItemSelectionModel::NoUpdate);
        current.clear();
    }
    view->selectionModel()->select(takeArrived(), QItemSelectionModel::Select | QItemSelectionModel::Rows);
}

// Adjacent rows become one range: a selection is slow by the number of its ranges.
QItemSelection SelectionKeeper::Private::takeArrived()
{
    std::vector<int> rows;
    const auto ids = std::exchange(arrived, {});
    for (const QString& id : ids) {
        if (const QModelIndex index = indexOf(id); index.isValid()) {
            rows.push_back(index.row());
        }
    }
    std::sort(rows.begin(), rows.end());
    QItemSelection found;
    for (auto first = rows.begin(); first != rows.end();) {
        const auto last = std::adjacent_find(first, rows.end(), [](int row, int next) { return next != row + 1; });
        const int end = last == rows.end() ? rows.back() : *last;
        found.append(QItemSelectionRange(proxy->index(*first, 0), proxy->index(end, 0)));
        first = last == rows.end() ? last : last + 1;
    }
    return found;
}

// Rows that come later still move this one, so it is remembered to the end.
void SelectionKeeper::Private::restoreScrolling()
{
    view->doItemsLayout(); // without it new rows have no place yet to scroll to
    const QModelIndex topIndex = indexOf(top);
    if (topIndex.isValid()) {
        view->scrollTo(topIndex, QAbstractItemView::PositionAtTop);
    } else if (top.isEmpty()) {
        view->scrollToTop();
    }
    view->horizontalScrollBar()->setValue(left);
}

void SelectionKeeper::Private::forget()
{
    soon.stop();
    away.clear();
    arrived.clear();
    current.clear();
    scrolled = false;
    complete = false;
}

SelectionKeeper::SelectionKeeper(QTableView* view, QSortFilterProxyModel* proxy, const AbstractRecordListModel* records,
                                 QObject* parent)
    : QObject(parent)
    , d(std::make_unique<Private>(this, view, proxy, records))
{
    d->soon.setSingleShot(true);
    d->soon.setInterval(0);
    connect(&d->soon, &QTimer::timeout, this, [this] { d->restore(); });
    connect(proxy, &QAbstractItemModel::modelAboutToBeReset, this, [this] { d->remember(); });
    connect(proxy, &QAbstractItemModel::modelReset, this, [this] { d->rowsCame(0, d->proxy->rowCount() - 1); });
    connect(proxy, &QAbstractItemModel::rowsInserted, this,
            [this](const QModelIndex&, int first, int last) { d->rowsCame(first, last); });
    for (QObject* const watched : {static_cast<QObject*>(view), static_cast<QObject*>(view->viewport()),
                                   static_cast<QObject*>(view->verticalScrollBar())}) {
        watched->installEventFilter(this);
    }
}

SelectionKeeper::~SelectionKeeper() = default;

void SelectionKeeper::forget()
{
    d->forget();
}

void SelectionKeeper::finish()
{
    d->complete = true;
    d->soon.start();
}

int SelectionKeeper::awaited() const
{
    return static_cast<int>(d->away.size());
}

bool SelectionKeeper::eventFilter(QObject* watched, QEvent* event)
{
    switch (event->type()) {
    case QEvent::KeyPress:
    case QEvent::MouseButtonPress:
    case QEvent::Wheel:
        if (d->proxy->rowCount() > 0) {
            forget();
        }
        break;
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}

} // namespace ZelkoConsole
