#include "listsite.h"

#include "scriptedcondition.h"

#include <resources/zelkoicons.h>
#include <zelkoguibase/filter/multifiltersortproxymodel.h>
#include <zelkoguibase/filter/stringfiltercondition.h>
#include <zelkoguibase/recordlist/selectheaderview.h>

#include <QAbstractItemModelTester>
#include <QBoxLayout>
#include <QClipboard>
#include <QHeaderView>
#include <QToolBar>
#include <QToolTip>

using namespace Qt::StringLiterals;
using Controller = ZelkoGUI::IZelkoGUIController;
using Widget = RecordListWidget;
using ZelkoGUI::Filter::StringFilterCondition;

namespace {

const char* const partNames[] = {"RecordTableView",           "ActionToolbar",        "RecordNameFilterWidget",
                                 "ShowExtendedFilterButton",  "ExtendedFilterDialog", "RecordCountLabel",
                                 "ActiveDeviceLabel",         "LoadProgressLabel",    "LoadProgressBar",
                                 "RecordListWidgetPopupMenu", "CopyToClipboardMenu"};

/// The object names of the parts that a widget has, in the order of the table above.
QString partsOf(const Widget& widget)
{
    QStringList parts;
    for (const char* const name : partNames) {
        if (widget.findChild<QWidget*>(QLatin1String(name))) {
            parts << QLatin1String(name);
        }
    }
    return parts.join(u' ');
}

/// "name:stretch" for each thing in a layout, in brackets for a layout in it, "|" for a stretch.
QString arrangementOf(const QBoxLayout& layout)
{
    QStringList parts;
    for (int at = 0; at < layout.count(); ++at) {
        const QLayoutItem& item = *layout.itemAt(at);
        const auto* const inner = qobject_cast<const QBoxLayout*>(const_cast<QLayoutItem&>(item).layout());
        const QString name = inner ? u'(' + arrangementOf(*inner) + u')'
                             : const_cast<QLayoutItem&>(item).widget()
                                 ? const_cast<QLayoutItem&>(item).widget()->objectName()
                                 : u"|"_s;
        parts << name + u':' + QString::number(layout.stretch(at));
    }
    return parts.join(u' ');
}

QString arrangementOf(const Widget& widget)
{
    return arrangementOf(*qobject_cast<QBoxLayout*>(widget.layout()));
}

QAction* actionOf(const QMenu& menu, const QString& name)
{
    return menu.findChild<QAction*>(name);
}

QString clipboardText()
{
    return QGuiApplication::clipboard()->text();
}

} // namespace

class RecordListWidgetTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { registerZelkoIcons(); }

    void hasThePartsOfItsOptions_data();
    void hasThePartsOfItsOptions();
    void standsInRows_data();
    void standsInRows();
    void isATableThatCanBeSortedAndRearranged();
    void sortsByTheKeysOfTheColumns();
    void marksSelectedRowsInTheHeader();
    void becomesTheDialogParent();
    void keepsColumnsUnderItsName_data();
    void keepsColumnsUnderItsName();

    void barsActionsWithoutAnIconFromTheToolbar();
    void opensTheMenuOfActionsWithAClick();
    void hasNoMenuWithoutActions();
    void headsAMenuOfColumnsAlone();
    void offersEachColumnToBeCopied();
    void copiesAColumn();
    void copiesAllColumns();
    void copiesNothingOfWhatIsGone();
    void countsWhatIsToBeCopied();

    void filtersNames();
    void saysThatAllIsFilteredOut();
    void saysThatNothingIsThereInNoWords();
    void coversTheRowsWithWhatItSays();
    void followsTheExtendedFilter();
    void resetsTheExtendedFilterByItsMenu();
    void hasNoMenuForAFilterThatIsNotActive();
    void bringsTheExtendedFilterBack();
    void switchesTheInterfaceFilter();
    void keepsFixedFilters();
    void replacesFixedFilters();
    void leavesAFixedFilterThatStays();
    void forgetsAFixedFilterThatDies();

    void countsRecords();
    void countsAfterALargeChange();
    void showsTheDevice_data();
    void showsTheDevice();
    void aLongDeviceNameNeverWidensTheWindow();
    void followsTheDevice();
    void showsTheProgress_data();
    void showsTheProgress();
    void takesAnotherListOfTheController();
    void takesAnotherListWhenTheOldOneIsGone();
    void isEmptyWhenItsListIsGone();
    void isNamedForThoseWhoCannotSeeIt();
};

