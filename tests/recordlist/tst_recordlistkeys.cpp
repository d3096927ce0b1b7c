#include "listsite.h"

#include <resources/zelkoicons.h>

#include <QAccessible>
#include <QHeaderView>
#include <QScrollBar>
#include <QToolBar>

using namespace Qt::StringLiterals;
using Controller = ZelkoGUI::IZelkoGUIController;

/// A record list that is worked with the keyboard alone, and its menus by either way.
class RecordListKeysTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { registerZelkoIcons(); }

    void triggersActionsByTheirShortcuts();
    void opensTheMenuWhereItIsClicked();
    void opensTheMenuByItsKeyAtTheCurrentCell();
    void opensTheMenuByItsKeyInSight();
    void resetsTheExtendedFilterByKeys_data();
    void resetsTheExtendedFilterByKeys();
    void isWalkedThroughByTheTabKey();
    void triggersActionsOfTheToolbarByKeys();
    void leavesTheKeysToTheRowsOnAClickInTheToolbar();
    void sortsAndHidesColumnsByKeys();
    void putsTheColumnsBack();
};

void RecordListKeysTest::triggersActionsByTheirShortcuts()
{
    ListSite site(ListSite::Options(32));
    site.activate();
    site.click(1);
    site.controller->take();
    const QKeySequence keys = site.controller->recordAction(Controller::UserActionRename)->shortcut();
    QTest::keySequence(&*site.widget, keys);
    QCOMPARE(site.controller->take().value(0), u"rename B"_s);
}

// A header's height and width off the pointer.
void RecordListKeysTest::opensTheMenuWhereItIsClicked()
{
    ListSite site;
    const QPoint clicked = site.view.visualRect(site.view.model()->index(3, 1)).center();
    QPoint place;
    QVERIFY(withMenuOf(site, 3, [&](const QMenu& menu) { place = menu.pos(); }));
    QCOMPARE(place, site.view.mapToGlobal(clicked));
}

// The mouse was elsewhere last.
void RecordListKeysTest::opensTheMenuByItsKeyAtTheCurrentCell()
{
    ListSite site;
    site.activate();
    site.widget->setFocusOnList();
    site.click(1);
    QTest::keyClick(&site.view, Qt::Key_Down);
    QTest::keyClick(&site.view, Qt::Key_Down);
    QCOMPARE(site.view.currentIndex().row(), 3);
    QPoint place;
    const MenuAnswer menu([&place](const QMenu& popup) { place = popup.pos(); });
    ZelkoConsole::operatorhands::pressMenuKey();
    QVERIFY(menu.wasGiven());
    QCOMPARE(place, site.view.mapToGlobal(site.view.visualRect(site.view.currentIndex()).center()));
}

void RecordListKeysTest::opensTheMenuByItsKeyInSight()
{
    ListSite site(ListSite::everything, 60);
    site.activate();
    site.widget->setFocusOnList();
    site.click(1);
    QTRY_VERIFY_WITH_TIMEOUT(site.view.verticalScrollBar()->maximum() > 20, patience);
    site.view.verticalScrollBar()->setValue(20);
    QPoint place;
    const MenuAnswer menu([&place](const QMenu& popup) { place = popup.pos(); });
    ZelkoConsole::operatorhands::pressMenuKey();
    QVERIFY(menu.wasGiven());
    QVERIFY(site.view.rect().contains(site.view.mapFromGlobal(place)));
}

void RecordListKeysTest::resetsTheExtendedFilterByKeys_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<Qt::KeyboardModifiers>("held");
    QTest::newRow("Down") << int(Qt::Key_Down) << Qt::KeyboardModifiers();
    QTest::newRow("Alt and Down") << int(Qt::Key_Down) << Qt::KeyboardModifiers(Qt::AltModifier);
    QTest::newRow("the menu key") << int(Qt::Key_Menu) << Qt::KeyboardModifiers();
}

void RecordListKeysTest::resetsTheExtendedFilterByKeys()
{
    QFETCH(int, key);
    QFETCH(Qt::KeyboardModifiers, held);
    ListSite site;
    site.filterByDialog(u"of B"_s);
    site.part<QDialog>("ExtendedFilterDialog")->close();
    site.activate();
    auto* const button = site.part<QToolButton>("ShowExtendedFilterButton");
    button->setFocus();
    QPoint place;
    const MenuAnswer answer([&place](QMenu& menu) {
        place = menu.pos();
        QTest::keyClick(&menu, Qt::Key_Down);
        QTest::keyClick(&menu, Qt::Key_Return);
    });
    if (key == Qt::Key_Menu) {
        ZelkoConsole::operatorhands::pressMenuKey();
    } else {
        QTest::keyClick(button, Qt::Key(key), held);
    }
    QVERIFY(answer.wasGiven());
    QCOMPARE(site.shown(), u"A B C D E"_s);
    QVERIFY(button->rect().contains(button->mapFromGlobal(place)));
}

