#include <console/records/selectionkeeper.h>

#include <zelkobase/models/abstractrecordlistmodel.h>

#include <QEvent>
#include <QItemSelectionModel>
#include <QScrollBar>
#include <QSet>
#include <QSortFilterProxyModel>
#include <QTableView>
#include <QTimer>

namespace ZelkoConsole {

using ZelkoCommon::AbstractRecordListModel;

struct SelectionKeeper::Private
{
    Private(QTableView* theView, QSortFilterProxyModel* theProxy, const AbstractRecordListModel* theRecords)
        : view(theView)
        , proxy(theProxy)
        , records(theRecords)
    {}

    QString idOf(const QModelIndex& proxyIndex) const { return records->getRecordID(proxy->mapToSource(proxyIndex)); }
    QModelIndex indexOf(const QString& id) const { return proxy->mapFromSource(records->recordIndex(id)); }

    void remember();
    void restore();
    void restoreSelection();
    void restoreScrolling();

    QTableView* const view;
    QSortFilterProxyModel* const proxy;
    const AbstractRecordListModel* const records;
    QTimer soon;
    QSet<QString> selected;
    QString current;
    bool complete = false; // whether all rows that will come back are here
    bool scrolled = false; // whether `top` and `left` are still to be restored
    QString top;           // ID of the first row in sight; empty when that is the first row of all, which then stays so
    int left = 0;
};

void SelectionKeeper::Private::remember()
{
    if (proxy->rowCount() == 0) {
        return;
    }
    for (const QModelIndex& index : view->selectionModel()->selectedRows()) {
        selected.insert(idOf(index));
    }
    if (view->currentIndex().isValid()) {
        current = idOf(view->currentIndex());
    }
    top = view->verticalScrollBar()->value() > 0 ? idOf(view->indexAt(QPoint(0, 0))) : QString();
    scrolled = true;
    complete = false;
    left = view->horizontalScrollBar()->value();
}

void SelectionKeeper::Private::restore()
{
    restoreSelection();
    if (scrolled) {
        restoreScrolling();
    }
    scrolled = scrolled && !std::exchange(complete, false);
}

void SelectionKeeper::Private::restoreSelection()
{
    QItemSelection found;
    for (auto id = selected.begin(); id != selected.end();) {
        const QModelIndex index = indexOf(*id);
        if (index.isValid()) {
            found.select(index, index);
        }
        id = index.isValid() ? selected.erase(id) : std::next(id);
    }
    const QModelIndex currentIndex = indexOf(current);
    if (currentIndex.isValid()) {
        view->selectionModel()->setCurrentIndex(currentIndex, QItemSelectionModel::NoUpdate);
        current.clear();
    }
    view->selectionModel()->select(found, QItemSelectionModel::Select | QItemSelectionModel::Rows);
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

SelectionKeeper::SelectionKeeper(QTableView* view, QSortFilterProxyModel* proxy, const AbstractRecordListModel* records,
                                 QObject* parent)
    : QObject(parent)
    , d(std::make_unique<Private>(view, proxy, records))
{
    d->soon.setSingleShot(true);
    d->soon.setInterval(0);
    connect(&d->soon, &QTimer::timeout, this, [this] { d->restore(); });
    connect(proxy, &QAbstractItemModel::modelAboutToBeReset, this, [this] { d->remember(); });
    connect(proxy, &QAbstractItemModel::modelReset, &d->soon, qOverload<>(&QTimer::start));
    connect(proxy, &QAbstractItemModel::rowsInserted, &d->soon, qOverload<>(&QTimer::start));
    view->installEventFilter(this);
    view->viewport()->installEventFilter(this);
}

SelectionKeeper::~SelectionKeeper() = default;

void SelectionKeeper::forget()
{
    d->soon.stop();
    d->selected.clear();
    d->current.clear();
    d->scrolled = false;
}

void SelectionKeeper::finish()
{
    if (d->proxy->rowCount() > 0) {
        d->complete = true;
        d->soon.start();
    }
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
