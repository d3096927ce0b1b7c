#include "conditionsignallog.h"
#include "editorhands.h"

#include <zelkoguibase/filter/elidedlabel.h>
#include <zelkoguibase/filter/enumerationfilterwidget.h>

#include <QDialog>
#include <QListView>
#include <QMainWindow>
#include <QtTest>

using namespace ZelkoGUI::Filter;
using namespace editorhands;
using Status = ZELKO_XML::ZELKO_RecordData::RecordStatus;
using Condition = EnumerationFilterCondition<Status>;
using Widget = EnumerationFilterWidget<Status>;

namespace {

const QList<QPair<Status, QString>> someStatuses{{Status::Finished, QStringLiteral("done")},
                                                 {Status::Recording, QStringLiteral("running")},
                                                 {Status::Damaged, QStringLiteral("broken")},
                                                 {Status::Prepared, QStringLiteral("waiting")}};

QStringList names(const char* list)
{
    return QString::fromLatin1(list).split(QStringLiteral(", "));
}

/// A condition in its editor, in a window of kind W.
template <typename W = QDialog>
struct Window
{
    explicit Window(Condition* given = new Condition(4, 8, 33, nullptr))
        : condition(given)
        , widget(new Widget(condition, someStatuses, &window))
    {
        widget->resize(600, 60);
        window.resize(620, 80);
        window.show();
        QCoreApplication::processEvents(); // zero timers finish what the constructor must not
    }
    ~Window() { delete condition; }
    Window(const Window&) = delete;
    Window& operator=(const Window&) = delete;

    QString said() const { return label().accessibleName(); }
    EnumerationFilterWidgetBase::ElidedLabel& label() const
    {
        return part<EnumerationFilterWidgetBase::ElidedLabel>(*widget, QStringLiteral("InfoLabel"));
    }
    void select() { click(part<QPushButton>(*widget, QStringLiteral("SelectButton"))); }

    /// Clicks on a row of the list, on its text.
    void clickRow(int row)
    {
        const QModelIndex index = list()->model()->index(row, 0);
        const QRect place = list()->visualRect(index);
        QTest::mouseClick(list()->viewport(), Qt::LeftButton, Qt::NoModifier,
                          QPoint(place.right() - 5, place.center().y()));
    }
    QString rowText(int row) const { return list()->model()->index(row, 0).data().toString(); }
    bool rowIsChecked(int row) const
    {
        return list()->model()->index(row, 0).data(Qt::CheckStateRole).toInt() == Qt::Checked;
    }

    static QListView* list() { return openList(); }

    W window;
    QPointer<Condition> condition;
    Widget* const widget;
};

QSet<Status> setOf(const QList<Status>& values)
{
    return QSet<Status>(values.begin(), values.end());
}

const QSet<Status> allStatuses{Status::Finished, Status::Recording, Status::Damaged, Status::Prepared};

bool restoreValues(Condition& condition, const QList<Status>& values, bool enabled = true)
{
    Condition saved(4, 8, 33, nullptr);
    saved.setValues(values);
    saved.setEnabled(enabled);
    return restore(condition, saved);
}

QPoint centreOf(const QWidget& widget)
{
    return widget.mapToGlobal(widget.rect().center());
}

/// Frames are not the same on all sides, and centres are whole pixels.
bool isCentredOn(const QWidget& window, const QWidget& on)
{
    return (window.frameGeometry().center() - centreOf(on)).manhattanLength() <= 2;
}

} // namespace

class EnumerationFilterWidgetTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup();

    void hasItsParts();
    void hasAllKindsOfEnumerations();
    void numbersNamesByTheirPlace();
    void startsWithAllValues();
    void switchesTheConditionOnAtOnceAndFillsItNext();
    void isDisabledWhileItsConditionIsOff();
    void saysWhatIsShown();
    void saysTheNamesInItsToolTipWithoutRoom();
    void opensTheList();
    void deselectingAValueIsShownAtOnce();
    void theFirstRowCannotBeClickedWhileAllAreSelected();
    void selectingNothingRejectsEverything();
    void selectsAllAgain();
    void isResetByItsWindow();
    void filtersOncePerClick();
    void isWorkedByKeysAlone();
    void showsARestoredSelection();
    void restoringFiltersOnce();
    void dropsRestoredValuesThatItDoesNotKnow();
    void closesTheListWhenARestoredConditionIsOff();
    void followsAConditionThatIsSwitched();
    void closesTheListWhenTheConditionIsGone();
    void outlivesTheCondition();
    void thereIsOneListAtATime();
    void aClosedListIsGone();
    void theListGoesWithTheWindow();
    void theListIsPlacedAnewEachTime();
    void theListStaysWhereTheUserMovedIt();
    void aMinimizedListComesBack();
    void theListStaysWithAMinimizedWindow();
    void theListIsCentredOnItsWindow();
    void theListDiesWithTheWidget();
    void theConditionOutlivesTheWidget();
};