void RecordListWidgetTest::hasThePartsOfItsOptions_data()
{
    QTest::addColumn<int>("options");
    QTest::addColumn<QString>("parts");
    const auto row = [](const char* name, int options, const QString& parts) {
        QTest::newRow(name) << options << (u"RecordTableView"_s + (parts.isEmpty() ? u""_s : u" "_s) + parts);
    };
    row("nothing but the table", 0, {});
    row("a toolbar", 1, u"ActionToolbar"_s);
    row("a name filter", 2, u"RecordNameFilterWidget"_s);
    row("an extended filter", 4, u"ShowExtendedFilterButton ExtendedFilterDialog"_s);
    row("a device label", 8, u"ActiveDeviceLabel"_s);
    row("a load progress", 16, u"LoadProgressLabel LoadProgressBar"_s);
    row("a menu of actions", 32, u"RecordListWidgetPopupMenu"_s);
    row("a menu of columns", 64, u"RecordListWidgetPopupMenu"_s);
    row("a menu of both", 96, u"RecordListWidgetPopupMenu CopyToClipboardMenu"_s);
    row("a count", 256, u"RecordCountLabel"_s);
    row("everything", 1023,
        u"ActionToolbar RecordNameFilterWidget ShowExtendedFilterButton ExtendedFilterDialog RecordCountLabel "
        "ActiveDeviceLabel LoadProgressLabel LoadProgressBar RecordListWidgetPopupMenu CopyToClipboardMenu"_s);
}

void RecordListWidgetTest::hasThePartsOfItsOptions()
{
    QFETCH(int, options);
    ListSite site{ListSite::Options(QFlag(options))};
    QTEST(partsOf(*site.widget), "parts");
}

void RecordListWidgetTest::standsInRows_data()
{
    QTest::addColumn<int>("options");
    QTest::addColumn<QString>("arrangement");
    QTest::newRow("nothing but the table") << 0 << u"RecordTableView:1"_s;
    QTest::newRow("a toolbar beside the table") << 1 << u"(ActionToolbar:0 RecordTableView:1):1"_s;
    QTest::newRow("the progress below the table")
        << 16 << u"RecordTableView:1 (LoadProgressLabel:0 LoadProgressBar:1):0"_s;
    QTest::newRow("a filter button and a device on either side")
        << 12 << u"RecordTableView:1 (ShowExtendedFilterButton:0 |:1 ActiveDeviceLabel:0):0"_s;
    QTest::newRow("a count alone") << 256 << u"RecordTableView:1 (RecordCountLabel:0 |:1):0"_s;
    QTest::newRow("everything")
        << 1023
        << u"(ActionToolbar:0 RecordTableView:1):1 (LoadProgressLabel:0 LoadProgressBar:1):0 "
           "(ShowExtendedFilterButton:0 RecordCountLabel:0 RecordNameFilterWidget:1 ActiveDeviceLabel:0):0"_s;
}

void RecordListWidgetTest::standsInRows()
{
    QFETCH(int, options);
    ListSite site{ListSite::Options(QFlag(options))};
    QTEST(arrangementOf(*site.widget), "arrangement");
}

void RecordListWidgetTest::isATableThatCanBeSortedAndRearranged()
{
    ListSite site(ListSite::Options(0));
    QVERIFY(site.view.isSortingEnabled());
    QVERIFY(site.view.horizontalHeader()->sectionsMovable());
    QVERIFY(site.view.alternatingRowColors());
    QVERIFY(!site.view.wordWrap());
    QVERIFY(site.view.verticalHeader()->isHidden());
    QCOMPARE(site.view.textElideMode(), Qt::ElideRight);
    QCOMPARE(site.view.selectionBehavior(), QAbstractItemView::SelectRows);
    QCOMPARE(site.view.selectionMode(), QAbstractItemView::SingleSelection);
    QCOMPARE(ListSite(ListSite::Options(128)).view.selectionMode(), QAbstractItemView::ExtendedSelection);
}

