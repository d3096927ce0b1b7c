#include "conditionsignallog.h"
#include "rangeeditorchecks.h"

#include <zelkoguibase/filter/sizefilterwidget.h>

#include <QValidator>
#include <QtTest>

#include <cmath>
#include <limits>

using namespace ZelkoGUI::Filter;
using namespace editorhands;
using namespace rangeeditorchecks;
using Condition = NumberFilterCondition<double>;
using Units = QList<QPair<QString, double>>;

namespace {

Units bytes()
{
    return {{QStringLiteral("Byte"), 1.0},
            {QStringLiteral("kByte"), 1024.0},
            {QStringLiteral("MByte"), 1048576.0},
            {QStringLiteral("GByte"), 1073741824.0}};
}

/// Two conditions in their editor.
struct Editor
{
    explicit Editor(const Units& units = bytes())
        : widget(new SizeFilterWidget({lower, upper}, units, nullptr))
        , form(widget)
    {}
    ~Editor()
    {
        delete lower;
        delete upper;
    }

    QPointer<Condition> lower = new Condition(7, 1, 33, nullptr);
    QPointer<Condition> upper = new Condition(8, 1, 33, nullptr);
    SizeFilterWidget* const widget;
    Form form; // which deletes the widget

    QCheckBox& lowerCheck = part<QCheckBox>(*widget, QStringLiteral("LowerLimitCheckbox"));
    QLineEdit& lowerEdit = part<QLineEdit>(*widget, QStringLiteral("LowerLimitEdit"));
    QCheckBox& upperCheck = part<QCheckBox>(*widget, QStringLiteral("UpperLimitCheckbox"));
    QLineEdit& upperEdit = part<QLineEdit>(*widget, QStringLiteral("UpperLimitEdit"));
    QComboBox* unit = widget->findChild<QComboBox*>(QStringLiteral("UnitCombobox"));

    QString shown() const
    {
        return QStringLiteral("%1 %2 %3")
            .arg(lowerEdit.text(), upperEdit.text(), unit ? unit->currentText() : QString());
    }
};

/// Restores a limit from a file that has `text` for it.
bool restoreText(Condition& condition, const QString& text, bool enabled = true)
{
    ZELKO_XML::NumberFilter number;
    number.SetComparator(static_cast<ZELKO_XML::NumberFilter::Comparator>(condition.comparator()));
    number.SetFilterValue(text);
    ZELKO_XML::FilterCondition entry;
    entry.SetName(condition.objectName());
    entry.SetColumn(condition.filterKeyColumn());
    entry.SetRole(condition.filterRole());
    entry.SetEnabled(enabled);
    entry.SetNumberFilter(number);
    ZELKO_XML::FilterConditionList list;
    list.AppendFilterCondition(entry);
    return condition.readFromXml(list);
}

} // namespace

class SizeFilterWidgetTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void hasItsParts();
    void doesWithoutUnits();
    void preparesTheConditions();
    void startsInTheFirstUnit();
    void staysEmptyWithAnotherNumberOfConditions_data();
    void staysEmptyWithAnotherNumberOfConditions();
    void aCheckBoxSwitchesItsLimit();
    void theUnitCanBeChosenWhileALimitIsOn();
    void filtersWithEachDigit();
    void takesWholeNumbersOnly_data();
    void takesWholeNumbersOnly();
    void theNumbersStayWhenTheUnitChanges();
    void showsARestoredRange();
    void restoringDoesNotWriteBack();
    void showsARestoredRangeInTheFirstUnitThatFits_data();
    void showsARestoredRangeInTheFirstUnitThatFits();
    void staysInTheChosenUnitWhileARestoredRangeFits_data();
    void staysInTheChosenUnitWhileARestoredRangeFits();
    void typedNumbersAreInTheUnitOfARestoredRange();
    void isResetByItsWindow();
    void isWorkedByKeysAlone();
    void isDisabledWhenAConditionIsGone_data();
    void isDisabledWhenAConditionIsGone();
    void aLimitThatIsLeftStaysOn_data();
    void aLimitThatIsLeftStaysOn();
    void isDisabledWithoutConditions();
    void theConditionsOutliveIt();
};

