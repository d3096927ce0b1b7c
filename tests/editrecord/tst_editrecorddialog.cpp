#include "editrecordtest.h"
#include "iconpicture.h"
#include "replaybarhands.h"

#include <zelkoguibase/bookmarks/bookmarkedittimedelegate.h>
#include <zelkoguibase/editrecord/copyrecordwidget.h>
#include <zelkoguibase/replaybar/replaybarwidget.h>

#include <QHeaderView>
#include <QLineEdit>
#include <QToolButton>

using namespace Qt::StringLiterals;

/// The window on a record in its three uses: for its bookmarks, for a copy of a part of it, and for both.
class EditRecordDialogTest : public EditRecordTest
{
    Q_OBJECT

private Q_SLOTS:
    void init() { makeRecords(); }
    void cleanup() { dropAll(); }

    void itHasThePartsOfItsOptions_data();
    void itHasThePartsOfItsOptions();
    void itIsAsLargeAsItsPartsNeed_data();
    void itIsAsLargeAsItsPartsNeed();
    void itsPartsStandOneBelowTheOther();
    void theTableTakesTheRoom();
    void withoutATableTheRoomIsLeftFree();
    void theTableIsMadeForBookmarks();
    void theLabelNamesTheRecord_data();
    void theLabelNamesTheRecord();
    void withoutARecordItIsEmpty();
    void anOverlongNameDoesNotWidenTheWindow();
    void bookmarksCanBeEditedAfterTheDelay();
    void theButtonsShowForAListThatNeedsThem_data();
    void theButtonsShowForAListThatNeedsThem();
    void theButtonsAppearAsSoonAsTheyAreNeeded();
    void normalizePutsTheListInOrder();
    void cutRemovesWhatLiesOutside();
    void aNewBookmarkStandsAtThePositionOfTheBar();
    void bookmarksAreAddedAndDeletedWithKeys();
    void aHeaderIsPressedWhileAnEditorIsOpen_data();
    void aHeaderIsPressedWhileAnEditorIsOpen();
    void aTimeIsEditedWithinTheRecord();
    void bookmarksAreSent();
    void aPartIsCopied();
    void aCopyNeedsANameIfSaid_data();
    void aCopyNeedsANameIfSaid();
    void returnInTheNameDoesNotCloseTheWindow();

private:
    /// The editor of the seconds of a bookmark; null if it does not open.
    QDateTimeEdit* openTime(int row) const
    {
        const QModelIndex cell = model().index(row, BookmarkModel::TimeColumn);
        table().edit(cell);
        auto* const editor = qobject_cast<QDateTimeEdit*>(table().indexWidget(cell));
        if (editor) {
            editor->setSelectedSection(QDateTimeEdit::SecondSection);
        }
        return editor;
    }
    void clickHeader(int section) const
    {
        const QHeaderView* const header = table().verticalHeader();
        const int middle = header->sectionViewportPosition(section) + header->sectionSize(section) / 2;
        QTest::mouseClick(header->viewport(), Qt::LeftButton, {}, {header->width() / 2, middle});
    }
};

void EditRecordDialogTest::itHasThePartsOfItsOptions_data()
{
    QTest::addColumn<int>("options");
    QTest::addColumn<QStringList>("parts");
    const QString copy = u"copy"_s;
    QTest::newRow("nothing") << 0 << QStringList{u"close"_s};
    QTest::newRow("the name of the record") << 16 << QStringList{u"label"_s, u"close"_s};
    QTest::newRow("the axis of time") << 4 << QStringList{u"bar"_s, u"close"_s};
    QTest::newRow("the copy") << 1 << QStringList{copy, u"close"_s};
    QTest::newRow("the bookmarks") << 2 << QStringList{u"table"_s, u"ok"_s, u"edit"_s};
    QTest::newRow("for bookmarks") << bookmarkOptions
                                   << QStringList{u"table"_s, u"bar"_s, u"label"_s, u"ok"_s, u"edit"_s};
    QTest::newRow("for a copy") << copyOptions << QStringList{u"bar"_s, copy, u"label"_s, u"close"_s};
    QTest::newRow("for all") << allOptions << QStringList{u"table"_s, u"bar"_s, copy, u"label"_s, u"ok"_s, u"edit"_s};
}

