#include "ownconfiguration.h"

#include <widgetbase/sortlistview.h>
#include <widgetbase/sortlistviewitem.h>

#include <QHeaderView>
#include <QtTest>

namespace {

QStringList texts(const SortListView& view, int column = 0)
{
    QStringList all;
    for (int row = 0; row < view.topLevelItemCount(); ++row) {
        all << view.topLevelItem(row)->text(column);
    }
    return all;
}

void fill(SortListView& view, const QStringList& all)
{
    for (const QString& text : all) {
        (new SortListViewItem(&view))->setText(0, text);
    }
}

/// The brightest pixel of the cell, or on a light background the darkest, as far as its hue is that of blue.
QColor strongestBlue(SortListView& view, const QColor& background)
{
    const QImage image = view.viewport()->grab(view.visualItemRect(view.topLevelItem(0))).toImage();
    QColor strongest = background;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QColor color = image.pixelColor(x, y);
            const bool isBlue = color.blue() > color.red() && color.red() == color.green();
            const auto distance = [&](const QColor& of) { return std::abs(qGray(of.rgb()) - qGray(background.rgb())); };
            strongest = isBlue && distance(color) > distance(strongest) ? color : strongest;
        }
    }
    return strongest;
}

/// A list of two columns, whose layout is kept under `name`.
struct KeptList
{
    explicit KeptList(const char* name)
        : view(nullptr, name)
    {
        view.addColumn(QStringLiteral("Name"));
        view.addColumn(QStringLiteral("Size"));
    }

    SortListView view;
};

} // namespace

class SortListViewTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void columnsComeOneBehindTheOther();
    void alignsHeaderAndItems();
    void sortsAsTextsUnlessToldOtherwise();
    void sortsAsNumbers_data();
    void sortsAsNumbers();
    void sortsByTheKeyAndNotByTheText();
    void anEmptyKeyIsAKey();
    void aKeyThatChangesMovesTheItem();
    void aKeyThatIsRemovedMovesTheItem();
    void compareFunctionsEndAtTheirLength();
    void aFunctionOfOnesOwnDecides();
    void keepsTheLayoutOfItsColumnsUnderItsName();
    void keepsTheLayoutUnderANameThatCameLater();
    void keepsTheWidthOfAColumnThatIsHidden_data();
    void keepsTheWidthOfAColumnThatIsHidden();
    void anItemHasAsManyCellsAsItIsGiven();
    void coloursCanBeReadOnTheirBackground_data();
    void coloursCanBeReadOnTheirBackground();
};

void SortListViewTest::columnsComeOneBehindTheOther()
{
    SortListView view(nullptr, "List");
    QCOMPARE(view.objectName(), QStringLiteral("List"));
    QCOMPARE(SortListView(nullptr, "\xC3\xA4").objectName(), QString(QChar(0xe4)));
    QCOMPARE(SortListView().objectName(), QString());
    QCOMPARE(view.columnCount(), 0);
    QCOMPARE(view.addColumn(QStringLiteral("Name")), 0);
    QCOMPARE(view.addColumn(QStringLiteral("Size")), 1);
    QCOMPARE(view.headerItem()->text(0) + view.headerItem()->text(1), QStringLiteral("NameSize"));
}

void SortListViewTest::alignsHeaderAndItems()
{
    SortListView view;
    view.addColumn(QStringLiteral("Name"));
    view.addColumn(QStringLiteral("Size"));
    const SortListViewItem item(&view);
    view.setColumnAlignment(1, Qt::AlignRight);
    view.setColumnAlignment(2, Qt::AlignRight);
    const auto alignment = [](const QTreeWidgetItem& of, int column) {
        return of.data(column, Qt::TextAlignmentRole).value<Qt::Alignment>();
    };
    QCOMPARE(alignment(item, 0), Qt::AlignLeft | Qt::AlignVCenter);
    QCOMPARE(alignment(item, 1), Qt::AlignRight | Qt::AlignVCenter);
    QCOMPARE(view.headerItem()->textAlignment(1), int(Qt::AlignRight | Qt::AlignVCenter));
}

void SortListViewTest::sortsAsTextsUnlessToldOtherwise()
{
    SortListView view;
    view.addColumn(QStringLiteral("Name"));
    fill(view, {"b", "10", "9", "a"});
    view.sortByColumn(0, Qt::AscendingOrder);
    QCOMPARE(texts(view), (QStringList{"10", "9", "a", "b"}));
    view.sortByColumn(0, Qt::DescendingOrder);
    QCOMPARE(texts(view), (QStringList{"b", "a", "9", "10"}));
}

