#include "conditionsignallog.h"
#include "rangeeditorchecks.h"

#include <zelkoguibase/filter/datetimefilterwidget.h>

#include <QTimeEdit>
#include <QtTest>

using namespace ZelkoGUI::Filter;
using namespace editorhands;
using namespace rangeeditorchecks;

namespace {

const QDate someDay(2026, 3, 29); // which has but 23 hours where clocks are put forward

/// Two conditions in their editor.
template <typename T>
struct Editor
{
    using Condition = NumberFilterCondition<T>;
    using Edit = std::conditional_t<std::is_same_v<T, QTime>, QTimeEdit, QDateTimeEdit>;

    Editor()
        : widget(new DateTimeFilterWidget(QList<Condition*>{lower, upper}, nullptr))
        , form(widget)
    {}
    ~Editor()
    {
        delete lower;
        delete upper;
    }

    static QString editName(const char* limit)
    {
        return QLatin1String(limit) +
               (std::is_same_v<T, QTime> ? QStringLiteral("LimitTimeEdit") : QStringLiteral("LimitDateTimeEdit"));
    }

    QPointer<Condition> lower = new Condition(T(), 4, 33, nullptr);
    QPointer<Condition> upper = new Condition(T(), 4, 33, nullptr);
    DateTimeFilterWidget* const widget;
    Form form; // which deletes the widget

    QCheckBox& lowerCheck = part<QCheckBox>(*widget, QStringLiteral("LowerLimitCheckbox"));
    Edit& lowerEdit = part<Edit>(*widget, editName("Lower"));
    QCheckBox& upperCheck = part<QCheckBox>(*widget, QStringLiteral("UpperLimitCheckbox"));
    Edit& upperEdit = part<Edit>(*widget, editName("Upper"));
};

using TimeEditor = Editor<QTime>;
using DayEditor = Editor<QDateTime>;

template <typename T>
bool restoreValue(NumberFilterCondition<T>& condition, const T& value, bool enabled = true)
{
    NumberFilterCondition<T> saved(value, 4, 33, nullptr);
    saved.setComparator(condition.comparator());
    saved.setEnabled(enabled);
    return restore(condition, saved);
}

/// Steps into an editor and types the digits of all its sections.
void typeDigits(QDateTimeEdit& edit, const QString& digits)
{
    edit.setFocus(Qt::TabFocusReason);
    QTest::keyClicks(&edit, digits);
}

template <typename Editor>
void hasPartsInARow(const Editor& editor)
{
    QCOMPARE(rowOf(*editor.widget),
             (QStringList{QStringLiteral("LowerLimitCheckbox"), Editor::editName("Lower"), QStringLiteral("stretch 1"),
                          QStringLiteral("UpperLimitCheckbox"), Editor::editName("Upper")}));
    saysWhichLimitIsWhich(editor);
}

template <typename Editor>
void isDisabledWithoutThe(QPointer<typename Editor::Condition> Editor::*condition)
{
    Editor editor;
    QVERIFY(editor.widget->isEnabled());
    delete (editor.*condition);
    QVERIFY(!editor.widget->isEnabled());
    for (const auto& left : {editor.lower, editor.upper}) {
        if (left) {
            Q_EMIT left->si_filterContentChanged();
        }
    }
    editor.widget->resetFilter();
    editor.lowerEdit.stepUp();
    editor.upperEdit.stepDown();
    QVERIFY(!editor.widget->isEnabled());
}

} // namespace

class DateTimeFilterWidgetTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void editsTimes();
    void editsDays();
    void startsWithTheWholeDay();
    void startsWithToday();
    void aCheckBoxSwitchesItsLimit();
    void theLastSecondCountsWhole();
    void theLowerTimeCountsFromItsSecond();
    void theLastDayCountsWhole();
    void theLowerDayCountsFromItsBegin();
    void takesADayFromTheCalendar();
    void whatARestoredTimeHadBelowTheSecondDoesNotCountOnceItIsEdited();
    void showsRestoredTimes();
    void showsRestoredDays();
    void restoringDoesNotWriteBack();
    void aRestoredLimitThatIsNoneShowsNothingNew();
    void staysEmptyWithAnotherNumberOfConditions_data();
    void staysEmptyWithAnotherNumberOfConditions();
    void isWorkedByKeysAlone();
    void theCalendarIsWorkedByKeysAlone_data();
    void theCalendarIsWorkedByKeysAlone();
    void isDisabledWhenAConditionIsGone();
    void aLimitThatIsLeftStaysOn();
    void isDisabledWithoutConditions();
    void slotsForTheOtherKindOfLimitDoNothing();
};

void DateTimeFilterWidgetTest::editsTimes()
{
    const TimeEditor editor;
    QCOMPARE(editor.widget->objectName(), QStringLiteral("TimeFilterWidget"));
    hasPartsInARow(editor);
    QCOMPARE(editor.lowerEdit.displayFormat(), QStringLiteral("hh:mm:ss"));
    QCOMPARE(editor.upperEdit.displayFormat(), QStringLiteral("hh:mm:ss"));
    QCOMPARE(editor.lowerEdit.text(), QStringLiteral("00:00:00"));
    QCOMPARE(editor.upperEdit.text(), QStringLiteral("23:59:59"));
}

void DateTimeFilterWidgetTest::editsDays()
{
    const DayEditor editor;
    QCOMPARE(editor.widget->objectName(), QStringLiteral("DateTimeFilterWidget"));
    hasPartsInARow(editor);
    for (const QDateTimeEdit* const edit : {&editor.lowerEdit, &editor.upperEdit}) {
        QCOMPARE(edit->displayFormat(), QStringLiteral("dd.MM.yyyy"));
        QVERIFY(edit->calendarPopup());
    }
}

// The end of the last second counts as soon as somebody has edited it.
void DateTimeFilterWidgetTest::startsWithTheWholeDay()
{
    const TimeEditor editor;
    areEndsOfARange(*editor.lower, *editor.upper);
    QCOMPARE(editor.lower->value(), QTime(0, 0, 0));
    QCOMPARE(editor.upper->value(), QTime(23, 59, 59));
}

void DateTimeFilterWidgetTest::startsWithToday()
{
    const QDate before = QDate::currentDate();
    const DayEditor editor;
    const QDate after = QDate::currentDate();
    areEndsOfARange(*editor.lower, *editor.upper);
    for (const QDateTimeEdit* const edit : {&editor.lowerEdit, &editor.upperEdit}) {
        QVERIFY(edit->date() == before || edit->date() == after);
    }
    QCOMPARE(editor.lower->value(), editor.lowerEdit.dateTime());
    QCOMPARE(editor.upper->value(), editor.upperEdit.dateTime());
}

void DateTimeFilterWidgetTest::aCheckBoxSwitchesItsLimit()
{
    TimeEditor times;
    isSwitchedByItsCheckBoxes(times);
    DayEditor days;
    isSwitchedByItsCheckBoxes(days);
}

void DateTimeFilterWidgetTest::theLastSecondCountsWhole()
{
    TimeEditor editor;
    QVERIFY(editor.form.isActive());
    click(editor.upperCheck);
    typeDigits(editor.upperEdit, QStringLiteral("000010"));
    QCOMPARE(editor.upperEdit.time(), QTime(0, 0, 10));
    QCOMPARE(editor.upper->value(), QTime(0, 0, 10, 999));
    QVERIFY(editor.upper->passes(QTime(0, 0, 10, 500)));
    QVERIFY(!editor.upper->passes(QTime(0, 0, 11)));
}

