#include "fixedrecordmodel.h"
#include "testrecords.h"

#include <console/records/selectionsummary.h>
#include <zelkoguibase/filter/multifiltersortproxymodel.h>
#include <zelkoguibase/filter/numberfiltercondition.h>

#include <QIdentityProxyModel>
#include <QItemSelectionModel>
#include <QSignalSpy>
#include <QSortFilterProxyModel>
#include <QTest>

using namespace ZelkoConsole;
using ZelkoGUI::Filter::MultiFilterSortProxyModel;
using ZelkoGUI::Filter::NumberFilterCondition;
using Model = ZelkoCommon::AbstractRecordListModel;

namespace {

// Counts how often it is asked for a cell, and lets a test say that a record changed.
class AskedModel : public QIdentityProxyModel
{
public:
    QVariant data(const QModelIndex& index, int role) const override
    {
        ++asked;
        return QIdentityProxyModel::data(index, role);
    }

    void tellChanged(int row) { Q_EMIT dataChanged(index(row, 0), index(row, columnCount() - 1)); }

    mutable int asked = 0;
};

FixedRecordModel::Rows records(int count)
{
    FixedRecordModel::Rows rows;
    for (int row = 0; row < count; ++row) {
        const QString id = QStringLiteral("r%1").arg(row);
        rows.emplace_back(id, makeRecord(id, 5, 1024));
    }
    return rows;
}

struct Setting
{
    explicit Setting(int count)
        : source(records(count))
        , selection(&model)
    {
        model.setSourceModel(&source);
    }

    void select(int first, int last, QItemSelectionModel::SelectionFlags flags = QItemSelectionModel::Select)
    {
        selection.select(QItemSelection(model.index(first, 0), model.index(last, 0)),
                         flags | QItemSelectionModel::Rows);
    }

    FixedRecordModel source;
    AskedModel model;
    QItemSelectionModel selection;
    SelectionSummary summary{&selection};
};

} // namespace

class TestSelectionSummary : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void forgetsRecordsThatAFilterHidesAllOverTheList()
    {
        FixedRecordModel source(records(400));
        for (int row = 0; row < 400; row += 2) {
            source.recordData(row)->SetSize(2048);
        }
        MultiFilterSortProxyModel list(nullptr);
        list.setSourceModel(&source);
        QItemSelectionModel selection(&list);
        list.followSelection(&selection);
        const SelectionSummary summary(&selection);
        selection.select(QItemSelection(list.index(100, 0), list.index(299, 0)),
                         QItemSelectionModel::Select | QItemSelectionModel::Rows);
        QCOMPARE(summary.text(), QStringLiteral("200 selected, 300 kByte, 05:00:00"));
        auto* small = new NumberFilterCondition<double>(1024, Model::SizeColumn, Model::ValueRole, &list);
        small->setComparator(ZelkoGUI::Filter::NumberComparison::Equal);
        small->setEnabled(true);
        list.addFilter(small);
        QCOMPARE(selection.selectedRows().size(), 100);
        QCOMPARE(summary.text(), QStringLiteral("100 selected, 100 kByte, 02:30:00"));
    }

    void saysNothingWithoutASelection()
    {
        const Setting setting(3);
        QCOMPARE(setting.summary.text(), QString());
    }

    void followsTheSelection()
    {
        Setting setting(10);
        QSignalSpy changed(&setting.summary, &SelectionSummary::changed);
        setting.select(2, 5);
        QCOMPARE(setting.summary.text(), QStringLiteral("4 selected, 4 kByte, 00:06:00"));
        setting.select(4, 8);
        QCOMPARE(setting.summary.text(), QStringLiteral("7 selected, 7 kByte, 00:10:30"));
        setting.select(3, 7, QItemSelectionModel::Deselect);
        QCOMPARE(setting.summary.text(), QStringLiteral("2 selected, 2 kByte, 00:03:00"));
        setting.select(0, 0, QItemSelectionModel::ClearAndSelect);
        QCOMPARE(setting.summary.text(), QStringLiteral("1 selected, 1 kByte, 00:01:30"));
        setting.selection.clear();
        QCOMPARE(setting.summary.text(), QString());
        QCOMPARE(changed.size(), 5);
    }

    void countsWhatWasSelectedBefore()
    {
        Setting setting(10);
        setting.select(2, 5);
        const SelectionSummary late(&setting.selection);
        QCOMPARE(late.text(), setting.summary.text());
    }

    void tellsOfAChangeOfASelectedRecordOnly()
    {
        Setting setting(10);
        setting.select(2, 5);
        QSignalSpy changed(&setting.summary, &SelectionSummary::changed);
        setting.source.recordData(3)->SetSize(2048);
        setting.model.tellChanged(3);
        QCOMPARE(setting.summary.text(), QStringLiteral("4 selected, 5 kByte, 00:06:00"));
        setting.source.recordData(7)->SetSize(2048);
        setting.model.tellChanged(7);
        QCOMPARE(setting.summary.text(), QStringLiteral("4 selected, 5 kByte, 00:06:00"));
        QCOMPARE(changed.size(), 1);
    }

    void forgetsRecordsThatLeaveTheList()
    {
        FixedRecordModel source(records(10));
        QSortFilterProxyModel list;
        list.setSourceModel(&source);
        QItemSelectionModel selection(&list);
        const SelectionSummary summary(&selection);
        selection.select(QItemSelection(list.index(0, 0), list.index(9, 0)),
                         QItemSelectionModel::Select | QItemSelectionModel::Rows);
        list.setFilterKeyColumn(Model::RecordIDColumn);
        list.setFilterRegularExpression(QStringLiteral("r[0-3]"));
        QCOMPARE(summary.text(), QStringLiteral("4 selected, 4 kByte, 00:06:00"));
        list.setSourceModel(nullptr);
        QCOMPARE(summary.text(), QString());
    }

    void looksAtOneRecordWhenOneOfManyChanges()
    {
        const auto askedForAChange = [](int selected) {
            Setting setting(2000);
            setting.select(0, selected - 1);
            setting.model.asked = 0;
            setting.model.tellChanged(0);
            return setting.model.asked;
        };
        const int forOne = askedForAChange(1);
        QVERIFY(forOne > 0);
        QCOMPARE(askedForAChange(2000), forOne);
    }
};

QTEST_MAIN(TestSelectionSummary)
#include "tst_selectionsummary.moc"
