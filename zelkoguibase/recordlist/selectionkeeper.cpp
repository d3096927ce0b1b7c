#include "selectionkeeper_p.h"

#include "proxiedrecords_p.h"
#include "scrollplace_p.h"

#include <QEvent>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QScrollBar>
#include <QSet>
#include <QSortFilterProxyModel>
#include <QTableView>
#include <QTimer>

#include <utility>

namespace ZelkoGUI {

// In pauses. A record that never returns must not hold a list for ever into which new ones come all the time.
constexpr int longestRefill = 12;

struct SelectionKeeper::Private
{
    Private(QTableView* theView, QSortFilterProxyModel* theProxy)
        : view(theView)
        , proxy(theProxy)
        , records(*theProxy)
    {}

    void remember();
    void rowsCame(int first, int last);
    void allRowsCame() { rowsCame(0, proxy->rowCount() - 1); }
    void restore();
    void restoreCurrent();
    void restoreScrolling();
    bool awaitsSomething() const;
    void forget();

    QTableView* const view;
    QSortFilterProxyModel* const proxy;
    const ProxiedRecords records;
    QTimer soon;
    QTimer pause;        // since the last rows came that something was awaited of
    QTimer limit;        // since the first rows came
    QSet<QString> away;  // were selected and have no row yet
    QStringList arrived; // have a row again and are not selected yet
    QString current;
    bool scrolled = false; // whether `top` and `left` are still to be restored
    ScrollPlace top;       // the first row in sight; no ID when that is the first row of all, which then stays so
    bool isTopBack = false;
    int left = 0;
    bool isReplaced = false; // all rows, which is not signalled yet
};

void SelectionKeeper::Private::remember()
{
    for (const QString& id : std::exchange(arrived, {})) {
        away.insert(id);
    }
    pause.stop();
    limit.stop();
    if (proxy->rowCount() == 0) {
        return;
    }
    for (const QModelIndex& index : view->selectionModel()->selectedRows()) {
        away.insert(records.idOf(index));
    }
    if (view->currentIndex().isValid()) {
        current = records.idOf(view->currentIndex());
    }
    if (!scrolled || isTopBack) {
        top = view->verticalScrollBar()->value() > 0 ? ScrollPlace::first(*view, records) : ScrollPlace();
        left = view->horizontalScrollBar()->value();
    }
    scrolled = true;
    isTopBack = top.id.isEmpty();
}

void SelectionKeeper::Private::rowsCame(int first, int last)
{
    if (!scrolled || first > last) {
        return; // nothing is remembered, or nothing has come yet
    }
    for (int row = first; row <= last && !away.isEmpty(); ++row) {
        const QString id = records.idOf(proxy->index(row, 0));
        if (away.remove(id)) {
            arrived.append(id);
        }
    }
    if (awaitsSomething() || !pause.isActive()) {
        pause.start();
    }
    if (!limit.isActive()) {
        limit.start();
    }
    soon.start();
}

bool SelectionKeeper::Private::awaitsSomething() const
{
    return !away.isEmpty() || !current.isEmpty() || !isTopBack;
}

void SelectionKeeper::Private::restore()
{
    if (!scrolled) {
        return;
    }
    restoreCurrent();
    const QItemSelection rows = records.rowsOf(std::exchange(arrived, {}));
    if (!rows.isEmpty()) {
        view->selectionModel()->select(rows, QItemSelectionModel::Select);
    }
    if (scrolled) { // whoever was told of the above has not selected something else
        restoreScrolling();
    }
}

void SelectionKeeper::Private::restoreCurrent()
{
    const QModelIndex index = records.indexOf(current);
    if (index.isValid()) {
        view->selectionModel()->setCurrentIndex(index, QItemSelectionModel::NoUpdate);
        current.clear();
    }
}

// Rows that come later still move this one, so it is remembered to the end.
void SelectionKeeper::Private::restoreScrolling()
{
    view->doItemsLayout(); // without it new rows have no place yet to scroll to
    const QModelIndex topIndex = records.indexOf(top.id);
    if (topIndex.isValid()) {
        isTopBack = true;
        top.bring(*view, topIndex.row());
    } else if (top.id.isEmpty()) {
        view->scrollToTop();
    }
    view->horizontalScrollBar()->setValue(left);
}

void SelectionKeeper::Private::forget()
{
    pause.stop();
    limit.stop();
    away.clear();
    arrived.clear();
    current.clear();
    scrolled = false;
}

SelectionKeeper::SelectionKeeper(QTableView* view, QSortFilterProxyModel* proxy, std::chrono::milliseconds pause,
                                 QObject* parent)
    : QObject(parent)
    , d(std::make_unique<Private>(view, proxy))
{
    followTimers(pause);
    followRows();
    watchTheUser();
}

SelectionKeeper::~SelectionKeeper() = default;

void SelectionKeeper::followTimers(std::chrono::milliseconds pause)
{
    for (QTimer* const timer : {&d->soon, &d->pause, &d->limit}) {
        timer->setSingleShot(true);
    }
    d->soon.setInterval(0);
    d->pause.setInterval(pause);
    d->limit.setInterval(longestRefill * pause);
    connect(&d->soon, &QTimer::timeout, this, [this] {
        d->restore();
        if (std::exchange(d->isReplaced, false)) {
            Q_EMIT replaced();
        }
    });
    for (QTimer* const over : {&d->pause, &d->limit}) {
        connect(over, &QTimer::timeout, this, [this] {
            d->restore();
            d->forget();
            Q_EMIT ended();
        });
    }
}

void SelectionKeeper::followRows()
{
    const QAbstractItemModel* const proxy = d->proxy;
    connect(proxy, &QAbstractItemModel::modelAboutToBeReset, this, [this] { d->remember(); });
    connect(proxy, &QAbstractItemModel::modelReset, this, [this] {
        d->allRowsCame();
        d->isReplaced = true;
        d->soon.start();
    });
    connect(proxy, &QAbstractItemModel::rowsInserted, this,
            [this](const QModelIndex&, int first, int last) { d->rowsCame(first, last); });
    connect(proxy, &QAbstractItemModel::layoutChanged, this, [this] { d->allRowsCame(); });
}

void SelectionKeeper::watchTheUser()
{
    const QTableView& view = *d->view;
    const QList<QWidget*> watched{d->view,
                                  view.viewport(),
                                  view.verticalScrollBar(),
                                  view.horizontalScrollBar(),
                                  view.verticalHeader()->viewport(),
                                  view.horizontalHeader(), // takes keys itself
                                  view.horizontalHeader()->viewport()};
    for (QWidget* const widget : watched) {
        widget->installEventFilter(this);
    }
}

void SelectionKeeper::forget()
{
    d->forget();
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

} // namespace ZelkoGUI
