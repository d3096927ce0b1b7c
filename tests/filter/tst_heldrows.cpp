#include "filteredlist.h"
#include "signallog.h"

#include <QItemSelectionModel>
#include <QTableView>
#include <QtTest>

#include <random>
#include <set>

using namespace ZelkoGUI::Filter;

namespace {

using Flag = QItemSelectionModel::SelectionFlag;

/// Steps that a list took over a change, without what they tell of their rows.
int countOf(const QStringList& texts, const QString& beginning)
{
    return static_cast<int>(
        std::count_if(texts.begin(), texts.end(), [&](const QString& text) { return text.startsWith(beginning); }));
}

QItemSelection wholeOf(const QAbstractItemModel& model)
{
    return {model.index(0, 0), model.index(model.rowCount() - 1, model.columnCount() - 1)};
}

/// The same list with the same verdicts, whose rows come and go in single steps always.
class StepList : public QSortFilterProxyModel
{
public:
    using Conditions = std::vector<ScriptedCondition*>;

    StepList(QAbstractItemModel& source, Conditions conditions)
        : m_conditions(std::move(conditions))
    {
        setSortRole(Qt::UserRole);
        setSourceModel(&source);
    }

    bool filterAcceptsRow(int row, const QModelIndex&) const override
    {
        return std::all_of(m_conditions.begin(), m_conditions.end(), [&](const ScriptedCondition* condition) {
            return condition->passes(sourceModel()->index(row, condition->filterKeyColumn()).data());
        });
    }

    void filterAnew() { invalidateFilter(); }

private:
    const Conditions m_conditions;
};

using Cell = std::pair<int, int>;

/// The cells of the source that are selected in a list.
std::set<Cell> selectedCells(const QItemSelectionModel& selection, const QSortFilterProxyModel& list)
{
    std::set<Cell> cells;
    for (const QModelIndex& index : selection.selectedIndexes()) {
        const QModelIndex cell = list.mapToSource(index);
        cells.emplace(cell.row(), cell.column());
    }
    return cells;
}

Cell currentCell(const QItemSelectionModel& selection, const QSortFilterProxyModel& list)
{
    const QModelIndex cell = list.mapToSource(selection.currentIndex());
    return {cell.row(), cell.column()};
}

/// Does the same at random to the selections of two lists that show the same.
class RandomUser
{
public:
    explicit RandomUser(unsigned seed)
        : m_random(seed)
    {}

    int draw(int limit) { return static_cast<int>(m_random() % static_cast<unsigned>(limit)); }

    void select(const std::vector<QItemSelectionModel*>& selections, bool wholeRows)
    {
        const int rows = selections.front()->model()->rowCount();
        if (rows == 0) {
            return;
        }
        const int first = draw(rows);
        const int last = std::min(rows - 1, first + draw(1 + draw(rows)));
        const int left = wholeRows ? 0 : draw(3);
        const int right = wholeRows ? 2 : left + draw(3 - left);
        const int kind = draw(6);
        for (QItemSelectionModel* selection : selections) {
            const QAbstractItemModel& model = *selection->model();
            const QItemSelection cells(model.index(first, left), model.index(last, right));
            switch (kind) {
            case 0:
                selection->select(cells, Flag::ClearAndSelect);
                break;
            case 1:
                selection->select(cells, Flag::Toggle | Flag::Rows);
                break;
            case 2:
                selection->select(wholeOf(model), Flag::ClearAndSelect);
                break;
            case 3:
                selection->select(cells, Flag::Deselect | Flag::Rows);
                break;
            case 4:
                selection->setCurrentIndex(model.index(first, left), Flag::NoUpdate);
                break;
            default:
                selection->setCurrentIndex(model.index(first, left), Flag::ClearAndSelect | Flag::Rows);
                break;
            }
        }
    }

