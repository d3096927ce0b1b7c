#include "listsite.h"

#include <resources/zelkoicons.h>

#include <QHeaderView>
#include <QMenu>
#include <QScrollBar>
#include <QWindow>

using namespace Qt::StringLiterals;
using Controller = ZelkoGUI::IZelkoGUIController;

namespace {

constexpr auto severalAtOnce = ListSite::everything;
constexpr auto oneAtATime = ListSite::Options(QFlag(1023 & ~RecordListWidget::OptionMultiSelection));

/// The texts of the signals that a widget emitted.
QStringList told(const QSignalSpy& spy)
{
    QStringList all;
    for (const QList<QVariant>& arguments : spy) {
        all << arguments.constFirst().toStringList().join(u' ');
    }
    return all;
}

} // namespace

class RecordListSelectionTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { registerZelkoIcons(); }

    void tellsFirstThatNothingIsSelected();
    void selectsRowsByTheMouse();
    void namesRangesInTheirOrder();
    void selectsOneRowOnly();
    void selectsByKeys();
    void isNotToldTwiceByTheWayBack();
    void takesOverWhatTheControllerHasSelected();
    void leavesTheSelectionThatComesBack();
    void takesTheFirstShownOneWhereOneCanBeSelected();
    void dropsWhatIsFilteredOut();
    void dropsWhatIsNotKnown();
    void scrollsToTheOnlyOneThatIsSelected();
    void scrollsToARecordFromRightToLeft();
    void selectsARecordByItsID();
    void selectsARecordThatIsFilteredOut();
    void leavesTheSelectionForARecordThatIsFilteredOut();
    void tellsThatARecordDidNotComeBack();
    void tellsThatNoRecordCameBack();
    void tellsWhatIsBackWhileOthersAreOnTheirWay();
    void tellsThatTheListHasDied();
    void selectsByIDWhateverKeysAreHeld_data();
    void selectsByIDWhateverKeysAreHeld();
    void selectsNothingThatIsNotKnown();
    void keepsTheFiltersForARecordThatIsShown();
    void scrollsToTheRecordOfAnAction_data();
    void scrollsToTheRecordOfAnAction();
    void scrollsOnlyUpAndDown();
    void tellsOfADoubleClick();
    void losesARecordThatIsDeleted();
    void isNotToldThatOtherRowsCameAndWent();
    void losesARecordThatIsFilteredOut();
    void keepsTheSelectionOfRecordsThatMove();
    void bringsTheSelectionBackWithItsRecords();
    void bringsNothingToAnotherDevice();
    void bringsNothingWhereSomethingElseWasSelected();
    void outlivesItsController();
    void outlivesAControllerThatOwnsTheList();
    void takesTheFocus();
};

// Whatever was selected in another list of the controller.
void RecordListSelectionTest::tellsFirstThatNothingIsSelected()
{
    const OwnConfiguration configuration;
    ListedRecords model(ListSite::ids(5));
    ListController controller(&model);
    controller.sl_selectedRecordsChanged({u"B"_s});
    QCOMPARE(controller.take(), QStringList(u"signal selected B"_s));
    const RecordListWidget widget(&controller, severalAtOnce, ListSite::allColumns, nullptr, u"Records"_s);
    QCOMPARE(controller.take(), QStringList(u"signal selected "_s));
    QCOMPARE(controller.selectedRecords(), QStringList());
    const auto* const menu = widget.findChild<QMenu*>(u"CopyToClipboardMenu"_s);
    QCOMPARE(menu->title(), u"Copy to Clipboard"_s);
    QVERIFY(!menu->isEnabled());
}

void RecordListSelectionTest::selectsRowsByTheMouse()
{
    ListSite site(severalAtOnce);
    const QSignalSpy spy(&*site.widget, &RecordListWidget::si_selectedRecordsChanged);
    site.click(3);
    site.click(1, Qt::ControlModifier);
    QCOMPARE(site.widget->selectedRecords(), (QStringList{u"D"_s, u"B"_s}));
    QCOMPARE(site.controller->selectedRecords(), (QStringList{u"D"_s, u"B"_s}));
    QCOMPARE(told(spy), (QStringList{u"D"_s, u"D B"_s}));
}

