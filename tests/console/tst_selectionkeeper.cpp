#include "patience.h"
#include "recordlistsetting.h"

#include <console/demo/shownrecords.h>
#include <console/hands/operatorhands.h>
#include <console/records/recordpane.h>
#include <console/records/recordtableview.h>
#include <console/records/selectionkeeper.h>

#include <zelkobase/models/abstractrecordlistmodel.h>
#include <zelkoguibase/controller/zelkoserverguicontroller.h>

#include <QItemSelectionModel>
#include <QScrollBar>
#include <QTest>

using namespace ZelkoConsole;
using Model = ZelkoCommon::AbstractRecordListModel;

namespace {

constexpr int count = 40;

// A pane over a list of many records, in the order of their numbers.
struct Setting : RecordListSetting
{
    Setting()
        : RecordListSetting(count)
    {
        pane.resize(900, 320);
        pane.show();
        pane.setDevice(north, device);
        pane.setStatus(site.status(north));
        connect();
        table.sortByColumn(Model::StartTimeColumn, Qt::AscendingOrder);
    }

    void connect() { QTRY_VERIFY_WITH_TIMEOUT(pane.controller()->isConnected(), patience); }

    void loseAndComeBack(int countThen = count)
    {
        lose();
        comeBack(countThen);
    }

    void setRecords(int first, int end)
    {
        for (int number = first; number < end; ++number) {
            site.setRecord(north, device, record(number));
        }
    }

    SelectionKeeper& keeper() const { return *pane.findChild<SelectionKeeper*>(); }

    // Rows have their places only after the next turn of the event loop.
    void scrollTo(int row)
    {
        QTRY_VERIFY_WITH_TIMEOUT(table.verticalScrollBar()->maximum() >= row, patience);
        table.verticalScrollBar()->setValue(row);
    }

    bool isBack(int countThen = count) const { return table.model()->rowCount() == countThen; }

    QStringList selected() const { return shownrecords::selectedIds(table); }
    QString topId() const { return shownrecords::id(table.indexAt(QPoint(0, 0))); }

    RecordPane pane{site.connectionData()};
    RecordTableView& table = *pane.table();
};

} // namespace