void EnumerationFilterWidgetTest::cleanup()
{
    QTRY_VERIFY_WITH_TIMEOUT(!Window<>::list(), patience);
}

void EnumerationFilterWidgetTest::hasItsParts()
{
    const Window window;
    QCOMPARE(window.widget->objectName(), QStringLiteral("EnumerationFilterWidget"));
    QCOMPARE(rowOf(*window.widget), (QStringList{QStringLiteral("InfoLabel"), QStringLiteral("SelectButton")}));
    QCOMPARE(qobject_cast<QHBoxLayout*>(window.widget->layout())->stretch(0), 1);
    QCOMPARE(window.label().minimumWidth(), 20 * window.label().fontMetrics().averageCharWidth());
    QCOMPARE(part<QPushButton>(*window.widget, QStringLiteral("SelectButton")).text(), QStringLiteral("Select..."));
    QCOMPARE(window.widget->valueCount(), 4);
    QVERIFY(!Window<>::list());
}

void EnumerationFilterWidgetTest::hasAllKindsOfEnumerations()
{
    using Data = ZELKO_XML::ZELKO_RecordData;
    const auto hasThem = [](auto value) {
        EnumerationFilterCondition<decltype(value)> condition(1, 5, 33, nullptr);
        EnumerationFilterWidget<decltype(value)> widget(&condition, {{value, QStringLiteral("the one")}}, nullptr);
        const auto* const editor = dynamic_cast<IFilterUI*>(static_cast<QWidget*>(&widget));
        widget.applySelection();
        return editor && condition.values() == QList{value} && widget.selectedNames() == names("the one");
    };
    QVERIFY(hasThem(Data::DataFormat{}));
    QVERIFY(hasThem(Data::DataRate{}));
    QVERIFY(hasThem(Data::Interface{}));
    QVERIFY(hasThem(Data::RecordStatus{}));
}

void EnumerationFilterWidgetTest::numbersNamesByTheirPlace()
{
    const QStringList names = ZELKO_XML::ZELKO_RecordData::GetGUIRecordStatuss();
    const auto values = EnumerationFilterWidget<Status>::numbered(names);
    QCOMPARE(values.size(), names.size());
    for (int number = 0; number < names.size(); ++number) {
        QCOMPARE(static_cast<int>(values[number].first), number);
        QCOMPARE(values[number].second, names[number]);
    }
    QVERIFY(EnumerationFilterWidget<Status>::numbered({}).isEmpty());
}

void EnumerationFilterWidgetTest::startsWithAllValues()
{
    const Window window;
    QCOMPARE(setOf(window.condition->values()), allStatuses);
    QVERIFY(window.condition->enabled());
    QVERIFY(!window.condition->filterActive());
    QVERIFY(window.widget->isEnabled());
    QVERIFY(window.widget->filterEnabled());
    QCOMPARE(window.widget->selectedNames(), names("done, running, broken, waiting"));
}

void EnumerationFilterWidgetTest::switchesTheConditionOnAtOnceAndFillsItNext()
{
    Condition condition(4, 8, 33, nullptr);
    ConditionSignalLog log(condition);
    const Widget widget(&condition, someStatuses, nullptr);
    QVERIFY(condition.enabled());
    QCOMPARE(log.take(), QStringLiteral("filter"));
    QTRY_COMPARE_WITH_TIMEOUT(setOf(condition.values()), allStatuses, patience);
    QCOMPARE(log.take(), QStringLiteral("filter"));
}

