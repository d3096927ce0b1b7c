#include "bookmarksite.h"
#include "patience.h"
#include "tracetexts.h"

#include <resources/zelkoicons.h>
#include <zelkoguibase/bookmarks/bookmarkedittimedelegate.h>

#include <QDateTimeEdit>
#include <QIdentityProxyModel>
#include <QSortFilterProxyModel>
#include <QStandardItemModel>
#include <QTableView>
#include <QtTest>

#include <optional>

using ZelkoGUI::BookmarkEditTimeDelegate;
using ZelkoGUI::BookmarkModel;

namespace {

const QString timeOfDay = QStringLiteral("hh:mm:ss:zzz");
const QString dateAndTime = QStringLiteral("yyyy-MM-dd hh:mm:ss:zzz");

QDateTime at(int second)
{
    return BookmarkModel::datetimeFromEntry(bookmarkAt(second, {}));
}

/// Knows no time of any bookmark.
class WithoutTimes final : public QIdentityProxyModel
{
public:
    QVariant data(const QModelIndex& index, int role) const override
    {
        return role == Qt::EditRole ? QVariant(QDateTime()) : QIdentityProxyModel::data(index, role);
    }
};

/// A table with the delegate.
struct Table
{
    explicit Table(QAbstractItemModel& model)
    {
        view.setModel(&model);
        view.setItemDelegate(&delegate);
        view.horizontalHeader()->setDefaultSectionSize(220);
        view.resize(600, 200);
        view.show();
    }

    /// Opens the editor of a cell by a double click; null if none opens.
    QWidget* open(int row, int column)
    {
        const QPoint cell = view.visualRect(view.model()->index(row, column)).center();
        QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, cell);
        QTest::mouseDClick(view.viewport(), Qt::LeftButton, {}, cell);
        return view.indexWidget(view.model()->index(row, column));
    }
    QDateTimeEdit* openTime(int row) { return qobject_cast<QDateTimeEdit*>(open(row, 0)); }

    BookmarkEditTimeDelegate delegate;
    QTableView view;
};

} // namespace

class BookmarkEditTimeDelegateTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { registerZelkoIcons(); }
    void init() { m_site.emplace(); }
    void cleanup() { m_site.reset(); }

    void theRangeHoldsTheRecordAndTheBookmark_data();
    void theRangeHoldsTheRecordAndTheBookmark();
    void aTimeWithoutAValueHasTheRangeOfTheRecord();
    void anEntryGoesToTheModel();
    void aBookmarkOutsideTheRecordIsNotMovedByALook();
    void oneProxyIsLookedThrough();
    void aModelBehindTwoProxiesIsNotFound();
    void timesOfAnotherModelHaveNoLimits();
    void textsHaveTheUsualEditor();
    void theRowToAddToHasNoEditor();

private:
    std::optional<BookmarkSite> m_site;
};

void BookmarkEditTimeDelegateTest::theRangeHoldsTheRecordAndTheBookmark_data()
{
    constexpr int day = 24 * 3600;
    QTest::addColumn<int>("second");
    QTest::addColumn<int>("first");
    QTest::addColumn<int>("last");
    QTest::addColumn<QString>("format");
    QTest::addColumn<int>("length");
    const auto row = [](const char* name, int second, int first, int last, const QString& format, int length = 90) {
        QTest::newRow(name) << second << first << last << format << length;
    };
    row("within the record", 10, 0, 90, timeOfDay);
    row("before the record", -10, -10, 90, timeOfDay);
    row("behind the record", 100, 0, 100, timeOfDay);
    row("a day before the record", -day, -day, 90, dateAndTime);
    row("a day behind the record", day, 0, day, dateAndTime);
    row("a record of one moment", 0, 0, 0, timeOfDay, 0);
    row("behind a record of one moment", 10, 0, 10, timeOfDay, 0);
}

void BookmarkEditTimeDelegateTest::theRangeHoldsTheRecordAndTheBookmark()
{
    QFETCH(const int, second);
    QFETCH(const int, first);
    QFETCH(const int, last);
    QFETCH(const int, length);
    const auto record = BookmarkSite::record({bookmarkAt(second, "a")});
    record->SetStopTime(bookmarkAt(length, {}).GetTimestamp());
    m_site->show(record);
    Table table(m_site->model);
    const QDateTimeEdit* const editor = table.openTime(0);
    QVERIFY(editor != nullptr);
    QCOMPARE(editor->dateTime(), at(second));
    QCOMPARE(editor->minimumDateTime(), at(first));
    QCOMPARE(editor->maximumDateTime(), at(last));
    QTEST(editor->displayFormat(), "format");
}

