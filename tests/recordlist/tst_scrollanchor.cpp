#include "recordtablesetting.h"

#include <zelkoguibase/recordlist/scrollanchor_p.h>

#include <console/hands/operatorhands.h>

#include <QAbstractItemModelTester>

#include <functional>

using ZelkoConsole::operatorhands::clickHeader;
using ZelkoConsole::operatorhands::clickRow;

namespace {

constexpr int count = 60;
constexpr int topRow = 20;

/// A table that is kept in place and stands at r20; names are counted by hundreds, so that others fit in between.
struct Setting : RecordTableSetting
{
    explicit Setting(QAbstractItemView::ScrollMode mode = QAbstractItemView::ScrollPerItem)
        : RecordTableSetting(0)
        , tester(&proxy)
        , anchor(&table, &proxy, nullptr)
    {
        table.setVerticalScrollMode(mode);
        show();
        for (int number = 0; number < count; ++number) {
            records.add(named(id(number), number * 100));
        }
        scrollTo(mode == QAbstractItemView::ScrollPerItem ? topRow : topRow * table.rowHeight(0) + 7);
    }

    static ListedRecords::RecordDataPtr named(const QString& id, int name)
    {
        auto record = makeRecord(id);
        record->SetRecordName(QStringLiteral("%1").arg(name, 5, 10, QLatin1Char('0')));
        return record;
    }

    /// A record that stands by its name.
    void add(int name) { records.add(named(QStringLiteral("new at %1").arg(name), name)); }
    void remove(int number) { records.remove(id(number)); }
    void move(int number, int name) { records.change(named(id(number), name)); }

    /// Pixels from the top of what is in sight.
    int place(int number) const { return table.rowViewportPosition(proxy.mapFromSource(source(number)).row()); }
    QModelIndex source(int number) const { return records.recordIndex(id(number)); }

    const QAbstractItemModelTester tester;
    ZelkoGUI::ScrollAnchor anchor;
};

using Change = std::function<void(Setting&)>;

} // namespace

Q_DECLARE_METATYPE(Change)

class ScrollAnchorTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void keepsTheRecordAtTheTop_data();
    void keepsTheRecordAtTheTop();
    void keepsWhatIsCutOffAtTheTop();
    void keepsTheNextOneWhenTheTopGoes_data();
    void keepsTheNextOneWhenTheTopGoes();
    void staysAtTheVeryTop();
    void staysThoughTheCurrentRowGoes_data();
    void staysThoughTheCurrentRowGoes();
    void goesAsFarAsTheListReaches();
    void leavesWhereSomebodyScrolls();
    void leavesAListThatIsSortedAnew();
    void looksAtTheRowsInSightOnly();
    void keepsWhereNewRowsStandBeforeAllGo();
};

void ScrollAnchorTest::keepsTheRecordAtTheTop_data()
{
    QTest::addColumn<Change>("change");
    const auto row = [](const char* name, const Change& change) { QTest::newRow(name) << change; };
    row("one comes above", [](Setting& setting) { setting.add(150); });
    row("one comes right above", [](Setting& setting) { setting.add(1999); });
    row("one comes in sight", [](Setting& setting) { setting.add(2050); });
    row("one comes below", [](Setting& setting) { setting.add(5000); });
    row("one goes above", [](Setting& setting) { setting.remove(3); });
    row("one goes right above", [](Setting& setting) { setting.remove(19); });
    row("one goes in sight", [](Setting& setting) { setting.remove(21); });
    row("one goes below", [](Setting& setting) { setting.remove(50); });
    row("one moves from above to below", [](Setting& setting) { setting.move(3, 5555); });
    row("one moves from below to above", [](Setting& setting) { setting.move(50, 50); });
    row("one moves from above into sight", [](Setting& setting) { setting.move(3, 2050); });
    row("one moves out of sight", [](Setting& setting) { setting.move(22, 50); });
    row("one changes and stays", [](Setting& setting) { setting.move(20, 2001); });
    row("many come and go in one turn", [](Setting& setting) {
        for (int number = 0; number < 15; ++number) {
            setting.add(number * 7);
            setting.add(2001 + number);
            setting.remove(number);
            setting.add(5000 + number);
            setting.remove(45 + number);
            setting.move(15, number * 300);
        }
    });
    row("all others above go", [](Setting& setting) {
        for (int number = 0; number < 19; ++number) {
            setting.remove(number);
        }
    });
    row("a filter hides every other one", [](Setting& setting) {
        setting.proxy.setFilterFixedString(QStringLiteral("r"));
        setting.proxy.setFilterKeyColumn(ListedRecords::RecordIDColumn);
        setting.proxy.setFilterRegularExpression(QStringLiteral("[02468]$"));
    });
}

void ScrollAnchorTest::keepsTheRecordAtTheTop()
{
    QFETCH(Change, change);
    Setting setting;
    QCOMPARE(setting.topId(), QStringLiteral("r20"));
    change(setting);
    QCoreApplication::processEvents();
    QCOMPARE(setting.topId(), QStringLiteral("r20"));
}

void ScrollAnchorTest::keepsWhatIsCutOffAtTheTop()
{
    Setting setting(QAbstractItemView::ScrollPerPixel);
    QCOMPARE(setting.place(topRow), -7);
    setting.add(150);
    setting.remove(50);
    setting.remove(21);
    QCoreApplication::processEvents();
    QCOMPARE(setting.place(topRow), -7);
}