void EnumerationFilterWidgetTest::isDisabledWhileItsConditionIsOff()
{
    Condition condition(4, 8, 33, nullptr);
    Widget widget(&condition, someStatuses, nullptr);
    widget.setFilterEnabled(false);
    QVERIFY(!condition.enabled());
    QTRY_VERIFY_WITH_TIMEOUT(!widget.isEnabled(), patience);
}

void EnumerationFilterWidgetTest::saysWhatIsShown()
{
    Window window;
    QCOMPARE(window.said(), QStringLiteral("4 values shown: done, running, broken, waiting"));
    window.select();
    window.clickRow(4);
    QCOMPARE(window.said(), QStringLiteral("3 values shown: done, running, waiting"));
    QCOMPARE(window.label().text(), window.said());
    QCOMPARE(window.label().toolTip(), QString());
}

void EnumerationFilterWidgetTest::saysTheNamesInItsToolTipWithoutRoom()
{
    Window window;
    window.widget->resize(270, 60);
    QVERIFY(window.label().text() != window.said());
    QCOMPARE(window.label().toolTip(), QStringLiteral("done<br>running<br>broken<br>waiting"));
}

void EnumerationFilterWidgetTest::opensTheList()
{
    Window window;
    window.select();
    const QListView* const list = window.list();
    QVERIFY(list);
    QVERIFY(list->isVisible());
    QVERIFY(!list->parent());
    QCOMPARE(list->windowTitle(), QStringLiteral("Select Values to show"));
    QCOMPARE(list->windowModality(), Qt::WindowModal);
    QVERIFY(list->testAttribute(Qt::WA_DeleteOnClose));
    QVERIFY(!list->accessibleName().isEmpty());
    QCOMPARE(list->model(), window.widget->model());
    QCOMPARE(list->model()->rowCount(), 6);
}

void EnumerationFilterWidgetTest::deselectingAValueIsShownAtOnce()
{
    Window window;
    window.select();
    window.clickRow(3);
    QVERIFY(window.said().startsWith(QStringLiteral("3 values shown: ")));
    QVERIFY(window.condition->filterActive());
    QCOMPARE(setOf(window.condition->values()), allStatuses - QSet<Status>{Status::Recording});
    QCOMPARE(window.rowText(0), QStringLiteral("Select All"));
    QVERIFY(!window.rowIsChecked(0));
    window.clickRow(0);
    QVERIFY(!window.condition->filterActive());
}

void EnumerationFilterWidgetTest::theFirstRowCannotBeClickedWhileAllAreSelected()
{
    Window window;
    window.select();
    QCOMPARE(window.rowText(0), QStringLiteral("All"));
    QVERIFY(window.rowIsChecked(0));
    ConditionSignalLog log(*window.condition);
    window.clickRow(0);
    QCOMPARE(log.take(), QString());
    QCOMPARE(window.widget->selectedNames().size(), 4);
}

void EnumerationFilterWidgetTest::selectingNothingRejectsEverything()
{
    Window window;
    window.select();
    window.clickRow(1);
    QCOMPARE(window.said(), QStringLiteral("0 values shown: "));
    QVERIFY(window.condition->filterActive());
    for (const Status status : allStatuses) {
        QVERIFY(!window.condition->passes(QVariant::fromValue(status)));
    }
    QCOMPARE(window.rowText(1), QStringLiteral("Nothing"));
}

void EnumerationFilterWidgetTest::selectsAllAgain()
{
    Window window;
    window.select();
    window.clickRow(1);
    window.clickRow(0);
    QCOMPARE(window.said(), QStringLiteral("4 values shown: done, running, broken, waiting"));
    QVERIFY(!window.condition->filterActive());
    QCOMPARE(window.rowText(0), QStringLiteral("All"));
}

void EnumerationFilterWidgetTest::isResetByItsWindow()
{
    Window window;
    window.select();
    window.clickRow(1);
    static_cast<IFilterUI*>(window.widget)->resetFilter();
    QVERIFY(!window.condition->filterActive());
    QCOMPARE(window.widget->selectedNames().size(), 4);
}

void EnumerationFilterWidgetTest::filtersOncePerClick()
{
    Window window;
    window.select();
    ConditionSignalLog log(*window.condition);
    window.clickRow(2);
    QCOMPARE(log.take(), QStringLiteral("filter"));
    window.clickRow(1);
    QCOMPARE(log.take(), QStringLiteral("filter"));
}