void DateTimeFilterWidgetTest::theLowerTimeCountsFromItsSecond()
{
    TimeEditor editor;
    QVERIFY(editor.form.isActive());
    click(editor.lowerCheck);
    typeDigits(editor.lowerEdit, QStringLiteral("000010"));
    QCOMPARE(editor.lower->value(), QTime(0, 0, 10));
    QVERIFY(editor.lower->passes(QTime(0, 0, 10)));
    QVERIFY(!editor.lower->passes(QTime(0, 0, 9, 999)));
}

void DateTimeFilterWidgetTest::theLastDayCountsWhole()
{
    DayEditor editor;
    QVERIFY(editor.form.isActive());
    click(editor.upperCheck);
    typeDigits(editor.upperEdit, QStringLiteral("29032026"));
    QCOMPARE(editor.upperEdit.date(), someDay);
    QCOMPARE(editor.upper->value(), QDateTime(someDay, QTime(23, 59, 59, 999)));
    QVERIFY(editor.upper->passes(QDateTime(someDay, QTime(18, 30))));
    QVERIFY(!editor.upper->passes(QDateTime(someDay.addDays(1), QTime(0, 0))));
}

void DateTimeFilterWidgetTest::theLowerDayCountsFromItsBegin()
{
    DayEditor editor;
    QVERIFY(editor.form.isActive());
    click(editor.lowerCheck);
    typeDigits(editor.lowerEdit, QStringLiteral("29032026"));
    QCOMPARE(editor.lower->value(), QDateTime(someDay, QTime(0, 0)));
    QVERIFY(editor.lower->passes(QDateTime(someDay, QTime(0, 0))));
    QVERIFY(!editor.lower->passes(QDateTime(someDay.addDays(-1), QTime(23, 59, 59, 999))));
    QVERIFY(QMetaObject::invokeMethod(editor.widget, "sl_bottomDateTimeChanged",
                                      Q_ARG(QDateTime, QDateTime(someDay.addDays(1), QTime(12, 30)))));
    QCOMPARE(editor.lower->value(), QDateTime(someDay.addDays(1), QTime(0, 0)));
}

void DateTimeFilterWidgetTest::takesADayFromTheCalendar()
{
    DayEditor editor;
    QVERIFY(editor.form.isActive());
    click(editor.upperCheck);
    editor.upperEdit.setDate(someDay);
    QTest::mouseClick(&editor.upperEdit, Qt::LeftButton, Qt::NoModifier,
                      QPoint(editor.upperEdit.width() - 6, editor.upperEdit.height() / 2));
    QTRY_VERIFY_WITH_TIMEOUT(QApplication::activePopupWidget(), patience);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Right);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    QCOMPARE(editor.upper->value(), QDateTime(someDay.addDays(1), QTime(23, 59, 59, 999)));
}

void DateTimeFilterWidgetTest::whatARestoredTimeHadBelowTheSecondDoesNotCountOnceItIsEdited()
{
    TimeEditor editor;
    QVERIFY(editor.form.isActive());
    QVERIFY(restoreValue(*editor.upper, QTime(23, 59, 59, 999)));
    QCOMPARE(editor.upperEdit.text(), QStringLiteral("23:59:59"));
    editor.upperEdit.setFocus();
    QTest::keyClick(&editor.upperEdit, Qt::Key_Home);
    QTest::keyClick(&editor.upperEdit, Qt::Key_Down);
    QCOMPARE(editor.upperEdit.text(), QStringLiteral("22:59:59"));
    QCOMPARE(editor.upper->value(), QTime(22, 59, 59, 999));
}

void DateTimeFilterWidgetTest::showsRestoredTimes()
{
    TimeEditor editor;
    QVERIFY(restoreValue(*editor.lower, QTime(0, 1, 2, 500)));
    QVERIFY(restoreValue(*editor.upper, QTime(3, 4, 5, 999), false));
    QCOMPARE(editor.lowerEdit.text(), QStringLiteral("00:01:02"));
    QCOMPARE(editor.upperEdit.text(), QStringLiteral("03:04:05"));
    isSwitched(editor, true, false);
}

