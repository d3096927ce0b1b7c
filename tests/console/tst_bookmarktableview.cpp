#include "bookmarksite.h"
#include "patience.h"
#include "testbookmarks.h"

#include <console/replay/bookmarktableview.h>

#include <QApplication>
#include <QDateTimeEdit>
#include <QHeaderView>
#include <QLineEdit>
#include <QSignalSpy>
#include <QTest>

using namespace ZelkoConsole;
using namespace Qt::StringLiterals;
using ZelkoGUI::BookmarkModel;

namespace {

/// A table that is shown, of a record with two bookmarks.
struct Setting
{
    explicit Setting(bool readOnly = false)
        : site(readOnly)
    {
        table.setBookmarks(&site.model);
        table.resize(500, 200);
        table.show();
        table.activateWindow();
    }
    bool isActive() { return QTest::qWaitForWindowActive(&table, patience); }

    void key(Qt::Key key) { QTest::keyClick(&table, key); }
    void choose(int row, int column)
    {
        table.setFocus();
        table.setCurrentIndex(site.model.index(row, column));
    }
    void clickHeader(int section) const
    {
        const QHeaderView& header = *table.verticalHeader();
        QTest::mouseClick(
            header.viewport(), Qt::LeftButton, {},
            {header.width() / 2, header.sectionViewportPosition(section) + header.sectionSize(section) / 2});
    }
    template <typename Editor>
    Editor* editor() const
    {
        return table.viewport()->findChild<Editor*>();
    }
    void type(const QString& text) const
    {
        auto* const field = editor<QLineEdit>();
        QVERIFY(field);
        QTest::keyClicks(field, text);
        QTest::keyClick(field, Qt::Key_Return);
        QTRY_VERIFY_WITH_TIMEOUT(!editor<QLineEdit>(), patience);
    }

    BookmarkSite site;
    BookmarkTableView table;
};

} // namespace

class TestBookmarkTableView : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void saysWhyItIsEmpty();
    void addsByTheHeader();
    void takesAwayByTheHeader();
    void addsByKeys_data();
    void addsByKeys();
    void addsByADoubleClickBehindTheLast();
    void takesAwayWhatIsSelected();
    void takesAwayManyAtOnce();
    void editsByKeys();
    void editsATimeWithinTheRecord();
    void changesNothingOfAViewer();
    void changesNothingWhileTheListIsSent();
    void leavesByTheTabKey();
    void outlivesItsModel();
};

void TestBookmarkTableView::saysWhyItIsEmpty()
{
    Setting setting;
    QCOMPARE(setting.table.note(), u"Choose one record to see its bookmarks."_s);
    QVERIFY(!setting.table.verticalHeader()->isVisible());
    setting.site.show(BookmarkModel::Entries());
    QCOMPARE(setting.table.note(), u"No bookmarks: Insert or a double click on the bar sets one."_s);
    QCOMPARE(setting.table.accessibleDescription(), setting.table.note());
    setting.table.setLocked(true);
    QCOMPARE(setting.table.note(), u"No bookmarks."_s);
    setting.table.setLocked(false);
    setting.site.show(twoBookmarks);
    QCOMPARE(setting.table.note(), QString());
    QVERIFY(setting.table.verticalHeader()->isVisible());
}

void TestBookmarkTableView::addsByTheHeader()
{
    Setting setting;
    setting.site.show(twoBookmarks);
    QVERIFY(setting.isActive());
    setting.site.model.sl_setNewBookmarkTime(recordBegin + 30'000'000);
    setting.clickHeader(2);
    setting.type(u"new"_s);
    QCOMPARE(setting.site.bookmarks(), textsOfTwo + QStringList(u"30000000 new"_s));
}

void TestBookmarkTableView::takesAwayByTheHeader()
{
    Setting setting;
    setting.site.show(twoBookmarks);
    setting.clickHeader(0);
    QCOMPARE(setting.site.bookmarks(), textsOfTwo.mid(1));
}

void TestBookmarkTableView::addsByKeys_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<Qt::Key>("key");
    QTest::newRow("Insert on a bookmark") << 0 << Qt::Key_Insert;
    QTest::newRow("Insert behind the last") << 2 << Qt::Key_Insert;
    QTest::newRow("Return behind the last") << 2 << Qt::Key_Return;
    QTest::newRow("Enter behind the last") << 2 << Qt::Key_Enter;
    QTest::newRow("F2 behind the last") << 2 << Qt::Key_F2;
}

void TestBookmarkTableView::addsByKeys()
{
    QFETCH(int, row);
    QFETCH(Qt::Key, key);
    Setting setting;
    setting.site.show(twoBookmarks);
    QVERIFY(setting.isActive());
    setting.choose(row, BookmarkModel::TextColumn);
    setting.key(key);
    setting.type(u"new"_s);
    QCOMPARE(setting.site.bookmarks(), textsOfTwo + QStringList(u"0 new"_s));
}

void TestBookmarkTableView::addsByADoubleClickBehindTheLast()
{
    Setting setting;
    setting.site.show(twoBookmarks);
    QVERIFY(setting.isActive());
    const QPoint place = setting.table.visualRect(setting.site.model.index(2, 1)).center();
    QTest::mouseClick(setting.table.viewport(), Qt::LeftButton, {}, place);
    QTest::mouseDClick(setting.table.viewport(), Qt::LeftButton, {}, place);
    setting.type(u"new"_s);
    QCOMPARE(setting.site.bookmarks().size(), 3);
}