    ScriptedCondition::Test test()
    {
        const int kind = draw(4);
        if (kind == 0) {
            return anything;
        }
        if (kind == 1) {
            return equals(draw(8));
        }
        return [mask = draw(256)](int value) { return ((mask >> (value % 8)) & 1) != 0; };
    }

private:
    std::mt19937 m_random;
};

} // namespace

class tst_HeldRows : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void keepsSelectionAndCurrentRowOverALayoutChange();
    void tellsOfSelectedRowsThatALayoutChangeHides_data();
    void tellsOfSelectedRowsThatALayoutChangeHides();
    void keepsTheSelectionOfTheWholeListToItsRows();
    void takesAWhollySelectedListInLayouts();
    void givesTheCurrentRowToOneThatWasThere();
    void endsWithoutACurrentRowWhereAllRowsAreOthers();
    void tellsAKnownSelectionOfManyRowsAtOnce();
    void losesWhatRowsInSingleStepsWouldLose_data();
    void losesWhatRowsInSingleStepsWouldLose();
};

void tst_HeldRows::keepsSelectionAndCurrentRowOverALayoutChange()
{
    FilteredList list(manyRows);
    list.proxy.sort(1);
    QItemSelectionModel selection(&list.proxy);
    for (const int row : {403, 803, 804}) {
        selection.select(list.proxy.mapFromSource(list.table.index(row, 0)), Flag::Select | Flag::Rows);
    }
    selection.setCurrentIndex(list.proxy.mapFromSource(list.table.index(803, 1)), Flag::NoUpdate);
    SignalLog log(&list.proxy);
    ScriptedCondition* condition = list.add(2, equals(3)); // 403 and 803 are such, 804 is not
    QCOMPARE(log.take().mid(0, 3), layoutChange());
    const auto selected = [&] {
        QList<int> rows;
        for (const QModelIndex& index : selection.selectedRows()) {
            rows.append(list.proxy.mapToSource(index).row());
        }
        std::sort(rows.begin(), rows.end());
        return rows;
    };
    QCOMPARE(selected(), QList<int>({403, 803}));
    QCOMPARE(list.proxy.mapToSource(selection.currentIndex()), list.table.index(803, 1));
    condition->setEnabled(false);
    QCOMPARE(log.take(), layoutChange() + header);
    QCOMPARE(selected(), QList<int>({403, 803}));
    QCOMPARE(list.proxy.mapToSource(selection.currentIndex()), list.table.index(803, 1));
}

void tst_HeldRows::tellsOfSelectedRowsThatALayoutChangeHides_data()
{
    QTest::addColumn<QList<int>>("selected");
    QTest::addColumn<QList<int>>("kept");
    QTest::newRow("a row by itself") << QList<int>{100} << QList<int>{};
    QTest::newRow("the upper end of a range") << QList<int>{100, 101} << QList<int>{101};
    QTest::newRow("the lower end of a range") << QList<int>{101, 102} << QList<int>{101};
    QTest::newRow("the middle of a range") << QList<int>{101, 102, 103} << QList<int>{101, 103};
    QTest::newRow("two rows with hidden ones between") << QList<int>{101, 200} << QList<int>{101};
}

void tst_HeldRows::tellsOfSelectedRowsThatALayoutChangeHides()
{
    QFETCH(QList<int>, selected);
    QFETCH(QList<int>, kept);
    FilteredList list(manyRows);
    QItemSelectionModel selection(&list.proxy);
    for (const int row : selected) {
        selection.select(list.proxy.index(row, 0), Flag::Select | Flag::Rows);
    }
    QList<int> told;
    connect(&selection, &QItemSelectionModel::selectionChanged, &selection, [&] {
        told.clear();
        for (const QModelIndex& index : selection.selectedRows()) {
            told.append(index.data().toInt() / 10);
        }
        std::sort(told.begin(), told.end());
    });
    told = {-1};
    SignalLog log(&list.proxy);
    list.add(2, isOdd);
    QCOMPARE(log.take().mid(0, 3), layoutChange());
    QCOMPARE(told, kept);
}

