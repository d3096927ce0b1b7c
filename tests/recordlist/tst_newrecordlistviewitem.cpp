#include <zelkoguibase/recordlist/newrecordlistview.h>
#include <zelkoguibase/recordlist/newrecordlistviewitem.h>

#include <QLocale>
#include <QtTest>

#include <functional>
#include <limits>

namespace {

using View = NewRecordListView;

constexpr quint64 second = 1'000'000;
constexpr quint64 morning = 1'700'000'000 * second; // 2023-11-14T22:13:20Z

/// What an application derives: an item whose setters can be called.
class Item : public NewRecordListViewItem
{
public:
    explicit Item(SortListView* list)
        : NewRecordListViewItem(list, true)
    {}

    using NewRecordListViewItem::recordListView;
    using NewRecordListViewItem::SetDuration;
    using NewRecordListViewItem::SetFloatValue;
    using NewRecordListViewItem::SetFrequencyOrBandwidthValue;
    using NewRecordListViewItem::SetRecordSize;
    using NewRecordListViewItem::SetStartStopPosition;
    using NewRecordListViewItem::SetStringValue;
    using NewRecordListViewItem::SetTime;
};

/// A list with one item, with all columns or with few.
struct List
{
    explicit List(bool reduced = false)
        : view(nullptr, "Records", QString(), QString(), 3, reduced)
        , item(*new Item(&view))
    {}

    View view;
    Item& item;
};

QStringList cells(const SortListViewItem& item)
{
    QStringList texts;
    for (int column = 0; column < item.columnCount(); ++column) {
        texts << item.text(column);
    }
    return texts;
}

/// Calls each setter of a cell.
void setAll(Item& item, int column)
{
    item.SetStringValue(QStringLiteral("text"), column);
    item.SetFloatValue(1.5, column);
    item.SetRecordSize(2048, column);
    item.SetTime(morning, column, false, false);
    item.SetDuration(0, second, column, false, false);
    item.SetFrequencyOrBandwidthValue(1000, column);
}

} // namespace

class NewRecordListViewItemTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void hasACellForEachColumn_data();
    void hasACellForEachColumn();
    void standsInItsList();
    void printsDurations_data();
    void printsDurations();
    void showsTexts();
    void showsNumbersWithThreeDecimals_data();
    void showsNumbersWithThreeDecimals();
    void showsSizes_data();
    void showsSizes();
    void showsFrequencies_data();
    void showsFrequencies();
    void sortsSizesByBytes();
    void sortsByTheTextThatReplacesAQuantity_data();
    void sortsByTheTextThatReplacesAQuantity();
    void aPointIsAPointInEveryLocale();
    void showsTimesInLocalTime();
    void showsDurations();
    void tellsWhereATimeComesFrom_data();
    void tellsWhereATimeComesFrom();
    void forgetsWhereTheTimeBeforeCameFrom();
    void settersLeaveColumnsAloneThatAreNotShown_data();
    void settersLeaveColumnsAloneThatAreNotShown();
    void settersDoNothingInAnotherKindOfList();
    void settersDoNothingOutsideOfAList();
    void keepsPositions_data();
    void keepsPositions();
    void ignoresPositionsOfOtherColumns();
};

void NewRecordListViewItemTest::hasACellForEachColumn_data()
{
    QTest::addColumn<bool>("reduced");
    QTest::addColumn<int>("columns");
    QTest::newRow("all") << false << 11;
    QTest::newRow("few") << true << 8;
}

void NewRecordListViewItemTest::hasACellForEachColumn()
{
    QFETCH(bool, reduced);
    const List list(reduced);
    QTEST(list.item.columnCount(), "columns");
    QCOMPARE(cells(list.item).join(QString()), QString());
}

void NewRecordListViewItemTest::standsInItsList()
{
    List list;
    const Item& item = list.item;
    QCOMPARE(list.item.recordListView(), &list.view);
    QCOMPARE(item.recordListView(), &list.view);
    QCOMPARE(list.view.topLevelItem(0), &item);
    QVERIFY(item.parent() == nullptr);
    QCOMPARE(item.StartPosition(), 0);
    QCOMPARE(item.StopPosition(), 0);
}

