#include <zelkoguibase/recordlist/newrecordlistview.h>
#include <zelkoguibase/recordlist/newrecordlistviewitem.h>

#include "ownconfiguration.h"

#include <QHeaderView>
#include <QSignalSpy>
#include <QtTest>

namespace {

using View = NewRecordListView;

/// What an application derives: a list that it adds a column to.
class WiderView : public View
{
public:
    WiderView()
        : View(nullptr, "Wider", QString(), QString(), 1, true)
    {
        SetCompareFunctionLength(10);
        AddColumn(8, QStringLiteral("Text"), Qt::AlignRight, CompareText);
        AddColumn(9, QStringLiteral("Number"), Qt::AlignHCenter, static_cast<eCompareType>(2));
    }
};

std::unique_ptr<View> makeView(bool reduced, int selectionMode = 3)
{
    return std::make_unique<View>(nullptr, "Records", QStringLiteral("one"), QStringLiteral("two"), selectionMode,
                                  reduced);
}

QString alignmentText(Qt::Alignment alignment)
{
    return alignment & Qt::AlignRight     ? QStringLiteral("right")
           : alignment & Qt::AlignHCenter ? QStringLiteral("centre")
                                          : QStringLiteral("left");
}

/// "Name left text", one line a column.
QStringList columnsOf(const View& view)
{
    QStringList lines;
    for (int column = 0; column < view.columnCount(); ++column) {
        const bool isText = view.compareFunction(column) == &SortListView::_compStandardString;
        lines << QStringLiteral("%1 %2 %3")
                     .arg(view.headerItem()->text(column), alignmentText(view.columnAlignment(column)),
                          isText ? QLatin1String("text") : QLatin1String("numeric"));
    }
    return lines;
}

void addRecord(View& view, const QStringList& texts)
{
    auto* const item = new NewRecordListViewItem(&view, false);
    for (int column = 0; column < texts.size(); ++column) {
        item->setText(column, texts[column]);
    }
}

QStringList texts(const View& view, int column)
{
    QStringList all;
    for (int row = 0; row < view.topLevelItemCount(); ++row) {
        all << view.topLevelItem(row)->text(column);
    }
    return all;
}

void clickHeader(View& view, int column)
{
    QHeaderView& header = *view.header();
    const QPoint middle(header.sectionViewportPosition(column) + header.sectionSize(column) / 2, header.height() / 2);
    QTest::mouseClick(header.viewport(), Qt::LeftButton, Qt::NoModifier, middle);
}

void clickRow(View& view, int row, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
{
    const QRect place = view.visualItemRect(view.topLevelItem(row));
    QTest::mouseClick(view.viewport(), Qt::LeftButton, modifiers, place.center());
}

} // namespace

class NewRecordListViewTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void mapsEachColumn_data();
    void mapsEachColumn();
    void knowsWhichColumnsAreThere_data();
    void knowsWhichColumnsAreThere();
    void createsItsColumns_data();
    void createsItsColumns();
    void looksAsAListOfRecordsDoes();
    void keepsTheTextsOfTheApplication();
    void anySelectionModeButOneIsExtended_data();
    void anySelectionModeButOneIsExtended();
    void sortsByTheColumnThatIsClicked();
    void aDerivedListAddsColumns();
    void aNotificationChangesNothing();
    void keepsTheLayoutOfItsColumns();
};

void NewRecordListViewTest::mapsEachColumn_data()
{
    QTest::addColumn<int>("value");
    QTest::addColumn<int>("full");
    QTest::addColumn<int>("reduced");
    QTest::newRow("name") << 0 << 0 << 0;
    QTest::newRow("size") << 1 << 1 << 1;
    QTest::newRow("start time") << 2 << 2 << 2;
    QTest::newRow("stop time") << 3 << 3 << 3;
    QTest::newRow("duration") << 4 << 4 << 4;
    QTest::newRow("data rate class") << 5 << 5 << 5;
    QTest::newRow("data format") << 6 << 6 << 6;
    QTest::newRow("status") << 7 << 7 << 20;
    QTest::newRow("ID") << 8 << 8 << 7;
    QTest::newRow("centre frequency") << 9 << 9 << 21;
    QTest::newRow("bandwidth") << 10 << 10 << 22;
    QTest::newRow("start position") << 11 << 23 << 23;
    QTest::newRow("stop position") << 12 << 24 << 24;
    QTest::newRow("one beyond the last") << 13 << -1 << -1;
    QTest::newRow("far beyond the last") << 2147483647 << -1 << -1;
    QTest::newRow("before the first") << -1 << -1 << -1;
}

void NewRecordListViewTest::mapsEachColumn()
{
    QFETCH(int, value);
    QTEST(makeView(false)->getColumnNumber(static_cast<View::enCOLUMN>(value)), "full");
    QTEST(makeView(true)->getColumnNumber(static_cast<View::enCOLUMN>(value)), "reduced");
}

void NewRecordListViewTest::knowsWhichColumnsAreThere_data()
{
    QTest::addColumn<int>("column");
    QTest::addColumn<bool>("full");
    QTest::addColumn<bool>("reduced");
    QTest::newRow("before the first") << -1 << false << false;
    QTest::newRow("the first") << 0 << true << true;
    QTest::newRow("the last of few") << 7 << true << true;
    QTest::newRow("one beyond the last of few") << 8 << true << false;
    QTest::newRow("the last of all") << 10 << true << false;
    QTest::newRow("one beyond the last of all") << 11 << false << false;
    QTest::newRow("that of the status in a list without it") << 20 << false << false;
    QTest::newRow("that of the start position") << 23 << false << false;
}

