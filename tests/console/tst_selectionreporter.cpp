#include "patience.h"
#include "recordlistsetting.h"

#include <console/hands/operatorhands.h>
#include <console/records/selectionreporter.h>

#include <zelkoguibase/recordlist/recorditemmapmodel.h>

#include <QItemSelectionModel>
#include <QSignalSpy>
#include <QTableView>
#include <QTest>

using namespace ZelkoConsole;

namespace {

struct Setting : RecordListSetting
{
    explicit Setting(int count)
        : RecordListSetting(count)
        , records(treepath::device(north, device) + QLatin1String("/Records/Map"), nullptr)
    {
        view.setModel(&records);
        view.setSelectionBehavior(QAbstractItemView::SelectRows);
        view.resize(600, 400);
        view.show();
        reporter = std::make_unique<SelectionReporter>(view.selectionModel());
        told = std::make_unique<QSignalSpy>(reporter.get(), &SelectionReporter::selected);
    }

    // A list has its records in the order in which they came, which is nobody's business here.
    QStringList ids(const QList<int>& rows) const
    {
        QStringList list;
        for (const int row : rows) {
            list.append(records.recordID(row));
        }
        return list;
    }

    QStringList last() const { return told->isEmpty() ? QStringList() : told->last().at(0).toStringList(); }

    void selectRows(int first, int last, QItemSelectionModel::SelectionFlags how)
    {
        view.selectionModel()->select(QItemSelection(records.index(first, 0), records.index(last, 0)),
                                      how | QItemSelectionModel::Rows);
    }

    ZelkoGUI::RecordItemMapModel records;
    QTableView view;
    std::unique_ptr<SelectionReporter> reporter;
    std::unique_ptr<QSignalSpy> told;
};

constexpr int small = SelectionReporter::smallSelection;

} // namespace

class TestSelectionReporter : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void tellsEachChangeOfASmallSelectionAtOnce()
    {
        Setting setting(5);
        operatorhands::clickRow(setting.view, 1);
        QCOMPARE(setting.last(), setting.ids({1}));
        operatorhands::clickRow(setting.view, 3, Qt::ShiftModifier);
        QCOMPARE(setting.last(), setting.ids({1, 2, 3}));
        operatorhands::clickRow(setting.view, 2, Qt::ControlModifier);
        QCOMPARE(setting.last(), setting.ids({1, 3}));
        QCOMPARE(setting.told->count(), 3);
    }

    void tellsInTheOrderOfTheListWhateverWasClickedFirst()
    {
        Setting setting(5);
        operatorhands::clickRow(setting.view, 4);
        operatorhands::clickRow(setting.view, 0, Qt::ControlModifier);
        QCOMPARE(setting.last(), setting.ids({0, 4}));
    }

    void tellsAsManyAsAreSmallAtOnce()
    {
        Setting setting(small + 1);
        setting.selectRows(0, small - 1, QItemSelectionModel::Select);
        QCOMPARE(setting.told->count(), 1);
        QCOMPARE(setting.last().size(), small);
    }

    void tellsALargeSelectionOnceForManyChanges()
    {
        Setting setting(small + 10);
        setting.selectRows(0, small, QItemSelectionModel::Select);
        for (int row = small + 1; row < small + 10; ++row) {
            setting.selectRows(row, row, QItemSelectionModel::Select);
        }
        QCOMPARE(setting.told->count(), 1);
        QCOMPARE(setting.last(), QStringList());
        QTRY_COMPARE_WITH_TIMEOUT(setting.told->count(), 2, patience);
        QCOMPARE(setting.last().size(), small + 10);
        QCoreApplication::processEvents();
        QCOMPARE(setting.told->count(), 2);
    }

    void takesBackWhatWasSelectedBeforeALargeSelection()
    {
        Setting setting(small + 10);
        operatorhands::clickRow(setting.view, 1);
        QCOMPARE(setting.last(), setting.ids({1}));
        QTest::keyClick(&setting.view, Qt::Key_A, Qt::ControlModifier);
        QCOMPARE(setting.last(), QStringList());
        QTRY_COMPARE_WITH_TIMEOUT(setting.last().size(), small + 10, patience);
    }

    void tellsASmallSelectionInPlaceOfALargeOneThatWaits()
    {
        Setting setting(small + 10);
        setting.selectRows(0, small, QItemSelectionModel::Select);
        setting.selectRows(3, 3, QItemSelectionModel::ClearAndSelect);
        QCOMPARE(setting.last(), setting.ids({3}));
        QCoreApplication::processEvents();
        QCOMPARE(setting.told->count(), 2);
    }

    void tellsThatASelectedRecordIsGone()
    {
        Setting setting(3);
        operatorhands::clickRow(setting.view, 1);
        setting.site.eraseRecord(setting.north, setting.device, setting.records.recordID(1));
        QCOMPARE(setting.last(), QStringList());
        QCOMPARE(setting.told->count(), 2);
    }

    void doesNotTellOfAListThatIsFilledAnewUntilItIsAsked()
    {
        Setting setting(3);
        operatorhands::clickRow(setting.view, 1);
        const QStringList before = setting.ids({1});
        setting.beginAfresh();
        QCoreApplication::processEvents();
        QCOMPARE(setting.last(), before);
        setting.reporter->report();
        QCOMPARE(setting.last(), QStringList());
        QCOMPARE(setting.told->count(), 2);
    }
};

QTEST_MAIN(TestSelectionReporter)
#include "tst_selectionreporter.moc"