void tst_HeldRows::keepsTheSelectionOfTheWholeListToItsRows()
{
    constexpr int rows = 400;
    FilteredList list(rows);
    QItemSelectionModel selection(&list.proxy);
    const auto selectAll = [&] {
        const QModelIndex last = list.proxy.index(list.proxy.rowCount() - 1, list.proxy.columnCount() - 1);
        selection.select(QItemSelection(list.proxy.index(0, 0), last), QItemSelectionModel::ClearAndSelect);
    };
    selectAll();
    ScriptedCondition* condition = list.add(2, isOdd);
    QCOMPARE(selection.selectedRows().size(), rows / 2);
    condition->setTest(equals(3));
    QCOMPARE(selection.selectedRows().size(), rows / 8);
    condition->setEnabled(false);
    QCOMPARE(selection.selectedRows().size(), rows / 8); // and not what came between
    for (const QModelIndex& index : selection.selectedRows(2)) {
        QCOMPARE(index.data().toInt(), 3);
    }
}

void tst_HeldRows::takesAWhollySelectedListInLayouts()
{
    FilteredList list(manyRows);
    list.proxy.sort(1);
    QItemSelectionModel selection(&list.proxy);
    selection.select(wholeOf(list.proxy), Flag::ClearAndSelect);
    SignalLog log(&list.proxy);
    ScriptedCondition* condition = list.add(2, equals(3));
    const QStringList narrowed = log.take();
    QCOMPARE(countOf(narrowed, QStringLiteral("begin layout")), 1);
    QVERIFY2(countOf(narrowed, QStringLiteral("begin remove")) <= 3, qPrintable(narrowed.join(QLatin1Char('\n'))));
    QCOMPARE(selection.selectedRows().size(), manyRows / 8);
    condition->setTest(isOdd);
    const QStringList widened = log.take();
    QCOMPARE(countOf(widened, QStringLiteral("begin layout")), 1);
    QCOMPARE(countOf(widened, QStringLiteral("begin insert")), 1);
    QCOMPARE(selection.selectedRows().size(), manyRows / 8);
    QCOMPARE(list.proxy.rowCount(), manyRows / 2);
}

void tst_HeldRows::givesTheCurrentRowToOneThatWasThere()
{
    FilteredList list(manyRows);
    ScriptedCondition* condition = list.add(2, [](int value) { return value == 3 || value == 6; });
    QItemSelectionModel selection(&list.proxy);
    selection.setCurrentIndex(list.proxy.mapFromSource(list.table.index(403, 0)), Flag::ClearAndSelect);
    condition->setTest([](int value) { return value == 6 || value == 2; }); // 402 is new, 398 was there
    QCOMPARE(list.proxy.mapToSource(selection.currentIndex()).row(), 398);
    QVERIFY(!selection.hasSelection());
}

void tst_HeldRows::endsWithoutACurrentRowWhereAllRowsAreOthers()
{
    FilteredList list(manyRows);
    ScriptedCondition* condition = list.add(2, equals(3));
    QTableView view;
    view.setSelectionMode(QAbstractItemView::SingleSelection);
    view.setModel(&list.proxy);
    view.setCurrentIndex(list.proxy.mapFromSource(list.table.index(403, 0)));
    QVERIFY(view.selectionModel()->hasSelection());
    condition->setTest(equals(4));
    QCOMPARE(list.proxy.rowCount(), manyRows / 8);
    QVERIFY(!view.currentIndex().isValid());
    QVERIFY(!view.selectionModel()->hasSelection());
}