void EnumerationFilterWidgetTest::isWorkedByKeysAlone()
{
    Window window;
    window.window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&window.window, patience));
    auto& button = part<QPushButton>(*window.widget, QStringLiteral("SelectButton"));
    button.setFocus();
    QTest::keyClick(&button, Qt::Key_Space);
    QListView* const list = window.list();
    QVERIFY(list);
    list->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(list, patience));
    QVERIFY(list->hasFocus());
    QTest::keyClick(list, Qt::Key_End);
    QTest::keyClick(list, Qt::Key_Up);
    QTest::keyClick(list, Qt::Key_Space);
    QCOMPARE(window.said(), QStringLiteral("3 values shown: done, running, waiting"));
    QTest::keyClick(list, Qt::Key_Home);
    QTest::keyClick(list, Qt::Key_Space);
    QCOMPARE(window.said(), QStringLiteral("4 values shown: done, running, broken, waiting"));
    QTest::keyClick(list, Qt::Key_Escape);
    QTRY_VERIFY_WITH_TIMEOUT(!window.list(), patience);
}

void EnumerationFilterWidgetTest::showsARestoredSelection()
{
    Window window;
    window.select();
    QVERIFY(restoreValues(*window.condition, {Status::Damaged, Status::Finished}));
    QCOMPARE(window.said(), QStringLiteral("2 values shown: done, broken"));
    QVERIFY(window.rowIsChecked(2));
    QVERIFY(!window.rowIsChecked(3));
    QVERIFY(window.rowIsChecked(4));
    QVERIFY(!window.rowIsChecked(5));
}

void EnumerationFilterWidgetTest::restoringFiltersOnce()
{
    Window window;
    ConditionSignalLog log(*window.condition);
    QVERIFY(restoreValues(*window.condition, {Status::Damaged, Status::Finished}));
    QCOMPARE(log.take(), QStringLiteral("filter, content"));
    QCOMPARE(setOf(window.condition->values()), (QSet<Status>{Status::Damaged, Status::Finished}));
}

void EnumerationFilterWidgetTest::dropsRestoredValuesThatItDoesNotKnow()
{
    Window window;
    QVERIFY(restoreValues(*window.condition, {Status::Finished, static_cast<Status>(77)}));
    QCOMPARE(window.said(), QStringLiteral("1 values shown: done"));
    QCOMPARE(window.condition->values(), QList{Status::Finished});
}

void EnumerationFilterWidgetTest::closesTheListWhenARestoredConditionIsOff()
{
    Window window;
    window.select();
    const QPointer<QListView> list = window.list();
    QVERIFY(list);
    QVERIFY(restoreValues(*window.condition, {Status::Finished}, false));
    QVERIFY(!window.widget->isEnabled());
    QTRY_VERIFY_WITH_TIMEOUT(!list, patience);
    QVERIFY(restoreValues(*window.condition, {Status::Finished}));
    QVERIFY(window.widget->isEnabled());
}

void EnumerationFilterWidgetTest::followsAConditionThatIsSwitched()
{
    Window window;
    window.select();
    const QPointer<QListView> list = window.list();
    QVERIFY(list);
    window.condition->setEnabled(false);
    QVERIFY(!window.widget->isEnabled());
    QTRY_VERIFY_WITH_TIMEOUT(!list, patience);
    window.condition->setEnabled(true);
    QVERIFY(window.widget->isEnabled());
}

void EnumerationFilterWidgetTest::closesTheListWhenTheConditionIsGone()
{
    Window window;
    window.select();
    const QPointer<QListView> list = window.list();
    QVERIFY(list);
    delete window.condition;
    QVERIFY(!window.widget->isEnabled());
    QVERIFY(!window.list());
    QTRY_VERIFY_WITH_TIMEOUT(!list, patience);
}

void EnumerationFilterWidgetTest::outlivesTheCondition()
{
    Window window;
    delete window.condition;
    window.widget->resetFilter();
    window.widget->setFilterEnabled(true);
    window.widget->loadSelection();
    QVERIFY(!window.widget->filterEnabled());
    Window without(nullptr);
    QVERIFY(!without.widget->isEnabled());
}