void EditRecordDialogTest::itHasThePartsOfItsOptions()
{
    QFETCH(const int, options);
    open(options);
    QStringList parts;
    const auto note = [&](bool isThere, const QString& name) {
        parts << (isThere ? QStringList{name} : QStringList());
    };
    note(part<QTableView>("BookmarkTableView"), u"table"_s);
    note(part<ZelkoGUI::ReplayBarWidget>("ReplayBarWidget"), u"bar"_s);
    note(part<ZelkoGUI::CopyRecordWidget>("CopyRecordWidget"), u"copy"_s);
    note(info(), u"label"_s);
    note(box().standardButtons() == QDialogButtonBox::Close, u"close"_s);
    note(box().standardButtons() == QDialogButtonBox::Ok, u"ok"_s);
    note(normalize() && cut(), u"edit"_s);
    QCOMPARE(box().orientation(), Qt::Horizontal);
    QTEST(parts, "parts");
    QCOMPARE(model().readOnly(), !parts.contains(u"table"_s));
}

void EditRecordDialogTest::itIsAsLargeAsItsPartsNeed_data()
{
    QTest::addColumn<int>("options");
    QTest::addColumn<QSize>("size");
    QTest::newRow("with nothing in it") << 0 << QSize(200, 200);
    QTest::newRow("with the axis of time") << 4 << QSize(500, 200);
    QTest::newRow("with bookmarks") << 2 << QSize(500, 500);
    QTest::newRow("for all") << allOptions << QSize(500, 500);
}

void EditRecordDialogTest::itIsAsLargeAsItsPartsNeed()
{
    QFETCH(const int, options);
    const EditRecordDialog dialog(Options(QFlag(options)), nullptr);
    QTEST(dialog.size(), "size");
    QCOMPARE(dialog.objectName(), u"EditRecordDialog"_s);
    QCOMPARE(dialog.windowTitle(), u"Edit Record"_s);
    QVERIFY(dialog.isSizeGripEnabled());
    QVERIFY(dialog.promptUnsavedChanged());
    QCOMPARE(dialog.windowFlags(), Qt::Dialog | Qt::WindowTitleHint | Qt::WindowSystemMenuHint);
}

void EditRecordDialogTest::itsPartsStandOneBelowTheOther()
{
    open(allOptions);
    const QList<const QWidget*> parts{part<QWidget>("CopyRecordWidget"), part<QWidget>("ReplayBarWidget"), &table(),
                                      info(), &box()};
    for (int i = 1; i < parts.size(); ++i) {
        QVERIFY(parts[i - 1]->geometry().bottom() < parts[i]->geometry().top());
    }
}

void EditRecordDialogTest::theTableTakesTheRoom()
{
    open(allOptions);
    const int before = table().height();
    m_dialog->resize(m_dialog->width(), m_dialog->height() + 300);
    QTRY_COMPARE_WITH_TIMEOUT(table().height(), before + 300, patience);
}

void EditRecordDialogTest::withoutATableTheRoomIsLeftFree()
{
    open(copyOptions);
    const auto* const bar = part<QWidget>("ReplayBarWidget");
    const auto room = [&] { return info()->geometry().top() - bar->geometry().bottom(); };
    const int before = room();
    m_dialog->resize(m_dialog->width(), m_dialog->height() + 300);
    QTRY_COMPARE_WITH_TIMEOUT(room(), before + 300, patience);
}