void tst_HeldRows::tellsAKnownSelectionOfManyRowsAtOnce()
{
    FilteredList list(manyRows);
    QItemSelectionModel known(&list.proxy);
    QItemSelectionModel other(&list.proxy);
    list.proxy.followSelection(&known);
    list.proxy.followSelection(&other);
    list.proxy.followSelection(nullptr);
    for (int row = 0; row < manyRows; row += 4) {
        known.select(list.proxy.index(row, 0), Flag::Select | Flag::Rows);
    }
    other.select(list.proxy.index(9, 1), Flag::Select);
    QList<qsizetype> told;
    connect(&known, &QItemSelectionModel::selectionChanged, &known, [&] { told.append(known.selectedRows().size()); });
    SignalLog log(&list.proxy);
    list.add(2, below(3));
    const QStringList texts = log.take();
    QCOMPARE(countOf(texts, QStringLiteral("begin layout")), 1);
    QCOMPARE(countOf(texts, QStringLiteral("begin remove")), 1);
    QCOMPARE(told, QList<qsizetype>({manyRows / 8}));
    QCOMPARE(other.selectedIndexes().size(), 1);
}

void tst_HeldRows::losesWhatRowsInSingleStepsWouldLose_data()
{
    using Mode = QAbstractItemView::SelectionMode;
    QTest::addColumn<Mode>("mode");
    QTest::addColumn<bool>("followed");
    QTest::addColumn<bool>("wholeRows");
    QTest::addColumn<unsigned>("seed");
    for (unsigned seed = 1; seed <= 4; ++seed) {
        QTest::addRow("a single row, draw %u", seed) << QAbstractItemView::SingleSelection << false << false << seed;
        QTest::addRow("many cells, draw %u", seed) << QAbstractItemView::ExtendedSelection << false << false << seed;
        QTest::addRow("many cells that are followed, draw %u", seed)
            << QAbstractItemView::ExtendedSelection << true << false << seed;
        QTest::addRow("many rows that are followed, draw %u", seed)
            << QAbstractItemView::ExtendedSelection << true << true << seed;
    }
}

void tst_HeldRows::losesWhatRowsInSingleStepsWouldLose()
{
    QFETCH(QAbstractItemView::SelectionMode, mode);
    QFETCH(bool, followed);
    QFETCH(bool, wholeRows);
    QFETCH(unsigned, seed);
    FilteredList list(320);
    ScriptedCondition* first = list.add(2, anything);
    ScriptedCondition* second = list.add(0, anything);
    StepList steps(list.table, {first, second});
    const auto order = seed % 2 == 0 ? Qt::AscendingOrder : Qt::DescendingOrder;
    list.proxy.sort(static_cast<int>(seed % 3) - 1, order);
    steps.sort(static_cast<int>(seed % 3) - 1, order);
    QTableView view;
    QTableView stepView;
    for (auto [each, model] :
         {std::pair<QTableView*, QSortFilterProxyModel*>{&view, &list.proxy}, {&stepView, &steps}}) {
        each->setSelectionMode(mode);
        each->setModel(model);
    }
    if (followed) {
        list.proxy.followSelection(view.selectionModel());
    }
    RandomUser user(seed);
    QSignalSpy told(view.selectionModel(), &QItemSelectionModel::selectionChanged);
    for (int step = 0; step < 80; ++step) {
        user.select({view.selectionModel(), stepView.selectionModel()}, wholeRows);
        const auto before = selectedCells(*view.selectionModel(), list.proxy);
        told.clear();
        (user.draw(3) == 0 ? second : first)->setTest(user.test());
        steps.filterAnew();
        const auto selected = selectedCells(*view.selectionModel(), list.proxy);
        QCOMPARE(column(list.proxy, 0), column(steps, 0));
        QVERIFY(selected == selectedCells(*stepView.selectionModel(), steps));
        QCOMPARE(currentCell(*view.selectionModel(), list.proxy), currentCell(*stepView.selectionModel(), steps));
        QVERIFY(selected == before || !told.isEmpty());
    }
}

QTEST_MAIN(tst_HeldRows)

#include "tst_heldrows.moc"
