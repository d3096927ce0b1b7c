#include "menuanswer.h"
#include "patience.h"
#include "turns.h"

#include <zelkoguibase/recordlist/columnheaderview_p.h>

#include <console/hands/operatorhands.h>

#include <QScrollBar>
#include <QStandardItemModel>
#include <QTableView>
#include <QtTest>

using namespace Qt::StringLiterals;
using ZelkoGUI::ColumnHeaderView;

namespace {

/// A table of the columns A, B, C ... that can be sorted, whose header has the keys.
struct Setting
{
    explicit Setting(int columns = 4, int rows = 3)
        : model(rows, columns)
        , header(*new ColumnHeaderView(&table))
    {
        for (int column = 0; column < columns; ++column) {
            model.setHeaderData(column, Qt::Horizontal, QString(QChar(u'A' + column)));
        }
        table.setHorizontalHeader(&header);
        table.setModel(&model);
        table.setSortingEnabled(true);
        header.setSectionsMovable(true);
        table.resize(600, 200);
        table.show();
        table.activateWindow();
    }

    /// By the Tab key, from the table.
    bool enter()
    {
        table.setTabKeyNavigation(false);
        table.setFocus();
        return QTest::qWaitForWindowActive(&table, patience) && (press(Qt::Key_Tab, {}, &table), header.hasFocus());
    }

    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}, QWidget* widget = nullptr)
    {
        QTest::keyClick(widget ? widget : &header, key, modifiers);
    }

    QString chosen() const { return name(header.chosenColumn()); }
    QString name(int column) const { return model.headerData(column, Qt::Horizontal).toString(); }

    /// As on the screen.
    QString columns() const
    {
        QString all;
        for (int visual = 0; visual < header.count(); ++visual) {
            if (const int column = header.logicalIndex(visual); !header.isSectionHidden(column)) {
                all += name(column);
            }
        }
        return all;
    }

    QString sorting() const
    {
        return name(header.sortIndicatorSection()) + (header.sortIndicatorOrder() == Qt::AscendingOrder ? u'+' : u'-');
    }

    static QAction* entry(const QMenu& menu, const QString& text)
    {
        const QList<QAction*> actions = menu.actions();
        for (QAction* const action : actions) {
            if (action->text().remove(u'&') == text) {
                return action;
            }
        }
        return nullptr;
    }

    /// The texts of the menu that opens when that is done.
    QString menuAfter(const std::function<void()>& opens, const std::function<void(QMenu&)>& answer)
    {
        QString texts;
        const MenuAnswer menu([&](QMenu& popup) {
            texts = MenuAnswer::texts(popup).join(u' ').remove(u'&');
            answer(popup);
        });
        opens();
        const auto isGiven = [&menu] { return menu.wasGiven(); };
        return QTest::qWaitFor(isGiven, patience) ? texts : u"no menu"_s;
    }

    QStandardItemModel model;
    QTableView table;
    ColumnHeaderView& header;
};

/// What of a header is painted. All of a window is painted in one go, some time after it was asked for.
class PaintedParts final : public QObject
{
public:
    explicit PaintedParts(const Setting& setting)
        : m_header(setting.header.viewport())
        , m_cells(setting.table.viewport())
    {
        m_header->installEventFilter(this);
        m_cells->installEventFilter(this);
    }

    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() == QEvent::Paint) {
            (watched == m_header ? m_parts : m_paintedCells) += static_cast<QPaintEvent*>(event)->region();
        }
        return false;
    }

    /// Lets all of it be painted that waits for it.
    void settle()
    {
        while (!take().isEmpty()) {
        }
    }

    /// Since the last call.
    QRect take()
    {
        letTurnsPass();
        m_paintedCells = {};
        m_cells->update();
        if (!QTest::qWaitFor([this] { return !m_paintedCells.isEmpty(); }, patience)) {
            qFatal("the window is not painted");
        }
        return std::exchange(m_parts, {}).boundingRect();
    }

private:
    QWidget* const m_header;
    QWidget* const m_cells;
    QRegion m_parts;
    QRegion m_paintedCells;
};

} // namespace

class ColumnHeaderViewTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void isReachedByTheTabKey();
    void leavesTheKeysToTheRowsOnAClick();
    void choosesAColumn();
    void passesOverHiddenColumns();
    void sortsByTheChosenColumn_data();
    void sortsByTheChosenColumn();
    void sortsNothingWhereNothingIsSorted();
    void movesTheChosenColumn();
    void movesNothingThatCannotBeMoved();
    void changesTheWidthOfTheChosenColumn();
    void leavesAWidthThatIsFixed();
    void goesTheOtherWayFromRightToLeft();
    void bringsTheChosenColumnIntoSight_data();
    void bringsTheChosenColumnIntoSight();
    void bringsTheLastPixelIntoSight();
    void framesTheChosenColumn();
    void saysWhichColumnIsChosen();
    void opensItsMenu_data();
    void opensItsMenu();
    void sortsByItsMenu();
    void hidesAndShowsColumnsByItsMenu();
    void asksForAReset();
    void leavesTheMenuToSomebodyElse();
    void opensNoMenuThatIsNotWanted();
    void takesNoKeysWithoutColumns();
    void leavesOtherKeysToTheTable();
    void leavesTheEndsOfTheTableToTheTable();
    void paintsWhatLooksDifferent();
    void paintsNothingForWhatLooksTheSame();
    void showsTheSectionsOfAnotherModel();
};

void ColumnHeaderViewTest::isReachedByTheTabKey()
{
    Setting setting;
    QVERIFY(setting.enter());
    QCOMPARE(setting.chosen(), u"A"_s);
    setting.press(Qt::Key_Tab, Qt::ShiftModifier);
    QVERIFY(setting.table.hasFocus());
}

void ColumnHeaderViewTest::leavesTheKeysToTheRowsOnAClick()
{
    Setting setting;
    setting.table.setFocus();
    QVERIFY(QTest::qWaitForWindowActive(&setting.table, patience));
    ZelkoConsole::operatorhands::clickHeader(setting.table, 2);
    QCOMPARE(setting.sorting().left(1), u"C"_s);
    QVERIFY(setting.table.hasFocus());
}

void ColumnHeaderViewTest::choosesAColumn()
{
    Setting setting;
    QVERIFY(setting.enter());
    QString way;
    for (const Qt::Key key :
         {Qt::Key_Right, Qt::Key_Right, Qt::Key_Left, Qt::Key_End, Qt::Key_Right, Qt::Key_Home, Qt::Key_Left}) {
        setting.press(key);
        way += setting.chosen();
    }
    QCOMPARE(way, u"BCBDDAA"_s);
}

void ColumnHeaderViewTest::passesOverHiddenColumns()
{
    Setting setting;
    setting.header.hideSection(0);
    setting.header.hideSection(2);
    QVERIFY(setting.enter());
    QCOMPARE(setting.chosen(), u"B"_s);
    setting.press(Qt::Key_Right);
    QCOMPARE(setting.chosen(), u"D"_s);
    setting.header.hideSection(3);
    QCOMPARE(setting.chosen(), u"B"_s);
}

void ColumnHeaderViewTest::sortsByTheChosenColumn_data()
{
    QTest::addColumn<int>("key");
    QTest::newRow("Space") << int(Qt::Key_Space);
    QTest::newRow("Return") << int(Qt::Key_Return);
    QTest::newRow("Enter") << int(Qt::Key_Enter);
}

void ColumnHeaderViewTest::sortsByTheChosenColumn()
{
    QFETCH(int, key);
    Setting setting;
    setting.model.setItem(0, 1, new QStandardItem(u"2"_s));
    setting.model.setItem(1, 1, new QStandardItem(u"3"_s));
    setting.model.setItem(2, 1, new QStandardItem(u"1"_s));
    QVERIFY(setting.enter());
    setting.press(Qt::Key_Right);
    setting.press(Qt::Key(key));
    QCOMPARE(setting.sorting(), u"B+"_s);
    QCOMPARE(setting.model.item(0, 1)->text(), u"1"_s);
    setting.press(Qt::Key(key));
    QCOMPARE(setting.sorting(), u"B-"_s);
    QCOMPARE(setting.model.item(0, 1)->text(), u"3"_s);
    setting.press(Qt::Key(key));
    QCOMPARE(setting.sorting(), u"B+"_s);
}

