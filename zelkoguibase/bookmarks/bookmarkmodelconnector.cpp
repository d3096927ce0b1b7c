#include <zelkoguibase/bookmarks/bookmarkmodelconnector.h>

#include "bookmarkkeys_p.h"

#include <observerbase/errorhandler.h>
#include <observerbase/trace.h>
#include <valuecore/valueptr.h>
#include <zelkobase/maps/bookmarkitemmap.h>

#include <QScopedValueRollback>
#include <QTimer>

#include <algorithm>
#include <utility>

namespace ZelkoGUI {

using zelko::bookmarkmap::BookmarkItemMap;
using zelko::bookmarkmap::BookmarkMapData;

namespace {

/// What the connector is doing: writing to the map up to WritingAll, changing the model from there on. What it hears of
/// meanwhile is its own doing.
enum class Operation : qint32 {
    Idle = 0,
    WritingRows = 1,
    ErasingRows = 2,
    AddingRows = 3,
    WritingAll = 4,
    ApplyingChange = 5,
    ApplyingErasure = 6,
    ApplyingAddition = 7,
    ApplyingAll = 8
};

using Working = QScopedValueRollback<Operation>;

void trace(const QString& text)
{
    if (ErrorHandler::Instance()->traces(ErrorHandler::TraceError)) {
        _Q_Trace(text, __FILE__, __LINE__);
    }
}

// Null where something else stands, or nothing can.
BookmarkItemMap* findOrMakeMap(const QString& path)
{
    Tree& tree = *Tree::Instance();
    if (auto* const map = tree.Find<BookmarkItemMap>(path)) {
        return map;
    }
    const auto nameBegin = path.lastIndexOf(QLatin1Char('/')) + 1;
    return tree.Emplace(path.left(nameBegin),
                        std::make_unique<BookmarkItemMap>(path.mid(nameBegin), TValueState::Open));
}

} // namespace

struct BookmarkModelConnector::Private
{
    Private(BookmarkModelConnector* theOwner, BookmarkModel* theModel)
        : owner(theOwner)
        , model(theModel)
        , map(theOwner)
    {}

    Working begin(Operation what);
    bool isOwnDoing();
    bool followsRows(int difference);
    template <typename Write>
    void writeRows(Operation what, int rows, Write write);
    void write(int row);
    bool writeAll();
    bool takeChange(char type, unsigned int key);
    bool takeItem(unsigned int key);
    bool changeRow(int row, const BookmarkModel::Entry& entry);
    bool addRow(unsigned int key, const BookmarkModel::Entry& entry);
    bool removeRow(int row);
    bool takeAll();
    bool takeList(const BookmarkModel::Entries& entries, const QList<unsigned int>& mapKeys);
    void loseKeys();
    void rewriteLater();
    void rewriteIfDue();

