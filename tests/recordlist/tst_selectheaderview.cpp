#include <zelkoguibase/recordlist/selectheaderview.h>

#include <resources/zelkoicons.h>

#include <QPainter>
#include <QStandardItemModel>
#include <QStyle>
#include <QTableView>
#include <QtTest>

using ZelkoGUI::SelectHeaderView;

namespace {

constexpr int rows = 4;
constexpr int columns = 3;

/// Plain red, which no style paints a header in.
QIcon redIcon()
{
    QPixmap pixmap(64, 64);
    pixmap.fill(Qt::red);
    return QIcon(pixmap);
}

/// What can be asked of a header from outside of it.
class OpenHeader : public SelectHeaderView
{
public:
    using SelectHeaderView::sectionSizeFromContents;
    using SelectHeaderView::SelectHeaderView;
};

class PlainHeader : public QHeaderView
{
public:
    using QHeaderView::QHeaderView;
    using QHeaderView::sectionSizeFromContents;
};

/// A table with a header of that kind.
struct Table
{
    explicit Table(Qt::Orientation orientation = Qt::Vertical, const QIcon& icon = redIcon())
        : model(rows, columns)
        , header(new OpenHeader(icon, orientation, nullptr))
    {
        if (orientation == Qt::Vertical) {
            view.setVerticalHeader(header);
        } else {
            view.setHorizontalHeader(header);
        }
        view.setModel(&model);
        view.resize(500, 300);
        view.show();
    }

    int markerSize() const { return header->style()->pixelMetric(QStyle::PM_SmallIconSize, nullptr, header); }
    int margin() const { return header->style()->pixelMetric(QStyle::PM_HeaderMargin, nullptr, header); }

    QRect sectionRect(int section) const
    {
        const int begin = header->sectionViewportPosition(section);
        const int size = header->sectionSize(section);
        return header->orientation() == Qt::Vertical ? QRect(0, begin, header->viewport()->width(), size)
                                                     : QRect(begin, 0, size, header->viewport()->height());
    }

    /// Where a section has red pixels, in the section; null without any.
    QRect redIn(int section) const
    {
        const QImage image = header->viewport()->grab(sectionRect(section)).toImage();
        QRect red;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                red |= image.pixelColor(x, y) == Qt::red ? QRect(x, y, 1, 1) : QRect();
            }
        }
        return red;
    }

    /// The sections with a marker, as "0 2".
    QString marked() const
    {
        QStringList all;
        for (int section = 0; section < header->count(); ++section) {
            if (!redIn(section).isNull()) {
                all << QString::number(section);
            }
        }
        return all.join(u' ');
    }

    void clickCell(int row, int column, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QTest::mouseClick(view.viewport(), Qt::LeftButton, modifiers,
                          view.visualRect(model.index(row, column)).center());
    }

    QStandardItemModel model;
    QTableView view;
    OpenHeader* header;
};

QRect markerPlace(const Table& table, int section)
{
    const QRect rect = table.sectionRect(section);
    const int size = table.markerSize();
    return {rect.width() - table.margin() - size, (rect.height() - size) / 2, size, size};
}

} // namespace

class SelectHeaderViewTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { registerZelkoIcons(); }

    void highlightsSectionsThatCanBeClicked();
    void marksSelectedRows();
    void marksSelectedColumns();
    void marksAtTheRightInTheMiddle_data();
    void marksAtTheRightInTheMiddle();
    void selectsByAClickOnASection();
    void movesTheMarkerByKeys();
    void takesTheMarkerAwayWithTheSelection();
    void paintsTheRestAsUsual();
    void anItemThatCannotBeSelectedIsNotMarked();
    void marksTheSectionWhereItWasMoved();
    void makesRoomForTheMarker_data();
    void makesRoomForTheMarker();
    void hasAMarkerOfTheApplication();
    void paintsWithoutAModel();
};

void SelectHeaderViewTest::highlightsSectionsThatCanBeClicked()
{
    const SelectHeaderView header(Qt::Vertical, nullptr);
    QVERIFY(header.highlightSections());
    QVERIFY(header.sectionsClickable());
}

void SelectHeaderViewTest::marksSelectedRows()
{
    Table table;
    QCOMPARE(table.marked(), QString());
    table.clickCell(1, 2);
    QCOMPARE(table.marked(), QStringLiteral("1"));
    table.clickCell(3, 0, Qt::ControlModifier);
    QCOMPARE(table.marked(), QStringLiteral("1 3"));
}

void SelectHeaderViewTest::marksSelectedColumns()
{
    Table table(Qt::Horizontal);
    table.clickCell(1, 2);
    QCOMPARE(table.marked(), QStringLiteral("2"));
    table.clickCell(3, 0, Qt::ControlModifier);
    QCOMPARE(table.marked(), QStringLiteral("0 2"));
}

void SelectHeaderViewTest::marksAtTheRightInTheMiddle_data()
{
    QTest::addColumn<int>("height");
    QTest::newRow("a row of the usual height") << 0;
    QTest::newRow("a high row") << 60;
}