void ColumnHeaderViewTest::sortsNothingWhereNothingIsSorted()
{
    Setting setting;
    setting.table.setSortingEnabled(false);
    const QSignalSpy turned(&setting.header, &QHeaderView::sortIndicatorChanged);
    QVERIFY(setting.enter());
    setting.press(Qt::Key_Right);
    setting.press(Qt::Key_Space);
    QCOMPARE(turned.size(), 0);
    QCOMPARE(setting.chosen(), u"B"_s);
}

void ColumnHeaderViewTest::movesTheChosenColumn()
{
    Setting setting;
    QVERIFY(setting.enter());
    setting.press(Qt::Key_Right, Qt::ControlModifier);
    setting.press(Qt::Key_Right, Qt::ControlModifier);
    QCOMPARE(setting.columns(), u"BCAD"_s);
    QCOMPARE(setting.chosen(), u"A"_s);
    setting.press(Qt::Key_Left, Qt::ControlModifier);
    QCOMPARE(setting.columns(), u"BACD"_s);
}

void ColumnHeaderViewTest::movesNothingThatCannotBeMoved()
{
    Setting setting;
    setting.header.setSectionsMovable(false);
    QVERIFY(setting.enter());
    setting.press(Qt::Key_Right, Qt::ControlModifier);
    QCOMPARE(setting.columns(), u"ABCD"_s);
    QCOMPARE(setting.chosen(), u"A"_s);
}

void ColumnHeaderViewTest::changesTheWidthOfTheChosenColumn()
{
    Setting setting;
    QVERIFY(setting.enter());
    const int before = setting.table.columnWidth(0);
    setting.press(Qt::Key_Right, Qt::ShiftModifier);
    QVERIFY(setting.table.columnWidth(0) > before);
    setting.press(Qt::Key_Left, Qt::ShiftModifier);
    QCOMPARE(setting.table.columnWidth(0), before);
    for (int presses = 0; presses < 50; ++presses) {
        setting.press(Qt::Key_Left, Qt::ShiftModifier);
    }
    QCOMPARE(setting.table.columnWidth(0), setting.header.minimumSectionSize());
}

void ColumnHeaderViewTest::leavesAWidthThatIsFixed()
{
    Setting setting;
    QVERIFY(setting.enter());
    setting.header.setSectionResizeMode(0, QHeaderView::Fixed);
    const QSignalSpy resized(&setting.header, &QHeaderView::sectionResized);
    setting.press(Qt::Key_Right, Qt::ShiftModifier);
    QCOMPARE(resized.size(), 0);
}

void ColumnHeaderViewTest::goesTheOtherWayFromRightToLeft()
{
    Setting setting;
    setting.table.setLayoutDirection(Qt::RightToLeft);
    QVERIFY(setting.enter());
    setting.press(Qt::Key_Left);
    QCOMPARE(setting.chosen(), u"B"_s);
    setting.press(Qt::Key_Left, Qt::ControlModifier);
    QCOMPARE(setting.columns(), u"ACBD"_s);
    const int before = setting.table.columnWidth(1);
    setting.press(Qt::Key_Right, Qt::ShiftModifier);
    QVERIFY(setting.table.columnWidth(1) > before);
    setting.press(Qt::Key_Right);
    QCOMPARE(setting.chosen(), u"C"_s);
}

void ColumnHeaderViewTest::bringsTheChosenColumnIntoSight_data()
{
    QTest::addColumn<QAbstractItemView::ScrollMode>("mode");
    QTest::addColumn<int>("rows");
    QTest::newRow("by columns") << QAbstractItemView::ScrollPerItem << 3;
    QTest::newRow("by pixels") << QAbstractItemView::ScrollPerPixel << 3;
    QTest::newRow("without rows") << QAbstractItemView::ScrollPerPixel << 0;
}