void DateTimeFilterWidgetTest::showsRestoredDays()
{
    DayEditor editor;
    QVERIFY(restoreValue(*editor.lower, QDateTime(someDay, QTime(12, 30))));
    QCOMPARE(editor.lowerEdit.text(), QStringLiteral("29.03.2026"));
    isSwitched(editor, true, false);
}

void DateTimeFilterWidgetTest::restoringDoesNotWriteBack()
{
    DayEditor days;
    ConditionSignalLog log(*days.upper);
    QVERIFY(restoreValue(*days.upper, QDateTime(someDay, QTime(12, 30))));
    QCOMPARE(log.take(), QStringLiteral("filter, content"));
    QCOMPARE(days.upper->value(), QDateTime(someDay, QTime(12, 30)));
    TimeEditor times;
    ConditionSignalLog timeLog(*times.upper);
    QVERIFY(restoreValue(*times.upper, QTime(1, 2, 3, 4)));
    QCOMPARE(timeLog.take(), QStringLiteral("filter, content"));
    QCOMPARE(times.upper->value(), QTime(1, 2, 3, 4));
}

void DateTimeFilterWidgetTest::aRestoredLimitThatIsNoneShowsNothingNew()
{
    TimeEditor times;
    QVERIFY(restoreValue(*times.lower, QTime()));
    QCOMPARE(times.lowerEdit.text(), QStringLiteral("00:00:00"));
    DayEditor days;
    days.lowerEdit.setDate(someDay);
    days.lower->setValue(QDateTime());
    Q_EMIT days.lower->si_filterContentChanged();
    QCOMPARE(days.lowerEdit.date(), someDay);
}

void DateTimeFilterWidgetTest::staysEmptyWithAnotherNumberOfConditions_data()
{
    addOtherCountsOfConditions();
}

void DateTimeFilterWidgetTest::staysEmptyWithAnotherNumberOfConditions()
{
    QFETCH(int, count);
    QObject owner;
    QList<NumberFilterCondition<QTime>*> times;
    QList<NumberFilterCondition<QDateTime>*> days;
    for (int i = 0; i < count; ++i) {
        times << new NumberFilterCondition<QTime>(QTime(1, 2), 4, 33, &owner);
        times.last()->setEnabled(true);
        days << new NumberFilterCondition<QDateTime>(QDateTime(), 4, 33, &owner);
    }
    DateTimeFilterWidget ofTimes(times, nullptr);
    DateTimeFilterWidget ofDays(days, nullptr);
    for (DateTimeFilterWidget* const widget : {&ofTimes, &ofDays}) {
        QVERIFY(widget->findChildren<QWidget*>().isEmpty());
        widget->resetFilter();
    }
    for (const auto* const condition : times) {
        QVERIFY(condition->enabled());
        QCOMPARE(condition->value(), QTime(1, 2));
    }
}

void DateTimeFilterWidgetTest::isWorkedByKeysAlone()
{
    DayEditor editor;
    isSwitchedByKeys(editor);
    const QStringList reached = editor.form.reachedByTab(*editor.widget);
    QCOMPARE(reached.first(), QStringLiteral("LowerLimitCheckbox"));
    QVERIFY(reached.contains(QStringLiteral("LowerLimitDateTimeEdit")));
    QVERIFY(reached.indexOf(QStringLiteral("UpperLimitCheckbox")) >
            reached.indexOf(QStringLiteral("LowerLimitDateTimeEdit")));
    QVERIFY(reached.indexOf(QStringLiteral("UpperLimitDateTimeEdit")) >
            reached.indexOf(QStringLiteral("UpperLimitCheckbox")));
}