void RecordListSelectionTest::namesRangesInTheirOrder()
{
    ListSite site(severalAtOnce);
    site.click(4);
    site.click(3, Qt::ShiftModifier);
    site.click(0, Qt::ControlModifier);
    site.click(1, Qt::ControlModifier | Qt::ShiftModifier);
    QCOMPARE(site.widget->selectedRecords(), (QStringList{u"D"_s, u"E"_s, u"A"_s, u"B"_s}));
    site.controller->sl_selectedRecordsChanged({u"E"_s, u"A"_s});
    QCOMPARE(site.widget->selectedRecords(), (QStringList{u"E"_s, u"A"_s}));
}

void RecordListSelectionTest::selectsOneRowOnly()
{
    ListSite site(oneAtATime);
    site.click(3);
    site.click(1, Qt::ControlModifier);
    QCOMPARE(site.highlighted(), u"B"_s);
    QCOMPARE(site.controller->selectedRecords(), QStringList(u"B"_s));
}

void RecordListSelectionTest::selectsByKeys()
{
    ListSite site(severalAtOnce);
    site.click(1);
    QTest::keyClick(&site.view, Qt::Key_Down);
    QCOMPARE(site.controller->selectedRecords(), QStringList(u"C"_s));
    QTest::keyClick(&site.view, Qt::Key_Down, Qt::ShiftModifier);
    QCOMPARE(site.highlighted(), u"C D"_s);
    QTest::keyClick(&site.view, Qt::Key_A, Qt::ControlModifier);
    QCOMPARE(site.controller->selectedRecords().size(), 5);
}

void RecordListSelectionTest::isNotToldTwiceByTheWayBack()
{
    ListSite site;
    const QSignalSpy inView(site.view.selectionModel(), &QItemSelectionModel::selectionChanged);
    const QSignalSpy spy(&*site.widget, &RecordListWidget::si_selectedRecordsChanged);
    site.click(2);
    QCOMPARE(inView.size(), 1);
    QCOMPARE(spy.size(), 1);
    QCOMPARE(site.controller->take(), QStringList(u"signal selected C"_s));
}

void RecordListSelectionTest::takesOverWhatTheControllerHasSelected()
{
    ListSite site;
    const QSignalSpy spy(&*site.widget, &RecordListWidget::si_selectedRecordsChanged);
    site.controller->sl_selectedRecordsChanged({u"D"_s, u"B"_s, u"C"_s});
    QCOMPARE(site.highlighted(), u"B C D"_s);
    QCOMPARE(site.widget->selectedRecords(), (QStringList{u"D"_s, u"B"_s, u"C"_s}));
    site.controller->sl_selectedRecordsChanged({});
    QCOMPARE(site.highlighted(), QString());
    QCOMPARE(spy.size(), 0);
    site.click(0);
    QCOMPARE(spy.size(), 1);
}

void RecordListSelectionTest::leavesTheSelectionThatComesBack()
{
    ListSite site;
    site.click(1);
    site.click(3, Qt::ControlModifier);
    const QSignalSpy inView(site.view.selectionModel(), &QItemSelectionModel::selectionChanged);
    const QSignalSpy spy(&*site.widget, &RecordListWidget::si_selectedRecordsChanged);
    Q_EMIT site.controller->si_selectedRecordsChanged({u"B"_s, u"D"_s});
    QCOMPARE(inView.size(), 0);
    QCOMPARE(spy.size(), 0);
    QCOMPARE(site.highlighted(), u"B D"_s);
}

void RecordListSelectionTest::takesTheFirstShownOneWhereOneCanBeSelected()
{
    ListSite site(oneAtATime);
    site.filterNames(u"of "_s);
    site.controller->sl_selectedRecordsChanged({u"X"_s, u"D"_s, u"A"_s});
    QCOMPARE(site.highlighted(), u"D"_s);
    QCOMPARE(site.widget->selectedRecords(), QStringList(u"D"_s));
    site.filterNames(u"of B"_s);
    site.controller->sl_selectedRecordsChanged({u"A"_s, u"B"_s, u"C"_s});
    QCOMPARE(site.highlighted(), u"B"_s);
}

