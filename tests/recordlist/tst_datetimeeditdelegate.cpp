#include "moment.h"
#include "patience.h"

#include <zelkoguibase/recordlist/datetimeeditdelegate.h>

#include <chartcontrols/vcreplaybar.h>
#include <valuewidgetsbasic/vcdatetimeedit.h>

#include <QStandardItemModel>
#include <QTableView>
#include <QtTest>

using ZelkoCommon::DateTimeEditDelegate;

namespace {

constexpr long long second = 1'000'000;
constexpr long long begin = 1'700'000'000 * second + 400'000; // 2023-11-14T22:13:20.4Z
constexpr long long end = begin + 100 * second;

/// A bar with bookmarks, and a table of them.
struct Window
{
    explicit Window(const std::vector<long long>& bookmarks = {begin + 10 * second, begin + 20 * second})
        : model(static_cast<int>(bookmarks.size()), 1)
        , bar(std::make_unique<VCReplayBar>(nullptr, "ReplayBar", true))
        , delegate(bar.get(), nullptr)
    {
        bar->SetRecordingStart_ValuePath(start.path());
        bar->SetRecordingStop_ValuePath(stop.path());
        bar->SetCurrentPosition_ValuePath(position.path());
        std::vector<BookmarkType> marks;
        for (const long long bookmark : bookmarks) {
            marks.emplace_back(bookmark, QStringLiteral("Mark"));
        }
        bar->SetBookmarks(marks, false);
        table.setModel(&model);
        table.setItemDelegate(&delegate);
        table.horizontalHeader()->setDefaultSectionSize(220);
        table.resize(400, 200);
        table.show();
    }

    /// The editor of a row, opened by a double click.
    VCDateTimeEdit* open(int row)
    {
        const QPoint cell = table.visualRect(model.index(row, 0)).center();
        QTest::mouseClick(table.viewport(), Qt::LeftButton, Qt::NoModifier, cell);
        QTest::mouseDClick(table.viewport(), Qt::LeftButton, Qt::NoModifier, cell);
        return editor();
    }

    VCDateTimeEdit* editor() const
    {
        return table.viewport()->findChild<VCDateTimeEdit*>(QStringLiteral("pSelectedTime"));
    }

    long long bookmark(std::size_t index) const { return bar->GetBookmarks().at(index).time; }

    const Moment start{begin};
    const Moment stop{end};
    const Moment position{begin + 50 * second};
    QStandardItemModel model;
    std::unique_ptr<VCReplayBar> bar;
    DateTimeEditDelegate delegate;
    QTableView table;
};

} // namespace

class DateTimeEditDelegateTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void editsTheBookmarkOfTheRow_data();
    void editsTheBookmarkOfTheRow();
    void anEntryMovesTheBookmarkAndNotTheModel();
    void theEditorFollowsTheBookmark();
    void thePositionIsCurrentAgainAfterwards();
    void entriesEndWhereTheRecordingDoes();
    void openingChangesNoBookmark_data();
    void openingChangesNoBookmark();
    void fillsItsCell();
    void aRowWithoutABookmarkHasAnEditorOfNothing();
    void thereIsNoEditorWithoutABar();
    void anotherEditorIsLeftAlone();
};

void DateTimeEditDelegateTest::editsTheBookmarkOfTheRow_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("marker");
    QTest::addColumn<QString>("text");
    QTest::newRow("the first") << 0 << 6 << QStringLiteral("2023-11-14 23:13:30");
    QTest::newRow("the second") << 1 << 7 << QStringLiteral("2023-11-14 23:13:40");
}

void DateTimeEditDelegateTest::editsTheBookmarkOfTheRow()
{
    QFETCH(int, row);
    QFETCH(int, marker);
    Window window;
    const VCDateTimeEdit* const editor = window.open(row);
    QVERIFY(editor != nullptr);
    QCOMPARE(editor->displayFormat(), QStringLiteral("yyyy-MM-dd hh:mm:ss"));
    QCOMPARE(editor->toolTip(), QStringLiteral("Shows the current position of the bookmark"));
    QCOMPARE(editor->accessibleName(), QStringLiteral("Time of the bookmark"));
    QCOMPARE(editor->GetDateTime_ValuePath(), window.bar->GetValueTreePath(marker));
    QVERIFY(!editor->GetDateTime_ValuePath().isEmpty());
    QTEST(editor->text(), "text");
    QCOMPARE(window.bar->GetCurrentMarker(), marker);
}