void DateTimeFilterWidgetTest::theCalendarIsWorkedByKeysAlone_data()
{
    QTest::addColumn<Qt::Key>("opening");
    QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
    QTest::addColumn<Qt::Key>("closing");

    QTest::newRow("F4, and Return") << Qt::Key_F4 << Qt::KeyboardModifiers() << Qt::Key_Return;
    QTest::newRow("Alt and down, and Return")
        << Qt::Key_Down << Qt::KeyboardModifiers(Qt::AltModifier) << Qt::Key_Return;
    QTest::newRow("F4, and Escape") << Qt::Key_F4 << Qt::KeyboardModifiers() << Qt::Key_Escape;
}

// Each day that the arrow keys go to is taken at once.
void DateTimeFilterWidgetTest::theCalendarIsWorkedByKeysAlone()
{
    QFETCH(Qt::Key, opening);
    QFETCH(Qt::KeyboardModifiers, modifiers);
    QFETCH(Qt::Key, closing);
    DayEditor editor;
    QVERIFY(editor.form.isActive());
    QVERIFY(restoreValue(*editor.lower, someDay.startOfDay()));
    editor.lowerEdit.setFocus();
    QTest::keyClick(&editor.lowerEdit, opening, modifiers);
    const QPointer<QWidget> calendar = QApplication::activePopupWidget();
    QVERIFY(calendar && calendar->isVisible());
    QCOMPARE(calendar->parentWidget(), &editor.lowerEdit);
    QVERIFY(calendar->focusWidget());
    QTest::keyClick(calendar->focusWidget(), Qt::Key_Right);
    QTest::keyClick(calendar->focusWidget(), closing);
    QTRY_VERIFY_WITH_TIMEOUT(!QApplication::activePopupWidget(), patience);
    QVERIFY(editor.form.window.isVisible());
    QCOMPARE(editor.lowerEdit.date(), someDay.addDays(1));
    QCOMPARE(editor.lower->value().date(), someDay.addDays(1));
}

void DateTimeFilterWidgetTest::isDisabledWhenAConditionIsGone()
{
    isDisabledWithoutThe(&TimeEditor::lower);
    isDisabledWithoutThe(&TimeEditor::upper);
    isDisabledWithoutThe(&DayEditor::lower);
    isDisabledWithoutThe(&DayEditor::upper);
}

void DateTimeFilterWidgetTest::aLimitThatIsLeftStaysOn()
{
    TimeEditor editor;
    click(editor.lowerCheck);
    click(editor.upperCheck);
    delete editor.lower;
    static_cast<IFilterUI*>(editor.widget)->resetFilter();
    QVERIFY(editor.upper->enabled());
    QCOMPARE(editor.upper->value(), QTime(23, 59, 59));
}

void DateTimeFilterWidgetTest::isDisabledWithoutConditions()
{
    const DateTimeFilterWidget times(QList<NumberFilterCondition<QTime>*>{nullptr, nullptr}, nullptr);
    QVERIFY(!times.isEnabled());
    const DateTimeFilterWidget days(QList<NumberFilterCondition<QDateTime>*>{nullptr, nullptr}, nullptr);
    QVERIFY(!days.isEnabled());
}

void DateTimeFilterWidgetTest::slotsForTheOtherKindOfLimitDoNothing()
{
    TimeEditor times;
    QVERIFY(QMetaObject::invokeMethod(times.widget, "sl_topDateTimeChanged",
                                      Q_ARG(QDateTime, QDateTime(someDay, QTime(1, 2)))));
    QCOMPARE(times.upper->value(), QTime(23, 59, 59));
    DayEditor days;
    days.upper->setValue(QDateTime(someDay, QTime(0, 0)));
    QVERIFY(QMetaObject::invokeMethod(days.widget, "sl_topTimeChanged", Q_ARG(QTime, QTime(1, 2))));
    QCOMPARE(days.upper->value(), QDateTime(someDay, QTime(0, 0)));
}

QTEST_MAIN(DateTimeFilterWidgetTest)
#include "tst_datetimefilterwidget.moc"