void ScrollAnchorTest::keepsTheNextOneWhenTheTopGoes_data()
{
    QTest::addColumn<Change>("change");
    QTest::newRow("from the list") << Change([](Setting& setting) { setting.remove(20); });
    QTest::newRow("far up") << Change([](Setting& setting) { setting.move(20, 50); });
    QTest::newRow("far down") << Change([](Setting& setting) { setting.move(20, 5550); });
    QTest::newRow("from the list, and some above it") << Change([](Setting& setting) {
        setting.remove(20);
        setting.remove(2);
        setting.remove(19);
    });
}

void ScrollAnchorTest::keepsTheNextOneWhenTheTopGoes()
{
    QFETCH(Change, change);
    Setting setting;
    const int before = setting.place(21);
    change(setting);
    QCoreApplication::processEvents();
    QCOMPARE(setting.place(21), before);
}

void ScrollAnchorTest::staysAtTheVeryTop()
{
    Setting setting;
    setting.scrollTo(0);
    QCoreApplication::processEvents();
    setting.records.add(Setting::named(QStringLiteral("first"), 0));
    setting.move(40, 1);
    QCoreApplication::processEvents();
    QCOMPARE(setting.scrolled(), 0);
}

void ScrollAnchorTest::staysThoughTheCurrentRowGoes_data()
{
    QTest::addColumn<int>("top");
    QTest::newRow("in the midst of the list") << 20;
    QTest::newRow("at its top") << 0;
}

// The view itself would scroll to the row that becomes the current one.
void ScrollAnchorTest::staysThoughTheCurrentRowGoes()
{
    QFETCH(int, top);
    Setting setting;
    setting.scrollTo(50);
    clickRow(setting.table, 50);
    setting.scrollTo(top);
    QCoreApplication::processEvents();
    const QString before = setting.topId();
    setting.remove(50);
    QCoreApplication::processEvents();
    QCOMPARE(setting.topId(), before);
}

void ScrollAnchorTest::goesAsFarAsTheListReaches()
{
    Setting setting;
    for (int number = 21; number < count; ++number) {
        setting.remove(number);
    }
    QCoreApplication::processEvents();
    QCOMPARE(setting.scrolled(), setting.table.verticalScrollBar()->maximum());
    QVERIFY(setting.place(20) >= 0);
}

void ScrollAnchorTest::leavesWhereSomebodyScrolls()
{
    Setting setting;
    setting.add(150);
    setting.table.verticalScrollBar()->setValue(5);
    QCoreApplication::processEvents();
    QCOMPARE(setting.scrolled(), 5);
    setting.add(151);
    setting.table.verticalScrollBar()->setValue(10);
    const QString chosen = setting.topId();
    setting.add(152);
    QCoreApplication::processEvents();
    QCOMPARE(setting.topId(), chosen);
}

void ScrollAnchorTest::leavesAListThatIsSortedAnew()
{
    Setting setting;
    clickHeader(setting.table, ListedRecords::NameColumn);
    QCOMPARE(setting.proxy.sortOrder(), Qt::DescendingOrder);
    QCoreApplication::processEvents();
    QCOMPARE(setting.scrolled(), topRow);
    const QString top = setting.topId();
    setting.add(5999);
    QCoreApplication::processEvents();
    QCOMPARE(setting.topId(), top);
}

namespace {

/// Counts the rows that are asked for their IDs.
class AskedRecords final : public ListedRecords
{
public:
    using ListedRecords::ListedRecords;

    QString recordID(int row) const override
    {
        ++asked;
        return ListedRecords::recordID(row);
    }

    mutable int asked = 0;
};

} // namespace

// However long the list is and however much changes in a turn.
void ScrollAnchorTest::looksAtTheRowsInSightOnly()
{
    AskedRecords records(RecordTableSetting::ids(0, 3000));
    QSortFilterProxyModel proxy;
    proxy.setSourceModel(&records);
    QTableView table;
    ZelkoGUI::ScrollAnchor anchor(&table, &proxy, nullptr);
    table.setModel(&proxy);
    table.resize(900, 320);
    table.show();
    QTRY_VERIFY_WITH_TIMEOUT(table.verticalScrollBar()->maximum() > 2000, patience);
    table.verticalScrollBar()->setValue(1500);
    QCoreApplication::processEvents();
    records.asked = 0;
    constexpr int removed = 200; // each of which is the first one, and is asked whether it is the one to be removed
    for (int number = 0; number < removed; ++number) {
        records.remove(RecordTableSetting::id(number));
    }
    const int inSight = table.viewport()->height() / table.rowHeight(0) + 2;
    const int asked = records.asked - removed;
    QVERIFY2(asked > 0 && asked <= inSight, qPrintable(QString::number(asked)));
    QCoreApplication::processEvents();
    QCOMPARE(table.verticalScrollBar()->value(), 1500 - removed);
}

// Whoever remembers the place then must see the rows where they are.
void ScrollAnchorTest::keepsWhereNewRowsStandBeforeAllGo()
{
    Setting setting;
    QString top;
    connect(&setting.proxy, &QAbstractItemModel::modelAboutToBeReset, this, [&] { top = setting.topId(); });
    setting.add(150);
    setting.lose();
    QCOMPARE(top, QStringLiteral("r20"));
}

QTEST_MAIN(ScrollAnchorTest)
#include "tst_scrollanchor.moc"