void ColumnHeaderViewTest::bringsTheChosenColumnIntoSight()
{
    QFETCH(QAbstractItemView::ScrollMode, mode);
    QFETCH(int, rows);
    Setting setting(20, rows);
    setting.table.setHorizontalScrollMode(mode);
    setting.header.hideSection(1);
    QVERIFY(setting.enter());
    QTRY_VERIFY_WITH_TIMEOUT(setting.table.horizontalScrollBar()->maximum() > 0, patience);
    const auto isInSight = [&setting] {
        const int left = setting.header.sectionViewportPosition(setting.header.chosenColumn());
        return left >= 0 && left + 20 < setting.header.width();
    };
    setting.press(Qt::Key_End);
    QVERIFY(isInSight());
    setting.press(Qt::Key_Home);
    QVERIFY(isInSight());
    for (int presses = 0; presses < 10; ++presses) {
        setting.press(Qt::Key_Right);
        QVERIFY(isInSight());
    }
}

void ColumnHeaderViewTest::bringsTheLastPixelIntoSight()
{
    Setting setting;
    setting.table.setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    QVERIFY(setting.enter());
    const int room = setting.header.viewport()->width();
    setting.header.resizeSection(0, 100);
    setting.header.resizeSection(1, room - 100 + 1);
    QTRY_VERIFY_WITH_TIMEOUT(setting.table.horizontalScrollBar()->maximum() > 100, patience);
    setting.press(Qt::Key_Right);
    QVERIFY(setting.header.sectionViewportPosition(1) + setting.header.sectionSize(1) <= room);
}

void ColumnHeaderViewTest::framesTheChosenColumn()
{
    Setting setting;
    setting.table.setFocus();
    QVERIFY(QTest::qWaitForWindowActive(&setting.table, patience));
    const QImage without = setting.header.grab().toImage();
    QVERIFY(setting.enter());
    const QImage atFirst = setting.header.grab().toImage();
    setting.press(Qt::Key_Right);
    const QImage atSecond = setting.header.grab().toImage();
    QVERIFY(without != atFirst);
    QVERIFY(atFirst != atSecond);
    setting.press(Qt::Key_Tab, Qt::ShiftModifier);
    QCOMPARE(setting.header.grab().toImage(), without);
}

void ColumnHeaderViewTest::saysWhichColumnIsChosen()
{
    Setting setting;
    QVERIFY(!setting.header.accessibleName().isEmpty());
    QVERIFY(setting.enter());
    setting.press(Qt::Key_Right);
    QCOMPARE(setting.header.accessibleDescription(), u"B"_s);
    setting.press(Qt::Key_Space);
    QCOMPARE(setting.header.accessibleDescription(), u"B, sorted ascending"_s);
    setting.press(Qt::Key_Space);
    QCOMPARE(setting.header.accessibleDescription(), u"B, sorted descending"_s);
}

void ColumnHeaderViewTest::opensItsMenu_data()
{
    QTest::addColumn<QString>("way");
    QTest::newRow("the right mouse button") << u"mouse"_s;
    QTest::newRow("the menu key") << u"menu key"_s;
    QTest::newRow("Alt and Down") << u"Alt+Down"_s;
}

// By a key it opens below the chosen column, wherever the mouse is.
void ColumnHeaderViewTest::opensItsMenu()
{
    QFETCH(QString, way);
    Setting setting;
    QVERIFY(setting.enter());
    setting.press(Qt::Key_Right);
    const QPoint click(7, 5);
    const QPoint below(setting.header.sectionViewportPosition(1), setting.header.viewport()->height() - 1);
    QPoint place;
    const auto opens = [&] {
        if (way == u"mouse"_s) {
            QContextMenuEvent event(QContextMenuEvent::Mouse, click, setting.header.viewport()->mapToGlobal(click));
            QCoreApplication::sendEvent(setting.header.viewport(), &event);
        } else if (way == u"menu key"_s) {
            ZelkoConsole::operatorhands::pressMenuKey();
        } else {
            setting.press(Qt::Key_Down, Qt::AltModifier);
        }
    };
    QCOMPARE(setting.menuAfter(opens, [&](const QMenu& menu) { place = menu.pos(); }), u"Sort By Columns"_s);
    QCOMPARE(place, setting.header.viewport()->mapToGlobal(way == u"mouse"_s ? click : below));
}