void SortListViewTest::sortsAsNumbers_data()
{
    QTest::addColumn<QStringList>("ascending");
    QTest::newRow("whole numbers") << QStringList{"-10", "9", "10", "100"};
    QTest::newRow("fractions") << QStringList{"-1.5", "0.25", "0.5", "1e3"};
    QTest::newRow("whole numbers and fractions") << QStringList{"1", "1.5", "2"};
    QTest::newRow("numbers that are the same to a double") << QStringList{"9007199254740992", "9007199254740993"};
    QTest::newRow("numbers beyond the signed ones") << QStringList{"5", "18446744073709551614", "18446744073709551615"};
    QTest::newRow("what is no number, and numbers") << QStringList{"n/a", "-1", "1"};
    QTest::newRow("nothing, and numbers") << QStringList{"", "0"};
    QTest::newRow("not a number, and numbers") << QStringList{"nan", "-inf", "0", "inf"};
}

void SortListViewTest::sortsAsNumbers()
{
    QFETCH(QStringList, ascending);
    SortListView view;
    view.addColumn(QStringLiteral("Size"));
    view.SetCompareFunctionLength(1);
    view.SetCompareFunction(0, &SortListView::_compStandardNumeric);
    fill(view, QStringList(ascending.rbegin(), ascending.rend()));
    view.sortByColumn(0, Qt::AscendingOrder);
    QCOMPARE(texts(view), ascending);
    for (int row = 0; row < view.topLevelItemCount(); ++row) {
        const auto& item = static_cast<const SortListViewItem&>(*view.topLevelItem(row));
        QCOMPARE(SortListView::_compStandardNumeric(item, item, 0), 0);
    }
}

void SortListViewTest::sortsByTheKeyAndNotByTheText()
{
    SortListView view;
    view.addColumn(QStringLiteral("Size"));
    view.SetCompareFunctionLength(1);
    view.SetCompareFunction(0, &SortListView::_compStandardNumeric);
    for (const auto& [text, key] : {std::pair{"1.000 GB", "1073741824"}, {"2.000 kB", "2048"}, {"3.000 B", "3"}}) {
        auto* const item = new SortListViewItem(&view);
        item->setText(0, QLatin1String(text));
        item->SetSortKey(0, QLatin1String(key));
    }
    view.sortByColumn(0, Qt::AscendingOrder);
    QCOMPARE(texts(view), (QStringList{"3.000 B", "2.000 kB", "1.000 GB"}));
}

void SortListViewTest::anEmptyKeyIsAKey()
{
    SortListView view;
    view.addColumn(QStringLiteral("Name"));
    SortListViewItem item(&view);
    item.setText(0, QStringLiteral("text"));
    QCOMPARE(item.sortKey(0), QStringLiteral("text"));
    item.SetSortKey(0, QString());
    QCOMPARE(item.sortKey(0), QString());
}

void SortListViewTest::aKeyThatChangesMovesTheItem()
{
    SortListView view;
    view.addColumn(QStringLiteral("Name"));
    view.sortByColumn(0, Qt::AscendingOrder);
    fill(view, {"a", "b"});
    static_cast<SortListViewItem*>(view.topLevelItem(0))->SetSortKey(0, QStringLiteral("c"));
    QCOMPARE(texts(view), (QStringList{"b", "a"}));
}

void SortListViewTest::aKeyThatIsRemovedMovesTheItem()
{
    SortListView view;
    view.addColumn(QStringLiteral("Name"));
    view.sortByColumn(0, Qt::AscendingOrder);
    fill(view, {"a", "b"});
    auto& item = static_cast<SortListViewItem&>(*view.topLevelItem(0));
    item.SetSortKey(0, QStringLiteral("c"));
    item.RemoveSortKey(1);
    QCOMPARE(texts(view), (QStringList{"b", "a"}));
    item.RemoveSortKey(0);
    QCOMPARE(texts(view), (QStringList{"a", "b"}));
    QCOMPARE(item.sortKey(0), QStringLiteral("a"));
}

void SortListViewTest::compareFunctionsEndAtTheirLength()
{
    SortListView view;
    view.SetCompareFunction(0, &SortListView::_compStandardNumeric);
    QVERIFY(view.compareFunction(0) == &SortListView::_compStandardString);
    view.SetCompareFunctionLength(2);
    view.SetCompareFunction(1, &SortListView::_compStandardNumeric);
    view.SetCompareFunction(2, &SortListView::_compStandardNumeric);
    view.SetCompareFunction(-1, &SortListView::_compStandardNumeric);
    QVERIFY(view.compareFunction(0) == &SortListView::_compStandardString);
    QVERIFY(view.compareFunction(1) == &SortListView::_compStandardNumeric);
    QVERIFY(view.compareFunction(2) == &SortListView::_compStandardString);
    view.SetCompareFunctionLength(1);
    QVERIFY(view.compareFunction(1) == &SortListView::_compStandardString);
}