void EditRecordDialogTest::theTableIsMadeForBookmarks()
{
    open(bookmarkOptions);
    QCOMPARE(table().model(), &model());
    QVERIFY(table().alternatingRowColors());
    QVERIFY(!table().isSortingEnabled());
    QCOMPARE(table().selectionMode(), QAbstractItemView::SingleSelection);
    QVERIFY(table().horizontalHeader()->stretchLastSection());
    QVERIFY(qobject_cast<ZelkoGUI::BookmarkEditTimeDelegate*>(table().itemDelegateForColumn(0)));
    QVERIFY(!table().accessibleName().isEmpty());
    QVERIFY(table().columnWidth(0) > table().fontMetrics().horizontalAdvance(u"2023-11-14 23:13:20:000"_s) + 20);
    QCOMPARE(normalize()->text(), u"Normalize"_s);
    QCOMPARE(normalize()->toolTip(), u"create unique timestamps in the correct sequence"_s);
    QCOMPARE(cut()->text(), u"Cut Range"_s);
    QCOMPARE(cut()->toolTip(), u"remove all entries which do not fit into the record range"_s);
    QVERIFY(isOf(normalize()->icon(), u":/Zelko/Bookmarks/Normalize.svg"_s));
    QVERIFY(isOf(cut()->icon(), u":/Zelko/Bookmarks/ApplyRange.svg"_s));
}

void EditRecordDialogTest::theLabelNamesTheRecord_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("text");
    QTest::newRow("a name") << u"Tower"_s << u"Record: Tower"_s;
    QTest::newRow("no name") << QString() << u"Record: n/a"_s;
    QTest::newRow("what looks like markup") << u"<b>Tower</b>"_s << u"Record: <b>Tower</b>"_s;
}

void EditRecordDialogTest::theLabelNamesTheRecord()
{
    QFETCH(const QString, name);
    open(16);
    const auto record = makeCopyable();
    record->SetRecordName(name);
    m_records->store(record);
    QTEST(info()->text(), "text");
    QCOMPARE(info()->textFormat(), Qt::PlainText);
    QCOMPARE(info()->toolTip(), u"Record ID:R"_s);
}

void EditRecordDialogTest::withoutARecordItIsEmpty()
{
    open(allOptions);
    m_dialog->resetRecord();
    verifyEmpty();
    m_dialog->setRecord(u"S"_s, &*m_records, false, QString());
    verifyEmpty();
}