void BookmarkEditTimeDelegateTest::aTimeWithoutAValueHasTheRangeOfTheRecord()
{
    m_site->show(twoBookmarks);
    WithoutTimes proxy;
    proxy.setSourceModel(&m_site->model);
    Table table(proxy);
    const QDateTimeEdit* const editor = table.openTime(0);
    QVERIFY(editor != nullptr);
    QCOMPARE(editor->minimumDateTime(), at(0));
    QCOMPARE(editor->maximumDateTime(), at(90));
    QCOMPARE(editor->displayFormat(), timeOfDay);
}

void BookmarkEditTimeDelegateTest::anEntryGoesToTheModel()
{
    m_site->show(twoBookmarks);
    Table table(m_site->model);
    QDateTimeEdit* const editor = table.openTime(0);
    QVERIFY(editor != nullptr);
    editor->setSelectedSection(QDateTimeEdit::MSecSection);
    QTest::keyClicks(editor, "250");
    QTest::keyClick(editor, Qt::Key_Return);
    QTRY_COMPARE_WITH_TIMEOUT(m_site->bookmarks(), QStringList({"10250000 a", "20000000 b"}), patience);
}

void BookmarkEditTimeDelegateTest::aBookmarkOutsideTheRecordIsNotMovedByALook()
{
    const TraceTexts traces;
    m_site->show({bookmarkAt(-10, "a")});
    Table table(m_site->model);
    QDateTimeEdit* const editor = table.openTime(0);
    QVERIFY(editor != nullptr);
    QTest::keyClick(editor, Qt::Key_Return);
    QTRY_VERIFY_WITH_TIMEOUT(table.view.indexWidget(m_site->model.index(0, 0)) == nullptr, patience);
    QCOMPARE(m_site->bookmarks(), QStringList{"-10000000 a"});
}

void BookmarkEditTimeDelegateTest::oneProxyIsLookedThrough()
{
    m_site->show({bookmarkAt(20, "b"), bookmarkAt(100, "a")});
    QSortFilterProxyModel proxy;
    proxy.setSourceModel(&m_site->model);
    proxy.sort(1);
    Table table(proxy);
    const int row = proxy.mapFromSource(m_site->model.index(1, 0)).row();
    const QDateTimeEdit* const editor = table.openTime(row);
    QVERIFY(editor != nullptr);
    QCOMPARE(editor->dateTime(), at(100));
    QCOMPARE(editor->maximumDateTime(), at(100));
    QCOMPARE(editor->displayFormat(), timeOfDay);
}

void BookmarkEditTimeDelegateTest::aModelBehindTwoProxiesIsNotFound()
{
    m_site->show(twoBookmarks);
    QIdentityProxyModel first;
    QIdentityProxyModel second;
    first.setSourceModel(&m_site->model);
    second.setSourceModel(&first);
    Table table(second);
    const QDateTimeEdit* const editor = table.openTime(0);
    QVERIFY(editor != nullptr);
    QVERIFY(editor->displayFormat() != timeOfDay);
    QVERIFY(editor->minimumDateTime() < at(0));
}

void BookmarkEditTimeDelegateTest::timesOfAnotherModelHaveNoLimits()
{
    QStandardItemModel model(1, 1);
    model.setData(model.index(0, 0), at(10));
    Table table(model);
    const QDateTimeEdit* const editor = table.openTime(0);
    QVERIFY(editor != nullptr);
    QVERIFY(editor->displayFormat() != timeOfDay);
    QVERIFY(editor->minimumDateTime() < at(0));
}

void BookmarkEditTimeDelegateTest::textsHaveTheUsualEditor()
{
    m_site->show(twoBookmarks);
    Table table(m_site->model);
    QWidget* const editor = table.open(1, 1);
    QVERIFY(editor != nullptr);
    QTest::keyClicks(editor, "new");
    QTest::keyClick(editor, Qt::Key_Return);
    QTRY_COMPARE_WITH_TIMEOUT(m_site->bookmarks(), QStringList({"10000000 a", "20000000 new"}), patience);
}

void BookmarkEditTimeDelegateTest::theRowToAddToHasNoEditor()
{
    m_site->show(twoBookmarks);
    Table table(m_site->model);
    QVERIFY(table.open(2, 0) == nullptr);
    QVERIFY(table.open(2, 1) == nullptr);
}

QTEST_MAIN(BookmarkEditTimeDelegateTest)
#include "tst_bookmarkedittimedelegate.moc"
