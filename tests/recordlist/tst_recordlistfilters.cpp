#include "listsite.h"

#include <resources/zelkoicons.h>
#include <zelkoguibase/filter/stringfiltercondition.h>

#include <QHeaderView>
#include <QLayout>

using namespace Qt::StringLiterals;
using ZelkoGUI::Filter::StringFilterCondition;

namespace {

/// Counts how often a window is brought to the front.
class RaiseCounter final : public QObject
{
public:
    explicit RaiseCounter(QWidget* window) { window->installEventFilter(this); }

    int count = 0;

protected:
    bool eventFilter(QObject*, QEvent* event) override
    {
        count += event->type() == QEvent::ZOrderChange ? 1 : 0;
        return false;
    }
};

} // namespace

class RecordListFiltersTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { registerZelkoIcons(); }

    void filtersNames();
    void filtersNamesByTheirValues();
    void filtersNamesInTheRowOfTheOtherParts();
    void saysThatAllIsFilteredOut();
    void saysThatNothingIsThereInNoWords();
    void coversTheRowsWithWhatItSays();
    void followsTheExtendedFilter();
    void resetsTheExtendedFilterByItsMenu();
    void hasNoMenuForAFilterThatIsNotActive();
    void bringsTheExtendedFilterBack();
    void bringsTheExtendedFilterToTheFront();
    void switchesTheInterfaceFilter();
    void keepsFixedFilters();
    void replacesFixedFilters();
    void leavesAFixedFilterThatStays();
    void bearsFixedFiltersThatAreNoneOrThereTwice_data();
    void bearsFixedFiltersThatAreNoneOrThereTwice();
    void forgetsAFixedFilterThatDies();
};

void RecordListFiltersTest::filtersNames()
{
    ListSite site;
    site.filterNames(u"OF d"_s);
    QCOMPARE(site.shown(), u"D"_s);
    QVERIFY(site.view.model()->headerData(0, Qt::Horizontal, Qt::DecorationRole).isValid());
    site.filterNames({});
    QCOMPARE(site.shown(), u"A B C D E"_s);
}

void RecordListFiltersTest::filtersNamesByTheirValues()
{
    ListSite site(RecordListWidget::OptionNameFilter);
    const auto conditions = site.view.model()->findChildren<StringFilterCondition*>();
    QCOMPARE(conditions.size(), 1);
    QCOMPARE(conditions.constFirst()->filterKeyColumn(), 0);
    QCOMPARE(conditions.constFirst()->filterRole(), 33);
    QVERIFY(conditions.constFirst()->enabled());
}

void RecordListFiltersTest::filtersNamesInTheRowOfTheOtherParts()
{
    ListSite site;
    const auto* const filter = site.part<QWidget>("RecordNameFilterWidget");
    QCOMPARE(filter->layout()->contentsMargins(), QMargins());
}

void RecordListFiltersTest::saysThatAllIsFilteredOut()
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

void RecordListFiltersTest::saysThatNothingIsThereInNoWords()
{
    ListSite site;
    const auto* const note = site.part<QLabel>("FilteredOutNote");
    site.filterNames(u"nothing"_s);
    site.model.replace({});
    QVERIFY(note->isHidden());
    site.model.add(makeRecord(u"A"_s));
    QVERIFY(note->isVisible());
}

void RecordListFiltersTest::coversTheRowsWithWhatItSays()
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

void RecordListFiltersTest::followsTheExtendedFilter()
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

void RecordListFiltersTest::resetsTheExtendedFilterByItsMenu()
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

void RecordListFiltersTest::hasNoMenuForAFilterThatIsNotActive()
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

void RecordListFiltersTest::bringsTheExtendedFilterBack()
{
    ListSite site;
    auto* const button = site.part<QToolButton>("ShowExtendedFilterButton");
    auto* const dialog = site.part<QDialog>("ExtendedFilterDialog");
    dialog->setAttribute(Qt::WA_Moved);
    QTest::keyClick(button, Qt::Key_Space);
    QVERIFY(dialog->isVisible());
    QVERIFY(!dialog->testAttribute(Qt::WA_Moved));
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

void RecordListFiltersTest::bringsTheExtendedFilterToTheFront()
{
    ListSite site;
    auto* const button = site.part<QToolButton>("ShowExtendedFilterButton");
    auto* const dialog = site.part<QDialog>("ExtendedFilterDialog");
    QTest::mouseClick(button, Qt::LeftButton);
    QTRY_COMPARE_WITH_TIMEOUT(QApplication::activeWindow(), dialog, patience);
    site.activate();
    QTRY_COMPARE_WITH_TIMEOUT(QApplication::activeWindow(), &*site.widget, patience);
    const RaiseCounter raised(dialog);
    QTest::mouseClick(button, Qt::LeftButton);
    QTRY_COMPARE_WITH_TIMEOUT(QApplication::activeWindow(), dialog, patience);
    QCOMPARE(raised.count, 1);
}

void RecordListFiltersTest::switchesTheInterfaceFilter()
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

void RecordListFiltersTest::keepsFixedFilters()
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

void RecordListFiltersTest::replacesFixedFilters()
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
void RecordListFiltersTest::leavesAFixedFilterThatStays()
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

void RecordListFiltersTest::bearsFixedFiltersThatAreNoneOrThereTwice_data()
{
    QTest::addColumn<bool>("isOwned");
    QTest::newRow("of somebody else") << true;
    QTest::newRow("of the list") << false;
}

void RecordListFiltersTest::bearsFixedFiltersThatAreNoneOrThereTwice()
{
    QFETCH(bool, isOwned);
    ListSite site;
    QObject owner;
    const QPointer<StringFilterCondition> fixed =
        new StringFilterCondition(ListedRecords::RecordIDColumn, ListedRecords::ValueRole, isOwned ? &owner : nullptr);
    fixed->setPattern(u"[BCD]"_s);
    fixed->setEnabled(true);
    site.widget->setFixedFilter({nullptr, fixed, fixed});
    QCOMPARE(site.shown(), u"B C D"_s);
    site.widget->setFixedFilter({fixed, nullptr});
    QCOMPARE(site.shown(), u"B C D"_s);
    site.widget->setFixedFilter({fixed, fixed});
    site.widget->setFixedFilter({nullptr});
    QCOMPARE(site.shown(), u"A B C D E"_s);
    QCOMPARE(!fixed.isNull(), isOwned);
}

void RecordListFiltersTest::forgetsAFixedFilterThatDies()
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

QTEST_MAIN(RecordListFiltersTest)
#include "tst_recordlistfilters.moc"