void EditRecordDialogTest::anOverlongNameDoesNotWidenTheWindow()
{
    open(allOptions);
    const int before = m_dialog->minimumSizeHint().width();
    const auto record = makeCopyable();
    record->SetRecordName(QString(10'000, u'x'));
    record->SetBookmarkEntry({bookmarkAt(5, QString(10'000, u'y'))});
    m_records->store(record);
    QVERIFY(m_dialog->minimumSizeHint().width() <= before);
}

void EditRecordDialogTest::bookmarksCanBeEditedAfterTheDelay()
{
    open(bookmarkOptions);
    m_dialog->setRecord(u"R"_s, &*m_records, true, u"D"_s);
    QCOMPARE(model().getSynchState(), State::SynchPending);
    m_timer->advance(BookmarkModel::UnlockDelay);
    QCOMPARE(model().getSynchState(), State::SynchInSync);
}

void EditRecordDialogTest::theButtonsShowForAListThatNeedsThem_data()
{
    QTest::addColumn<BookmarkModel::Entries>("bookmarks");
    QTest::addColumn<bool>("isSorted");
    QTest::addColumn<bool>("isWithin");
    QTest::newRow("a clean list") << twoBookmarks << true << true;
    QTest::newRow("no list") << BookmarkModel::Entries() << true << true;
    QTest::newRow("out of order") << BookmarkModel::Entries{bookmarkAt(20, u"b"_s), bookmarkAt(10, u"a"_s)} << false
                                  << true;
    QTest::newRow("behind the record") << BookmarkModel::Entries{bookmarkAt(10, u"a"_s), bookmarkAt(91, u"b"_s)} << true
                                       << false;
    QTest::newRow("both") << BookmarkModel::Entries{bookmarkAt(91, u"b"_s), bookmarkAt(10, u"a"_s)} << false << false;
}

void EditRecordDialogTest::theButtonsShowForAListThatNeedsThem()
{
    QFETCH(const BookmarkModel::Entries, bookmarks);
    open(bookmarkOptions);
    QVERIFY(!normalize()->isVisible());
    QVERIFY(!cut()->isVisible());
    model().setEntries(bookmarks);
    QTEST(!normalize()->isVisible(), "isSorted");
    QTEST(!cut()->isVisible(), "isWithin");
    m_dialog->resetRecord();
    QVERIFY(!normalize()->isVisible());
    QVERIFY(!cut()->isVisible());
}

void EditRecordDialogTest::theButtonsAppearAsSoonAsTheyAreNeeded()
{
    open(bookmarkOptions);
    QDateTimeEdit* const editor = openTime(0);
    QVERIFY(editor);
    for (int second = 10; second <= 20; ++second) {
        QTest::keyClick(editor, Qt::Key_Up);
    }
    QVERIFY(!normalize()->isVisible());
    QTest::keyClick(editor, Qt::Key_Return);
    QTRY_VERIFY_WITH_TIMEOUT(normalize()->isVisible(), patience);
    QVERIFY(!cut()->isVisible());
    const auto shorter = makeCopyable();
    shorter->SetStopTime(recordBegin + 15'000'000);
    m_records->store(shorter);
    QVERIFY(cut()->isVisible());
}

void EditRecordDialogTest::normalizePutsTheListInOrder()
{
    open(bookmarkOptions);
    model().setEntries({bookmarkAt(20, u"b"_s), bookmarkAt(10, u"a"_s)});
    QTest::mouseClick(normalize(), Qt::LeftButton);
    QCOMPARE(bookmarkTexts(model().entries()), textsOfTwo);
    QVERIFY(!normalize()->isVisible());
    QVERIFY(m_dialog->isVisible());
}

void EditRecordDialogTest::cutRemovesWhatLiesOutside()
{
    open(bookmarkOptions);
    model().setEntries({bookmarkAt(-1, u"early"_s), bookmarkAt(10, u"a"_s), bookmarkAt(91, u"late"_s)});
    QTest::mouseClick(cut(), Qt::LeftButton);
    QCOMPARE(bookmarkTexts(model().entries()), QStringList{u"10000000 a"_s});
    QVERIFY(!cut()->isVisible());
    QVERIFY(m_dialog->isVisible());
}

void EditRecordDialogTest::aNewBookmarkStandsAtThePositionOfTheBar()
{
    open(bookmarkOptions);
    auto& bar = *part<VCReplayBar>("ZelkoReplayBar");
    ReplayBarHands hands(bar);
    const double from = static_cast<double>(recordBegin);
    const double to = from + 45e6;
    const double position = hands.afterDrag(from, to);
    hands.dragPosition(from, to);
    clickHeader(2);
    QCOMPARE(model().entryCount(), 3);
    QCOMPARE(model().entry(2).GetTimestamp(), static_cast<quint64>(position));
}

void EditRecordDialogTest::bookmarksAreAddedAndDeletedWithKeys()
{
    open(bookmarkOptions);
    table().setFocus();
    table().setCurrentIndex(model().index(0, 1));
    QTest::keyClick(&table(), Qt::Key_Insert);
    QCOMPARE(model().entryCount(), 3);
    QTest::keyClick(&table(), Qt::Key_Up);
    QTest::keyClicks(&table(), u"n"_s);
    QWidget* const editor = table().indexWidget(model().index(2, 1));
    QVERIFY(editor);
    QTest::keyClicks(editor, u"ew"_s);
    QTest::keyClick(editor, Qt::Key_Return);
    QTRY_COMPARE_WITH_TIMEOUT(model().entry(2).GetBookmark(), u"new"_s, patience);
    QVERIFY(m_dialog->isVisible());
    table().setCurrentIndex(model().index(0, 0));
    QTest::keyClick(&table(), Qt::Key_Delete);
    QCOMPARE(bookmarkTexts(model().entries()), QStringList({u"20000000 b"_s, u"0 new"_s}));
}

// What was typed until then is taken first, and what was pressed is done then.
void EditRecordDialogTest::aHeaderIsPressedWhileAnEditorIsOpen_data()
{
    QTest::addColumn<int>("section");
    QTest::addColumn<QStringList>("bookmarks");
    QTest::newRow("of the bookmark that is edited") << 0 << QStringList{u"20000000 b"_s};
    QTest::newRow("of another bookmark") << 1 << QStringList{u"10000000 new"_s};
    QTest::newRow("of one to come") << 2 << QStringList{u"10000000 new"_s, u"20000000 b"_s, u"0 "_s};
}

void EditRecordDialogTest::aHeaderIsPressedWhileAnEditorIsOpen()
{
    QFETCH(const int, section);
    open(bookmarkOptions);
    table().edit(model().index(0, BookmarkModel::TextColumn));
    auto* const editor = qobject_cast<QLineEdit*>(table().indexWidget(model().index(0, BookmarkModel::TextColumn)));
    QVERIFY(editor);
    editor->selectAll();
    QTest::keyClicks(editor, u"new"_s);
    clickHeader(section);
    QTEST(bookmarkTexts(model().entries()), "bookmarks");
    QVERIFY(m_dialog->isVisible());
}

void EditRecordDialogTest::aTimeIsEditedWithinTheRecord()
{
    open(bookmarkOptions);
    QDateTimeEdit* const editor = openTime(0);
    QVERIFY(editor);
    QCOMPARE(editor->minimumDateTime(), model().minDateTime());
    QTest::keyClick(editor, Qt::Key_Up);
    QTest::keyClick(editor, Qt::Key_Return);
    QTRY_COMPARE_WITH_TIMEOUT(bookmarkTexts(model().entries()).first(), u"11000000 a"_s, patience);
}

void EditRecordDialogTest::bookmarksAreSent()
{
    openChanged(bookmarkOptions);
    QTest::mouseClick(part<QToolButton>("ApplyBookmarks"), Qt::LeftButton);
    QCOMPARE(told(), QStringList{u"bookmarks R of D: 5000000 moved, 20000000 b"_s});
}

void EditRecordDialogTest::aPartIsCopied()
{
    open(copyOptions);
    QTest::mouseClick(part<QToolButton>("SaveButton"), Qt::LeftButton);
    QCOMPARE(told(), QStringList{u"copy R 1000-901000 name of R_Copy"_s});
    QVERIFY(m_dialog->isVisible());
    const auto begin = static_cast<long long>(recordBegin);
    QCOMPARE(part<VCReplayBar>("ZelkoReplayBar")->GetRangeVector(),
             (std::vector<std::pair<long long, long long>>{{begin, begin + 90'000'000}}));
}

void EditRecordDialogTest::aCopyNeedsANameIfSaid_data()
{
    QTest::addColumn<int>("options");
    QTest::addColumn<bool>("canBeSaved");
    QTest::newRow("said") << 9 << false;
    QTest::newRow("not said") << 1 << true;
}

void EditRecordDialogTest::aCopyNeedsANameIfSaid()
{
    QFETCH(const int, options);
    open(options);
    QVERIFY(part<QToolButton>("SaveButton")->isEnabled());
    part<QLineEdit>("RecordNameEdit")->selectAll();
    QTest::keyClick(part<QLineEdit>("RecordNameEdit"), Qt::Key_Delete);
    QTEST(part<QToolButton>("SaveButton")->isEnabled(), "canBeSaved");
}

void EditRecordDialogTest::returnInTheNameDoesNotCloseTheWindow()
{
    open(allOptions);
    for (const char* const name : {"RecordNameEdit", "DateTimeEdit"}) {
        QTest::keyClick(part<QWidget>(name), Qt::Key_Return);
        QTest::keyClick(part<QWidget>(name), Qt::Key_Enter);
        QVERIFY(m_dialog->isVisible());
    }
}

QTEST_MAIN(EditRecordDialogTest)
#include "tst_editrecorddialog.moc"