void SortListViewTest::aFunctionOfOnesOwnDecides()
{
    SortListView view;
    view.addColumn(QStringLiteral("Name"));
    view.SetCompareFunctionLength(1);
    view.SetCompareFunction(0, [](const SortListViewItem& a, const SortListViewItem& b, int column) {
        return static_cast<int>(a.text(column).size() - b.text(column).size());
    });
    fill(view, {"ccc", "bb", "a"});
    view.sortByColumn(0, Qt::AscendingOrder);
    QCOMPARE(texts(view), (QStringList{"a", "bb", "ccc"}));
}

void SortListViewTest::keepsTheLayoutOfItsColumnsUnderItsName()
{
    const OwnConfiguration configuration;
    KeptList before("List");
    before.view.header()->moveSection(0, 1);
    QVERIFY(before.view.saveColumnStatus());
    KeptList after("List");
    QVERIFY(after.view.restoreColumnStatus());
    QCOMPARE(after.view.header()->visualIndex(0), 1);
    QVERIFY(!KeptList("Another").view.restoreColumnStatus());
}

void SortListViewTest::keepsTheLayoutUnderANameThatCameLater()
{
    const OwnConfiguration configuration;
    KeptList before(nullptr);
    QVERIFY(!before.view.saveColumnStatus());
    before.view.setObjectName(QStringLiteral("Later"));
    before.view.header()->moveSection(0, 1);
    QVERIFY(before.view.saveColumnStatus());
    KeptList after("Later");
    QVERIFY(after.view.restoreColumnStatus());
    QCOMPARE(after.view.header()->visualIndex(0), 1);
}

void SortListViewTest::keepsTheWidthOfAColumnThatIsHidden_data()
{
    QTest::addColumn<bool>("isShown");
    QTest::newRow("before the list is shown") << false;
    QTest::newRow("in a list that is shown") << true;
}

void SortListViewTest::keepsTheWidthOfAColumnThatIsHidden()
{
    QFETCH(bool, isShown);
    const OwnConfiguration configuration;
    KeptList before("List");
    before.view.setVisible(isShown);
    before.view.setColumnWidth(0, 77);
    before.view.setColumnHidden(0, true);
    QVERIFY(before.view.saveColumnStatus());
    KeptList after("List");
    QVERIFY(after.view.restoreColumnStatus());
    QVERIFY(after.view.isColumnHidden(0));
    after.view.setColumnHidden(0, false);
    QCOMPARE(after.view.columnWidth(0), 77);
}

void SortListViewTest::anItemHasAsManyCellsAsItIsGiven()
{
    SortListView view;
    view.addColumn(QStringLiteral("Name"));
    SortListViewItem item(&view);
    QCOMPARE(item.columnCount(), 0);
    item.SetColumnCount(3);
    QCOMPARE(item.columnCount(), 3);
    QCOMPARE(view.columnCount(), 1);
    item.setText(2, QStringLiteral("text"));
    item.SetColumnCount(1);
    QCOMPARE(item.columnCount(), 3);
    QCOMPARE(item.text(2), QStringLiteral("text"));
}

void SortListViewTest::coloursCanBeReadOnTheirBackground_data()
{
    QTest::addColumn<QColor>("background");
    QTest::addColumn<bool>("isAsGiven");
    QTest::newRow("blue on white") << QColor(Qt::white) << true;
    QTest::newRow("blue on black") << QColor(Qt::black) << false;
    QTest::newRow("blue on a dark grey") << QColor(40, 40, 40) << false;
}

void SortListViewTest::coloursCanBeReadOnTheirBackground()
{
    QFETCH(QColor, background);
    QFETCH(bool, isAsGiven);
    SortListView view;
    QPalette palette(background);
    palette.setColor(QPalette::Base, background);
    view.setPalette(palette);
    QFont large = view.font();
    large.setPixelSize(40);
    view.setFont(large);
    view.addColumn(QStringLiteral("Name"));
    fill(view, {QStringLiteral("HHH")});
    view.topLevelItem(0)->setForeground(0, QBrush(Qt::blue));
    view.resize(300, 150);
    view.show();
    const QColor shown = strongestBlue(view, background);
    QCOMPARE(shown == QColor(Qt::blue), isAsGiven);
    QVERIFY2(std::abs(qGray(shown.rgb()) - qGray(background.rgb())) > 60, qPrintable(shown.name()));
    QCOMPARE(view.topLevelItem(0)->foreground(0), QBrush(Qt::blue));
}

QTEST_MAIN(SortListViewTest)
#include "tst_sortlistview.moc"