void RecordListSelectionTest::dropsWhatIsFilteredOut()
{
    ListSite site;
    site.filterNames(u"of B"_s);
    site.controller->sl_selectedRecordsChanged({u"A"_s, u"B"_s, u"C"_s});
    QCOMPARE(site.widget->selectedRecords(), QStringList(u"B"_s));
    site.filterNames({});
    QCOMPARE(site.highlighted(), u"B"_s);
}

void RecordListSelectionTest::dropsWhatIsNotKnown()
{
    ListSite site;
    site.controller->sl_selectedRecordsChanged({u"nobody"_s, u"C"_s, QString()});
    QCOMPARE(site.widget->selectedRecords(), QStringList(u"C"_s));
    QCOMPARE(site.highlighted(), u"C"_s);
}

void RecordListSelectionTest::scrollsToTheOnlyOneThatIsSelected()
{
    ListSite site(severalAtOnce, 26);
    QTRY_VERIFY_WITH_TIMEOUT(site.view.verticalScrollBar()->maximum() > 0, patience);
    site.controller->sl_selectedRecordsChanged({u"A"_s, u"Z"_s});
    QCOMPARE(site.view.verticalScrollBar()->value(), 0);
    site.controller->sl_selectedRecordsChanged({u"Z"_s});
    QVERIFY(site.view.verticalScrollBar()->value() > 0);
}

// With columns that leave room beside them.
void RecordListSelectionTest::scrollsToARecordFromRightToLeft()
{
    ListSite site(severalAtOnce, 26);
    site.widget->setLayoutDirection(Qt::RightToLeft);
    for (int column = 3; column < site.view.model()->columnCount(); ++column) {
        site.view.hideColumn(column);
    }
    QTRY_VERIFY_WITH_TIMEOUT(site.view.verticalScrollBar()->maximum() > 0, patience);
    QVERIFY(site.view.horizontalHeader()->length() < site.view.viewport()->width());
    site.widget->select(u"Z"_s, false);
    QCOMPARE(site.view.verticalScrollBar()->value(), site.view.verticalScrollBar()->maximum());
    QCOMPARE(site.view.currentIndex().column(), 0);
    site.controller->sl_selectedRecordsChanged({u"A"_s});
    QCOMPARE(site.view.verticalScrollBar()->value(), 0);
}

void RecordListSelectionTest::selectsARecordByItsID()
{
    ListSite site(severalAtOnce, 26);
    QTRY_VERIFY_WITH_TIMEOUT(site.view.verticalScrollBar()->maximum() > 0, patience);
    site.click(1);
    site.widget->select(u"Z"_s, false);
    QCOMPARE(site.highlighted(), u"Z"_s);
    QCOMPARE(site.controller->selectedRecords(), QStringList(u"Z"_s));
    QCOMPARE(site.view.verticalScrollBar()->value(), site.view.verticalScrollBar()->maximum());
}

void RecordListSelectionTest::selectsARecordThatIsFilteredOut()
{
    ListSite site(severalAtOnce, 26);
    site.filterNames(u"of B"_s);
    site.click(0);
    site.filterByDialog(u"of C"_s);
    QCOMPARE(site.shown(), QString());
    const QSignalSpy spy(&*site.widget, &RecordListWidget::si_selectedRecordsChanged);
    site.widget->select(u"Z"_s, false);
    QCOMPARE(site.shown(), QString());
    QCOMPARE(spy.size(), 0);
    site.widget->select(u"Z"_s, true);
    QCOMPARE(site.shown(), ListSite::ids(26).join(u' '));
    QCOMPARE(site.highlighted(), u"Z"_s);
    const QModelIndex row = site.view.model()->index(25, 1);
    QTRY_VERIFY_WITH_TIMEOUT(site.view.viewport()->rect().contains(site.view.visualRect(row).center()), patience);
}

void RecordListSelectionTest::leavesTheSelectionForARecordThatIsFilteredOut()
{
    ListSite site;
    site.filterNames(u"of B"_s);
    site.click(0);
    const QSignalSpy spy(&*site.widget, &RecordListWidget::si_selectedRecordsChanged);
    site.widget->select(u"D"_s, false);
    QCOMPARE(site.shown(), u"B"_s);
    QCOMPARE(site.highlighted(), u"B"_s);
    QCOMPARE(spy.size(), 0);
}