void TestBookmarkTableView::takesAwayWhatIsSelected()
{
    Setting setting;
    setting.site.show(twoBookmarks);
    QVERIFY(setting.isActive());
    setting.choose(0, BookmarkModel::TimeColumn);
    QTest::keyClick(&setting.table, Qt::Key_A, Qt::ControlModifier);
    setting.key(Qt::Key_Delete);
    QCOMPARE(setting.site.bookmarks(), QStringList());
    setting.key(Qt::Key_Delete);
    QCOMPARE(setting.site.model.getSynchState(), BookmarkModel::SynchLocalChange);
}

void TestBookmarkTableView::takesAwayManyAtOnce()
{
    Setting setting;
    setting.site.show({bookmarkAt(10, u"a"_s), bookmarkAt(20, u"b"_s), bookmarkAt(30, u"c"_s), bookmarkAt(40, u"d"_s)});
    QVERIFY(setting.isActive());
    const auto selectRow = [&setting](int row) {
        const QModelIndex text = setting.site.model.index(row, BookmarkModel::TextColumn);
        QTest::mouseClick(setting.table.viewport(), Qt::LeftButton, Qt::ControlModifier,
                          setting.table.visualRect(text).center());
    };
    selectRow(1);
    selectRow(2);
    const QSignalSpy changes(&setting.site.model, &BookmarkModel::si_normalizedChanged);
    setting.key(Qt::Key_Delete);
    QCOMPARE(setting.site.bookmarks(), QStringList({u"10000000 a"_s, u"40000000 d"_s}));
    QCOMPARE(changes.size(), 1);
    setting.key(Qt::Key_Delete); // the next one is where they were
    QCOMPARE(setting.site.bookmarks(), QStringList(u"10000000 a"_s));
}

void TestBookmarkTableView::editsByKeys()
{
    Setting setting;
    setting.site.show(twoBookmarks);
    QVERIFY(setting.isActive());
    setting.choose(1, BookmarkModel::TextColumn);
    setting.key(Qt::Key_F2);
    setting.type(u"other"_s);
    QCOMPARE(setting.site.bookmarks().constLast(), u"20000000 other"_s);
}

void TestBookmarkTableView::editsATimeWithinTheRecord()
{
    Setting setting;
    setting.site.show(twoBookmarks);
    QVERIFY(setting.isActive());
    setting.choose(0, BookmarkModel::TimeColumn);
    setting.key(Qt::Key_F2);
    const auto* const editor = setting.editor<QDateTimeEdit>();
    QVERIFY(editor);
    QCOMPARE(editor->displayFormat(), u"hh:mm:ss:zzz"_s);
    QCOMPARE(editor->minimumDateTime(), setting.site.model.minDateTime());
}

void TestBookmarkTableView::changesNothingOfAViewer()
{
    Setting setting(true);
    setting.site.show(twoBookmarks);
    QVERIFY(setting.isActive());
    QVERIFY(!setting.table.verticalHeader()->isVisible());
    setting.choose(0, BookmarkModel::TextColumn);
    for (const Qt::Key key : {Qt::Key_Delete, Qt::Key_Insert, Qt::Key_F2, Qt::Key_X}) {
        setting.key(key);
    }
    QVERIFY(!setting.editor<QLineEdit>());
    QCOMPARE(setting.site.bookmarks(), textsOfTwo);
    setting.site.show(BookmarkModel::Entries());
    QCOMPARE(setting.table.note(), u"No bookmarks."_s);
}

void TestBookmarkTableView::changesNothingWhileTheListIsSent()
{
    Setting setting;
    setting.site.show(twoBookmarks);
    QVERIFY(setting.isActive());
    setting.site.edit(1, bookmarkAt(40, u"c"_s));
    setting.site.model.sl_synchronize();
    const QStringList before = setting.site.bookmarks();
    setting.choose(0, BookmarkModel::TextColumn);
    setting.key(Qt::Key_Delete);
    setting.key(Qt::Key_Insert);
    setting.clickHeader(0);
    QCOMPARE(setting.site.bookmarks(), before);
}

void TestBookmarkTableView::leavesByTheTabKey()
{
    QWidget window;
    auto* const table = new BookmarkTableView(&window);
    auto* const field = new QLineEdit(&window);
    BookmarkSite site;
    table->setBookmarks(&site.model);
    site.show(twoBookmarks);
    window.show();
    window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&window, patience));
    table->setFocus();
    QTest::keyClick(table, Qt::Key_Tab);
    QTRY_VERIFY_WITH_TIMEOUT(field->hasFocus(), patience);
}

void TestBookmarkTableView::outlivesItsModel()
{
    BookmarkTableView table;
    {
        BookmarkSite site;
        table.setBookmarks(&site.model);
    }
    table.show();
    QVERIFY(!table.note().isEmpty());
    QTest::keyClick(&table, Qt::Key_Insert);
}

QTEST_MAIN(TestBookmarkTableView)
#include "tst_bookmarktableview.moc"