void DateTimeEditDelegateTest::anEntryMovesTheBookmarkAndNotTheModel()
{
    Window window;
    window.model.setData(window.model.index(0, 0), QStringLiteral("as it was"));
    VCDateTimeEdit* const editor = window.open(0);
    QVERIFY(editor != nullptr);
    editor->setSelectedSection(QDateTimeEdit::SecondSection);
    QTest::keyClick(editor, Qt::Key_Up);
    QCOMPARE(window.bookmark(0), begin + 11 * second);
    QTest::keyClick(editor, Qt::Key_Return);
    QTRY_VERIFY_WITH_TIMEOUT(window.editor() == nullptr, patience);
    QCOMPARE(window.model.index(0, 0).data().toString(), QStringLiteral("as it was"));
    QCOMPARE(window.bookmark(1), begin + 20 * second);
}

void DateTimeEditDelegateTest::theEditorFollowsTheBookmark()
{
    Window window;
    const VCDateTimeEdit* const editor = window.open(0);
    QVERIFY(editor != nullptr);
    QVERIFY(window.bar->GetMarker(6)->MoveTo(static_cast<double>(begin + 15 * second)));
    QCOMPARE(editor->text(), QStringLiteral("2023-11-14 23:13:35"));
}

void DateTimeEditDelegateTest::thePositionIsCurrentAgainAfterwards()
{
    Window window;
    VCDateTimeEdit* const editor = window.open(1);
    QVERIFY(editor != nullptr);
    QCOMPARE(window.bar->GetCurrentMarker(), 7);
    QTest::keyClick(editor, Qt::Key_Return);
    QTRY_COMPARE_WITH_TIMEOUT(window.bar->GetCurrentMarker(), 1, patience);
}

void DateTimeEditDelegateTest::entriesEndWhereTheRecordingDoes()
{
    Window window({begin + second, end - second});
    VCDateTimeEdit* const first = window.open(0);
    QVERIFY(first != nullptr);
    QCOMPARE(first->minimumDateTime().toMSecsSinceEpoch(), begin / second * 1000);
    QCOMPARE(first->maximumDateTime().toMSecsSinceEpoch(), end / second * 1000);
    first->setSelectedSection(QDateTimeEdit::SecondSection);
    for (int press = 0; press < 5; ++press) {
        QTest::keyClick(first, Qt::Key_Down);
    }
    QCOMPARE(first->text(), QStringLiteral("2023-11-14 23:13:20"));
    QCOMPARE(window.bookmark(0), begin);
}

void DateTimeEditDelegateTest::openingChangesNoBookmark_data()
{
    QTest::addColumn<long long>("moment");
    QTest::newRow("within the recording") << begin + 10 * second;
    QTest::newRow("to the microsecond") << begin + 10 * second + 123'456;
    QTest::newRow("in the last part of a second") << end - 1;
    QTest::newRow("before the recording") << begin - 10 * second;
    QTest::newRow("behind the recording") << end + 10 * second;
}

void DateTimeEditDelegateTest::openingChangesNoBookmark()
{
    QFETCH(long long, moment);
    Window window({moment});
    VCDateTimeEdit* const editor = window.open(0);
    QVERIFY(editor != nullptr);
    QCOMPARE(window.bookmark(0), moment);
    QTest::keyClick(editor, Qt::Key_Return);
    QTRY_VERIFY_WITH_TIMEOUT(window.editor() == nullptr, patience);
    QCOMPARE(window.bookmark(0), moment);
}

void DateTimeEditDelegateTest::fillsItsCell()
{
    Window window;
    const VCDateTimeEdit* const editor = window.open(1);
    QVERIFY(editor != nullptr);
    QCOMPARE(editor->geometry(), window.table.visualRect(window.model.index(1, 0)));
}

void DateTimeEditDelegateTest::aRowWithoutABookmarkHasAnEditorOfNothing()
{
    Window window;
    window.model.setRowCount(3);
    const VCDateTimeEdit* const editor = window.open(2);
    QVERIFY(editor != nullptr);
    QCOMPARE(editor->GetDateTime_ValuePath(), QString());
    QCOMPARE(window.bar->GetCurrentMarker(), 1);
}

void DateTimeEditDelegateTest::thereIsNoEditorWithoutABar()
{
    Window window;
    VCDateTimeEdit* const editor = window.open(0);
    QVERIFY(editor != nullptr);
    window.bar.reset();
    QCOMPARE(editor->GetDateTime_ValuePath(), QString());
    window.delegate.setEditorData(editor, {});
    QTest::keyClick(editor, Qt::Key_Return);
    QTRY_VERIFY_WITH_TIMEOUT(window.editor() == nullptr, patience);
    QVERIFY(window.open(0) == nullptr);
}

void DateTimeEditDelegateTest::anotherEditorIsLeftAlone()
{
    const Window window;
    QWidget other;
    window.delegate.setEditorData(&other, {});
    QStyleOptionViewItem option;
    option.rect = QRect(1, 2, 30, 40);
    window.delegate.updateEditorGeometry(&other, option, {});
    QCOMPARE(other.geometry(), option.rect);
}

QTEST_MAIN(DateTimeEditDelegateTest)
#include "tst_datetimeeditdelegate.moc"