void ColumnHeaderViewTest::sortsByItsMenu()
{
    Setting setting;
    setting.header.moveSection(2, 0);
    QVERIFY(setting.enter());
    const auto opens = [&setting] { setting.press(Qt::Key_Down, Qt::AltModifier); };
    setting.menuAfter(opens, [](QMenu& menu) {
        QTest::keyClick(&menu, Qt::Key_Down);
        QTest::keyClick(&menu, Qt::Key_Right);
        QMenu& sort = *menu.actions().constFirst()->menu();
        QCOMPARE(MenuAnswer::texts(sort),
                 (QStringList{u"C"_s, u"A"_s, u"B"_s, u"D"_s, u"-"_s, u"&Ascending"_s, u"D&escending"_s}));
        MenuAnswer::click(sort, Setting::entry(sort, u"Descending"_s));
    });
    setting.menuAfter(opens, [](QMenu& menu) {
        QTest::keyClick(&menu, Qt::Key_Down);
        QTest::keyClick(&menu, Qt::Key_Right);
        QMenu& sort = *menu.actions().constFirst()->menu();
        MenuAnswer::click(sort, Setting::entry(sort, u"B"_s));
    });
    QCOMPARE(setting.sorting(), u"B-"_s);
}

void ColumnHeaderViewTest::hidesAndShowsColumnsByItsMenu()
{
    Setting setting;
    QVERIFY(setting.enter());
    const auto opens = [&setting] { setting.press(Qt::Key_Down, Qt::AltModifier); };
    const auto toggles = [&](const QString& column) {
        setting.menuAfter(opens, [&](QMenu& menu) {
            QTest::keyClick(&menu, Qt::Key_Up);
            QTest::keyClick(&menu, Qt::Key_Right);
            QMenu& columns = *menu.actions().constLast()->menu();
            MenuAnswer::click(columns, Setting::entry(columns, column));
        });
        return setting.columns();
    };
    QCOMPARE(toggles(u"B"_s), u"ACD"_s);
    QCOMPARE(toggles(u"A"_s), u"CD"_s);
    QCOMPARE(setting.chosen(), u"C"_s);
    QCOMPARE(toggles(u"C"_s), u"D"_s);
    QCOMPARE(toggles(u"D"_s), u"D"_s); // the last one cannot be hidden
    QCOMPARE(toggles(u"B"_s), u"BD"_s);
}

void ColumnHeaderViewTest::asksForAReset()
{
    Setting setting;
    const QSignalSpy reset(&setting.header, &ColumnHeaderView::resetWanted);
    QVERIFY(setting.enter());
    setting.menuAfter([&setting] { setting.press(Qt::Key_Down, Qt::AltModifier); },
                      [](QMenu& menu) {
                          QTest::keyClick(&menu, Qt::Key_Up);
                          QTest::keyClick(&menu, Qt::Key_Right);
                          QMenu& columns = *menu.actions().constLast()->menu();
                          MenuAnswer::click(columns, Setting::entry(columns, u"Reset Columns"_s));
                      });
    QCOMPARE(reset.size(), 1);
}

void ColumnHeaderViewTest::leavesTheMenuToSomebodyElse()
{
    Setting setting;
    setting.header.setContextMenuPolicy(Qt::CustomContextMenu);
    const QSignalSpy wanted(&setting.header, &QWidget::customContextMenuRequested);
    QVERIFY(setting.enter());
    setting.press(Qt::Key_Right);
    setting.press(Qt::Key_Down, Qt::AltModifier);
    ZelkoConsole::operatorhands::pressMenuKey();
    QCOMPARE(wanted.size(), 2);
    QVERIFY(QApplication::activePopupWidget() == nullptr);
    for (const QList<QVariant>& arguments : wanted) {
        const QPoint place = arguments.constFirst().toPoint();
        QCOMPARE(setting.header.logicalIndexAt(place.x()), 1);
    }
}

void ColumnHeaderViewTest::opensNoMenuThatIsNotWanted()
{
    Setting setting;
    setting.header.setContextMenuPolicy(Qt::NoContextMenu);
    QVERIFY(setting.enter());
    setting.press(Qt::Key_Down, Qt::AltModifier);
    ZelkoConsole::operatorhands::pressMenuKey();
    QVERIFY(QApplication::activePopupWidget() == nullptr);
}