void RecordListWidgetTest::sortsByTheKeysOfTheColumns()
{
    ListSite site(ListSite::everything, 0);
    const QAbstractItemModelTester tester(site.view.model());
    site.model.add(makeRecord(u"A"_s, 5, 900));
    site.model.add(makeRecord(u"B"_s, 5, 20'000'000));
    site.model.add(makeRecord(u"C"_s, 5, 1'000));
    ZelkoConsole::operatorhands::clickHeader(site.view, ListedRecords::SizeColumn);
    const QString first = site.shown();
    ZelkoConsole::operatorhands::clickHeader(site.view, ListedRecords::SizeColumn);
    QCOMPARE((QStringList{first, site.shown()}), (QStringList{u"A C B"_s, u"B C A"_s}));
    site.model.add(makeRecord(u"D"_s, 5, 1'000'000));
    QCOMPARE(site.shown(), u"B D C A"_s);
}

void RecordListWidgetTest::marksSelectedRowsInTheHeader()
{
    ListSite site;
    QVERIFY(qobject_cast<ZelkoGUI::SelectHeaderView*>(site.view.verticalHeader()));
    QVERIFY(site.view.verticalHeader()->isVisible());
    QTest::mouseClick(site.view.verticalHeader()->viewport(), Qt::LeftButton, Qt::NoModifier,
                      {5, site.view.rowViewportPosition(2) + 5});
    QCOMPARE(site.widget->selectedRecords(), QStringList(u"C"_s));
}

void RecordListWidgetTest::becomesTheDialogParent()
{
    ListSite site(ListSite::Options(0));
    QCOMPARE(site.controller->dialogParent(), &*site.widget);
}

void RecordListWidgetTest::keepsColumnsUnderItsName_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("key");
    QTest::newRow("a name") << u"Archive"_s << u"Archive"_s;
    QTest::newRow("no name") << QString() << u"RecordListWidget"_s;
}

void RecordListWidgetTest::keepsColumnsUnderItsName()
{
    QFETCH(QString, name);
    QFETCH(QString, key);
    const OwnConfiguration configuration;
    ListedRecords model;
    ListController controller(&model);
    const auto make = [&](const QString& objectName) {
        return std::make_unique<Widget>(&controller, ListSite::Options(0), ListSite::Columns(), nullptr, objectName);
    };
    const auto header = [](const Widget& widget) { return widget.findChild<QTableView*>()->horizontalHeader(); };
    auto widget = make(name);
    header(*widget)->resizeSection(3, 222);
    header(*widget)->moveSection(0, 5);
    header(*widget)->hideSection(4);
    widget.reset();
    QVERIFY(CfgCenter::GetAppCfg(ICfg::UserView)
                ->OpenGroup(u"ColumnStatus"_s, ICfg::Access::Read)
                ->GetString(key, {})
                .contains(u"3:222:shown"_s));
    widget = make(name);
    QCOMPARE(header(*widget)->sectionSize(3), 222);
    QCOMPARE(header(*widget)->visualIndex(0), 5);
    QVERIFY(header(*widget)->isSectionHidden(4));
    QVERIFY(!header(*make(u"Another"_s))->isSectionHidden(4));
}

void RecordListWidgetTest::barsActionsWithoutAnIconFromTheToolbar()
{
    ListedRecords model;
    ListController controller(&model, Controller::UserActionRename | Controller::UserActionDelete);
    controller.recordAction(Controller::UserActionDelete)->setIcon(QIcon());
    Widget widget(&controller, ListSite::everything, ListSite::allColumns, nullptr, u"Records"_s);
    const auto* const toolbar = widget.findChild<QToolBar*>(u"ActionToolbar"_s);
    QCOMPARE(toolbar->orientation(), Qt::Vertical);
    QCOMPARE(toolbar->actions(), QList<QAction*>{controller.recordAction(Controller::UserActionRename)});
    const auto* const menu = widget.findChild<QMenu*>(u"RecordListWidgetPopupMenu"_s);
    QCOMPARE(menu->actions().first(2), controller.recordActions());
}

void RecordListWidgetTest::opensTheMenuOfActionsWithAClick()
{
    ListSite site;
    site.click(1);
    site.controller->take();
    QVERIFY(withMenuOf(site, 1, [&](QMenu& menu) {
        QCOMPARE(menu.actions().first(10), site.controller->recordActions());
        QCOMPARE(MenuAnswer::texts(menu).last(2), (QStringList{u"-"_s, u"Copy to Clipboard (1)"_s}));
        MenuAnswer::click(menu, site.controller->recordAction(Controller::UserActionReset));
    }));
    QCOMPARE(site.controller->take().value(0), u"reset B"_s);
}

void RecordListWidgetTest::hasNoMenuWithoutActions()
{
    ListSite site(ListSite::Options(33), 5, {});
    QCOMPARE(partsOf(*site.widget), u"RecordTableView"_s);
    QCOMPARE(site.view.contextMenuPolicy(), Qt::DefaultContextMenu);
}

void RecordListWidgetTest::headsAMenuOfColumnsAlone()
{
    ListSite site(ListSite::Options(32 | 64), 5, {});
    site.click(1);
    QVERIFY(withMenuOf(site, 1, [&](QMenu& menu) {
        const QStringList texts = MenuAnswer::texts(menu);
        QCOMPARE(texts.first(3), (QStringList{u"Copy to Clipboard"_s, u"-"_s, u"Name"_s}));
        QCOMPARE(texts.size(), 2 + ListedRecords::ColumnCount + 1);
        QVERIFY(!menu.actions().constFirst()->isEnabled());
        MenuAnswer::click(menu, actionOf(menu, u"Copy_Name_toClipboard"_s));
    }));
    QCOMPARE(clipboardText(), u"name of B"_s);
}

void RecordListWidgetTest::offersEachColumnToBeCopied()
{
    ListSite site;
    const auto* const menu = site.part<QMenu>("CopyToClipboardMenu");
    const QList<QAction*> actions = menu->actions();
    QCOMPARE(actions.size(), ListedRecords::ColumnCount + 1);
    for (int column = 0; column < ListedRecords::ColumnCount; ++column) {
        const QString text = site.model.headerData(column, Qt::Horizontal).toString();
        QCOMPARE(actions[column]->text(), text);
        QCOMPARE(actions[column]->objectName(), u"Copy_%1_toClipboard"_s.arg(text));
        QCOMPARE(actions[column]->data(), QVariant(column));
        QVERIFY(!actions[column]->font().bold());
    }
    QCOMPARE(actions.last()->text(), u"All Columns"_s);
    QCOMPARE(actions.last()->objectName(), u"Copy_All_toClipboard"_s);
    QCOMPARE(actions.last()->data(), QVariant(-1));
    QVERIFY(actions.last()->font().bold());
}

void RecordListWidgetTest::copiesAColumn()
{
    ListSite site;
    site.click(3);
    site.click(1, Qt::ControlModifier);
    auto* const menu = site.part<QMenu>("CopyToClipboardMenu");
    QVERIFY(withMenuOf(site, 1, [&](QMenu& popup) {
        QTest::keyClick(&popup, Qt::Key_Up); // the last entry
        QTest::keyClick(&popup, Qt::Key_Right);
        QVERIFY(menu->isVisible());
        MenuAnswer::click(*menu, actionOf(*menu, u"Copy_Record ID_toClipboard"_s));
    }));
    QCOMPARE(clipboardText(), u"D\r\nB"_s);
    QVERIFY(!QGuiApplication::overrideCursor());
}

void RecordListWidgetTest::copiesAllColumns()
{
    ListSite site;
    site.click(3);
    site.click(1, Qt::ControlModifier);
    actionOf(*site.part<QMenu>("CopyToClipboardMenu"), u"Copy_All_toClipboard"_s)->trigger();
    QStringList lines;
    for (const int row : {3, 1}) {
        QStringList cells;
        for (int column = 0; column < ListedRecords::ColumnCount; ++column) {
            cells << site.model.index(row, column).data().toString();
        }
        lines << cells.join(u';');
    }
    QCOMPARE(clipboardText(), lines.join(u"\r\n"_s));
    QVERIFY(lines.constFirst().startsWith(u"name of D;"_s));
}

// All rows went, and the selection is told with the next news of the device.
void RecordListWidgetTest::copiesNothingOfWhatIsGone()
{
    ListSite site;
    site.click(3);
    site.model.replace({});
    actionOf(*site.part<QMenu>("CopyToClipboardMenu"), u"Copy_All_toClipboard"_s)->trigger();
    QCOMPARE(clipboardText(), QString());
}

void RecordListWidgetTest::countsWhatIsToBeCopied()
{
    ListSite site;
    const auto* const menu = site.part<QMenu>("CopyToClipboardMenu");
    QCOMPARE(menu->title(), u"Copy to Clipboard"_s);
    QVERIFY(!menu->isEnabled());
    site.click(3);
    site.click(1, Qt::ControlModifier);
    QCOMPARE(menu->title(), u"Copy to Clipboard (2)"_s);
    QVERIFY(menu->isEnabled());
    site.controller->sl_selectedRecordsChanged({u"A"_s, u"B"_s, u"C"_s});
    QCOMPARE(menu->title(), u"Copy to Clipboard (3)"_s);
    site.controller->sl_selectedRecordsChanged({});
    QCOMPARE(menu->title(), u"Copy to Clipboard"_s);
    QVERIFY(!menu->isEnabled());
}

void RecordListWidgetTest::filtersNames()
{
    ListSite site;
    site.filterNames(u"OF d"_s);
    QCOMPARE(site.shown(), u"D"_s);
    QVERIFY(site.view.model()->headerData(0, Qt::Horizontal, Qt::DecorationRole).isValid());
    site.filterNames({});
    QCOMPARE(site.shown(), u"A B C D E"_s);
}

void RecordListWidgetTest::saysThatAllIsFilteredOut()
{
    ListSite site;
    const auto* const note = site.part<QLabel>("FilteredOutNote");
    QVERIFY(note->isHidden());
    site.filterNames(u"nothing"_s);
    QVERIFY(note->isVisible());
    QCOMPARE(note->text(), u"The filter hides all 5 recordings of this list."_s);
    site.model.add(makeRecord(u"F"_s));
    QCOMPARE(note->text(), u"The filter hides all 6 recordings of this list."_s);
    site.model.replace({u"A"_s});
    QCOMPARE(note->text(), u"The filter hides the one recording of this list."_s);
    site.filterNames(u"n"_s);
    QVERIFY(note->isHidden());
}

void RecordListWidgetTest::saysThatNothingIsThereInNoWords()
{
    ListSite site;
    const auto* const note = site.part<QLabel>("FilteredOutNote");
    site.filterNames(u"nothing"_s);
    site.model.replace({});
    QVERIFY(note->isHidden());
    site.model.add(makeRecord(u"A"_s));
    QVERIFY(note->isVisible());
}

void RecordListWidgetTest::coversTheRowsWithWhatItSays()
{
    ListSite site;
    const auto* const note = site.part<QLabel>("FilteredOutNote");
    site.filterNames(u"nothing"_s);
    QTRY_COMPARE_WITH_TIMEOUT(note->geometry(), site.view.viewport()->geometry(), patience);
    site.view.window()->resize(500, 300);
    QTRY_COMPARE_WITH_TIMEOUT(note->geometry(), site.view.viewport()->geometry(), patience);
    site.view.horizontalHeader()->hide();
    QTRY_COMPARE_WITH_TIMEOUT(note->geometry(), site.view.viewport()->geometry(), patience);
}

void RecordListWidgetTest::followsTheExtendedFilter()
{
    ListSite site;
    const auto* const button = site.part<QToolButton>("ShowExtendedFilterButton");
    QCOMPARE(button->toolTip(), u"Set extended filter settings..."_s);
    const auto usual = button->icon().pixmap(24).toImage();
    QCOMPARE(usual, QIcon(u":/Filter/Icons/Filter.svg"_s).pixmap(24).toImage());
    site.filterByDialog(u"of B"_s);
    QCOMPARE(site.shown(), u"B"_s);
    QCOMPARE(button->toolTip(), u"Change extended filter settings..."_s);
    QCOMPARE(button->icon().pixmap(24).toImage(), QIcon(u":/Filter/Icons/FilterActive.svg"_s).pixmap(24).toImage());
    site.filterByDialog({});
    QCOMPARE(button->toolTip(), u"Set extended filter settings..."_s);
    QCOMPARE(button->icon().pixmap(24).toImage(), usual);
    site.filterByDialog(u"of B"_s);
    QCOMPARE(button->toolTip(), u"Change extended filter settings..."_s);
    const auto conditions = site.part<ZelkoGUI::Filter::ExtendedFilterDialog>("ExtendedFilterDialog")->filters();
    for (const auto& condition : conditions) {
        delete condition.data();
    }
    QCOMPARE(button->toolTip(), u"Set extended filter settings..."_s);
}

void RecordListWidgetTest::resetsTheExtendedFilterByItsMenu()
{
    ListSite site;
    site.filterByDialog(u"of B"_s);
    site.filterNames(u"name"_s);
    auto* const button = site.part<QToolButton>("ShowExtendedFilterButton");
    const MenuAnswer answer([button](QMenu& menu) {
        QCOMPARE(menu.pos(), button->mapToGlobal(QPoint(3, 3)));
        QCOMPARE(MenuAnswer::texts(menu), QStringList(u"Reset"_s));
        MenuAnswer::click(menu, menu.actions().constFirst());
    });
    QContextMenuEvent event(QContextMenuEvent::Mouse, {3, 3}, button->mapToGlobal(QPoint(3, 3)));
    QCoreApplication::sendEvent(button, &event);
    QVERIFY(answer.wasGiven());
    QCOMPARE(site.shown(), u"A B C D E"_s);
    QCOMPARE(button->findChildren<QMenu*>().size(), 0);
}

void RecordListWidgetTest::hasNoMenuForAFilterThatIsNotActive()
{
    ListSite site;
    auto* const button = site.part<QToolButton>("ShowExtendedFilterButton");
    const MenuAnswer answer([](QMenu&) {});
    QContextMenuEvent event(QContextMenuEvent::Mouse, {3, 3}, button->mapToGlobal(QPoint(3, 3)));
    QCoreApplication::sendEvent(button, &event);
    site.activate();
    button->setFocus();
    QTest::keyClick(button, Qt::Key_Down, Qt::AltModifier);
    ZelkoConsole::operatorhands::pressMenuKey();
    QVERIFY(!answer.wasGiven());
}

void RecordListWidgetTest::bringsTheExtendedFilterBack()
{
    ListSite site;
    auto* const button = site.part<QToolButton>("ShowExtendedFilterButton");
    auto* const dialog = site.part<QDialog>("ExtendedFilterDialog");
    dialog->setAttribute(Qt::WA_Moved);
    QTest::keyClick(button, Qt::Key_Space);
    QVERIFY(dialog->isVisible());
    QVERIFY(!dialog->isModal());
    dialog->showMinimized();
    QTest::mouseClick(button, Qt::LeftButton);
    QVERIFY(!dialog->isMinimized());
    QVERIFY(dialog->isVisible());
    dialog->move(dialog->pos() + QPoint(40, 30));
    const QPoint moved = dialog->pos();
    dialog->close();
    QTest::mouseClick(button, Qt::LeftButton);
    QCOMPARE(dialog->pos(), moved);
}

void RecordListWidgetTest::switchesTheInterfaceFilter()
{
    ListSite site;
    auto* const dialog = site.part<QDialog>("ExtendedFilterDialog");
    dialog->show();
    auto* const row = dialog->findChild<QWidget*>(u"InterfaceFilterWidget"_s);
    site.widget->enableInterfaceFilter(false);
    QVERIFY(row->isHidden());
    site.widget->enableInterfaceFilter(true);
    QVERIFY(!row->isHidden());
    ListSite(ListSite::Options(0)).widget->enableInterfaceFilter(true);
}

void RecordListWidgetTest::keepsFixedFilters()
{
    ListSite site;
    auto* const fixed = new StringFilterCondition(ListedRecords::RecordIDColumn, ListedRecords::ValueRole, nullptr);
    fixed->setRegExp(u"[BCD]"_s, Qt::CaseSensitive, QRegExp::RegExp);
    fixed->setEnabled(true);
    site.widget->setFixedFilter({fixed});
    QCOMPARE(site.shown(), u"B C D"_s);
    site.filterNames(u"of C"_s);
    site.widget->select(u"E"_s, true);
    QCOMPARE(site.shown(), u"B C D"_s);
    QCOMPARE(site.highlighted(), QString());
    QCOMPARE(site.count(), u"3/5 recordings"_s);
    site.widget->resetFixedFilter();
    QCOMPARE(site.shown(), u"A B C D E"_s);
}

void RecordListWidgetTest::replacesFixedFilters()
{
    ListSite site;
    QObject owner;
    const auto make = [&owner](const QString& pattern) {
        auto* const filter = new StringFilterCondition(ListedRecords::RecordIDColumn, ListedRecords::ValueRole, &owner);
        filter->setPattern(pattern);
        filter->setEnabled(true);
        return filter;
    };
    auto* const first = make(u"[AB]"_s);
    site.widget->setFixedFilter({first, make(u"[BC]"_s)});
    QCOMPARE(site.shown(), u"B"_s);
    site.widget->setFixedFilter({make(u"[DE]"_s)});
    QCOMPARE(site.shown(), u"D E"_s);
    first->setPattern(u"X"_s);
    QCOMPARE(site.shown(), u"D E"_s);
    QCOMPARE(owner.children().size(), 3);
}

// It belongs to the list from the first call on, which must not delete it in the second.
void RecordListWidgetTest::leavesAFixedFilterThatStays()
{
    ListSite site;
    auto* const fixed = new StringFilterCondition(ListedRecords::RecordIDColumn, ListedRecords::ValueRole, nullptr);
    fixed->setPattern(u"[BCD]"_s);
    fixed->setEnabled(true);
    site.widget->setFixedFilter({fixed});
    site.widget->setFixedFilter({fixed});
    QCOMPARE(site.shown(), u"B C D"_s);
    fixed->setPattern(u"E"_s);
    QCOMPARE(site.shown(), u"E"_s);
}

void RecordListWidgetTest::forgetsAFixedFilterThatDies()
{
    ListSite site;
    auto fixed = std::make_unique<StringFilterCondition>(7, 33, nullptr);
    fixed->setPattern(u"B"_s);
    fixed->setEnabled(true);
    site.widget->setFixedFilter({fixed.get()});
    QCOMPARE(site.shown(), u"B"_s);
    fixed.reset();
    QCOMPARE(site.shown(), u"A B C D E"_s);
    site.widget->resetFixedFilter();
    QCOMPARE(site.shown(), u"A B C D E"_s);
}

void RecordListWidgetTest::countsRecords()
{
    ListSite site(ListSite::everything, 12);
    QCOMPARE(site.count(), u"12 recordings"_s);
    site.model.remove(u"L"_s);
    QCOMPARE(site.count(), u"11 recordings"_s);
    site.model.add(makeRecord(u"L"_s));
    auto* const dialog = site.part<QDialog>("ExtendedFilterDialog");
    dialog->hide();
    site.filterNames(u"of A"_s);
    QCOMPARE(site.count(), u"1/12 recordings"_s);
    site.model.add(makeRecord(u"M"_s));
    QCOMPARE(site.count(), u"1/13 recordings"_s);
    site.model.remove(u"M"_s);
    auto* const fixed = new StringFilterCondition(ListedRecords::RecordIDColumn, ListedRecords::ValueRole, nullptr);
    fixed->setPattern(u"[A-E]"_s);
    fixed->setEnabled(true);
    site.widget->setFixedFilter({fixed});
    site.filterNames({});
    QCOMPARE(site.count(), u"5/12 recordings"_s);
    site.widget->resetFixedFilter();
    QCOMPARE(site.count(), u"12 recordings"_s);
    site.model.replace({});
    QCOMPARE(site.count(), u"0 recordings"_s);
}

// So large a change that the proxy takes it in one step.
void RecordListWidgetTest::countsAfterALargeChange()
{
    ListSite site(ListSite::everything, 0);
    QStringList ids;
    for (int number = 0; number < 4000; ++number) {
        ids << QString::number(number);
    }
    site.model.replace(ids);
    site.filterNames(u"7"_s);
    const auto sevens = std::count_if(ids.begin(), ids.end(), [](const QString& id) { return id.contains(u'7'); });
    QCOMPARE(site.count(), u"%1/4000 recordings"_s.arg(sevens));
    site.filterNames({});
    QCOMPARE(site.count(), u"4000 recordings"_s);
}

void RecordListWidgetTest::showsTheDevice_data()
{
    QTest::addColumn<QString>("device");
    QTest::addColumn<QString>("subSystem");
    QTest::addColumn<QString>("text");
    QTest::newRow("a device in a sub system") << u"A1"_s << u"north"_s << u"Device: A1, north"_s;
    QTest::newRow("a device in none") << u"A1"_s << QString() << u"Device: A1"_s;
    QTest::newRow("no device") << QString() << u"north"_s << u"Device: n/a"_s;
    QTest::newRow("a device named like a document") << u"<b>A1</b>"_s << u"a, b"_s << u"Device: <b>A1</b>, a, b"_s;
}

void RecordListWidgetTest::showsTheDevice()
{
    QFETCH(QString, device);
    QFETCH(QString, subSystem);
    ListSite site;
    site.controller->device = device;
    site.controller->subSystem = subSystem;
    Q_EMIT site.controller->si_activeDeviceChanged(device, subSystem);
    const auto* const label = site.part<QLabel>("ActiveDeviceLabel");
    QTEST(label->text(), "text");
    QCOMPARE(label->textFormat(), Qt::PlainText);
}

void RecordListWidgetTest::aLongDeviceNameNeverWidensTheWindow()
{
    ListSite site;
    const int width = site.widget->width();
    const int least = site.widget->minimumSizeHint().width();
    const QString device(500, u'm');
    site.controller->device = device;
    Q_EMIT site.controller->si_activeDeviceChanged(device, u"north"_s);
    auto* const label = site.part<QLabel>("ActiveDeviceLabel");
    QCOMPARE(label->text(), u"Device: %1, north"_s.arg(device));
    site.widget->layout()->activate();
    QCOMPARE(site.widget->width(), width);
    QVERIFY(site.widget->minimumSizeHint().width() <= least);
    ZelkoConsole::operatorhands::rest(*label, label->rect().center());
    QTRY_COMPARE_WITH_TIMEOUT(QToolTip::text(), label->text(), patience);
}

void RecordListWidgetTest::followsTheDevice()
{
    ListSite site;
    QCOMPARE(site.part<QLabel>("ActiveDeviceLabel")->text(), u"Device: device, north"_s);
    site.click(1);
    const QSignalSpy spy(&*site.widget, &Widget::si_selectedRecordsChanged);
    Q_EMIT site.controller->si_activeDeviceChanged({}, {});
    QCOMPARE(spy, QList<QList<QVariant>>{{QStringList(u"B"_s)}});
}

void RecordListWidgetTest::showsTheProgress_data()
{
    QTest::addColumn<int>("current");
    QTest::addColumn<int>("total");
    QTest::addColumn<bool>("isShown");
    QTest::newRow("nothing is loaded") << 0 << 0 << false;
    QTest::newRow("the first is on its way") << 0 << 5 << true;
    QTest::newRow("the last is on its way") << 4 << 5 << true;
    QTest::newRow("all are here") << 5 << 5 << false;
    QTest::newRow("more than all are here") << 6 << 5 << false;
}

void RecordListWidgetTest::showsTheProgress()
{
    QFETCH(int, current);
    QFETCH(int, total);
    ListSite site;
    const auto* const bar = site.part<QProgressBar>("LoadProgressBar");
    const auto* const label = site.part<QLabel>("LoadProgressLabel");
    QVERIFY(bar->isHidden());
    QVERIFY(label->isHidden());
    Q_EMIT site.controller->si_loadProgress(current, total);
    QTEST(bar->isVisible(), "isShown");
    QTEST(label->isVisible(), "isShown");
    QCOMPARE(bar->maximum(), total);
    QCOMPARE(label->text(), u"Loading Records: "_s);
    if (current <= total) {
        QCOMPARE(bar->value(), current);
    }
}

void RecordListWidgetTest::takesAnotherListOfTheController()
{
    ListSite site;
    site.click(2);
    ListedRecords other({u"X"_s, u"Y"_s});
    site.controller->list = &other;
    const QSignalSpy spy(&*site.widget, &Widget::si_selectedRecordsChanged);
    Q_EMIT site.controller->si_activeDeviceChanged({}, {});
    QCOMPARE(site.shown(), u"X Y"_s);
    QCOMPARE(site.count(), u"2 recordings"_s);
    QCOMPARE(spy, QList<QList<QVariant>>{{QStringList()}});
    site.filterNames(u"of X"_s);
    other.add(makeRecord(u"Z"_s));
    QCOMPARE(site.count(), u"1/3 recordings"_s);
    const QString before = site.count();
    site.model.remove(u"A"_s);
    QCOMPARE(site.count(), before);
    site.click(0);
    QCOMPARE(site.controller->selectedRecords(), QStringList(u"X"_s));
}

void RecordListWidgetTest::takesAnotherListWhenTheOldOneIsGone()
{
    ListSite site(ListSite::everything, 0);
    auto old = std::make_unique<ListedRecords>(QStringList{u"A"_s});
    ListedRecords other({u"X"_s, u"Y"_s});
    site.controller->list = old.get();
    Q_EMIT site.controller->si_activeDeviceChanged({}, {});
    QCOMPARE(site.shown(), u"A"_s);
    old.reset();
    site.controller->list = &other;
    Q_EMIT site.controller->si_activeDeviceChanged({}, {});
    QCOMPARE(site.shown(), u"X Y"_s);
    QCOMPARE(site.count(), u"2 recordings"_s);
}

// Nobody may be told of hidden recordings that are nowhere.
void RecordListWidgetTest::isEmptyWhenItsListIsGone()
{
    ListSite site(ListSite::everything, 0);
    auto list = std::make_unique<ListedRecords>(ListSite::ids(5));
    site.controller->list = list.get();
    Q_EMIT site.controller->si_activeDeviceChanged({}, {});
    site.filterNames(u"nothing"_s);
    QCOMPARE(site.count(), u"0/5 recordings"_s);
    QVERIFY(site.part<QLabel>("FilteredOutNote")->isVisible());
    list.reset();
    QCOMPARE(site.count(), u"0 recordings"_s);
    QVERIFY(site.part<QLabel>("FilteredOutNote")->isHidden());
    QCOMPARE(site.view.verticalHeader()->count(), 0);
}

void RecordListWidgetTest::isNamedForThoseWhoCannotSeeIt()
{
    ListSite site;
    for (const char* const name : {"RecordTableView", "ActionToolbar", "ShowExtendedFilterButton", "LoadProgressBar",
                                   "RecordNameFilterWidget"}) {
        QVERIFY2(!site.part<QWidget>(name)->accessibleName().isEmpty(), name);
    }
    QVERIFY(!site.part<QTableView>("RecordTableView")->verticalHeader()->accessibleName().isEmpty());
}

QTEST_MAIN(RecordListWidgetTest)
#include "tst_recordlistwidget.moc"