void SizeFilterWidgetTest::hasItsParts()
{
    const Editor editor;
    QCOMPARE(editor.widget->objectName(), QStringLiteral("SizeFilterWidget"));
    QCOMPARE(rowOf(*editor.widget), (QStringList{QStringLiteral("LowerLimitCheckbox"), QStringLiteral("LowerLimitEdit"),
                                                 QStringLiteral("stretch 1"), QStringLiteral("UpperLimitCheckbox"),
                                                 QStringLiteral("UpperLimitEdit"), QStringLiteral("UnitCombobox")}));
    saysWhichLimitIsWhich(editor);
    QCOMPARE(editor.shown(), QStringLiteral("1 100 Byte"));
    QVERIFY(editor.lowerEdit.validator());
    QCOMPARE(editor.lowerEdit.validator(), editor.upperEdit.validator());
    QCOMPARE(editor.unit->count(), 4);
    QCOMPARE(editor.unit->itemText(3), QStringLiteral("GByte"));
    QVERIFY(!editor.unit->accessibleName().isEmpty());
}

void SizeFilterWidgetTest::doesWithoutUnits()
{
    Editor editor{Units()};
    QVERIFY(!editor.unit);
    QCOMPARE(editor.lower->value(), 1.0);
    QCOMPARE(editor.upper->value(), 100.0);
    click(editor.lowerCheck);
    retype(editor.lowerEdit, QStringLiteral("12"));
    QCOMPARE(editor.lower->value(), 12.0);
    QVERIFY(restoreText(*editor.lower, QStringLiteral("34")));
    QCOMPARE(editor.shown(), QStringLiteral("34 100 "));
}

void SizeFilterWidgetTest::preparesTheConditions()
{
    Condition lower(7, 1, 33, nullptr);
    Condition upper(8, 1, 33, nullptr);
    lower.setEnabled(true);
    upper.setEnabled(true);
    ConditionSignalLog log(lower);
    const SizeFilterWidget widget({&lower, &upper}, bytes(), nullptr);
    QCOMPARE(log.take(), QStringLiteral("filter"));
    areEndsOfARange(lower, upper);
    QCOMPARE(lower.value(), 1.0);
    QCOMPARE(upper.value(), 100.0);
}