void ColumnHeaderViewTest::takesNoKeysWithoutColumns()
{
    Setting setting(0);
    setting.header.setFocus();
    QCOMPARE(setting.header.chosenColumn(), -1);
    for (const Qt::Key key : {Qt::Key_Left, Qt::Key_Right, Qt::Key_Home, Qt::Key_End, Qt::Key_Space}) {
        setting.press(key);
    }
    QCOMPARE(setting.header.chosenColumn(), -1);
}

void ColumnHeaderViewTest::leavesOtherKeysToTheTable()
{
    Setting setting;
    QVERIFY(setting.enter());
    setting.table.setCurrentIndex(setting.model.index(0, 0));
    setting.press(Qt::Key_Down);
    QCOMPARE(setting.table.currentIndex().row(), 1);
}

void ColumnHeaderViewTest::leavesTheEndsOfTheTableToTheTable()
{
    Setting setting;
    QVERIFY(setting.enter());
    setting.table.setCurrentIndex(setting.model.index(0, 0));
    setting.press(Qt::Key_End, Qt::ControlModifier);
    QCOMPARE(setting.table.currentIndex(), setting.model.index(2, 3));
    QCOMPARE(setting.chosen(), u"A"_s);
    setting.press(Qt::Key_Home, Qt::ControlModifier);
    QCOMPARE(setting.table.currentIndex(), setting.model.index(0, 0));
}

void ColumnHeaderViewTest::paintsWhatLooksDifferent()
{
    Setting setting;
    setting.header.setFixedHeight(30); // as high as it is with a picture
    QVERIFY(QTest::qWaitForWindowActive(&setting.table, patience));
    PaintedParts painted(setting);
    Q_EMIT setting.model.headerDataChanged(Qt::Horizontal, 0, 3);
    painted.settle();

    const QRect second(setting.header.sectionViewportPosition(1), 0, setting.header.sectionSize(1),
                       setting.header.viewport()->height());
    setting.model.setHeaderData(1, Qt::Horizontal, u"Other"_s);
    QCOMPARE(painted.take(), second);
    QPixmap mark(16, 16);
    mark.fill(Qt::red);
    setting.model.setHeaderData(1, Qt::Horizontal, QIcon(mark), Qt::DecorationRole);
    QCOMPARE(painted.take(), second);
    mark.fill(Qt::green);
    setting.model.setHeaderData(1, Qt::Horizontal, mark, Qt::DecorationRole);
    QCOMPARE(painted.take(), second);
}

void ColumnHeaderViewTest::paintsNothingForWhatLooksTheSame()
{
    Setting setting;
    setting.header.setFixedHeight(30);
    QVERIFY(QTest::qWaitForWindowActive(&setting.table, patience));
    QPixmap mark(16, 16);
    mark.fill(Qt::red);
    setting.model.setHeaderData(2, Qt::Horizontal, QIcon(mark), Qt::DecorationRole);
    PaintedParts painted(setting);
    painted.settle();
    for (int announcement = 0; announcement < 100; ++announcement) {
        Q_EMIT setting.model.headerDataChanged(Qt::Horizontal, 0, 3);
    }
    QCOMPARE(painted.take(), QRect());
}

void ColumnHeaderViewTest::showsTheSectionsOfAnotherModel()
{
    QStandardItemModel other(1, 2);
    Setting setting;
    QVERIFY(QTest::qWaitForWindowActive(&setting.table, patience));
    setting.model.setHeaderData(0, Qt::Horizontal, u"Late"_s);
    setting.table.setModel(&other);
    PaintedParts painted(setting);
    painted.settle();
    setting.model.setHeaderData(0, Qt::Horizontal, u"Nobody sees this"_s);
    QCOMPARE(painted.take(), QRect());
    other.setHeaderData(0, Qt::Horizontal, u"Sees this"_s);
    QVERIFY(!painted.take().isEmpty());
    setting.table.setModel(nullptr);
    letTurnsPass();
}

QTEST_MAIN(ColumnHeaderViewTest)
#include "tst_columnheaderview.moc"