// From the table through all its parts, and none is passed over that can be used.
void RecordListKeysTest::isWalkedThroughByTheTabKey()
{
    ListSite site;
    site.click(1);
    site.controller->recordAction(Controller::UserActionHistory)->setEnabled(false);
    site.activate();
    site.widget->setFocusOnList();
    QStringList way;
    for (QWidget* at = &site.view; way.isEmpty() || at != &site.view; at = QApplication::focusWidget()) {
        const QString name = QAccessible::queryAccessibleInterface(at)->text(QAccessible::Name);
        QVERIFY2(!name.isEmpty(), qPrintable(way.join(u' ')));
        way << (at->parentWidget() == site.part<QToolBar>("ActionToolbar") ? name + u'>'
                : at == site.view.horizontalHeader()                       ? u"header"_s
                                                                           : at->objectName());
        QTest::keyClick(at, Qt::Key_Tab);
        QVERIFY2(way.size() < 30, qPrintable(way.join(u' ')));
    }
    const auto buttons = way.removeIf([](const QString& part) { return part.endsWith(u'>'); });
    QCOMPARE(
        way.join(u' '),
        (u"RecordTableView header ShowExtendedFilterButton TextEdit PatternSyntaxCombobox CaseSensitiveCheckbox"_s));
    const QList<QAction*> actions = site.part<QToolBar>("ActionToolbar")->actions();
    const auto usable = std::count_if(actions.begin(), actions.end(), [](const QAction* action) {
        return action->isEnabled() && !action->isSeparator();
    });
    QCOMPARE(buttons, usable);
    QVERIFY(usable > 3);
}

void RecordListKeysTest::triggersActionsOfTheToolbarByKeys()
{
    ListSite site;
    site.activate();
    site.click(1);
    site.controller->take();
    auto* const button = site.part<QToolBar>("ActionToolbar")
                             ->widgetForAction(site.controller->recordAction(Controller::UserActionRename));
    for (QWidget* at = &site.view; at != button; at = QApplication::focusWidget()) {
        QTest::keyClick(at, Qt::Key_Tab);
        QVERIFY(!site.part<QWidget>("ShowExtendedFilterButton")->hasFocus());
    }
    QTest::keyClick(button, Qt::Key_Space);
    QCOMPARE(site.controller->take().value(0), u"rename B"_s);
}

void RecordListKeysTest::leavesTheKeysToTheRowsOnAClickInTheToolbar()
{
    ListSite site;
    site.activate();
    site.widget->setFocusOnList();
    site.click(1);
    QTest::mouseClick(site.part<QToolBar>("ActionToolbar")
                          ->widgetForAction(site.controller->recordAction(Controller::UserActionReset)),
                      Qt::LeftButton);
    QVERIFY(site.view.hasFocus());
}

void RecordListKeysTest::sortsAndHidesColumnsByKeys()
{
    ListSite site;
    site.activate();
    site.widget->setFocusOnList();
    QTest::keyClick(&site.view, Qt::Key_Tab);
    QHeaderView* const header = site.view.horizontalHeader();
    QVERIFY(header->hasFocus());
    QTest::keyClick(header, Qt::Key_Space);
    QCOMPARE(site.shown(), u"E D C B A"_s);
    const MenuAnswer answer([](QMenu& menu) {
        QTest::keyClick(&menu, Qt::Key_Up);
        QTest::keyClick(&menu, Qt::Key_Right);
        QMenu& columns = *menu.actions().constLast()->menu();
        QTest::keyClick(&columns, Qt::Key_Return); // the first one
    });
    QTest::keyClick(header, Qt::Key_Down, Qt::AltModifier);
    QTRY_VERIFY_WITH_TIMEOUT(answer.wasGiven(), patience);
    QVERIFY(site.view.isColumnHidden(ListedRecords::NameColumn));
}

void RecordListKeysTest::putsTheColumnsBack()
{
    ListSite site;
    site.activate();
    QHeaderView* const header = site.view.horizontalHeader();
    const int width = header->sectionSize(3);
    header->moveSection(2, 0);
    header->hideSection(5);
    header->resizeSection(3, 300);
    header->setFocus();
    const MenuAnswer answer([](QMenu& menu) {
        QTest::keyClick(&menu, Qt::Key_Up);
        QTest::keyClick(&menu, Qt::Key_Right);
        QMenu& columns = *menu.actions().constLast()->menu();
        QTest::keyClick(&columns, Qt::Key_Up); // the last one
        QTest::keyClick(&columns, Qt::Key_Return);
    });
    QTest::keyClick(header, Qt::Key_Down, Qt::AltModifier);
    QTRY_VERIFY_WITH_TIMEOUT(answer.wasGiven(), patience);
    QCOMPARE(header->visualIndex(2), 2);
    QVERIFY(!header->isSectionHidden(5));
    QCOMPARE(header->sectionSize(3), width);
}

QTEST_MAIN(RecordListKeysTest)
#include "tst_recordlistkeys.moc"