void SizeFilterWidgetTest::startsInTheFirstUnit()
{
    const Editor editor(Units{{QStringLiteral("kHz"), 1000.0}, {QStringLiteral("Hz"), 1.0}});
    QCOMPARE(editor.shown(), QStringLiteral("1 100 kHz"));
    QCOMPARE(editor.lower->value(), 1000.0);
    QCOMPARE(editor.upper->value(), 100'000.0);
}

void SizeFilterWidgetTest::staysEmptyWithAnotherNumberOfConditions_data()
{
    addOtherCountsOfConditions();
}

void SizeFilterWidgetTest::staysEmptyWithAnotherNumberOfConditions()
{
    QFETCH(int, count);
    QObject owner;
    QList<Condition*> conditions;
    for (int i = 0; i < count; ++i) {
        conditions << new Condition(7, 1, 33, &owner);
        conditions.last()->setEnabled(true);
    }
    SizeFilterWidget widget(conditions, bytes(), nullptr);
    QVERIFY(widget.findChildren<QWidget*>().isEmpty());
    widget.resetFilter();
    for (const Condition* const condition : conditions) {
        QVERIFY(condition->enabled());
        QCOMPARE(condition->value(), 7.0);
    }
}

void SizeFilterWidgetTest::aCheckBoxSwitchesItsLimit()
{
    Editor editor;
    isSwitchedByItsCheckBoxes(editor);
}

void SizeFilterWidgetTest::theUnitCanBeChosenWhileALimitIsOn()
{
    Editor editor;
    QVERIFY(!editor.unit->isEnabled());
    click(editor.lowerCheck);
    click(editor.upperCheck);
    QVERIFY(editor.unit->isEnabled());
    click(editor.lowerCheck);
    QVERIFY(!editor.lower->enabled());
    QVERIFY(!editor.lowerEdit.isEnabled());
    QVERIFY(editor.unit->isEnabled());
    retype(editor.upperEdit, QStringLiteral("5"));
    QCOMPARE(editor.upper->value(), 5.0);
    QVERIFY(editor.upper->enabled());
    click(editor.upperCheck);
    QVERIFY(!editor.unit->isEnabled());
}

void SizeFilterWidgetTest::filtersWithEachDigit()
{
    Editor editor;
    QVERIFY(editor.form.isActive());
    click(editor.upperCheck);
    retype(editor.upperEdit, QStringLiteral("2"));
    ConditionSignalLog log(*editor.upper);
    ConditionSignalLog other(*editor.lower);
    QTest::keyClick(&editor.upperEdit, Qt::Key_5);
    QCOMPARE(editor.upper->value(), 25.0);
    QTest::keyClick(&editor.upperEdit, Qt::Key_0);
    QCOMPARE(editor.upper->value(), 250.0);
    QCOMPARE(log.take(), QStringLiteral("filter, filter"));
    QCOMPARE(other.take(), QString());
}

void SizeFilterWidgetTest::takesWholeNumbersOnly_data()
{
    QTest::addColumn<QString>("keys");
    QTest::addColumn<QString>("shown");
    QTest::addColumn<double>("value");
    QTest::newRow("the largest one") << QStringLiteral("2147483647") << QStringLiteral("2147483647") << 2147483647.0;
    QTest::newRow("one too many") << QStringLiteral("2147483648") << QStringLiteral("214748364") << 214748364.0;
    QTest::newRow("one below zero") << QStringLiteral("-5") << QStringLiteral("5") << 5.0;
    QTest::newRow("a fraction") << QStringLiteral("1.5") << QStringLiteral("15") << 15.0;
    QTest::newRow("separated groups") << QStringLiteral("1,000") << QStringLiteral("1000") << 1000.0;
    QTest::newRow("words") << QStringLiteral("x1y") << QStringLiteral("1") << 1.0;
    QTest::newRow("nothing") << QString() << QString() << 0.0;
}

void SizeFilterWidgetTest::takesWholeNumbersOnly()
{
    QFETCH(QString, keys);
    Editor editor;
    QVERIFY(editor.form.isActive());
    click(editor.lowerCheck);
    retype(editor.lowerEdit, keys);
    QTEST(editor.lowerEdit.text(), "shown");
    QTEST(editor.lower->value(), "value");
}

void SizeFilterWidgetTest::theNumbersStayWhenTheUnitChanges()
{
    Editor editor;
    QVERIFY(editor.form.isActive());
    click(editor.lowerCheck);
    retype(editor.lowerEdit, QStringLiteral("2"));
    ConditionSignalLog log(*editor.lower);
    choose(*editor.unit, 1);
    QCOMPARE(editor.lower->value(), 2048.0);
    QCOMPARE(editor.upper->value(), 102'400.0);
    QCOMPARE(editor.shown(), QStringLiteral("2 100 kByte"));
    QCOMPARE(log.take(), QStringLiteral("filter"));
}

void SizeFilterWidgetTest::showsARestoredRange()
{
    Editor editor;
    QVERIFY(restoreText(*editor.lower, QStringLiteral("200")));
    QVERIFY(restoreText(*editor.upper, QStringLiteral("300"), false));
    QCOMPARE(editor.shown(), QStringLiteral("200 300 Byte"));
    isSwitched(editor, true, false);
    QVERIFY(editor.unit->isEnabled());
    QVERIFY(restoreText(*editor.lower, QStringLiteral("200"), false));
    QVERIFY(!editor.unit->isEnabled());
}

void SizeFilterWidgetTest::restoringDoesNotWriteBack()
{
    Editor editor;
    ConditionSignalLog log(*editor.lower);
    ConditionSignalLog other(*editor.upper);
    QVERIFY(restoreText(*editor.lower, QStringLiteral("1048576.75")));
    QCOMPARE(editor.lower->value(), 1048576.75);
    QCOMPARE(editor.upper->value(), 100.0);
    QVERIFY(restoreText(*editor.lower, QStringLiteral("3221225472000")));
    QCOMPARE(editor.lower->value(), 3221225472000.0);
    QCOMPARE(editor.upper->value(), 100.0);
    QVERIFY(!editor.upper->enabled());
    QCOMPARE(log.take(), QStringLiteral("filter, content, filter, content"));
    QCOMPARE(other.take(), QString());
}

void SizeFilterWidgetTest::showsARestoredRangeInTheFirstUnitThatFits_data()
{
    QTest::addColumn<QString>("lower");
    QTest::addColumn<QString>("upper");
    QTest::addColumn<QString>("shown");
    const auto row = [](const char* name, const char* lower, const char* upper, const char* shown) {
        QTest::newRow(name) << QString::fromLatin1(lower) << QString::fromLatin1(upper) << QString::fromLatin1(shown);
    };
    row("the present unit fits", "0", "2147483647", "0 2147483647 Byte");
    row("one of the limits is too large", "1024", "2147483648", "1 2097152 kByte");
    row("3000 GByte", "3221225472000", "3221225472000", "3072000 3072000 MByte");
    row("a fraction is cut off", "1024", "4294969343", "1 4194305 kByte");
    row("too large for every unit", "1", "1e+30", "1 9223372036854775807 Byte");
    row("below zero", "-5", "100", "-5 100 Byte");
    row("far below zero", "-1e+30", "100", "-9223372036854775808 100 Byte");
    row("no number", "nan", "100", "0 100 Byte");
    row("endless", "1", "inf", "1 9223372036854775807 Byte");
}

void SizeFilterWidgetTest::showsARestoredRangeInTheFirstUnitThatFits()
{
    QFETCH(QString, lower);
    QFETCH(QString, upper);
    Editor editor;
    QVERIFY(restoreText(*editor.lower, lower));
    QVERIFY(restoreText(*editor.upper, upper));
    QTEST(editor.shown(), "shown");
}

void SizeFilterWidgetTest::staysInTheChosenUnitWhileARestoredRangeFits_data()
{
    QTest::addColumn<QString>("lower");
    QTest::addColumn<QString>("upper");
    QTest::addColumn<QString>("shown");
    QTest::newRow("whole ones of it") << QStringLiteral("5242880") << QStringLiteral("1073741824")
                                      << QStringLiteral("5 1024 MByte");
    QTest::newRow("far less than one of it")
        << QStringLiteral("1") << QStringLiteral("100") << QStringLiteral("0 0 MByte");
    QTest::newRow("the most of it") << QStringLiteral("0") << QStringLiteral("2251799812636672")
                                    << QStringLiteral("0 2147483647 MByte");
    QTest::newRow("more than fits") << QStringLiteral("0") << QStringLiteral("2251799813685248")
                                    << QStringLiteral("0 2097152 GByte");
}

void SizeFilterWidgetTest::staysInTheChosenUnitWhileARestoredRangeFits()
{
    QFETCH(QString, lower);
    QFETCH(QString, upper);
    Editor editor;
    QVERIFY(editor.form.isActive());
    click(editor.lowerCheck);
    choose(*editor.unit, 2);
    QCOMPARE(editor.shown(), QStringLiteral("1 100 MByte"));
    QVERIFY(restoreText(*editor.lower, lower));
    QVERIFY(restoreText(*editor.upper, upper));
    QTEST(editor.shown(), "shown");
}

void SizeFilterWidgetTest::typedNumbersAreInTheUnitOfARestoredRange()
{
    Editor editor;
    QVERIFY(editor.form.isActive());
    QVERIFY(restoreText(*editor.lower, QStringLiteral("3221225472000")));
    QCOMPARE(editor.unit->currentText(), QStringLiteral("MByte"));
    retype(editor.lowerEdit, QStringLiteral("3"));
    QCOMPARE(editor.lower->value(), 3 * 1048576.0);
}

void SizeFilterWidgetTest::isResetByItsWindow()
{
    Editor editor;
    click(editor.lowerCheck);
    click(editor.upperCheck);
    retype(editor.upperEdit, QStringLiteral("7"));
    static_cast<IFilterUI*>(editor.widget)->resetFilter();
    isSwitched(editor, false, false);
    QVERIFY(!editor.unit->isEnabled());
    QCOMPARE(editor.shown(), QStringLiteral("1 7 Byte"));
}

void SizeFilterWidgetTest::isWorkedByKeysAlone()
{
    Editor editor;
    isSwitchedByKeys(editor);
    QStringList parts = rowOf(*editor.widget);
    parts.removeAll(QStringLiteral("stretch 1"));
    QCOMPARE(editor.form.reachedByTab(*editor.widget), parts);
}

void SizeFilterWidgetTest::isDisabledWhenAConditionIsGone_data()
{
    QTest::addColumn<bool>("lower");
    QTest::newRow("the lower limit") << true;
    QTest::newRow("the upper limit") << false;
}

void SizeFilterWidgetTest::isDisabledWhenAConditionIsGone()
{
    QFETCH(bool, lower);
    Editor editor;
    click(editor.lowerCheck);
    QVERIFY(editor.widget->isEnabled());
    delete (lower ? editor.lower : editor.upper);
    QVERIFY(!editor.widget->isEnabled());
    Condition* const left = lower ? editor.upper : editor.lower;
    QVERIFY(restoreText(*left, QStringLiteral("5")));
    editor.widget->resetFilter();
    editor.lowerEdit.setText(QStringLiteral("3"));
    editor.upperEdit.setText(QStringLiteral("4"));
    editor.unit->setCurrentIndex(1);
    QVERIFY(!editor.widget->isEnabled());
}

void SizeFilterWidgetTest::aLimitThatIsLeftStaysOn_data()
{
    isDisabledWhenAConditionIsGone_data();
}

void SizeFilterWidgetTest::aLimitThatIsLeftStaysOn()
{
    QFETCH(bool, lower);
    Editor editor;
    click(editor.lowerCheck);
    click(editor.upperCheck);
    delete (lower ? editor.lower : editor.upper);
    const Condition* const left = lower ? editor.upper : editor.lower;
    static_cast<IFilterUI*>(editor.widget)->resetFilter();
    QVERIFY(left->enabled());
    QCOMPARE(left->value(), lower ? 100.0 : 1.0);
}

void SizeFilterWidgetTest::isDisabledWithoutConditions()
{
    const SizeFilterWidget widget({nullptr, nullptr}, bytes(), nullptr);
    QVERIFY(!widget.isEnabled());
}

void SizeFilterWidgetTest::theConditionsOutliveIt()
{
    Condition lower(7, 1, 33, nullptr);
    Condition upper(8, 1, 33, nullptr);
    delete new SizeFilterWidget({&lower, &upper}, bytes(), nullptr);
    QVERIFY(restoreText(lower, QStringLiteral("5")));
    QCOMPARE(lower.value(), 5.0);
}

QTEST_MAIN(SizeFilterWidgetTest)
#include "tst_sizefilterwidget.moc"
