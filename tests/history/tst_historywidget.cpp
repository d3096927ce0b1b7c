#include <zelkoguibase/history/historywidget.h>

#include "commenttable.h"
#include "ownconfiguration.h"
#include "patience.h"

#include <resources/zelkoicons.h>

#include <QScrollBar>
#include <QtTest>

#include <optional>

using namespace Qt::StringLiterals;
using ZelkoGUI::HistoryWidget;

/// The table of comments as its user works with it.
class HistoryWidgetTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { registerZelkoIcons(); }
    void init()
    {
        m_configuration.emplace();
        m_records.emplace(u"R"_s, twoComments);
        open();
    }
    void cleanup()
    {
        m_table.reset();
        m_widget.reset();
        m_records.reset();
        m_configuration.reset();
    }

    void theTableIsMadeForComments();
    void itBeginsWithoutARecord();
    void aCommentIsTypedAndThenAdded();
    void aCommentIsAddedAsSoonAsItIsTyped();
    void aHeaderIsPressedWhileTheEditorIsOpen_data();
    void aHeaderIsPressedWhileTheEditorIsOpen();
    void escapeTakesBackWhatWasTyped();
    void aCommentIsDeleted();
    void aCommentIsTypedAndAddedWithKeys();
    void aCommentIsDeletedWithKeys();
    void theEditorOfALongListIsInSight();
    void tabLeavesTheTable();
    void whatIsBeingTypedStaysWhileTheListChanges();
    void whatIsBeingTypedGoesWithTheRecord_data();
    void whatIsBeingTypedGoesWithTheRecord();
    void theCurrentCommentStaysWhileTheListChanges_data();
    void theCurrentCommentStaysWhileTheListChanges();
    void theScrollPositionStaysWhileTheListChanges();
    void columnsAreKeptForTheNextTime();
    void columnsAreKeptUnderTheirName();
    void theSameRecordOfAnotherListIsNotSet();

private:
    void open()
    {
        m_widget = std::make_unique<HistoryWidget>(u"R"_s, &*m_records);
        m_table = std::make_unique<CommentTable>(*m_widget);
        m_widget->resize(500, 400);
        m_widget->show();
        m_widget->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(m_widget.get(), patience));
        m_table->view.setFocus();
    }
    QStringList asked() { return m_table->takeAsked(); }
    void enter(const QString& text)
    {
        QVERIFY(m_table->editor());
        m_table->typeAndEnter(text);
        QTRY_VERIFY_WITH_TIMEOUT(!m_table->editor(), patience);
    }
    static CommentedRecords::Comments manyComments()
    {
        CommentedRecords::Comments all;
        for (int second = 0; second < 100; ++second) {
            all << CommentedRecords::comment(second, u"comment %1"_s.arg(second));
        }
        return all;
    }

    std::optional<OwnConfiguration> m_configuration;
    std::optional<CommentedRecords> m_records;
    std::unique_ptr<HistoryWidget> m_widget;
    std::unique_ptr<CommentTable> m_table;
};

void HistoryWidgetTest::theTableIsMadeForComments()
{
    const QTableView& view = m_table->view;
    QVERIFY(view.alternatingRowColors());
    QVERIFY(!view.isSortingEnabled());
    QCOMPARE(view.selectionMode(), QAbstractItemView::SingleSelection);
    QVERIFY(view.horizontalHeader()->stretchLastSection());
    QCOMPARE(view.columnWidth(0), 120);
    QVERIFY(!view.accessibleName().isEmpty());
    QCOMPARE(m_table->immediately.text(), u"Add new text immediately"_s);
    QVERIFY(!m_table->immediately.isChecked());
    QVERIFY(m_table->view.geometry().bottom() < m_table->immediately.geometry().top());
}

void HistoryWidgetTest::itBeginsWithoutARecord()
{
    const HistoryWidget widget;
    QCOMPARE(CommentTable(widget).view.model()->rowCount(), 0);
}

void HistoryWidgetTest::aCommentIsTypedAndThenAdded()
{
    m_table->clickHeader(2);
    QVERIFY(m_table->editor());
    QVERIFY(m_table->editor()->hasFocus());
    enter(u"heard"_s);
    QCOMPARE(asked(), QStringList());
    QCOMPARE(m_table->text(2), u"heard"_s);
    m_table->clickHeader(2);
    QCOMPARE(asked(), QStringList{u"add R heard"_s});
    QCOMPARE(m_table->text(2), QString());
    QVERIFY(!m_table->editor());
}

