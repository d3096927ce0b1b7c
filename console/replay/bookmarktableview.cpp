#include <console/replay/bookmarktableview.h>

#include <console/widgets/roomystyle.h>

#include <widgetbase/viewportnote.h>
#include <zelkoguibase/bookmarks/bookmarkedittimedelegate.h>
#include <zelkoguibase/bookmarks/bookmarkmodel.h>

#include <QHeaderView>
#include <QKeyEvent>

#include <algorithm>
#include <utility>

namespace ZelkoConsole {

using ZelkoGUI::BookmarkModel;

namespace {

// With those there is room to work, and the list of records stays what the window is about.
constexpr int shownRows = 4;
constexpr int shownCharacters = 46;
constexpr int fewestCharacters = 30;

constexpr auto whileUnlocked =
    QAbstractItemView::DoubleClicked | QAbstractItemView::EditKeyPressed | QAbstractItemView::AnyKeyPressed;

} // namespace

BookmarkTableView::BookmarkTableView(QWidget* parent)
    : QTableView(parent)
    , m_note(new guiHelper::ViewportNote(this))
{
    setObjectName(QStringLiteral("bookmarkTable"));
    setAccessibleName(tr("Bookmarks"));
    arrange();
    dressHeaders();
    connectParts();
    look();
}

BookmarkTableView::~BookmarkTableView() = default;

void BookmarkTableView::arrange()
{
    RoomyStyle::apply(this);
    setItemDelegateForColumn(BookmarkModel::TimeColumn, new ZelkoGUI::BookmarkEditTimeDelegate(this));
    setEditTriggers(whileUnlocked);
    setSelectionMode(QAbstractItemView::ExtendedSelection);
    setTabKeyNavigation(false); // Tab goes on to the next part of the window
    setShowGrid(false);
    setAlternatingRowColors(true);
    setCornerButtonEnabled(false);
}

void BookmarkTableView::dressHeaders()
{
    RoomyStyle::apply(horizontalHeader());
    horizontalHeader()->setStretchLastSection(true);
    horizontalHeader()->setHighlightSections(false);
    horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    verticalHeader()->setDefaultSectionSize(RoomyStyle::rowHeight(this));
    verticalHeader()->setSectionsClickable(true);
}

void BookmarkTableView::connectParts()
{
    connect(verticalHeader(), &QHeaderView::sectionClicked, this, &BookmarkTableView::sectionClicked);
    connect(this, &QAbstractItemView::doubleClicked, this, [this](const QModelIndex& index) {
        if (isAddRow(index)) {
            add();
        }
    });
}

void BookmarkTableView::setBookmarks(BookmarkModel* bookmarks)
{
    setModel(bookmarks);
    if (m_bookmarks) {
        m_bookmarks->disconnect(this);
    }
    m_bookmarks = bookmarks;
    if (bookmarks) {
        connect(bookmarks, &QAbstractItemModel::modelReset, this, &BookmarkTableView::look);
        connect(bookmarks, &QAbstractItemModel::rowsInserted, this, &BookmarkTableView::look);
        connect(bookmarks, &QAbstractItemModel::rowsRemoved, this, &BookmarkTableView::look);
        connect(bookmarks, &BookmarkModel::si_synchStateChanged, this, &BookmarkTableView::look);
    }
    look();
}

void BookmarkTableView::setLocked(bool locked)
{
    if (std::exchange(m_isLocked, locked) == locked) {
        return;
    }
    setEditTriggers(locked ? QAbstractItemView::NoEditTriggers : EditTriggers(whileUnlocked));
    look();
}

void BookmarkTableView::commitEdit()
{
    QWidget* const editor = state() == EditingState ? indexWidget(currentIndex()) : nullptr;
    if (editor) {
        commitData(editor);
        closeEditor(editor, QAbstractItemDelegate::NoHint);
    }
}

QString BookmarkTableView::note() const
{
    return m_note->isHidden() ? QString() : m_note->text();
}

// A list that can be edited offers to add a bookmark behind the last one.
bool BookmarkTableView::isEditable() const
{
    return m_bookmarks && !m_isLocked &&
           m_bookmarks->headerData(m_bookmarks->entryCount(), Qt::Vertical, Qt::ToolTipRole).isValid();
}

// The header offers to add and to take away, which makes no sense where nobody can.
void BookmarkTableView::look()
{
    verticalHeader()->setVisible(m_bookmarks && !m_isLocked && !m_bookmarks->readOnly() &&
                                 m_bookmarks->getSynchState() != BookmarkModel::SynchNoRecord);
    const QString text = noteNow();
    m_note->setText(text);
    m_note->setVisible(!text.isEmpty());
    setAccessibleDescription(text);
    widenTimes();
}

// No narrower than a time of day, so that nothing jumps where there are no bookmarks.
void BookmarkTableView::widenTimes()
{
    const int least = fontMetrics().horizontalAdvance(QStringLiteral("00:00:00:000")) + 2 * RoomyStyle::cellMargin();
    setColumnWidth(BookmarkModel::TimeColumn, std::max(least, sizeHintForColumn(BookmarkModel::TimeColumn)));
}

QString BookmarkTableView::noteNow() const
{
    if (!m_bookmarks || m_bookmarks->getSynchState() == BookmarkModel::SynchNoRecord) {
        return tr("Choose one record to see its bookmarks.");
    }
    if (m_bookmarks->entryCount() > 0) {
        return {};
    }
    return m_bookmarks->readOnly() || m_isLocked ? tr("No bookmarks.")
                                                 : tr("No bookmarks: Insert or a double click on the bar sets one.");
}

bool BookmarkTableView::isAddRow(const QModelIndex& index) const
{
    return m_bookmarks && index.isValid() && index.row() >= m_bookmarks->entryCount();
}

void BookmarkTableView::sectionClicked(int section)
{
    if (m_bookmarks && section >= m_bookmarks->entryCount()) {
        add();
    } else if (m_bookmarks) {
        m_bookmarks->sl_verticalHeaderClicked(section);
    }
}

// What is new has a time already, and waits for its text.
void BookmarkTableView::add()
{
    if (!isEditable()) {
        return;
    }
    const int row = m_bookmarks->entryCount();
    m_bookmarks->sl_verticalHeaderClicked(row);
    const QModelIndex text = m_bookmarks->index(row, BookmarkModel::TextColumn);
    setCurrentIndex(text);
    edit(text);
}

QList<bool> BookmarkTableView::selectedRows() const
{
    QList<bool> isSelected(m_bookmarks->entryCount(), false);
    for (const QModelIndex& index : selectionModel()->selectedIndexes()) {
        if (!isAddRow(index)) {
            isSelected[index.row()] = true;
        }
    }
    return isSelected;
}

// All at once, as the bars and the map are told of each change. The next that is left is the current one then.
void BookmarkTableView::remove()
{
    const QList<bool> isSelected = selectedRows();
    const auto first = isSelected.indexOf(true);
    if (first < 0) {
        return;
    }
    BookmarkModel::Entries left;
    for (int row = 0; row < isSelected.size(); ++row) {
        if (!isSelected[row]) {
            left.append(m_bookmarks->entry(row));
        }
    }
    const int column = currentIndex().column();
    m_bookmarks->setEntries(left);
    setCurrentIndex(m_bookmarks->index(static_cast<int>(first), std::max(column, 0)));
}

void BookmarkTableView::keyPressEvent(QKeyEvent* event)
{
    const bool isPlain = event->modifiers() == Qt::NoModifier || event->modifiers() == Qt::KeypadModifier;
    if (isPlain && isEditable() && editByKey(event->key())) {
        return;
    }
    QTableView::keyPressEvent(event);
}

bool BookmarkTableView::editByKey(int key)
{
    const bool isEdit = key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_F2;
    if (key == Qt::Key_Delete) {
        remove();
    } else if (key == Qt::Key_Insert || (isAddRow(currentIndex()) && isEdit)) {
        add();
    } else {
        return false;
    }
    return true;
}

QSize BookmarkTableView::sizeHint() const
{
    const int height = horizontalHeader()->sizeHint().height() + shownRows * verticalHeader()->defaultSectionSize();
    return {fontMetrics().averageCharWidth() * shownCharacters, height + 2 * frameWidth()};
}

QSize BookmarkTableView::minimumSizeHint() const
{
    return {fontMetrics().averageCharWidth() * fewestCharacters, sizeHint().height()};
}

} // namespace ZelkoConsole