void RecordListSelectionTest::tellsThatARecordDidNotComeBack()
{
    ListSite site;
    site.click(1);
    site.click(2, Qt::ControlModifier);
    QCOMPARE(site.widget->selectedRecords(), QStringList({u"B"_s, u"C"_s}));
    const QSignalSpy spy(&*site.widget, &RecordListWidget::si_selectedRecordsChanged);
    site.model.replace({u"A"_s, u"D"_s});
    QTRY_COMPARE_WITH_TIMEOUT(spy.size(), 1, patience);
    QCOMPARE(spy.first().first().toStringList(), QStringList());
    QCOMPARE(site.widget->selectedRecords(), QStringList());
}

// There are no rows to wait for the last one of.
void RecordListSelectionTest::tellsThatNoRecordCameBack()
{
    ListSite site;
    site.click(1);
    site.model.replace({});
    QTRY_COMPARE_WITH_TIMEOUT(site.controller->selectedRecords(), QStringList(), patience);
    QCOMPARE(site.widget->selectedRecords(), QStringList());
    QCOMPARE(site.part<QMenu>("CopyToClipboardMenu")->title(), u"Copy to Clipboard"_s);
}

void RecordListSelectionTest::tellsWhatIsBackWhileOthersAreOnTheirWay()
{
    ListSite site;
    site.click(1);
    site.click(3, Qt::ControlModifier);
    site.model.replace({});
    site.model.add(makeRecord(u"A"_s));
    site.model.add(makeRecord(u"D"_s));
    QTRY_COMPARE_WITH_TIMEOUT(site.controller->selectedRecords(), QStringList(u"D"_s), patience);
    QCOMPARE(site.widget->selectedRecords(), QStringList(u"D"_s));
    site.model.add(makeRecord(u"B"_s));
    QTRY_COMPARE_WITH_TIMEOUT(site.controller->selectedRecords().size(), 2, patience);
    QCOMPARE(site.highlighted(), u"B D"_s);
}

void RecordListSelectionTest::tellsThatTheListHasDied()
{
    ListSite site(severalAtOnce, 0);
    auto list = std::make_unique<ListedRecords>(ListSite::ids(5));
    site.controller->list = list.get();
    Q_EMIT site.controller->si_activeDeviceChanged({}, {});
    site.click(1);
    QCOMPARE(site.controller->selectedRecords(), QStringList(u"B"_s));
    list.reset();
    QTRY_COMPARE_WITH_TIMEOUT(site.controller->selectedRecords(), QStringList(), patience);
    QCOMPARE(site.view.verticalHeader()->count(), 0);
}

void RecordListSelectionTest::selectsByIDWhateverKeysAreHeld_data()
{
    QTest::addColumn<Qt::KeyboardModifiers>("held");
    QTest::newRow("none") << Qt::KeyboardModifiers();
    QTest::newRow("the one that adds") << Qt::KeyboardModifiers(Qt::ControlModifier);
    QTest::newRow("the one that extends") << Qt::KeyboardModifiers(Qt::ShiftModifier);
}

void RecordListSelectionTest::selectsByIDWhateverKeysAreHeld()
{
    QFETCH(Qt::KeyboardModifiers, held);
    ListSite site;
    site.activate();
    site.click(0);
    site.click(1, Qt::ControlModifier);
    QWindow* const window = site.widget->windowHandle();
    QTest::keyPress(window, Qt::Key_F24, held);
    QCOMPARE(QGuiApplication::keyboardModifiers(), held);
    site.widget->select(u"D"_s, false);
    QTest::keyRelease(window, Qt::Key_F24);
    QCOMPARE(site.highlighted(), u"D"_s);
    QCOMPARE(site.controller->selectedRecords(), QStringList(u"D"_s));
    QCOMPARE(site.idAt(site.view.currentIndex().row()), u"D"_s);
}

void RecordListSelectionTest::selectsNothingThatIsNotKnown()
{
    ListSite site;
    site.filterNames(u"of B"_s);
    site.click(0);
    const QSignalSpy spy(&*site.widget, &RecordListWidget::si_selectedRecordsChanged);
    site.widget->select(u"nobody"_s, true);
    QCOMPARE(site.shown(), u"B"_s);
    QCOMPARE(site.highlighted(), u"B"_s);
    QCOMPARE(spy.size(), 0);
}

