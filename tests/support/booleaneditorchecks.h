#pragma once

#include "conditionsignallog.h"
#include "editorhands.h"

#include <zelkoguibase/filter/booleanfiltercondition.h>
#include <zelkoguibase/filter/ifilterui.h>

#include <QCheckBox>
#include <QtTest>

/// What every editor of a flag does alike, whatever the flag is chosen with.
namespace booleaneditorchecks {

/// Restores a condition from one that was saved.
inline bool restoreValue(ZelkoGUI::Filter::BooleanFilterCondition& condition, bool value, bool enabled)
{
    ZelkoGUI::Filter::BooleanFilterCondition saved(12, 33, nullptr);
    saved.setValue(value);
    saved.setEnabled(enabled);
    return editorhands::restore(condition, saved);
}

/// The check box switches the condition, and with it what the flag is chosen with.
inline void theCheckBoxSwitches(const ZelkoGUI::Filter::BooleanFilterCondition& condition, QCheckBox& enable,
                                const QWidget& chooser)
{
    QVERIFY(!chooser.isEnabled());
    editorhands::click(enable);
    QVERIFY(condition.enabled());
    QVERIFY(chooser.isEnabled());
    editorhands::click(enable);
    QVERIFY(!condition.enabled());
    QVERIFY(!chooser.isEnabled());
}

/// Showing a restored flag does not set it once more.
inline void restoringDoesNotWriteBack(ZelkoGUI::Filter::BooleanFilterCondition& condition)
{
    ConditionSignalLog log(condition);
    QVERIFY(restoreValue(condition, false, true));
    QCOMPARE(log.take(), QStringLiteral("filter, content"));
    QVERIFY(!condition.value());
    QVERIFY(condition.enabled());
}

/// An editor that is switched on goes back to rest, and leaves the flag as it is.
inline void isReset(ZelkoGUI::Filter::IFilterUI& editor, const ZelkoGUI::Filter::BooleanFilterCondition& condition,
                    const QCheckBox& enable)
{
    QVERIFY(condition.enabled());
    editor.resetFilter();
    QVERIFY(!condition.enabled());
    QVERIFY(!enable.isChecked());
    QVERIFY(!condition.value());
}

/// The first Tab leads to the check box, the second to what the flag is chosen with, where `choosing` does so.
inline void isWorkedByKeysAlone(editorhands::Form& form, const ZelkoGUI::Filter::BooleanFilterCondition& condition,
                                Qt::Key choosing)
{
    QVERIFY(form.isActive());
    QTest::keyClick(&form.elsewhere, Qt::Key_Tab);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Space);
    QVERIFY(condition.enabled());
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    QTest::keyClick(QApplication::focusWidget(), choosing);
    QVERIFY(!condition.value());
}

} // namespace booleaneditorchecks