void EnumerationFilterWidgetTest::thereIsOneListAtATime()
{
    Window window;
    window.select();
    const QListView* const first = window.list();
    window.select();
    QCOMPARE(window.list(), first);
    int lists = 0;
    for (const QWidget* const top : QApplication::topLevelWidgets()) {
        lists += top->objectName() == QStringLiteral("ValuesListView") ? 1 : 0;
    }
    QCOMPARE(lists, 1);
}

void EnumerationFilterWidgetTest::aClosedListIsGone()
{
    Window window;
    window.select();
    window.clickRow(2);
    const QPointer<QListView> list = window.list();
    list->close();
    QTRY_VERIFY_WITH_TIMEOUT(!list, patience);
    window.select();
    QVERIFY(window.list()->isVisible());
    QVERIFY(!window.rowIsChecked(2));
}

void EnumerationFilterWidgetTest::theListGoesWithTheWindow()
{
    Window window;
    window.select();
    const QPointer<QListView> first = window.list();
    QVERIFY(first);
    window.window.hide();
    QTRY_VERIFY_WITH_TIMEOUT(!first, patience);
    window.window.show();
    QVERIFY(!window.list());
    window.select();
    QVERIFY(window.list()->isVisible());
}

void EnumerationFilterWidgetTest::theListIsPlacedAnewEachTime()
{
    Window window;
    window.select();
    QVERIFY(isCentredOn(*window.list(), window.window));
    window.window.hide();
    QTRY_VERIFY_WITH_TIMEOUT(!window.list(), patience);
    window.window.move(window.window.pos() + QPoint(60, 40));
    window.window.show();
    window.select();
    QVERIFY(isCentredOn(*window.list(), window.window));
}

void EnumerationFilterWidgetTest::theListStaysWhereTheUserMovedIt()
{
    Window window;
    window.select();
    const QPoint moved(13, 17);
    window.list()->move(moved);
    window.select();
    QCOMPARE(window.list()->pos(), moved);
}

void EnumerationFilterWidgetTest::aMinimizedListComesBack()
{
    Window window;
    window.select();
    window.list()->showMinimized();
    QVERIFY(window.list()->isMinimized());
    window.select();
    QVERIFY(!window.list()->isMinimized());
    QVERIFY(window.list()->isVisible());
}

// What is minimized gets such an event as well, but stays visible as far as Qt is concerned.
void EnumerationFilterWidgetTest::theListStaysWithAMinimizedWindow()
{
    Window window;
    window.select();
    QHideEvent event;
    QApplication::sendEvent(window.widget, &event);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(window.list());
}

void EnumerationFilterWidgetTest::theListIsCentredOnItsWindow()
{
    QWidget topmost;
    topmost.setGeometry(50, 60, 700, 500);
    auto* const main = new QMainWindow(&topmost, Qt::Widget);
    main->setGeometry(10, 10, 500, 300);
    auto* const group = new QWidget(main);
    group->setGeometry(100, 100, 300, 100);
    Condition condition(4, 8, 33, nullptr);
    auto* widget = new Widget(&condition, someStatuses, group);
    topmost.show();
    click(part<QPushButton>(*widget, QStringLiteral("SelectButton")));
    QVERIFY(isCentredOn(*Window<>::list(), *main));
    delete widget;
    QTRY_VERIFY_WITH_TIMEOUT(!Window<>::list(), patience);
    widget = new Widget(&condition, someStatuses, new QWidget(&topmost));
    widget->parentWidget()->show();
    click(part<QPushButton>(*widget, QStringLiteral("SelectButton")));
    QVERIFY(isCentredOn(*Window<>::list(), topmost));
}

void EnumerationFilterWidgetTest::theListDiesWithTheWidget()
{
    Window window;
    window.select();
    const QPointer<QListView> list = window.list();
    delete window.widget;
    QTRY_VERIFY_WITH_TIMEOUT(!list, patience);
}

void EnumerationFilterWidgetTest::theConditionOutlivesTheWidget()
{
    Condition condition(4, 8, 33, nullptr);
    delete new Widget(&condition, someStatuses, nullptr);
    QVERIFY(restoreValues(condition, {Status::Finished}));
    QCOMPARE(condition.values(), QList{Status::Finished});
}

QTEST_MAIN(EnumerationFilterWidgetTest)
#include "tst_enumerationfilterwidget.moc"