void RecordListSelectionTest::keepsTheFiltersForARecordThatIsShown()
{
    ListSite site;
    site.filterNames(u"of B"_s);
    site.widget->select(u"B"_s, true);
    QCOMPARE(site.shown(), u"B"_s);
    QCOMPARE(site.highlighted(), u"B"_s);
}

void RecordListSelectionTest::scrollsToTheRecordOfAnAction_data()
{
    QTest::addColumn<QStringList>("records");
    QTest::addColumn<int>("action");
    QTest::addColumn<bool>("scrolls");
    QTest::newRow("a rename of one record") << QStringList(u"Z"_s) << int(Controller::UserActionRename) << true;
    QTest::newRow("a rename that names two records")
        << QStringList{u"Z"_s, u"Y"_s} << int(Controller::UserActionRename) << false;
    QTest::newRow("a delete, after which there is no row")
        << QStringList(u"Z"_s) << int(Controller::UserActionDelete) << false;
    QTest::newRow("no record at all") << QStringList() << int(Controller::UserActionReset) << false;
    QTest::newRow("a record that is not known")
        << QStringList(u"nobody"_s) << int(Controller::UserActionReset) << false;
}

void RecordListSelectionTest::scrollsToTheRecordOfAnAction()
{
    QFETCH(QStringList, records);
    QFETCH(int, action);
    ListSite site(severalAtOnce, 26);
    QTRY_VERIFY_WITH_TIMEOUT(site.view.verticalScrollBar()->maximum() > 0, patience);
    Q_EMIT site.controller->si_userActionTriggered(records, static_cast<Controller::enUserAction>(action));
    QTEST(site.view.verticalScrollBar()->value() > 0, "scrolls");
    QCOMPARE(site.highlighted(), QString());
}

void RecordListSelectionTest::scrollsOnlyUpAndDown()
{
    ListSite site(severalAtOnce, 26);
    site.view.setColumnHidden(0, true);
    QScrollBar& sideways = *site.view.horizontalScrollBar();
    QTRY_VERIFY_WITH_TIMEOUT(sideways.maximum() > 0 && site.view.verticalScrollBar()->maximum() > 0, patience);
    sideways.setValue(2);
    site.widget->select(u"Z"_s, false);
    QVERIFY(site.view.verticalScrollBar()->value() > 0);
    QCOMPARE(sideways.value(), 2);
}

void RecordListSelectionTest::tellsOfADoubleClick()
{
    ListSite site;
    const QSignalSpy spy(&*site.widget, &RecordListWidget::si_recordDoubleClicked);
    const QModelIndex cell = site.view.model()->index(3, 1);
    QTest::mouseClick(site.view.viewport(), Qt::LeftButton, Qt::NoModifier, site.view.visualRect(cell).center());
    QTest::mouseDClick(site.view.viewport(), Qt::LeftButton, Qt::NoModifier, site.view.visualRect(cell).center());
    QCOMPARE(spy, QList<QList<QVariant>>{{u"D"_s}});
}

void RecordListSelectionTest::losesARecordThatIsDeleted()
{
    ListSite site;
    site.click(1);
    site.click(3, Qt::ControlModifier);
    site.model.remove(u"B"_s);
    QCOMPARE(site.widget->selectedRecords(), QStringList(u"D"_s));
    QCOMPARE(site.controller->selectedRecords(), QStringList(u"D"_s));
    site.model.remove(u"D"_s);
    QCOMPARE(site.controller->selectedRecords(), QStringList());
}

void RecordListSelectionTest::isNotToldThatOtherRowsCameAndWent()
{
    ListSite site;
    site.click(2);
    site.click(3, Qt::ControlModifier);
    const QSignalSpy spy(&*site.widget, &RecordListWidget::si_selectedRecordsChanged);
    site.model.remove(u"B"_s);
    site.model.remove(u"E"_s);
    site.model.add(makeRecord(u"Aa"_s));
    QCOMPARE(site.highlighted(), u"C D"_s);
    QCOMPARE(spy.size(), 0);
    QCOMPARE(site.widget->selectedRecords(), (QStringList{u"C"_s, u"D"_s}));
}

