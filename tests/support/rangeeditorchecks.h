#pragma once

#include "editorhands.h"

#include <zelkoguibase/filter/ifilterui.h>
#include <zelkoguibase/filter/numberfiltercondition.h>

#include <QCheckBox>
#include <QtTest>

/// What every editor of a range does alike, whatever its limits are. An `Editor` has the widget in its form, and of the
/// lower and the upper limit the condition, the check box and the field.
namespace rangeeditorchecks {

/// Rows of a test that an editor stays empty unless it gets two conditions.
inline void addOtherCountsOfConditions()
{
    QTest::addColumn<int>("count");
    QTest::newRow("none") << 0;
    QTest::newRow("one") << 1;
    QTest::newRow("three") << 3;
}

/// The conditions are those of a range, and wait for somebody to switch them on.
template <typename Condition>
void areEndsOfARange(const Condition& lower, const Condition& upper)
{
    QVERIFY(!lower.enabled());
    QVERIFY(!upper.enabled());
    QCOMPARE(lower.comparator(), ZelkoGUI::Filter::NumberComparison::GreaterOrEqual);
    QCOMPARE(upper.comparator(), ZelkoGUI::Filter::NumberComparison::LessOrEqual);
}

/// The texts of the check boxes, and the names of fields that have no text of their own.
template <typename Editor>
void saysWhichLimitIsWhich(const Editor& editor)
{
    QCOMPARE(editor.lowerCheck.text(), QStringLiteral("from"));
    QCOMPARE(editor.upperCheck.text(), QStringLiteral("to"));
    QVERIFY(!editor.lowerEdit.accessibleName().isEmpty());
    QVERIFY(!editor.upperEdit.accessibleName().isEmpty());
}

/// Check boxes, conditions and fields agree on which limits are on.
template <typename Editor>
void isSwitched(const Editor& editor, bool lower, bool upper)
{
    QCOMPARE(editor.lowerCheck.isChecked(), lower);
    QCOMPARE(editor.lower->enabled(), lower);
    QCOMPARE(editor.lowerEdit.isEnabled(), lower);
    QCOMPARE(editor.upperCheck.isChecked(), upper);
    QCOMPARE(editor.upper->enabled(), upper);
    QCOMPARE(editor.upperEdit.isEnabled(), upper);
}

/// Each check box switches its own limit, and the window that resets its filters both.
template <typename Editor>
void isSwitchedByItsCheckBoxes(Editor& editor)
{
    isSwitched(editor, false, false);
    editorhands::click(editor.upperCheck);
    isSwitched(editor, false, true);
    editorhands::click(editor.lowerCheck);
    isSwitched(editor, true, true);
    editorhands::click(editor.upperCheck);
    isSwitched(editor, true, false);
    editorhands::click(editor.upperCheck);
    static_cast<ZelkoGUI::Filter::IFilterUI*>(editor.widget)->resetFilter();
    isSwitched(editor, false, false);
}

/// Switches both limits on by the space key. The focus is elsewhere then.
template <typename Editor>
void isSwitchedByKeys(Editor& editor)
{
    QVERIFY(editor.form.isActive());
    for (QCheckBox* const check : {&editor.lowerCheck, &editor.upperCheck}) {
        check->setFocus();
        QTest::keyClick(check, Qt::Key_Space);
    }
    isSwitched(editor, true, true);
    editor.form.elsewhere.setFocus();
}

} // namespace rangeeditorchecks