void HistoryWidgetTest::aCommentIsAddedAsSoonAsItIsTyped()
{
    QTest::mouseClick(&m_table->immediately, Qt::LeftButton, {}, {8, m_table->immediately.height() / 2});
    QVERIFY(m_table->immediately.isChecked());
    m_table->clickHeader(2);
    enter(u"heard"_s);
    QCOMPARE(asked(), QStringList{u"add R heard"_s});
    QCOMPARE(m_table->text(2), QString());
}

void HistoryWidgetTest::aHeaderIsPressedWhileTheEditorIsOpen_data()
{
    QTest::addColumn<bool>("immediately");
    QTest::addColumn<int>("section");
    QTest::addColumn<QStringList>("asked");
    QTest::addColumn<QString>("text"); // left for the new comment
    QTest::addColumn<bool>("isOpen");
    QTest::newRow("of the new comment") << false << 2 << QStringList{u"add R heard"_s} << QString() << false;
    QTest::newRow("of another comment") << false << 1 << QStringList{u"delete R 2000000"_s} << u"heard"_s << false;
    QTest::newRow("of the new comment, immediately") << true << 2 << QStringList{u"add R heard"_s} << QString() << true;
    QTest::newRow("of another comment, immediately")
        << true << 1 << QStringList{u"add R heard"_s, u"delete R 2000000"_s} << QString() << false;
}

// What was typed until then is taken first, and what was pressed is done then.
void HistoryWidgetTest::aHeaderIsPressedWhileTheEditorIsOpen()
{
    QFETCH(const bool, immediately);
    QFETCH(const int, section);
    QFETCH(const bool, isOpen);
    m_table->immediately.setChecked(immediately);
    m_table->clickHeader(2);
    QTest::keyClicks(m_table->editor(), u"heard"_s);
    m_table->clickHeader(section);
    QTRY_COMPARE_WITH_TIMEOUT(m_table->editor() != nullptr, isOpen, patience);
    QTEST(asked(), "asked");
    QTEST(m_table->text(2), "text");
}

void HistoryWidgetTest::escapeTakesBackWhatWasTyped()
{
    m_table->clickHeader(2);
    QTest::keyClicks(m_table->editor(), u"heard"_s);
    QTest::keyClick(m_table->editor(), Qt::Key_Escape);
    QTRY_VERIFY_WITH_TIMEOUT(!m_table->editor(), patience);
    QCOMPARE(m_table->text(2), QString());
}

void HistoryWidgetTest::aCommentIsDeleted()
{
    m_table->clickHeader(1);
    QCOMPARE(asked(), QStringList{u"delete R 2000000"_s});
    QCOMPARE(m_table->text(1), u"deleting..."_s);
    m_table->clickHeader(1);
    QCOMPARE(asked(), QStringList());
    m_records->store(u"R"_s, {twoComments[0]});
    QCOMPARE(m_table->view.model()->rowCount(), 2);
}

void HistoryWidgetTest::aCommentIsTypedAndAddedWithKeys()
{
    QTest::keyClick(&m_table->view, Qt::Key_Insert);
    enter(u"heard"_s);
    QCOMPARE(asked(), QStringList());
    QTest::keyClick(&m_table->view, Qt::Key_Insert);
    QCOMPARE(asked(), QStringList{u"add R heard"_s});
    QTest::keyClick(&m_table->view, Qt::Key_F2);
    enter(u"seen"_s);
    QCOMPARE(m_table->text(2), u"seen"_s);
}

void HistoryWidgetTest::aCommentIsDeletedWithKeys()
{
    m_table->view.setCurrentIndex(m_table->newText());
    QTest::keyClick(&m_table->view, Qt::Key_Delete);
    QCOMPARE(asked(), QStringList());
    QTest::keyClick(&m_table->view, Qt::Key_Up);
    QTest::keyClick(&m_table->view, Qt::Key_Delete);
    QCOMPARE(asked(), QStringList{u"delete R 2000000"_s});
}

void HistoryWidgetTest::theEditorOfALongListIsInSight()
{
    m_records->store(u"R"_s, manyComments());
    QTest::keyClick(&m_table->view, Qt::Key_Insert);
    QVERIFY(m_table->editor());
    QVERIFY(m_table->view.viewport()->rect().contains(m_table->editor()->geometry().center()));
}

void HistoryWidgetTest::tabLeavesTheTable()
{
    QTest::keyClick(&m_table->view, Qt::Key_Tab);
    QVERIFY(m_table->immediately.hasFocus());
    QTest::keyClick(&m_table->immediately, Qt::Key_Space);
    QVERIFY(m_table->immediately.isChecked());
}

