#include "listsite.h"

#include <resources/zelkoicons.h>
#include <zelkoguibase/filter/stringfiltercondition.h>
#include <zelkoguibase/recordlist/selectheaderview.h>

#include <QAbstractItemModelTester>
#include <QBoxLayout>
#include <QHeaderView>
#include <QToolTip>

using namespace Qt::StringLiterals;
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

/// A list that tells how many are told of its new rows.
class CountingRecords final : public ListedRecords
{
public:
    using ListedRecords::ListedRecords;
    int listeners() const { return receivers(SIGNAL(rowsInserted(QModelIndex, int, int))); }
};

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

    void countsRecords();
    void countsAfterALargeChange();
    void showsTheDevice_data();
    void showsTheDevice();
    void aLongDeviceNameNeverWidensTheWindow();
    void followsTheDevice_data();
    void followsTheDevice();
    void showsTheProgress_data();
    void showsTheProgress();
    void takesAnotherListOfTheController();
    void leavesTheListThatItNoLongerShows();
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

void RecordListWidgetTest::followsTheDevice_data()
{
    QTest::addColumn<int>("options");
    QTest::newRow("with a label for it") << 8;
    QTest::newRow("without a label") << 0;
}

void RecordListWidgetTest::followsTheDevice()
{
    QFETCH(int, options);
    ListSite site{ListSite::Options(QFlag(options))};
    if (const auto* const label = site.part<QLabel>("ActiveDeviceLabel")) {
        QCOMPARE(label->text(), u"Device: device, north"_s);
    }
    site.click(1);
    const QSignalSpy spy(&*site.widget, &Widget::si_selectedRecordsChanged);
    Q_EMIT site.controller->si_activeDeviceChanged({}, {});
    QCOMPARE(spy, QList<QList<QVariant>>{{QStringList(u"B"_s)}});
    ListedRecords other({u"X"_s, u"Y"_s});
    site.controller->list = &other;
    Q_EMIT site.controller->si_activeDeviceChanged({}, {});
    QCOMPARE(site.shown(), u"X Y"_s);
    QCOMPARE(spy.constLast(), QList<QVariant>{QStringList()});
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

void RecordListWidgetTest::leavesTheListThatItNoLongerShows()
{
    ListSite site;
    CountingRecords old({u"A"_s});
    const int itsOwn = old.listeners();
    site.controller->list = &old;
    Q_EMIT site.controller->si_activeDeviceChanged({}, {});
    QVERIFY(old.listeners() > itsOwn);
    site.controller->list = &site.model;
    Q_EMIT site.controller->si_activeDeviceChanged({}, {});
    QCOMPARE(old.listeners(), itsOwn);
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
