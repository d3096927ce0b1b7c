#include "patience.h"
#include "recordlistsetting.h"

#include "fixedrecordmodel.h"
#include "testrecords.h"

#include <console/demo/shownrecords.h>
#include <console/records/recordsortmodel.h>

#include <zelkoguibase/recordlist/recorditemmapmodel.h>

#include <QSignalSpy>
#include <QTest>

using namespace ZelkoConsole;
using Model = ZelkoCommon::AbstractRecordListModel;

namespace {

// Records that differ in everything, some of them in case only, and one without data.
FixedRecordModel::Rows mixedRecords()
{
    const QStringList names{QStringLiteral("beacon"),
                            QStringLiteral("Alpha"),
                            QStringLiteral("alpha"),
                            QStringLiteral("Straße"),
                            QStringLiteral("STRASSE"),
                            QStringLiteral("Ähre"),
                            QString()};
    FixedRecordModel::Rows rows;
    for (int row = 0; row < names.size(); ++row) {
        const auto spread = static_cast<quint64>(row * 3 % 7);
        auto record = makeRecord(QStringLiteral("r%1").arg(spread), 1 + row % 5, spread << 33);
        record->SetRecordName(names.at(row));
        record->SetStartTime(record->GetStartTime() + spread);
        record->SetStopTime(record->GetStopTime() + 3 * spread);
        record->SetDeletable(row % 2 == 0);
        rows.emplace_back(record->GetRecordID(), record);
    }
    rows.insert(rows.begin() + 2, {QStringLiteral("r9"), nullptr});
    return rows;
}

// A list that follows the records of a setting.
struct Followed : RecordListSetting
{
    Followed()
    {
        model.connect(treepath::device(north, device) + zelko::names::recordsMap);
        list.setSourceModel(&model);
        list.sort(Model::NameColumn, Qt::DescendingOrder);
    }

    void setRecords(const QList<int>& numbers)
    {
        for (const int number : numbers) {
            site.setRecord(north, device, record(number));
        }
    }

    ZelkoGUI::RecordItemMapModel model{nullptr};
    RecordSortModel list;
};

const QStringList inOrder{QStringLiteral("r04"), QStringLiteral("r03"), QStringLiteral("r02"), QStringLiteral("r01")};

} // namespace

class TestRecordSortModel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void sortsAsTheSortKeysSay_data()
    {
        QTest::addColumn<int>("column");
        QTest::addColumn<Qt::SortOrder>("order");
        const FixedRecordModel source({});
        for (int column = 0; column < Model::ColumnCount; ++column) {
            const QByteArray name = source.headerData(column, Qt::Horizontal).toString().toUtf8();
            QTest::addRow("%s upwards", name.constData()) << column << Qt::AscendingOrder;
            QTest::addRow("%s downwards", name.constData()) << column << Qt::DescendingOrder;
        }
    }

    void sortsAsTheSortKeysSay()
    {
        QFETCH(int, column);
        QFETCH(Qt::SortOrder, order);
        FixedRecordModel source(mixedRecords());
        QSortFilterProxyModel plain;
        plain.setSourceModel(&source);
        plain.setSortRole(Model::SortRole);
        plain.setSortCaseSensitivity(Qt::CaseInsensitive);
        plain.sort(column, order);
        RecordSortModel list;
        list.setSourceModel(&source);
        list.sort(column, order);
        QCOMPARE(shownrecords::ids(list), shownrecords::ids(plain));
        list.setLoading(true);
        list.setLoading(false);
        QCOMPARE(shownrecords::ids(list), shownrecords::ids(plain));
    }

    void putsARecordWhereItBelongs()
    {
        Followed followed;
        followed.setRecords({2, 4, 1, 3});
        QCOMPARE(shownrecords::ids(followed.list), QStringList({QStringLiteral("r04"), QStringLiteral("r03"),
                                                                QStringLiteral("r02"), QStringLiteral("r01")}));
    }

    void showsAllInOrderWhenTheListIsLoaded()
    {
        Followed followed;
        followed.list.setLoading(true);
        followed.setRecords({2, 4, 1, 3});
        QCOMPARE(shownrecords::ids(followed.list), QStringList(QStringLiteral("r02")));
        followed.list.setLoading(false);
        QCOMPARE(shownrecords::ids(followed.list), inOrder);
        followed.setRecords({5});
        QCOMPARE(shownrecords::ids(followed.list), QStringList(QStringLiteral("r05")) + inOrder);
    }

    void showsWhatCameInTheMiddleOfALoad()
    {
        Followed followed;
        followed.list.setLoading(true);
        followed.setRecords({2, 4, 1, 3});
        QTRY_COMPARE_WITH_TIMEOUT(shownrecords::ids(followed.list), inOrder, patience);
        followed.setRecords({5});
        QTRY_COMPARE_WITH_TIMEOUT(shownrecords::ids(followed.list), QStringList(QStringLiteral("r05")) + inOrder,
                                  patience);
    }

    void waitsForAListWhileItLoads()
    {
        RecordSortModel list;
        list.sort(Model::NameColumn);
        list.setLoading(true);
        list.setLoading(false);
        QCOMPARE(list.rowCount(), 0);
    }

    void sortsByAnotherColumnDuringALoad()
    {
        Followed followed;
        followed.list.setLoading(true);
        followed.setRecords({2, 4, 1, 3});
        followed.list.sort(Model::StartTimeColumn, Qt::AscendingOrder);
        followed.list.setLoading(false);
        QCOMPARE(shownrecords::ids(followed.list), QStringList(inOrder.rbegin(), inOrder.rend()));
    }

    void followsRecordsThatChangeAndGoDuringALoad()
    {
        Followed followed;
        followed.list.setLoading(true);
        followed.setRecords({2, 4, 1, 3});
        followed.setRecords({2, 4});
        followed.site.eraseRecord(followed.north, followed.device, QStringLiteral("r02"));
        followed.site.eraseRecord(followed.north, followed.device, QStringLiteral("r03"));
        followed.beginAfresh();
        QCOMPARE(followed.list.rowCount(), 0);
        followed.setRecords({2, 4, 1, 3});
        QTRY_COMPARE_WITH_TIMEOUT(shownrecords::ids(followed.list), inOrder, patience);
    }

    void showsABatchInOneStep()
    {
        Followed followed;
        followed.setRecords({10, 20, 30});
        followed.list.setLoading(true);
        followed.setRecords({40});
        const QSignalSpy inserted(&followed.list, &QAbstractItemModel::rowsInserted);
        followed.setRecords({15, 5, 25, 35});
        followed.list.setLoading(false);
        QCOMPARE(inserted.count(), 1);
        QCOMPARE(followed.list.rowCount(), 8);
    }
};

QTEST_GUILESS_MAIN(TestRecordSortModel)
#include "tst_recordsortmodel.moc"