class TestSelectionKeeper : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void selectsTheSameRecordsAgain()
    {
        Setting setting;
        operatorhands::clickRow(setting.table, 3);
        operatorhands::clickRow(setting.table, 5, Qt::ControlModifier);
        const QString current = shownrecords::id(setting.table.currentIndex());
        setting.loseAndComeBack();
        QTRY_COMPARE_WITH_TIMEOUT(setting.selected(), QStringList({QStringLiteral("r03"), QStringLiteral("r05")}),
                                  patience);
        QCOMPARE(shownrecords::id(setting.table.currentIndex()), current);
    }

    void passesOverRecordsThatDoNotComeBack()
    {
        Setting setting;
        operatorhands::clickRow(setting.table, 3);
        operatorhands::clickRow(setting.table, 5, Qt::ControlModifier);
        setting.loseAndComeBack(5);
        QTRY_COMPARE_WITH_TIMEOUT(setting.selected(), QStringList(QStringLiteral("r03")), patience);
    }

    void keepsTheScrollPosition()
    {
        Setting setting;
        setting.scrollTo(20);
        const QString top = setting.topId();
        setting.loseAndComeBack();
        QTRY_COMPARE_WITH_TIMEOUT(setting.topId(), top, patience);
        QVERIFY(setting.table.verticalScrollBar()->value() > 0);
    }

    void staysAtTheTopForNewRecordsToBeSeen()
    {
        Setting setting;
        setting.table.sortByColumn(Model::StartTimeColumn, Qt::DescendingOrder);
        QCOMPARE(setting.topId(), QStringLiteral("r39"));
        setting.loseAndComeBack(count + 2);
        QTRY_VERIFY_WITH_TIMEOUT(setting.isBack(count + 2), patience);
        QTRY_COMPARE_WITH_TIMEOUT(setting.topId(), QStringLiteral("r41"), patience);
    }

    void doesNotScrollOnceTheListIsBack()
    {
        Setting setting;
        setting.scrollTo(20);
        setting.loseAndComeBack();
        QTRY_VERIFY_WITH_TIMEOUT(setting.table.verticalScrollBar()->value() > 0, patience);
        setting.table.verticalScrollBar()->setValue(0);
        setting.site.setRecord(setting.north, setting.device, RecordListSetting::record(60));
        QCoreApplication::processEvents();
        QCOMPARE(setting.table.verticalScrollBar()->value(), 0);
    }

    void leavesWhatTheOperatorDoesInBetween()
    {
        Setting setting;
        operatorhands::clickRow(setting.table, 3);
        setting.lose();
        setting.comeBack(2);
        QTRY_VERIFY_WITH_TIMEOUT(setting.isBack(2), patience);
        operatorhands::clickRow(setting.table, 1);
        setting.site.setRecord(setting.north, setting.device, RecordListSetting::record(3));
        QCoreApplication::processEvents();
        QCOMPARE(setting.selected(), QStringList(QStringLiteral("r01")));
    }

    void bringsNothingToAnotherDevice()
    {
        Setting setting;
        operatorhands::clickRow(setting.table, 3);
        setting.site.addDevice(setting.north, QStringLiteral("A2"));
        setting.site.setRecord(setting.north, QStringLiteral("A2"), RecordListSetting::record(3));
        setting.pane.setDevice(setting.north, QStringLiteral("A2"));
        QTRY_VERIFY_WITH_TIMEOUT(setting.isBack(1), patience);
        QCoreApplication::processEvents();
        QCOMPARE(setting.selected(), QStringList());
    }

    void survivesASecondLossBeforeTheListIsComplete()
    {
        Setting setting;
        operatorhands::clickRow(setting.table, 3);
        operatorhands::clickRow(setting.table, 30, Qt::ControlModifier);
        setting.lose();
        setting.comeBackInPart(10, count);
        QTRY_VERIFY_WITH_TIMEOUT(setting.isBack(10), patience);
        QTRY_COMPARE_WITH_TIMEOUT(setting.selected(), QStringList(QStringLiteral("r03")), patience);
        QCOMPARE(setting.keeper().awaited(), 1);
        setting.loseAndComeBack();
        QTRY_COMPARE_WITH_TIMEOUT(setting.selected(), QStringList({QStringLiteral("r03"), QStringLiteral("r30")}),
                                  patience);
    }

    void forgetsRecordsThatAreGoneForGood()
    {
        Setting setting;
        operatorhands::clickRow(setting.table, 3);
        operatorhands::clickRow(setting.table, 30, Qt::ControlModifier);
        setting.loseAndComeBack(10);
        QTRY_COMPARE_WITH_TIMEOUT(setting.selected(), QStringList(QStringLiteral("r03")), patience);
        QTRY_COMPARE_WITH_TIMEOUT(setting.keeper().awaited(), 0, patience);
        setting.setRecords(30, 31);
        QCoreApplication::processEvents();
        QCOMPARE(setting.selected(), QStringList(QStringLiteral("r03")));
    }

    void forgetsAllWhenTheListComesBackEmpty()
    {
        Setting setting;
        operatorhands::clickRow(setting.table, 3);
        setting.lose();
        QCOMPARE(setting.keeper().awaited(), 1);
        setting.comeBack(0);
        QTRY_COMPARE_WITH_TIMEOUT(setting.keeper().awaited(), 0, patience);
    }

    void waitsForRowsOfAStateThatIsSentAfresh()
    {
        Setting setting;
        operatorhands::clickRow(setting.table, 3);
        operatorhands::clickRow(setting.table, 30, Qt::ControlModifier);
        setting.beginAfresh();
        setting.setRecords(0, 10);
        QTRY_COMPARE_WITH_TIMEOUT(setting.selected(), QStringList(QStringLiteral("r03")), patience);
        setting.setRecords(10, count);
        QTRY_COMPARE_WITH_TIMEOUT(setting.selected(), QStringList({QStringLiteral("r03"), QStringLiteral("r30")}),
                                  patience);
        QTRY_COMPARE_WITH_TIMEOUT(setting.keeper().awaited(), 0, patience);
    }

    void selectsAdjacentRowsAsOneRange()
    {
        Setting setting;
        QTest::keyClick(&setting.table, Qt::Key_A, Qt::ControlModifier);
        QCOMPARE(setting.selected().size(), count);
        setting.loseAndComeBack(count - 1);
        QTRY_COMPARE_WITH_TIMEOUT(setting.selected().size(), count - 1, patience);
        QCOMPARE(setting.table.selectionModel()->selection().size(), 1);
    }

    void leavesWhereTheScrollBarIsDragged()
    {
        Setting setting;
        setting.scrollTo(20);
        setting.lose();
        setting.comeBackInPart(30, count);
        QTRY_VERIFY_WITH_TIMEOUT(setting.table.verticalScrollBar()->value() > 0, patience);
        QTest::mousePress(setting.table.verticalScrollBar(), Qt::LeftButton);
        setting.table.verticalScrollBar()->setValue(0);
        QTest::mouseRelease(setting.table.verticalScrollBar(), Qt::LeftButton);
        setting.setRecords(30, count);
        QCoreApplication::processEvents();
        QCOMPARE(setting.table.verticalScrollBar()->value(), 0);
    }
};

QTEST_MAIN(TestSelectionKeeper)
#include "tst_selectionkeeper.moc"