// Of a record that is being recorded there is news each second.
void HistoryWidgetTest::whatIsBeingTypedStaysWhileTheListChanges()
{
    m_table->clickHeader(2);
    QTest::keyClicks(m_table->editor(), u"hrd"_s);
    QTest::keyClick(m_table->editor(), Qt::Key_Left);
    QTest::keyClick(m_table->editor(), Qt::Key_Left);
    m_records->store(u"R"_s, {twoComments[0], twoComments[1], CommentedRecords::comment(3, u"third"_s)});
    QVERIFY(m_table->editor());
    QVERIFY(m_table->editor()->hasFocus());
    enter(u"ea"_s);
    QCOMPARE(asked(), QStringList());
    QCOMPARE(m_table->text(3), u"heard"_s);
}

void HistoryWidgetTest::whatIsBeingTypedGoesWithTheRecord_data()
{
    using Change = std::function<void(HistoryWidget&, CommentedRecords&)>;
    QTest::addColumn<Change>("change");
    QTest::newRow("deleted") << Change([](HistoryWidget&, CommentedRecords& records) { records.drop(u"R"_s); });
    QTest::newRow("another one") << Change([](HistoryWidget& widget, CommentedRecords& records) {
        records.store(u"S"_s, {});
        widget.setRecord(u"S"_s, &records);
    });
    QTest::newRow("none") << Change([](HistoryWidget& widget, CommentedRecords&) { widget.resetRecord(); });
    QTest::newRow("all gone") << Change([](HistoryWidget&, CommentedRecords& records) { records.replaceAll({}); });
}

void HistoryWidgetTest::whatIsBeingTypedGoesWithTheRecord()
{
    using Change = std::function<void(HistoryWidget&, CommentedRecords&)>;
    QFETCH(const Change, change);
    m_table->clickHeader(2);
    QTest::keyClicks(m_table->editor(), u"heard"_s);
    change(*m_widget, *m_records);
    QVERIFY(!m_table->editor());
    QVERIFY(!m_table->newText().data().isValid() || m_table->newText().data().toString().isEmpty());
    QCOMPARE(asked(), QStringList());
}

void HistoryWidgetTest::theCurrentCommentStaysWhileTheListChanges_data()
{
    QTest::addColumn<int>("before");
    QTest::addColumn<int>("after");
    QTest::newRow("a comment") << 1 << 1;
    QTest::newRow("the last one, which is deleted") << 2 << 2;
    QTest::newRow("the new one") << 3 << 2;
    QTest::newRow("none") << -1 << -1;
}

void HistoryWidgetTest::theCurrentCommentStaysWhileTheListChanges()
{
    QFETCH(const int, before);
    m_records->store(u"R"_s, twoComments + CommentedRecords::Comments{CommentedRecords::comment(3, u"third"_s)});
    m_table->view.setCurrentIndex(m_table->view.model()->index(before, 0));
    m_records->store(u"R"_s, twoComments);
    QTEST(m_table->view.currentIndex().row(), "after");
    QVERIFY(m_table->view.hasFocus());
}

void HistoryWidgetTest::theScrollPositionStaysWhileTheListChanges()
{
    m_records->store(u"R"_s, manyComments());
    m_table->view.setCurrentIndex(m_table->view.model()->index(0, 0));
    m_table->view.scrollToBottom();
    QScrollBar* const bar = m_table->view.verticalScrollBar();
    const int before = bar->value();
    QVERIFY(before > 0);
    m_records->store(u"R"_s, manyComments());
    QCoreApplication::processEvents();
    QCOMPARE(bar->value(), before);
}

void HistoryWidgetTest::columnsAreKeptForTheNextTime()
{
    m_table->view.setColumnWidth(0, 210);
    m_widget->resize(800, 400);
    m_table.reset();
    m_widget.reset();
    m_configuration->readAgain();
    open();
    QCOMPARE(m_table->view.columnWidth(0), 210);
    QCOMPARE(m_table->view.columnWidth(1), m_table->view.viewport()->width() - 210);
}

void HistoryWidgetTest::columnsAreKeptUnderTheirName()
{
    const auto group = [] {
        return CfgCenter::GetAppCfg(ICfg::UserView)->OpenGroup(u"ColumnStatus"_s, ICfg::Access::Write);
    };
    m_table.reset();
    m_widget.reset();
    QVERIFY(!group()->GetString(u"HistoryTable"_s, QString()).isEmpty());
    group()->SetString(u"HistoryTable"_s, u"0:250:shown 1:100:shown"_s);
    open();
    QCOMPARE(m_table->view.columnWidth(0), 250);
}

void HistoryWidgetTest::theSameRecordOfAnotherListIsNotSet()
{
    CommentedRecords others(u"R"_s, {});
    m_widget->setRecord(u"R"_s, &others);
    QCOMPARE(m_table->text(0), u"first"_s);
}

QTEST_MAIN(HistoryWidgetTest)
#include "tst_historywidget.moc"
