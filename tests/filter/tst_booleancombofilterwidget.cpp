#include "booleaneditorchecks.h"

#include <zelkoguibase/filter/booleancombofilterwidget.h>

using namespace ZelkoGUI::Filter;
using namespace editorhands;
using booleaneditorchecks::restoreValue;

namespace {

/// A condition in its editor.
struct Editor
{
    ~Editor() { delete condition; }

    QPointer<BooleanFilterCondition> condition = new BooleanFilterCondition(12, 33, nullptr);
    BooleanComboFilterWidget* const widget =
        new BooleanComboFilterWidget(condition, QStringLiteral("kept"), QStringLiteral("deletable"), nullptr);
    Form form{widget}; // which deletes the widget

    QCheckBox& enable = part<QCheckBox>(*widget, QStringLiteral("EnableFilter"));
    QComboBox& selection = part<QComboBox>(*widget, QStringLiteral("Selection"));
};

} // namespace

class BooleanComboFilterWidgetTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void hasItsParts();
    void switchesTheConditionOff();
    void theCheckBoxSwitchesTheCondition();
    void theBoxChoosesTheFlag();
    void showsARestoredFlag();
    void restoringDoesNotWriteBack();
    void isResetByItsWindow();
    void isWorkedByKeysAlone();
    void isDisabledWhenTheConditionIsGone();
    void doesWithoutACondition();
};

void BooleanComboFilterWidgetTest::hasItsParts()
{
    const Editor editor;
    QCOMPARE(editor.widget->objectName(), QStringLiteral("BooleanComboFilterWidget"));
    QCOMPARE(rowOf(*editor.widget),
             (QStringList{QStringLiteral("EnableFilter"), QStringLiteral("Selection"), QStringLiteral("stretch 1")}));
    QVERIFY(!editor.enable.isChecked());
    QVERIFY(!editor.enable.accessibleName().isEmpty());
    QVERIFY(!editor.selection.accessibleName().isEmpty());
    QCOMPARE(editor.selection.count(), 2);
    QCOMPARE(editor.selection.itemText(0), QStringLiteral("kept"));
    QCOMPARE(editor.selection.itemText(1), QStringLiteral("deletable"));
    QCOMPARE(editor.selection.currentIndex(), 1);
}

void BooleanComboFilterWidgetTest::switchesTheConditionOff()
{
    BooleanFilterCondition condition(12, 33, nullptr);
    condition.setEnabled(true);
    condition.setValue(false);
    const BooleanComboFilterWidget widget(&condition, QStringLiteral("no"), QStringLiteral("yes"), nullptr);
    QVERIFY(!condition.enabled());
    QVERIFY(!condition.value());
    QCOMPARE(part<QComboBox>(widget, QStringLiteral("Selection")).currentText(), QStringLiteral("no"));
}

void BooleanComboFilterWidgetTest::theCheckBoxSwitchesTheCondition()
{
    Editor editor;
    booleaneditorchecks::theCheckBoxSwitches(*editor.condition, editor.enable, editor.selection);
}

void BooleanComboFilterWidgetTest::theBoxChoosesTheFlag()
{
    Editor editor;
    QVERIFY(editor.form.isActive());
    click(editor.enable);
    ConditionSignalLog log(*editor.condition);
    choose(editor.selection, 0);
    QVERIFY(!editor.condition->value());
    choose(editor.selection, 1);
    QVERIFY(editor.condition->value());
    QCOMPARE(log.take(), QStringLiteral("filter, filter"));
}

void BooleanComboFilterWidgetTest::showsARestoredFlag()
{
    Editor editor;
    QVERIFY(restoreValue(*editor.condition, false, true));
    QVERIFY(editor.enable.isChecked());
    QVERIFY(editor.selection.isEnabled());
    QCOMPARE(editor.selection.currentIndex(), 0);
    QVERIFY(restoreValue(*editor.condition, true, false));
    QVERIFY(!editor.enable.isChecked());
    QVERIFY(!editor.selection.isEnabled());
    QCOMPARE(editor.selection.currentIndex(), 1);
}

void BooleanComboFilterWidgetTest::restoringDoesNotWriteBack()
{
    Editor editor;
    booleaneditorchecks::restoringDoesNotWriteBack(*editor.condition);
}

void BooleanComboFilterWidgetTest::isResetByItsWindow()
{
    Editor editor;
    QVERIFY(editor.form.isActive());
    click(editor.enable);
    choose(editor.selection, 0);
    booleaneditorchecks::isReset(*editor.widget, *editor.condition, editor.enable);
}

void BooleanComboFilterWidgetTest::isWorkedByKeysAlone()
{
    Editor editor;
    booleaneditorchecks::isWorkedByKeysAlone(editor.form, *editor.condition, Qt::Key_Up);
}

void BooleanComboFilterWidgetTest::isDisabledWhenTheConditionIsGone()
{
    Editor editor;
    click(editor.enable);
    delete editor.condition;
    QVERIFY(!editor.widget->isEnabled());
    editor.selection.setCurrentIndex(0);
    editor.widget->resetFilter();
    QVERIFY(!editor.widget->isEnabled());
}

void BooleanComboFilterWidgetTest::doesWithoutACondition()
{
    const BooleanComboFilterWidget widget(nullptr, QStringLiteral("no"), QStringLiteral("yes"), nullptr);
    QVERIFY(!widget.isEnabled());
    QCOMPARE(part<QComboBox>(widget, QStringLiteral("Selection")).currentIndex(), 0);
}

QTEST_MAIN(BooleanComboFilterWidgetTest)
#include "tst_booleancombofilterwidget.moc"