void RecordListSelectionTest::losesARecordThatIsFilteredOut()
{
    ListSite site;
    site.click(1);
    site.click(3, Qt::ControlModifier);
    site.filterNames(u"of D"_s);
    QCOMPARE(site.widget->selectedRecords(), QStringList(u"D"_s));
    QCOMPARE(site.controller->selectedRecords(), QStringList(u"D"_s));
}

void RecordListSelectionTest::keepsTheSelectionOfRecordsThatMove()
{
    ListSite site;
    site.click(1);
    const auto renamed = makeRecord(u"B"_s);
    renamed->SetRecordName(u"zebra"_s);
    site.model.change(renamed);
    QCOMPARE(site.shown(), u"A C D E B"_s);
    QCOMPARE(site.highlighted(), u"B"_s);
    QCOMPARE(site.controller->selectedRecords(), QStringList(u"B"_s));
}

void RecordListSelectionTest::bringsTheSelectionBackWithItsRecords()
{
    ListSite site(severalAtOnce, 26);
    site.click(20);
    site.click(22, Qt::ControlModifier);
    site.model.replace({});
    Q_EMIT site.controller->si_activeDeviceChanged(site.controller->device, site.controller->subSystem);
    QCOMPARE(site.controller->selectedRecords(), QStringList());
    site.model.replace(ListSite::ids(26));
    QTRY_COMPARE_WITH_TIMEOUT(site.highlighted(), u"U W"_s, patience);
    QCOMPARE(site.controller->selectedRecords(), (QStringList{u"U"_s, u"W"_s}));
    QCOMPARE(site.idAt(site.view.currentIndex().row()), u"W"_s);
}

void RecordListSelectionTest::bringsNothingToAnotherDevice()
{
    ListSite site;
    site.click(2);
    site.model.replace({});
    site.controller->device = u"other"_s;
    Q_EMIT site.controller->si_activeDeviceChanged(u"other"_s, site.controller->subSystem);
    site.model.replace(ListSite::ids(5));
    QCoreApplication::processEvents();
    QCOMPARE(site.highlighted(), QString());
}

void RecordListSelectionTest::bringsNothingWhereSomethingElseWasSelected()
{
    ListSite site(oneAtATime);
    site.click(2);
    site.model.replace({});
    site.model.add(makeRecord(u"A"_s));
    site.widget->select(u"A"_s, false);
    site.model.add(makeRecord(u"C"_s));
    QCoreApplication::processEvents();
    QCOMPARE(site.highlighted(), u"A"_s);
}

void RecordListSelectionTest::outlivesItsController()
{
    ListSite site;
    site.click(2);
    site.controller.reset();
    site.click(3);
    QCOMPARE(site.widget->selectedRecords(), QStringList(u"D"_s));
    site.filterNames(u"of B"_s);
    QCOMPARE(site.shown(), u"B"_s);
}

void RecordListSelectionTest::outlivesAControllerThatOwnsTheList()
{
    ListSite site(severalAtOnce, 0);
    auto* const list = new ListedRecords(ListSite::ids(5));
    list->setParent(&*site.controller);
    site.controller->list = list;
    Q_EMIT site.controller->si_activeDeviceChanged({}, {});
    site.click(2);
    QCOMPARE(site.widget->selectedRecords(), QStringList(u"C"_s));
    site.controller.reset();
    QCOMPARE(site.shown(), QString());
    QCOMPARE(site.count(), u"0 recordings"_s);
    QTRY_COMPARE_WITH_TIMEOUT(site.widget->selectedRecords(), QStringList(), patience);
}

void RecordListSelectionTest::takesTheFocus()
{
    ListSite site;
    site.activate();
    site.part<QWidget>("ShowExtendedFilterButton")->setFocus();
    site.widget->setFocusOnList();
    QVERIFY(site.view.hasFocus());
    QTest::keyClick(&site.view, Qt::Key_Tab);
    QVERIFY(!site.view.hasFocus());
}

QTEST_MAIN(RecordListSelectionTest)
#include "tst_recordlistselection.moc"