void NewRecordListViewTest::knowsWhichColumnsAreThere()
{
    QFETCH(int, column);
    QTEST(makeView(false)->isColumnAvailable(column), "full");
    QTEST(makeView(true)->isColumnAvailable(column), "reduced");
}

void NewRecordListViewTest::createsItsColumns_data()
{
    QTest::addColumn<bool>("reduced");
    QTest::addColumn<QStringList>("columns");
    QTest::newRow("all") << false
                         << QStringList{"Name left text",
                                        "Size right numeric",
                                        "Start Time right text",
                                        "Stop Time right text",
                                        "Duration centre text",
                                        "Data Rate Class centre text",
                                        "Data Format centre text",
                                        "Status centre text",
                                        "ID left text",
                                        "Center Frequency right numeric",
                                        "Bandwidth right numeric"};
    QTest::newRow("few") << true << QStringList{"Name left text",          "Size right numeric",
                                                "Start Time right text",   "Stop Time right text",
                                                "Duration centre text",    "Data Rate Class centre text",
                                                "Data Format centre text", "ID left text"};
}

void NewRecordListViewTest::createsItsColumns()
{
    QFETCH(bool, reduced);
    QTEST(columnsOf(*makeView(reduced)), "columns");
}

void NewRecordListViewTest::looksAsAListOfRecordsDoes()
{
    const auto view = makeView(false);
    QVERIFY(view->allColumnsShowFocus());
    QVERIFY(view->rootIsDecorated());
    QVERIFY(view->header()->isSortIndicatorShown());
    QCOMPARE(view->header()->sortIndicatorSection(), 0);
    QCOMPARE(view->header()->sortIndicatorOrder(), Qt::AscendingOrder);
    QCOMPARE(view->accessibleName(), QStringLiteral("Records"));
}

void NewRecordListViewTest::keepsTheTextsOfTheApplication()
{
    QWidget parent;
    const auto* const view = new View(&parent, "Records", QStringLiteral("one"), QStringLiteral("two"), 1, false);
    QCOMPARE(view->parentWidget(), &parent);
    QCOMPARE(view->objectName(), QStringLiteral("Records"));
    QCOMPARE(view->firstText(), QStringLiteral("one"));
    QCOMPARE(view->secondText(), QStringLiteral("two"));
}

void NewRecordListViewTest::anySelectionModeButOneIsExtended_data()
{
    QTest::addColumn<int>("given");
    QTest::addColumn<int>("mode");
    QTest::addColumn<int>("selected");
    QTest::newRow("none") << 0 << 3 << 2;
    QTest::newRow("single") << 1 << 1 << 1;
    QTest::newRow("multi") << 2 << 3 << 2;
    QTest::newRow("extended") << 3 << 3 << 2;
    QTest::newRow("no mode at all") << 42 << 3 << 2;
    QTest::newRow("below nothing") << -1 << 3 << 2;
}

void NewRecordListViewTest::anySelectionModeButOneIsExtended()
{
    QFETCH(int, given);
    const auto view = makeView(false, given);
    QTEST(static_cast<int>(view->selectionMode()), "mode");
    addRecord(*view, {"a"});
    addRecord(*view, {"b"});
    view->resize(600, 200);
    view->show();
    clickRow(*view, 0);
    clickRow(*view, 1, Qt::ControlModifier);
    QTEST(static_cast<int>(view->selectedItems().size()), "selected");
}

void NewRecordListViewTest::sortsByTheColumnThatIsClicked()
{
    const auto view = makeView(false);
    addRecord(*view, {"c", "9"});
    addRecord(*view, {"a", "100"});
    addRecord(*view, {"b", "10"});
    QCOMPARE(texts(*view, 0), (QStringList{"a", "b", "c"}));
    view->resize(1200, 200);
    view->show();
    clickHeader(*view, 1);
    QCOMPARE(texts(*view, 1), (QStringList{"9", "10", "100"}));
    clickHeader(*view, 1);
    QCOMPARE(texts(*view, 1), (QStringList{"100", "10", "9"}));
}

void NewRecordListViewTest::aDerivedListAddsColumns()
{
    const WiderView view;
    QCOMPARE(columnsOf(view).mid(8), (QStringList{"Text right text", "Number centre numeric"}));
}

void NewRecordListViewTest::aNotificationChangesNothing()
{
    const auto view = makeView(false);
    addRecord(*view, {"a"});
    const QSignalSpy changed(view->model(), &QAbstractItemModel::dataChanged);
    view->Update(nullptr, TChangeCode::ValueChanged);
    QCOMPARE(changed.size(), 0);
    QCOMPARE(texts(*view, 0), QStringList{"a"});
}

void NewRecordListViewTest::keepsTheLayoutOfItsColumns()
{
    const OwnConfiguration configuration;
    const auto before = makeView(false);
    before->header()->moveSection(8, 0);
    QVERIFY(before->saveColumnStatusPersistent());
    const auto after = makeView(false);
    QVERIFY(after->restoreColumnStatus());
    QCOMPARE(after->header()->logicalIndex(0), 8);
    QVERIFY(!makeView(true)->restoreColumnStatus());
}

QTEST_MAIN(NewRecordListViewTest)
#include "tst_newrecordlistview.moc"
