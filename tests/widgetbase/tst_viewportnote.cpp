#include "patience.h"

#include <widgetbase/viewportnote.h>

#include <QApplication>
#include <QHeaderView>
#include <QScrollBar>
#include <QTableWidget>
#include <QtTest>

using guiHelper::ViewportNote;

namespace {

/// A table that is shown, with a note over it.
struct Table
{
    Table()
    {
        view.resize(400, 300);
        view.show();
    }

    QTableWidget view{50, 20};
    ViewportNote& note = *new ViewportNote(&view);
};

QFont twiceAsLarge(const QFont& font)
{
    QFont large = font;
    large.setPointSizeF(font.pointSizeF() * 2);
    return large;
}

} // namespace

class ViewportNoteTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void isHiddenAtFirst();
    void coversTheViewport();
    void staysWhereItIsWhenTheViewScrolls();
    void letsTheMouseThrough();
    void showsMarkupAsText();
    void keepsALineOfItsFontAway();
    void followsTheFontOfItsView();
    void followsTheFontOfTheApplication();
};

void ViewportNoteTest::isHiddenAtFirst()
{
    const Table table;
    QVERIFY(table.view.isVisible());
    QVERIFY(table.note.isHidden());
}

void ViewportNoteTest::coversTheViewport()
{
    Table table;
    table.note.show();
    QTRY_COMPARE_WITH_TIMEOUT(table.note.geometry(), table.view.viewport()->geometry(), patience);
    table.view.resize(500, 200);
    QTRY_COMPARE_WITH_TIMEOUT(table.note.geometry(), table.view.viewport()->geometry(), patience);
    const QRect before = table.note.geometry();
    table.view.horizontalHeader()->hide();
    QTRY_VERIFY_WITH_TIMEOUT(table.note.geometry() != before, patience);
    QTRY_COMPARE_WITH_TIMEOUT(table.note.geometry(), table.view.viewport()->geometry(), patience);
}

void ViewportNoteTest::staysWhereItIsWhenTheViewScrolls()
{
    Table table;
    table.note.show();
    QTRY_COMPARE_WITH_TIMEOUT(table.note.geometry(), table.view.viewport()->geometry(), patience);
    const QRect before = table.note.geometry();
    table.view.horizontalScrollBar()->setValue(table.view.horizontalScrollBar()->maximum());
    table.view.verticalScrollBar()->setValue(table.view.verticalScrollBar()->maximum());
    QVERIFY(table.view.columnViewportPosition(0) < 0);
    QCOMPARE(table.note.geometry(), before);
}

void ViewportNoteTest::letsTheMouseThrough()
{
    Table table;
    table.note.show();
    QCOMPARE(table.view.childAt(table.note.geometry().center()), table.view.viewport());
}

void ViewportNoteTest::showsMarkupAsText()
{
    const Table table;
    QCOMPARE(table.note.textFormat(), Qt::PlainText);
    QVERIFY(table.note.wordWrap());
}

void ViewportNoteTest::keepsALineOfItsFontAway()
{
    Table table;
    QCOMPARE(table.note.margin(), table.note.fontMetrics().height());
    table.note.setFont(twiceAsLarge(table.note.font()));
    QCOMPARE(table.note.margin(), table.note.fontMetrics().height());
}

void ViewportNoteTest::followsTheFontOfItsView()
{
    Table table;
    const int before = table.note.margin();
    table.view.setFont(twiceAsLarge(table.view.font()));
    QVERIFY(table.note.margin() > before);
    QCOMPARE(table.note.margin(), table.note.fontMetrics().height());
}

void ViewportNoteTest::followsTheFontOfTheApplication()
{
    const QFont usual = QApplication::font();
    const Table table;
    const int before = table.note.margin();
    QApplication::setFont(twiceAsLarge(usual));
    QTRY_VERIFY_WITH_TIMEOUT(table.note.margin() > before, patience);
    QApplication::setFont(usual);
    QTRY_COMPARE_WITH_TIMEOUT(table.note.margin(), before, patience);
}

QTEST_MAIN(ViewportNoteTest)
#include "tst_viewportnote.moc"