void NewRecordListViewItemTest::printsDurations_data()
{
    QTest::addColumn<quint64>("start");
    QTest::addColumn<quint64>("stop");
    QTest::addColumn<QString>("text");
    const auto row = [](const char* name, quint64 start, quint64 stop, const char* text) {
        QTest::newRow(name) << start << stop << QString::fromLatin1(text);
    };
    row("none", morning, morning, "00:00:00");
    row("a second", morning, morning + second, "00:00:01");
    row("an hour, a minute and a second", morning, morning + 3661 * second, "01:01:01");
    row("just below a second", morning, morning + second - 1, "00:00:00");
    row("a microsecond over the turn of a second", morning - 1, morning, "00:00:01");
    row("a second short of the limit", 0, 359'998 * second, "99:59:58");
    row("exactly the limit", 0, 359'999 * second, "99:59:59");
    row("a second beyond the limit", 0, 360'000 * second, "99:59:59");
    row("all times", 0, std::numeric_limits<quint64>::max(), "99:59:59");
    row("a stop before the start", morning, morning - second, "99:59:59");
    row("a stop that is not known", morning, 0, "99:59:59");
}

void NewRecordListViewItemTest::printsDurations()
{
    QFETCH(quint64, start);
    QFETCH(quint64, stop);
    QTEST(NewRecordListViewItem::calculateDurationString(start, stop), "text");
}

void NewRecordListViewItemTest::showsTexts()
{
    const List list;
    list.item.SetStringValue(QStringLiteral("Tower"), 0);
    list.item.SetStringValue(QStringLiteral("R1"), 8);
    QCOMPARE(list.item.text(0), QStringLiteral("Tower"));
    QCOMPARE(list.item.text(8), QStringLiteral("R1"));
    QCOMPARE(list.item.sortKey(0), QStringLiteral("Tower"));
}

void NewRecordListViewItemTest::showsNumbersWithThreeDecimals_data()
{
    QTest::addColumn<double>("value");
    QTest::addColumn<QString>("text");
    QTest::newRow("nothing") << 0.0 << QStringLiteral("0.000");
    QTest::newRow("what rounds up") << 1.2346 << QStringLiteral("1.235");
    QTest::newRow("what rounds down") << 1.2344 << QStringLiteral("1.234");
    QTest::newRow("below nothing") << -12.5 << QStringLiteral("-12.500");
    QTest::newRow("a large one") << 1e15 << QStringLiteral("1000000000000000.000");
}

void NewRecordListViewItemTest::showsNumbersWithThreeDecimals()
{
    QFETCH(double, value);
    const List list;
    list.item.SetFloatValue(value, 5);
    QTEST(list.item.text(5), "text");
}

void NewRecordListViewItemTest::showsSizes_data()
{
    QTest::addColumn<qint64>("size");
    QTest::addColumn<QString>("text");
    const auto row = [](const char* name, qint64 size, const char* text) {
        QTest::newRow(name) << size << QString::fromLatin1(text);
    };
    row("nothing", 0, "0.000 B");
    row("the last in bytes", 1023, "1023.000 B");
    row("the first in kilobytes", 1024, "1.000 kB");
    row("the last in kilobytes", 1'048'575, "1023.999 kB");
    row("the first in megabytes", 1'048'576, "1.000 MB");
    row("the last in megabytes", 1'073'741'823, "1024.000 MB");
    row("the first in gigabytes", 1'073'741'824, "1.000 GB");
    row("a terabyte", 1'099'511'627'776, "1024.000 GB");
    row("half between", 1536, "1.500 kB");
    row("below nothing", -2048, "-2048.000 B");
}

void NewRecordListViewItemTest::showsSizes()
{
    QFETCH(qint64, size);
    const List list;
    list.item.SetRecordSize(size, 1);
    QTEST(list.item.text(1), "text");
    QCOMPARE(list.item.sortKey(1), QString::number(size));
}

void NewRecordListViewItemTest::showsFrequencies_data()
{
    QTest::addColumn<quint64>("value");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("sortKey");
    const auto row = [](const char* name, quint64 value, const char* text) {
        QTest::newRow(name) << value << QString::fromLatin1(text) << QString::number(value);
    };
    row("nothing", 0, "");
    row("one", 1, "1.000 Hz");
    row("the last in hertz", 999, "999.000 Hz");
    row("the first in kilohertz", 1000, "1.000 kHz");
    row("the last in kilohertz", 999'999, "999.999 kHz");
    row("the first in megahertz", 1'000'000, "1.000 MHz");
    row("the last in megahertz", 999'999'999, "1000.000 MHz");
    row("the first in gigahertz", 1'000'000'000, "1.000 GHz");
    row("a channel", 118'105'500, "118.106 MHz");
    QTest::newRow("beyond the signed ones")
        << quint64(18'446'744'073'709'551'615U) << QStringLiteral("18446744073.710 GHz")
        << QStringLiteral("18446744073709551615");
}

void NewRecordListViewItemTest::showsFrequencies()
{
    QFETCH(quint64, value);
    const List list;
    for (const int column : {9, 10}) {
        list.item.SetFrequencyOrBandwidthValue(value, column);
        QTEST(list.item.text(column), "text");
        QTEST(list.item.sortKey(column), "sortKey");
    }
}

void NewRecordListViewItemTest::sortsSizesByBytes()
{
    List list;
    list.item.SetRecordSize(1'073'741'824, 1);
    for (const qint64 size : {2048, 3}) {
        (new Item(&list.view))->SetRecordSize(size, 1);
    }
    list.view.sortByColumn(1, Qt::AscendingOrder);
    QStringList texts;
    for (int row = 0; row < 3; ++row) {
        texts << list.view.topLevelItem(row)->text(1);
    }
    QCOMPARE(texts, (QStringList{"3.000 B", "2.000 kB", "1.000 GB"}));
}

void NewRecordListViewItemTest::sortsByTheTextThatReplacesAQuantity_data()
{
    QTest::addColumn<std::function<void(Item&)>>("replace");
    const auto row = [](const char* name, void (*replace)(Item&)) {
        QTest::newRow(name) << std::function<void(Item&)>(replace);
    };
    row("a text", [](Item& item) { item.SetStringValue(QStringLiteral("text"), 1); });
    row("a number", [](Item& item) { item.SetFloatValue(1.5, 1); });
    row("a time", [](Item& item) { item.SetTime(morning, 1, false, false); });
    row("no time", [](Item& item) { item.SetTime(0, 1, false, false); });
    row("a duration", [](Item& item) { item.SetDuration(0, second, 1, false, false); });
}

void NewRecordListViewItemTest::sortsByTheTextThatReplacesAQuantity()
{
    QFETCH(std::function<void(Item&)>, replace);
    List list;
    list.item.SetRecordSize(2048, 1);
    QCOMPARE(list.item.sortKey(1), QStringLiteral("2048"));
    replace(list.item);
    QVERIFY(list.item.text(1) != QStringLiteral("2.000 kB"));
    QCOMPARE(list.item.sortKey(1), list.item.text(1));
    list.item.SetFrequencyOrBandwidthValue(1000, 1);
    QCOMPARE(list.item.sortKey(1), QStringLiteral("1000"));
}

void NewRecordListViewItemTest::aPointIsAPointInEveryLocale()
{
    const QLocale before;
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
    const List list;
    list.item.SetRecordSize(1'234'567'890'123, 1);
    list.item.SetFloatValue(1234.5, 5);
    QLocale::setDefault(before);
    QCOMPARE(list.item.text(1), QStringLiteral("1149.781 GB"));
    QCOMPARE(list.item.text(5), QStringLiteral("1234.500"));
}

void NewRecordListViewItemTest::showsTimesInLocalTime()
{
    const List list;
    list.item.SetTime(morning, 2, true, true);
    QCOMPARE(list.item.text(2), QStringLiteral("2023-11-14 23:13:20"));
    list.item.SetTime(0, 2, true, true);
    QCOMPARE(list.item.text(2), QStringLiteral("--:--:--"));
}

void NewRecordListViewItemTest::showsDurations()
{
    const List list;
    list.item.SetDuration(morning - 1, morning + 59 * second, 4, true, true);
    QCOMPARE(list.item.text(4), QStringLiteral("00:01:00"));
}

void NewRecordListViewItemTest::tellsWhereATimeComesFrom_data()
{
    QTest::addColumn<bool>("signalTime");
    QTest::addColumn<bool>("third");
    QTest::addColumn<QString>("toolTip");
    QTest::addColumn<QBrush>("brush");
    const QBrush blue(Qt::blue, Qt::SolidPattern);
    QTest::newRow("a plain one") << false << true << QString() << QBrush();
    QTest::newRow("a plain one of the signal") << true << true << QString() << QBrush();
    QTest::newRow("one of the signal") << true << false << QStringLiteral("derived from signal time") << QBrush();
    QTest::newRow("one of the recorder") << false << false << QStringLiteral("derived from ZELKO system time") << blue;
}

void NewRecordListViewItemTest::tellsWhereATimeComesFrom()
{
    QFETCH(bool, signalTime);
    QFETCH(bool, third);
    const List list;
    list.item.SetTime(morning, 2, signalTime, third);
    list.item.SetTime(0, 3, signalTime, third);
    list.item.SetDuration(morning, morning + second, 4, signalTime, third);
    for (const int column : {2, 3, 4}) {
        QTEST(list.item.toolTip(column), "toolTip");
        QTEST(list.item.foreground(column), "brush");
    }
}

void NewRecordListViewItemTest::forgetsWhereTheTimeBeforeCameFrom()
{
    const List list;
    list.item.SetTime(morning, 2, false, false);
    QCOMPARE(list.item.foreground(2), QBrush(Qt::blue));
    list.item.SetTime(morning, 2, true, false);
    QCOMPARE(list.item.foreground(2), QBrush());
    list.item.SetTime(morning, 2, false, true);
    QCOMPARE(list.item.toolTip(2), QString());
}

void NewRecordListViewItemTest::settersLeaveColumnsAloneThatAreNotShown_data()
{
    QTest::addColumn<bool>("reduced");
    QTest::addColumn<int>("column");
    QTest::newRow("the ID of a full list in one of few") << true << 8;
    QTest::newRow("the status in a list of few") << true << 20;
    QTest::newRow("beyond the last of all") << false << 11;
    QTest::newRow("the start position") << false << 23;
    QTest::newRow("no column") << false << -1;
}

void NewRecordListViewItemTest::settersLeaveColumnsAloneThatAreNotShown()
{
    QFETCH(bool, reduced);
    QFETCH(int, column);
    const List list(reduced);
    const int columns = list.item.columnCount();
    setAll(list.item, column);
    QCOMPARE(cells(list.item).join(QString()), QString());
    QCOMPARE(list.item.columnCount(), columns);
    QCOMPARE(list.view.columnCount(), columns);
    QCOMPARE(list.item.sortKey(column), QString());
    QCOMPARE(list.item.toolTip(column), QString());
}

void NewRecordListViewItemTest::settersDoNothingInAnotherKindOfList()
{
    SortListView other;
    other.addColumn(QStringLiteral("Name"));
    Item item(&other);
    QVERIFY(item.recordListView() == nullptr);
    setAll(item, 0);
    item.SetStartStopPosition(5, 23);
    QCOMPARE(item.text(0), QString());
    QCOMPARE(item.StartPosition(), 0);
}

void NewRecordListViewItemTest::settersDoNothingOutsideOfAList()
{
    Item item(nullptr);
    setAll(item, 0);
    item.SetStartStopPosition(5, 23);
    QCOMPARE(item.columnCount(), 0);
    QCOMPARE(item.StartPosition(), 0);
}

void NewRecordListViewItemTest::keepsPositions_data()
{
    QTest::addColumn<bool>("reduced");
    QTest::newRow("with all columns") << false;
    QTest::newRow("with few columns") << true;
}

void NewRecordListViewItemTest::keepsPositions()
{
    QFETCH(bool, reduced);
    const List list(reduced);
    list.item.SetStartStopPosition(std::numeric_limits<qint64>::min(),
                                   list.view.getColumnNumber(View::ColumnStartPosition));
    QCOMPARE(list.item.StartPosition(), std::numeric_limits<qint64>::min());
    QCOMPARE(list.item.StopPosition(), 0);
    list.item.SetStartStopPosition(std::numeric_limits<qint64>::max(),
                                   list.view.getColumnNumber(View::ColumnStopPosition));
    QCOMPARE(list.item.StartPosition(), std::numeric_limits<qint64>::min());
    QCOMPARE(list.item.StopPosition(), std::numeric_limits<qint64>::max());
    QCOMPARE(cells(list.item).join(QString()), QString());
}

void NewRecordListViewItemTest::ignoresPositionsOfOtherColumns()
{
    const List list;
    for (const int column : {-1, 0, 11, 12, 22, 25}) {
        list.item.SetStartStopPosition(5, column);
    }
    QCOMPARE(list.item.StartPosition(), 0);
    QCOMPARE(list.item.StopPosition(), 0);
}

QTEST_MAIN(NewRecordListViewItemTest)
#include "tst_newrecordlistviewitem.moc"
