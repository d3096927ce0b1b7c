#include "recordtablesetting.h"

#include <zelkoguibase/recordlist/columnheaderview_p.h>
#include <zelkoguibase/recordlist/selectionkeeper_p.h>

#include <console/hands/operatorhands.h>

#include <QHeaderView>
#include <QItemSelectionModel>

using ZelkoConsole::operatorhands::clickRow;

namespace {

constexpr int count = 40;
constexpr std::chrono::hours never(1);

QString id(int number)
{
    return RecordTableSetting::id(number);
}

QStringList ids(int first, int end)
{
    return RecordTableSetting::ids(first, end);
}

/// A table of many records whose selection is kept.
struct Setting : RecordTableSetting
{
    explicit Setting(std::chrono::milliseconds pause = never)
        : RecordTableSetting(count)
        , keeper(withKeysInItsHeader(table), &proxy, pause, nullptr)
    {
        show();
    }

    static QTableView* withKeysInItsHeader(QTableView& table)
    {
        table.setHorizontalHeader(new ZelkoGUI::ColumnHeaderView(&table));
        return &table;
    }

    /// Whatever it is that is told of what is restored goes somewhere else, in the middle of it.
    void goElsewhere()
    {
        keeper.forget();
        table.doItemsLayout();
        table.verticalScrollBar()->setValue(elsewhere);
    }

    static constexpr int elsewhere = 7;

    ZelkoGUI::SelectionKeeper keeper;
};

} // namespace

class SelectionKeeperTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void selectsTheSameRecordsAgain()
    {
        Setting setting;
        clickRow(setting.table, 3);
        clickRow(setting.table, 5, Qt::ControlModifier);
        const QString current = setting.idAt(setting.table.currentIndex());
        setting.lose();
        setting.comeBack(0, count);
        QTRY_COMPARE_WITH_TIMEOUT(setting.selected(), QStringList({id(3), id(5)}), patience);
        QCOMPARE(setting.idAt(setting.table.currentIndex()), current);
        QCOMPARE(setting.keeper.awaited(), 0);
    }

    void selectsWhatComesInOneStep()
    {
        Setting setting;
        clickRow(setting.table, 3);
        setting.records.replace(ids(1, count));
        QTRY_COMPARE_WITH_TIMEOUT(setting.selected(), QStringList(id(3)), patience);
    }

    void passesOverRecordsThatDoNotComeBack()
    {
        Setting setting;
        clickRow(setting.table, 3);
        clickRow(setting.table, 5, Qt::ControlModifier);
        setting.lose();
        setting.comeBack(0, 5);
        QTRY_COMPARE_WITH_TIMEOUT(setting.selected(), QStringList(id(3)), patience);
        QCOMPARE(setting.keeper.awaited(), 1);
    }

    void keepsTheScrollPosition()
    {
        Setting setting;
        setting.scrollTo(20);
        const QString top = setting.topId();
        setting.lose();
        setting.comeBack(0, count);
        QTRY_COMPARE_WITH_TIMEOUT(setting.topId(), top, patience);
        QVERIFY(setting.scrolled() > 0);
    }

    void keepsWhatIsCutOffAtTheTop()
    {
        Setting setting;
        setting.table.setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
        const int height = setting.table.rowHeight(0);
        setting.scrollTo(20 * height + 7);
        setting.lose();
        setting.comeBack(0, count);
        QTRY_COMPARE_WITH_TIMEOUT(setting.scrolled(), 20 * height + 7, patience);
    }

    void tellsOnceThatAllRowsWereReplaced()
    {
        Setting setting;
        const QSignalSpy replaced(&setting.keeper, &ZelkoGUI::SelectionKeeper::replaced);
        setting.lose();
        QCOMPARE(replaced.size(), 0);
        QTRY_COMPARE_WITH_TIMEOUT(replaced.size(), 1, patience);
        setting.comeBack(0, count);
        QTRY_COMPARE_WITH_TIMEOUT(setting.keeper.awaited(), 0, patience);
        QCoreApplication::processEvents();
        QCOMPARE(replaced.size(), 1);
    }

    void staysAtTheTopForNewRecordsToBeSeen()
    {
        Setting setting;
        setting.table.sortByColumn(0, Qt::DescendingOrder);
        QCOMPARE(setting.topId(), id(39));
        setting.lose();
        setting.comeBack(0, count + 2);
        QTRY_COMPARE_WITH_TIMEOUT(setting.topId(), id(41), patience);
    }

    void doesNotScrollOnceTheListIsBack()
    {
        Setting setting(std::chrono::milliseconds(1));
        setting.scrollTo(20);
        const QString top = setting.topId();
        setting.lose();
        const QSignalSpy ended(&setting.keeper, &ZelkoGUI::SelectionKeeper::ended);
        setting.comeBack(0, count);
        QTRY_COMPARE_WITH_TIMEOUT(setting.topId(), top, patience);
        QTRY_COMPARE_WITH_TIMEOUT(ended.size(), 1, patience);
        setting.table.verticalScrollBar()->setValue(0);
        setting.comeBack(60, 61);
        QCoreApplication::processEvents();
        QCOMPARE(setting.scrolled(), 0);
    }

    void forgetsRecordsThatAreGoneForGood()
    {
        Setting setting(std::chrono::milliseconds(1));
        clickRow(setting.table, 3);
        clickRow(setting.table, 30, Qt::ControlModifier);
        setting.lose();
        setting.comeBack(0, 10);
        QTRY_COMPARE_WITH_TIMEOUT(setting.selected(), QStringList(id(3)), patience);
        QTRY_COMPARE_WITH_TIMEOUT(setting.keeper.awaited(), 0, patience);
        setting.comeBack(30, 31);
        QCoreApplication::processEvents();
        QCOMPARE(setting.selected(), QStringList(id(3)));
    }

    void waitsForTheFirstRowHoweverLongItTakes()
    {
        Setting setting(std::chrono::milliseconds(1));
        clickRow(setting.table, 3);
        setting.lose();
        QTimer longer; // than rows may fail to come
        longer.setSingleShot(true);
        longer.start(2);
        QTRY_VERIFY_WITH_TIMEOUT(!longer.isActive(), patience);
        QCOMPARE(setting.keeper.awaited(), 1);
        setting.comeBack(0, count);
        QTRY_COMPARE_WITH_TIMEOUT(setting.selected(), QStringList(id(3)), patience);
    }

    void leavesWhatTheUserDoesInBetween()
    {
        Setting setting;
        clickRow(setting.table, 3);
        setting.lose();
        setting.comeBack(0, 2);
        clickRow(setting.table, 1);
        setting.comeBack(3, 4);
        QCoreApplication::processEvents();
        QCOMPARE(setting.selected(), QStringList(id(1)));
    }

    void bringsNothingThatIsToBeForgotten()
    {
        Setting setting;
        clickRow(setting.table, 3);
        setting.lose();
        setting.keeper.forget();
        setting.comeBack(0, count);
        QCoreApplication::processEvents();
        QCOMPARE(setting.selected(), QStringList());
    }

    void survivesASecondLossBeforeTheListIsComplete()
    {
        Setting setting;
        clickRow(setting.table, 3);
        clickRow(setting.table, 30, Qt::ControlModifier);
        setting.lose();
        setting.comeBack(0, 10);
        QTRY_COMPARE_WITH_TIMEOUT(setting.selected(), QStringList(id(3)), patience);
        setting.lose();
        setting.comeBack(0, count);
        QTRY_COMPARE_WITH_TIMEOUT(setting.selected(), QStringList({id(3), id(30)}), patience);
    }

    void scrollsBackAfterASecondLossBeforeTheTopRowCame()
    {
        Setting setting;
        setting.scrollTo(20);
        const QString top = setting.topId();
        setting.lose();
        setting.comeBack(0, 5);
        QTRY_COMPARE_WITH_TIMEOUT(setting.table.model()->rowCount(), 5, patience);
        QCoreApplication::processEvents();
        setting.lose();
        setting.comeBack(0, count);
        QTRY_COMPARE_WITH_TIMEOUT(setting.topId(), top, patience);
    }

    void leavesWhatIsPickedInTheHeader()
    {
        Setting setting;
        clickRow(setting.table, 3);
        setting.lose();
        setting.comeBack(0, 2);
        QCoreApplication::processEvents();
        auto* const header = setting.table.verticalHeader();
        QTest::mouseClick(header->viewport(), Qt::LeftButton, {},
                          QPoint(header->width() / 2, header->sectionViewportPosition(1) + header->sectionSize(1) / 2));
        setting.comeBack(3, 4);
        QCoreApplication::processEvents();
        QCOMPARE(setting.selected(), QStringList(id(1)));
    }

    void leavesWhatIsDoneByKeysInTheHeader_data()
    {
        QTest::addColumn<QKeySequence>("keys");
        QTest::addRow("another column is chosen") << QKeySequence(Qt::Key_End);
        QTest::addRow("the table is sorted") << QKeySequence(Qt::Key_Space);
    }

    void leavesWhatIsDoneByKeysInTheHeader()
    {
        QFETCH(QKeySequence, keys);
        Setting setting;
        clickRow(setting.table, 3);
        setting.lose();
        setting.comeBack(0, 2);
        QCoreApplication::processEvents();
        QCOMPARE(setting.keeper.awaited(), 1);
        QTest::keySequence(setting.table.horizontalHeader(), keys);
        QCOMPARE(setting.keeper.awaited(), 0);
        setting.comeBack(3, 4);
        QCoreApplication::processEvents();
        QCOMPARE(setting.selected(), QStringList());
    }

    void leavesWhereItIsScrolledToByOneWhoIsToldOfTheSelection()
    {
        Setting setting;
        setting.scrollTo(20);
        clickRow(setting.table, 22);
        setting.lose();
        const auto* const selection = setting.table.selectionModel();
        connect(selection, &QItemSelectionModel::selectionChanged, &setting.keeper, [&] { setting.goElsewhere(); });
        setting.comeBack(0, count);
        QTRY_COMPARE_WITH_TIMEOUT(setting.selected(), QStringList(id(22)), patience);
        QCOMPARE(setting.scrolled(), Setting::elsewhere);
    }

    void leavesWhereItIsScrolledToByOneWhoIsToldOfTheCurrentRow()
    {
        Setting setting;
        setting.scrollTo(20);
        clickRow(setting.table, 22);
        setting.lose();
        const auto* const selection = setting.table.selectionModel();
        const auto goElsewhere = [&](const QModelIndex& current) {
            if (current.isValid()) {
                setting.goElsewhere();
            }
        };
        connect(selection, &QItemSelectionModel::currentChanged, &setting.keeper, goElsewhere);
        setting.comeBack(0, count);
        QTRY_COMPARE_WITH_TIMEOUT(setting.idAt(setting.table.currentIndex()), id(22), patience);
        QCOMPARE(setting.scrolled(), Setting::elsewhere);
        QCOMPARE(setting.selected(), QStringList());
    }

    void endsThoughRowsComeAllTheTime()
    {
        Setting setting(std::chrono::milliseconds(300));
        clickRow(setting.table, 3);
        setting.lose();
        const QSignalSpy ended(&setting.keeper, &ZelkoGUI::SelectionKeeper::ended);
        int next = 4; // the one that is awaited never comes
        QTimer rows;
        connect(&rows, &QTimer::timeout, &setting.keeper, [&] {
            setting.comeBack(next, next + 1);
            ++next;
        });
        rows.start(0);
        QTRY_COMPARE_WITH_TIMEOUT(ended.size(), 1, patience);
        QCOMPARE(setting.keeper.awaited(), 0);
    }

    void survivesASecondLossInTheSameTurn()
    {
        Setting setting;
        clickRow(setting.table, 3);
        setting.lose();
        setting.comeBack(0, 10);
        setting.lose();
        setting.comeBack(0, count);
        QTRY_COMPARE_WITH_TIMEOUT(setting.selected(), QStringList(id(3)), patience);
    }

    void selectsAdjacentRowsAsOneRange()
    {
        Setting setting;
        QTest::keyClick(&setting.table, Qt::Key_A, Qt::ControlModifier);
        QCOMPARE(setting.selected().size(), count);
        setting.lose();
        setting.comeBack(0, count - 1);
        QTRY_COMPARE_WITH_TIMEOUT(setting.selected().size(), count - 1, patience);
        QCOMPARE(setting.table.selectionModel()->selection().size(), 1);
    }

    void leavesWhereTheScrollBarIsDragged()
    {
        Setting setting;
        setting.scrollTo(20);
        setting.lose();
        setting.comeBack(0, 30);
        QTRY_VERIFY_WITH_TIMEOUT(setting.scrolled() > 0, patience);
        QTest::mousePress(setting.table.verticalScrollBar(), Qt::LeftButton);
        setting.table.verticalScrollBar()->setValue(0);
        QTest::mouseRelease(setting.table.verticalScrollBar(), Qt::LeftButton);
        setting.comeBack(30, count);
        QCoreApplication::processEvents();
        QCOMPARE(setting.scrolled(), 0);
    }
};

QTEST_MAIN(SelectionKeeperTest)
#include "tst_selectionkeeper.moc"