    BookmarkModelConnector* const owner;
    BookmarkModel* const model;
    ValueObservingPtr<BookmarkItemMap> map;
    std::uint64_t position = 0; // in the log of the map
    Operation operation = Operation::Idle;
    int signalsToCome = 0; // of the model, for what the connector does to it
    BookmarkKeys keys;
    bool keysFit = true; // there is one for each bookmark of the model, in the order of the rows
    bool isRewriteDue = false;
    bool removesMap = true;
};

Working BookmarkModelConnector::Private::begin(Operation what)
{
    signalsToCome = what > Operation::WritingAll ? 1 : 0;
    return Working(operation, what);
}

// Whether a signal of the model tells of what the connector is doing. The model tells of that once. Whatever it tells
// beyond is the doing of somebody who has heard of the same: no key can be relied on then, and the map is written anew.
bool BookmarkModelConnector::Private::isOwnDoing()
{
    if (operation == Operation::Idle) {
        return false;
    }
    if (--signalsToCome < 0) {
        loseKeys();
    }
    return true;
}

// Whether the map is to follow a signal about rows, of which there are so many more now. Somebody who has heard of it
// first may have changed the model further: then the signals come in another order than the changes.
bool BookmarkModelConnector::Private::followsRows(int difference)
{
    if (isOwnDoing() || !map || !keysFit) {
        return false;
    }
    if (keys.count() + difference != model->entryCount()) {
        loseKeys();
    }
    return keysFit;
}

void BookmarkModelConnector::Private::loseKeys()
{
    keysFit = false;
    rewriteLater();
}

// Calls `write` once for each row. A row writes one change to the log at most, and nobody hears of none. What is there
// beyond is the doing of somebody who has heard of the row, and it was not read: the map is written anew. Whoever hears
// of it may also change the model, or take the map away; the other rows are of no use then.
template <typename Write>
void BookmarkModelConnector::Private::writeRows(Operation what, int rows, Write write)
{
    const Working working = begin(what);
    for (; rows > 0 && map && keysFit; --rows) {
        const std::uint64_t before = map->GetChangeLog().NextNumber();
        write();
        if (map && map->GetChangeLog().NextNumber() > before + 1) {
            loseKeys();
        }
    }
}

void BookmarkModelConnector::Private::write(int row)
{
    map->SetAt(keys.keyOf(row), BookmarkMapData(keys.keyOf(row), model->entry(row)), nullptr);
}

// The bookmarks get their row numbers as keys. False if the map does not hold just them afterwards, since somebody who
// has heard of it has changed it in turn.
bool BookmarkModelConnector::Private::writeAll()
{
    const Working working = begin(Operation::WritingAll);
    isRewriteDue = false;
    QList<unsigned int> newKeys;
    BookmarkItemMap::MapType items;
    items.reserve(static_cast<std::size_t>(model->entryCount()));
    for (const BookmarkModel::Entry& entry : model->entries()) {
        const auto key = static_cast<unsigned int>(newKeys.size());
        items.emplace(key, BookmarkMapData(key, entry));
        newKeys.append(key);
    }
    keys.assign(newKeys);
    keysFit = true;
    map->Set(items, true, true, nullptr);
    return !map || map->data() == items;
}

// False if the model refuses the change.
bool BookmarkModelConnector::Private::takeChange(char type, unsigned int key)
{
    switch (type) {
    case valueitemmap::ChangeSet:
    case valueitemmap::ChangeErased:
        return takeItem(key);
    case valueitemmap::ChangeCleared:
        return takeList({}, {});
    default:
        trace(QStringLiteral("BookmarkModelConnector::Update() -> unhandled changeID %1").arg(int{type}));
        return true;
    }
}

// What counts is what the map holds by now. The bookmark is the connector's own: who hears of it may change the map.
bool BookmarkModelConnector::Private::takeItem(unsigned int key)
{
    const auto found = map->data().find(key);
    const int row = keys.rowOf(key);
    if (found == map->data().end()) {
        return row < 0 || removeRow(row);
    }
    const BookmarkModel::Entry entry = found->second.toEntry();
    return row < 0 ? addRow(key, entry) : changeRow(row, entry);
}

bool BookmarkModelConnector::Private::changeRow(int row, const BookmarkModel::Entry& entry)
{
    const Working working = begin(Operation::ApplyingChange);
    return model->changeEntry(row, entry);
}

bool BookmarkModelConnector::Private::addRow(unsigned int key, const BookmarkModel::Entry& entry)
{
    const Working working = begin(Operation::ApplyingAddition);
    const int row = model->appendEntry(entry);
    if (row != keys.count()) {
        return false;
    }
    keys.insert(row, key);
    return true;
}

// A row that the model keeps also keeps its key until the map is written anew.
bool BookmarkModelConnector::Private::removeRow(int row)
{
    const Working working = begin(Operation::ApplyingErasure);
    const bool isRemoved = model->removeEntry(row);
    if (isRemoved) {
        keys.remove(row);
    }
    return isRemoved;
}

bool BookmarkModelConnector::Private::takeAll()
{
    QList<unsigned int> mapKeys;
    BookmarkModel::Entries entries;
    for (const auto& [key, item] : map->data()) {
        mapKeys.append(key);
        entries.append(item.toEntry());
    }
    return takeList(entries, mapKeys);
}

bool BookmarkModelConnector::Private::takeList(const BookmarkModel::Entries& entries,
                                               const QList<unsigned int>& mapKeys)
{
    const Working working = begin(Operation::ApplyingAll);
    const bool isTaken = model->setEntries(entries);
    if (isTaken) {
        keys.assign(mapKeys);
    }
    return isTaken;
}

// Never within a notification: others still hear of what is taken back. Once for however much there is.
void BookmarkModelConnector::Private::rewriteLater()
{
    if (!std::exchange(isRewriteDue, true)) {
        QTimer::singleShot(0, owner, [this] { rewriteIfDue(); });
    }
}

// A reset may have written the map meanwhile. Whoever changes even this in turn would do so for ever: the model takes
// what he wants, if it can be edited.
void BookmarkModelConnector::Private::rewriteIfDue()
{
    if (std::exchange(isRewriteDue, false) && map && !isOwnDoing() && !writeAll() && keysFit) {
        takeAll();
    }
}

// Direct, so that the keys are in step with the rows within the model's own calls.
BookmarkModelConnector::BookmarkModelConnector(const QString& path, BookmarkModel* model)
    : QObject(model)
    , d(std::make_unique<Private>(this, model))
{
    using Self = BookmarkModelConnector;
    connect(model, &BookmarkModel::si_synchStateChanged, this, &Self::sl_syncStateChanged, Qt::DirectConnection);
    connect(model, &BookmarkModel::dataChanged, this, &Self::sl_dataChanged, Qt::DirectConnection);
    connect(model, &BookmarkModel::modelReset, this, &Self::sl_modelReset, Qt::DirectConnection);
    connect(model, &BookmarkModel::layoutChanged, this, &Self::sl_modelReset, Qt::DirectConnection);
    connect(model, &BookmarkModel::rowsInserted, this, &Self::sl_rowsInserted, Qt::DirectConnection);
    connect(model, &BookmarkModel::rowsRemoved, this, &Self::sl_rowsRemoved, Qt::DirectConnection);
    connect(model, &BookmarkModel::rowsMoved, this, &Self::sl_rowsMoved, Qt::DirectConnection);
    bind(path);
}

// The map is let go of first: that it goes is no news then.
BookmarkModelConnector::~BookmarkModelConnector()
{
    const QString mapPath = path();
    d->map = nullptr;
    if (d->removesMap && !mapPath.isEmpty()) {
        Tree::Instance()->Remove(mapPath);
    }
}

void BookmarkModelConnector::bind(const QString& path)
{
    d->map = findOrMakeMap(path);
    d->operation = Operation::Idle;
    if (d->map) {
        d->map->Clear(this);
        d->position = d->map->GetChangeLog().NextNumber();
        sl_syncStateChanged(d->model->getSynchState());
        sl_modelReset();
    }
}

QString BookmarkModelConnector::path() const
{
    return d->map ? d->map->GetPathName() : QString();
}

bool BookmarkModelConnector::removesMapOnDestruction() const
{
    return d->removesMap;
}

void BookmarkModelConnector::setRemoveMapOnDestruction(bool remove)
{
    d->removesMap = remove;
}

void BookmarkModelConnector::sl_syncStateChanged(BookmarkModel::enSynchState state)
{
    if (d->map) {
        const bool isOpen = state == BookmarkModel::SynchInSync || state == BookmarkModel::SynchLocalChange ||
                            state == BookmarkModel::SynchExternalChange;
        d->map->SetState(isOpen ? TValueState::Open : TValueState::Locked, this);
    }
}

void BookmarkModelConnector::sl_dataChanged(QModelIndex topLeft, QModelIndex bottomRight)
{
    if (!d->followsRows(0)) {
        return;
    }
    int row = topLeft.row();
    const int last = std::min(bottomRight.row(), d->keys.count() - 1);
    d->writeRows(Operation::WritingRows, last - row + 1, [&] { d->write(row++); });
}

void BookmarkModelConnector::sl_modelReset()
{
    if (!d->isOwnDoing() && d->map && !d->writeAll()) {
        d->loseKeys();
    }
}

void BookmarkModelConnector::sl_rowsInserted(QModelIndex, int first, int last)
{
    const int rows = last - first + 1;
    if (!d->followsRows(rows)) {
        return;
    }
    int row = first;
    d->writeRows(Operation::AddingRows, rows, [&] {
        d->keys.insert(row, d->map->AddEntry(d->model->entry(row), nullptr));
        ++row;
    });
}

void BookmarkModelConnector::sl_rowsRemoved(QModelIndex, int first, int last)
{
    const int rows = last - first + 1;
    if (!d->followsRows(-rows)) {
        return;
    }
    d->writeRows(Operation::ErasingRows, rows, [&] {
        const unsigned int key = d->keys.keyOf(first);
        d->keys.remove(first);
        d->map->EraseAt(key, nullptr);
    });
}

// The map has no order, so it stays as it is.
void BookmarkModelConnector::sl_rowsMoved(QModelIndex, int start, int end, QModelIndex, int destinationRow)
{
    if (d->map) {
        d->keys.move(start, end - start + 1, destinationRow);
    }
}

void BookmarkModelConnector::Update(Observable*, TChangeCode code)
{
    if (code == TChangeCode::StateChanged) {
        trace(QStringLiteral("BookmarkModelConnector::Update: unexpected state change"));
    }
    if (code != TChangeCode::ValueChanged) {
        return;
    }
    bool isRefused = false;
    char type = 0;
    unsigned int key = 0;
    while (d->map) {
        const signed char result = d->map->GetChangeLog().ReadNext(d->position, type, key);
        if (result == 0) {
            break;
        }
        if (d->operation == Operation::Idle && d->keysFit) {
            const bool isTaken = result < 0 ? d->takeAll() : d->takeChange(type, key);
            isRefused = isRefused || !isTaken;
        }
    }
    if (d->operation == Operation::Idle && isRefused) {
        trace(QStringLiteral("BookmarkModelConnector::Update: ItemMap changes not accepted by model -> revert"));
        d->rewriteLater();
    }
}

} // namespace ZelkoGUI