void SelectHeaderViewTest::marksAtTheRightInTheMiddle()
{
    QFETCH(int, height);
    Table table;
    if (height > 0) {
        table.view.setRowHeight(1, height);
    }
    table.clickCell(1, 0);
    QCOMPARE(table.redIn(1), markerPlace(table, 1));
}

void SelectHeaderViewTest::selectsByAClickOnASection()
{
    Table table;
    QTest::mouseClick(table.header->viewport(), Qt::LeftButton, Qt::NoModifier, table.sectionRect(2).center());
    QCOMPARE(table.marked(), QStringLiteral("2"));
    QTest::mouseClick(table.header->viewport(), Qt::LeftButton, Qt::ShiftModifier, table.sectionRect(0).center());
    QCOMPARE(table.marked(), QStringLiteral("0 1 2"));
}

void SelectHeaderViewTest::movesTheMarkerByKeys()
{
    Table table;
    table.clickCell(1, 0);
    QTest::keyClick(table.view.viewport(), Qt::Key_Down);
    QCOMPARE(table.marked(), QStringLiteral("2"));
    QTest::keyClick(table.view.viewport(), Qt::Key_Up, Qt::ShiftModifier);
    QCOMPARE(table.marked(), QStringLiteral("1 2"));
}

void SelectHeaderViewTest::takesTheMarkerAwayWithTheSelection()
{
    Table table;
    table.clickCell(1, 0);
    table.view.clearSelection();
    QCOMPARE(table.marked(), QString());
    table.clickCell(1, 0);
    table.model.removeRow(1);
    QVERIFY(!table.view.selectionModel()->isRowSelected(3, {}));
    table.view.clearSelection();
    QCOMPARE(table.marked(), QString());
}

void SelectHeaderViewTest::paintsTheRestAsUsual()
{
    Table marking;
    Table plain(Qt::Vertical, QIcon());
    for (Table* const table : {&marking, &plain}) {
        table->clickCell(1, 0);
    }
    for (int section = 0; section < rows; ++section) {
        QImage with = marking.header->viewport()->grab(marking.sectionRect(section)).toImage();
        QImage without = plain.header->viewport()->grab(plain.sectionRect(section)).toImage();
        for (QImage* const image : {&with, &without}) {
            QPainter(image).fillRect(marking.redIn(section), Qt::black);
        }
        QVERIFY(with == without);
    }
}

void SelectHeaderViewTest::anItemThatCannotBeSelectedIsNotMarked()
{
    Table table;
    for (int column = 0; column < columns; ++column) {
        auto* const item = new QStandardItem;
        item->setSelectable(false);
        table.model.setItem(1, column, item);
    }
    table.view.selectAll();
    QCOMPARE(table.marked(), QStringLiteral("0 2 3"));
}

void SelectHeaderViewTest::marksTheSectionWhereItWasMoved()
{
    Table table;
    table.header->moveSection(1, 3);
    table.clickCell(1, 0);
    QCOMPARE(table.marked(), QStringLiteral("1"));
    QCOMPARE(table.redIn(1), markerPlace(table, 1));
}

void SelectHeaderViewTest::makesRoomForTheMarker_data()
{
    QTest::addColumn<int>("fontSize");
    QTest::newRow("a text lower than the marker") << 4;
    QTest::newRow("a text higher than the marker") << 40;
}

void SelectHeaderViewTest::makesRoomForTheMarker()
{
    QFETCH(int, fontSize);
    Table table;
    PlainHeader plain(Qt::Vertical);
    plain.setModel(&table.model);
    QFont font = table.header->font();
    font.setPixelSize(fontSize);
    table.header->setFont(font);
    plain.setFont(font);
    const int room = table.markerSize() + table.margin();
    const QSize usual = plain.sectionSizeFromContents(0);
    QVERIFY((usual.height() < room) == (fontSize < table.markerSize()));
    QCOMPARE(table.header->sectionSizeFromContents(0), QSize(usual.width() + room, std::max(usual.height(), room)));
}

void SelectHeaderViewTest::hasAMarkerOfTheApplication()
{
    Table table(Qt::Vertical, QIcon(QStringLiteral(":/Zelko/RecordList/SelectMarker.svg")));
    auto* const header = new SelectHeaderView(Qt::Vertical);
    Table other;
    other.view.setVerticalHeader(header);
    for (Table* const each : {&table, &other}) {
        each->clickCell(1, 0);
        each->view.resize(500, 300);
    }
    QCOMPARE(header->viewport()->grab().toImage(), table.header->viewport()->grab().toImage());
    table.view.clearSelection();
    QVERIFY(header->viewport()->grab().toImage() != table.header->viewport()->grab().toImage());
}

void SelectHeaderViewTest::paintsWithoutAModel()
{
    SelectHeaderView header(Qt::Vertical, nullptr);
    header.resize(50, 200);
    header.show();
    QVERIFY(!header.grab().isNull());
    const QStandardItemModel model(2, 2);
    header.setModel(const_cast<QStandardItemModel*>(&model));
    QVERIFY(!header.grab().isNull());
}

QTEST_MAIN(SelectHeaderViewTest)
#include "tst_selectheaderview.moc"
