#include <widgetbase/rowheadertable.h>

#include "patience.h"

#include <QHeaderView>
#include <QSignalSpy>
#include <QStandardItemModel>
#include <QTableView>
#include <QtTest>

/// A table whose rows have their buttons in its vertical header.
class RowHeaderTableTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_window = std::make_unique<QWidget>();
        m_table = guiHelper::makeRowHeaderTable(&m_model, QStringLiteral("Table"), m_window.get());
        m_next = new QWidget(m_window.get());
        m_next->setFocusPolicy(Qt::TabFocus);
        m_window->resize(600, 400);
        m_table->resize(500, 300);
        m_window->show();
        m_window->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(m_window.get(), patience));
        m_table->setFocus();
    }
    void cleanup() { m_window.reset(); }

    void showsTheRowsOfTheModelAsTheyAre();
    void selectsOneRowAtATime();
    void itsLastColumnTakesTheRoom();
    void aKeyPressesTheButtonOfARow();
    void tabLeavesIt();

private:
    QStandardItemModel m_model{3, 2};
    std::unique_ptr<QWidget> m_window;
    QTableView* m_table = nullptr;
    QWidget* m_next = nullptr;
};

void RowHeaderTableTest::showsTheRowsOfTheModelAsTheyAre()
{
    QCOMPARE(m_window->findChild<QTableView*>(QStringLiteral("Table")), m_table);
    QCOMPARE(m_table->model(), &m_model);
    QVERIFY(m_table->alternatingRowColors());
    QVERIFY(!m_table->isSortingEnabled());
}

void RowHeaderTableTest::selectsOneRowAtATime()
{
    for (const int row : {0, 2}) {
        const QPoint place = m_table->visualRect(m_model.index(row, 1)).center();
        QTest::mouseClick(m_table->viewport(), Qt::LeftButton, Qt::ControlModifier, place);
        QCOMPARE(m_table->selectionModel()->selectedIndexes(), QModelIndexList{m_model.index(row, 1)});
    }
}

void RowHeaderTableTest::itsLastColumnTakesTheRoom()
{
    m_table->setColumnWidth(0, 100);
    QCOMPARE(m_table->columnWidth(1), m_table->viewport()->width() - 100);
}

void RowHeaderTableTest::aKeyPressesTheButtonOfARow()
{
    const QSignalSpy pressed(m_table->verticalHeader(), &QHeaderView::sectionClicked);
    QTest::keyClick(m_table, Qt::Key_Insert);
    QCOMPARE(pressed.size(), 1);
    QCOMPARE(pressed.first().first().toInt(), 2);
}

void RowHeaderTableTest::tabLeavesIt()
{
    m_table->setCurrentIndex(m_model.index(0, 0));
    QTest::keyClick(m_table, Qt::Key_Tab);
    QVERIFY(m_next->hasFocus());
}

QTEST_MAIN(RowHeaderTableTest)
#include "tst_rowheadertable.moc"
