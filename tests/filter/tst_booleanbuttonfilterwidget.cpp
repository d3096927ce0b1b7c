#include "booleaneditorchecks.h"
#include "iconpicture.h"

#include <resources/zelkoicons.h>
#include <zelkoguibase/filter/booleanbuttonfilterwidget.h>

using namespace ZelkoGUI::Filter;
using namespace editorhands;
using booleaneditorchecks::restoreValue;

namespace {

QIcon noIcon()
{
    return QIcon(QStringLiteral(":/Zelko/RecordList/ResetDeletable.svg"));
}

QIcon yesIcon()
{
    return QIcon(QStringLiteral(":/Zelko/RecordList/SetDeletable.svg"));
}

/// A condition in its editor.
struct Editor
{
    ~Editor() { delete condition; }

    QPointer<BooleanFilterCondition> condition = new BooleanFilterCondition(12, 33, nullptr);
    BooleanButtonFilterWidget* const widget = new BooleanButtonFilterWidget(condition, nullptr);
    Form form{widget}; // which deletes the widget

    QCheckBox& enable = part<QCheckBox>(*widget, QStringLiteral("EnableFilter"));
    QPushButton& button = part<QPushButton>(*widget, QStringLiteral("PushButton"));
};

} // namespace

class BooleanButtonFilterWidgetTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { registerZelkoIcons(); }

    void hasItsParts();
    void switchesTheConditionOff();
    void theCheckBoxSwitchesTheCondition();
    void theButtonTurnsTheFlag();
    void saysTheFlagInItsOwnWords();
    void showsARestoredFlag();
    void restoringDoesNotWriteBack();
    void isResetByItsWindow();
    void isWorkedByKeysAlone();
    void isDisabledWhenTheConditionIsGone();
    void doesWithoutACondition();
};

void BooleanButtonFilterWidgetTest::hasItsParts()
{
    const Editor editor;
    QCOMPARE(editor.widget->objectName(), QStringLiteral("BooleanButtonFilterWidget"));
    QCOMPARE(rowOf(*editor.widget),
             (QStringList{QStringLiteral("EnableFilter"), QStringLiteral("PushButton"), QStringLiteral("stretch 1")}));
    QVERIFY(!editor.enable.isChecked());
    QVERIFY(!editor.enable.accessibleName().isEmpty());
    QVERIFY(!editor.button.accessibleName().isEmpty());
    QVERIFY(editor.button.isCheckable());
    QVERIFY(editor.button.isChecked());
    QCOMPARE(editor.button.text(), QStringLiteral("true"));
    QVERIFY(editor.button.icon().isNull());
}

void BooleanButtonFilterWidgetTest::switchesTheConditionOff()
{
    BooleanFilterCondition condition(12, 33, nullptr);
    condition.setEnabled(true);
    condition.setValue(false);
    const BooleanButtonFilterWidget widget(&condition, nullptr);
    QVERIFY(!condition.enabled());
    QVERIFY(!condition.value());
    QCOMPARE(part<QPushButton>(widget, QStringLiteral("PushButton")).text(), QStringLiteral("false"));
}

void BooleanButtonFilterWidgetTest::theCheckBoxSwitchesTheCondition()
{
    Editor editor;
    booleaneditorchecks::theCheckBoxSwitches(*editor.condition, editor.enable, editor.button);
}

void BooleanButtonFilterWidgetTest::theButtonTurnsTheFlag()
{
    Editor editor;
    click(editor.enable);
    ConditionSignalLog log(*editor.condition);
    click(editor.button);
    QVERIFY(!editor.condition->value());
    QVERIFY(!editor.button.isChecked());
    QCOMPARE(editor.button.text(), QStringLiteral("false"));
    click(editor.button);
    QVERIFY(editor.condition->value());
    QVERIFY(editor.button.isChecked());
    QCOMPARE(editor.button.text(), QStringLiteral("true"));
    QCOMPARE(log.take(), QStringLiteral("filter, filter"));
}

void BooleanButtonFilterWidgetTest::saysTheFlagInItsOwnWords()
{
    Editor editor;
    editor.widget->setLabels({QStringLiteral("no"), noIcon()}, {QStringLiteral("yes"), yesIcon()});
    QCOMPARE(editor.button.text(), QStringLiteral("yes"));
    QCOMPARE(editor.button.accessibleDescription(), QStringLiteral("yes"));
    QCOMPARE(picture(editor.button.icon()), picture(yesIcon()));
    click(editor.enable);
    click(editor.button);
    QCOMPARE(editor.button.text(), QStringLiteral("no"));
    QCOMPARE(editor.button.accessibleDescription(), QStringLiteral("no"));
    QCOMPARE(picture(editor.button.icon()), picture(noIcon()));
}

void BooleanButtonFilterWidgetTest::showsARestoredFlag()
{
    Editor editor;
    QVERIFY(restoreValue(*editor.condition, false, true));
    QVERIFY(editor.enable.isChecked());
    QVERIFY(editor.button.isEnabled());
    QVERIFY(!editor.button.isChecked());
    QCOMPARE(editor.button.text(), QStringLiteral("false"));
    QVERIFY(restoreValue(*editor.condition, true, false));
    QVERIFY(!editor.enable.isChecked());
    QVERIFY(!editor.button.isEnabled());
    QVERIFY(editor.button.isChecked());
    QCOMPARE(editor.button.text(), QStringLiteral("true"));
}

void BooleanButtonFilterWidgetTest::restoringDoesNotWriteBack()
{
    Editor editor;
    booleaneditorchecks::restoringDoesNotWriteBack(*editor.condition);
}

void BooleanButtonFilterWidgetTest::isResetByItsWindow()
{
    Editor editor;
    click(editor.enable);
    click(editor.button);
    booleaneditorchecks::isReset(*editor.widget, *editor.condition, editor.enable);
}

void BooleanButtonFilterWidgetTest::isWorkedByKeysAlone()
{
    Editor editor;
    booleaneditorchecks::isWorkedByKeysAlone(editor.form, *editor.condition, Qt::Key_Space);
}

void BooleanButtonFilterWidgetTest::isDisabledWhenTheConditionIsGone()
{
    Editor editor;
    click(editor.enable);
    delete editor.condition;
    QVERIFY(!editor.widget->isEnabled());
    editor.widget->setLabels({QStringLiteral("no"), {}}, {QStringLiteral("yes"), {}});
    QCOMPARE(editor.button.text(), QStringLiteral("no"));
    editor.button.setChecked(true);
    QCOMPARE(editor.button.text(), QStringLiteral("yes"));
    editor.widget->resetFilter();
    QVERIFY(!editor.widget->isEnabled());
}

void BooleanButtonFilterWidgetTest::doesWithoutACondition()
{
    const BooleanButtonFilterWidget widget(nullptr, nullptr);
    QVERIFY(!widget.isEnabled());
    QCOMPARE(part<QPushButton>(widget, QStringLiteral("PushButton")).text(), QStringLiteral("false"));
}

QTEST_MAIN(BooleanButtonFilterWidgetTest)
#include "tst_booleanbuttonfilterwidget.moc"
