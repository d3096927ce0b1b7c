#include "conditionsignallog.h"
#include "editorhands.h"
#include "iconpicture.h"

#include <resources/zelkoicons.h>
#include <zelkoguibase/filter/lineeditex.h>
#include <zelkoguibase/filter/stringfiltercondition.h>
#include <zelkoguibase/filter/textfilterwidget.h>

#include <QCheckBox>
#include <QtTest>

using namespace ZelkoGUI::Filter;
using namespace editorhands;

namespace {

QString hint()
{
    return QStringLiteral("enter the text to search for...");
}

/// A condition in its editor.
struct Editor
{
    StringFilterCondition* const condition = new StringFilterCondition(0, 33, nullptr);
    TextFilterWidget* const widget = new TextFilterWidget(condition, nullptr);
    Form form{widget}; // which deletes the widget

    ~Editor() { delete condition; }

    QPushButton& reset = part<QPushButton>(*widget, QStringLiteral("ResetFilterButton"));
    TextFilterWidget::LineEditEx& edit = part<TextFilterWidget::LineEditEx>(*widget, QStringLiteral("TextEdit"));
    QComboBox& syntax = part<QComboBox>(*widget, QStringLiteral("PatternSyntaxCombobox"));
    QCheckBox& caseCheck = part<QCheckBox>(*widget, QStringLiteral("CaseSensitiveCheckbox"));
};

/// Writes down what an editor tells its children.
QStringList& logInto(QStringList& log, const TextFilterWidget& widget)
{
    QObject::connect(&widget, &TextFilterWidget::si_setText,
                     [&log](const QString& text) { log << QStringLiteral("text '%1'").arg(text); });
    QObject::connect(&widget, &TextFilterWidget::si_setMatchCase,
                     [&log](bool on) { log << QStringLiteral("case %1").arg(on); });
    QObject::connect(&widget, &TextFilterWidget::si_setPatternSyntax,
                     [&log](int index) { log << QStringLiteral("syntax %1").arg(index); });
    return log;
}

} // namespace

class TextFilterWidgetTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { registerZelkoIcons(); }

    void hasItsParts();
    void offersThreeSyntaxes();
    void preparesTheCondition();
    void preparesTheConditionWithoutFilteringByHalves();
    void theHintNeverReachesTheCondition();
    void filtersWithEachCharacter();
    void filtersNothingAgainForTheSameText();
    void isResetByItsButton();
    void isResetByKeys();
    void isResetByItsWindow();
    void changesTheSyntax_data();
    void changesTheSyntax();
    void changesTheCase();
    void showsARestoredCondition();
    void aRestoredEmptyTextLeavesNothingToReset();
    void bearsThatARestoredConditionIsDropped_data();
    void bearsThatARestoredConditionIsDropped();
    void bearsThatTheConditionIsDroppedOnceItIsPrepared();
    void showsNothingForASyntaxThatCannotBeChosen();
    void isDisabledWithARestoredConditionThatIsOff();
    void isWorkedByKeysAlone();
    void outlivesTheCondition();
    void doesWithoutACondition();
    void theConditionOutlivesIt();
};

void TextFilterWidgetTest::hasItsParts()
{
    const Editor editor;
    QCOMPARE(editor.widget->objectName(), QStringLiteral("TextFilterWidget"));
    QCOMPARE(rowOf(*editor.widget),
             (QStringList{QStringLiteral("ResetFilterButton"), QStringLiteral("TextEdit"),
                          QStringLiteral("PatternSyntaxCombobox"), QStringLiteral("CaseSensitiveCheckbox")}));
    QVERIFY(qobject_cast<QHBoxLayout*>(editor.widget->layout()));
    QVERIFY(editor.reset.isFlat());
    QVERIFY(!editor.reset.isEnabled());
    QCOMPARE(editor.reset.toolTip(), QStringLiteral("Reset Filter"));
    QCOMPARE(picture(editor.reset.icon()), picture(QIcon(QStringLiteral(":/Filter/Icons/Reset.svg"))));
    QCOMPARE(editor.edit.text(), hint());
    QCOMPARE(editor.caseCheck.text(), QStringLiteral("Case Sensitive"));
    QVERIFY(!editor.caseCheck.isChecked());
    for (const QWidget* const nameless : {static_cast<QWidget*>(&editor.reset), static_cast<QWidget*>(&editor.edit),
                                          static_cast<QWidget*>(&editor.syntax)}) {
        QVERIFY(!nameless->accessibleName().isEmpty());
    }
}

void TextFilterWidgetTest::offersThreeSyntaxes()
{
    const Editor editor;
    QStringList texts;
    for (int index = 0; index < editor.syntax.count(); ++index) {
        texts << editor.syntax.itemText(index);
    }
    QCOMPARE(texts, (QStringList{QStringLiteral("Fixed String"), QStringLiteral("Wildcard"),
                                 QStringLiteral("Regular Expression")}));
    QCOMPARE(editor.syntax.currentIndex(), 0);
}

void TextFilterWidgetTest::preparesTheCondition()
{
    StringFilterCondition condition(0, 33, nullptr);
    condition.setRegExp(QStringLiteral("a.b"), Qt::CaseSensitive, QRegExp::RegExp);
    const TextFilterWidget widget(&condition, nullptr);
    QCOMPARE(condition.pattern(), QString());
    QCOMPARE(condition.caseSensitive(), Qt::CaseInsensitive);
    QCOMPARE(condition.patternSyntax(), QRegExp::FixedString);
    QVERIFY(condition.enabled());
    QVERIFY(!condition.filterActive());
}

void TextFilterWidgetTest::preparesTheConditionWithoutFilteringByHalves()
{
    StringFilterCondition condition(0, 33, nullptr);
    condition.setRegExp(QStringLiteral("a.b"), Qt::CaseSensitive, QRegExp::RegExp);
    condition.setEnabled(true);
    ConditionSignalLog log(condition);
    const TextFilterWidget widget(&condition, nullptr);
    QCOMPARE(log.take(), QStringLiteral("filter, filter")); // off, and on again
}

void TextFilterWidgetTest::theHintNeverReachesTheCondition()
{
    Editor editor;
    QVERIFY(editor.form.isActive());
    QCOMPARE(editor.edit.text(), hint());
    QCOMPARE(editor.edit.realText(), QString());
    QCOMPARE(editor.condition->pattern(), QString());
    retype(editor.edit, QStringLiteral("t"));
    QTest::keyClick(&editor.edit, Qt::Key_Backspace);
    editor.form.elsewhere.setFocus();
    QCOMPARE(editor.edit.text(), hint());
    QCOMPARE(editor.condition->pattern(), QString());
    QVERIFY(!editor.reset.isEnabled());
}

void TextFilterWidgetTest::filtersWithEachCharacter()
{
    Editor editor;
    QVERIFY(editor.form.isActive());
    ConditionSignalLog log(*editor.condition);
    editor.edit.setFocus();
    QTest::keyClick(&editor.edit, Qt::Key_T);
    QCOMPARE(editor.condition->pattern(), QStringLiteral("t"));
    QVERIFY(editor.condition->filterActive());
    QVERIFY(editor.reset.isEnabled());
    QTest::keyClick(&editor.edit, Qt::Key_O);
    QCOMPARE(editor.condition->pattern(), QStringLiteral("to"));
    QCOMPARE(log.take(), QStringLiteral("filter, filter"));
}

void TextFilterWidgetTest::filtersNothingAgainForTheSameText()
{
    Editor editor;
    QVERIFY(editor.form.isActive());
    retype(editor.edit, QStringLiteral("tower"));
    ConditionSignalLog log(*editor.condition);
    editor.form.elsewhere.setFocus();
    editor.edit.setFocus();
    QCOMPARE(log.take(), QString());
    QCOMPARE(editor.condition->pattern(), QStringLiteral("tower"));
}

void TextFilterWidgetTest::isResetByItsButton()
{
    Editor editor;
    QVERIFY(editor.form.isActive());
    retype(editor.edit, QStringLiteral("tower"));
    choose(editor.syntax, 1);
    click(editor.caseCheck);
    ConditionSignalLog log(*editor.condition);
    click(editor.reset);
    QCOMPARE(log.take(), QStringLiteral("filter"));
    QCOMPARE(editor.condition->pattern(), QString());
    QCOMPARE(editor.edit.realText(), QString());
    QVERIFY(!editor.reset.isEnabled());
    QCOMPARE(editor.condition->caseSensitive(), Qt::CaseSensitive);
    QCOMPARE(editor.condition->patternSyntax(), QRegExp::Wildcard);
    QVERIFY(editor.caseCheck.isChecked());
    QCOMPARE(editor.syntax.currentIndex(), 1);
}

void TextFilterWidgetTest::isResetByKeys()
{
    Editor editor;
    QVERIFY(editor.form.isActive());
    retype(editor.edit, QStringLiteral("tower"));
    QTest::keyClick(&editor.edit, Qt::Key_Tab, Qt::ShiftModifier);
    QVERIFY(editor.reset.hasFocus());
    QTest::keyClick(&editor.reset, Qt::Key_Space);
    QCOMPARE(editor.condition->pattern(), QString());
    QCOMPARE(editor.edit.realText(), QString());
    editor.form.elsewhere.setFocus();
    QCOMPARE(editor.edit.text(), hint());
}

void TextFilterWidgetTest::isResetByItsWindow()
{
    Editor editor;
    QVERIFY(editor.form.isActive());
    retype(editor.edit, QStringLiteral("tower"));
    choose(editor.syntax, 2);
    QStringList told;
    logInto(told, *editor.widget);
    static_cast<IFilterUI*>(editor.widget)->resetFilter();
    QCOMPARE(told, QStringList(QStringLiteral("text ''")));
    QCOMPARE(editor.condition->pattern(), QString());
    QCOMPARE(editor.edit.text(), hint());
    QVERIFY(!editor.reset.isEnabled());
    QCOMPARE(editor.condition->patternSyntax(), QRegExp::RegExp);
}

void TextFilterWidgetTest::changesTheSyntax_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<QRegExp::PatternSyntax>("syntax");
    QTest::newRow("a fixed string") << 0 << QRegExp::FixedString;
    QTest::newRow("a wildcard") << 1 << QRegExp::Wildcard;
    QTest::newRow("a regular expression") << 2 << QRegExp::RegExp;
}

void TextFilterWidgetTest::changesTheSyntax()
{
    QFETCH(int, index);
    QFETCH(QRegExp::PatternSyntax, syntax);
    Editor editor;
    QVERIFY(editor.form.isActive());
    choose(editor.syntax, index == 0 ? 2 : 0);
    retype(editor.edit, QStringLiteral("tower"));
    choose(editor.syntax, index);
    QCOMPARE(editor.condition->patternSyntax(), syntax);
    QCOMPARE(editor.condition->pattern(), QStringLiteral("tower"));
}

void TextFilterWidgetTest::changesTheCase()
{
    Editor editor;
    QVERIFY(editor.form.isActive());
    click(editor.caseCheck);
    QCOMPARE(editor.condition->caseSensitive(), Qt::CaseSensitive);
    editor.caseCheck.setFocus();
    QTest::keyClick(&editor.caseCheck, Qt::Key_Space);
    QCOMPARE(editor.condition->caseSensitive(), Qt::CaseInsensitive);
}

void TextFilterWidgetTest::showsARestoredCondition()
{
    Editor editor;
    QStringList told;
    logInto(told, *editor.widget);
    StringFilterCondition saved(0, 33, nullptr);
    saved.setRegExp(QStringLiteral("a*b"), Qt::CaseSensitive, QRegExp::Wildcard);
    saved.setEnabled(true);
    ConditionSignalLog log(*editor.condition);
    QVERIFY(restore(*editor.condition, saved));
    QCOMPARE(log.take(), QStringLiteral("filter, content"));
    QCOMPARE(told, (QStringList{QStringLiteral("text 'a*b'"), QStringLiteral("case 1"), QStringLiteral("syntax 1")}));
    QCOMPARE(editor.edit.text(), QStringLiteral("a*b"));
    QVERIFY(editor.reset.isEnabled());
    QVERIFY(editor.caseCheck.isChecked());
    QCOMPARE(editor.syntax.currentIndex(), 1);
    QVERIFY(editor.widget->isEnabled());
}

void TextFilterWidgetTest::aRestoredEmptyTextLeavesNothingToReset()
{
    Editor editor;
    QVERIFY(editor.form.isActive());
    retype(editor.edit, QStringLiteral("tower"));
    StringFilterCondition saved(0, 33, nullptr);
    saved.setEnabled(true);
    QVERIFY(restore(*editor.condition, saved));
    QCOMPARE(editor.edit.realText(), QString());
    QVERIFY(editor.widget->isEnabled());
    QVERIFY(!editor.reset.isEnabled());
}

void TextFilterWidgetTest::bearsThatARestoredConditionIsDropped_data()
{
    QTest::addColumn<QString>("when");
    QTest::newRow("with its text") << QStringLiteral("text");
    QTest::newRow("with its case") << QStringLiteral("case");
    QTest::newRow("with its syntax") << QStringLiteral("syntax");
}

// What is shown is one state of the condition, also when somebody who is told of it drops the condition meanwhile.
void TextFilterWidgetTest::bearsThatARestoredConditionIsDropped()
{
    QFETCH(QString, when);
    QPointer<StringFilterCondition> condition = new StringFilterCondition(0, 33, nullptr);
    const TextFilterWidget widget(condition, nullptr);
    const auto dropAt = [&](const char* what) {
        if (when == QLatin1String(what)) {
            delete condition;
        }
    };
    connect(&widget, &TextFilterWidget::si_setText, this, [&] { dropAt("text"); });
    connect(&widget, &TextFilterWidget::si_setMatchCase, this, [&] { dropAt("case"); });
    connect(&widget, &TextFilterWidget::si_setPatternSyntax, this, [&] { dropAt("syntax"); });
    QStringList told;
    logInto(told, widget);
    condition->setRegExp(QStringLiteral("a*b"), Qt::CaseSensitive, QRegExp::Wildcard);
    condition->setEnabled(false);
    Q_EMIT condition->si_filterContentChanged();
    QVERIFY(!condition);
    QCOMPARE(told, (QStringList{QStringLiteral("text 'a*b'"), QStringLiteral("case 1"), QStringLiteral("syntax 1")}));
    QVERIFY(!widget.isEnabled());
}

void TextFilterWidgetTest::bearsThatTheConditionIsDroppedOnceItIsPrepared()
{
    QTest::failOnWarning(QRegularExpression(QStringLiteral("QObject::connect")));
    QPointer<StringFilterCondition> condition = new StringFilterCondition(0, 33, nullptr);
    connect(condition, &AbstractFilterCondition::si_filterChanged, this, [&] { delete condition; });
    const TextFilterWidget widget(condition, nullptr);
    QVERIFY(!condition);
    QVERIFY(widget.isEnabled());
}

void TextFilterWidgetTest::showsNothingForASyntaxThatCannotBeChosen()
{
    Editor editor;
    editor.condition->setRegExp(QStringLiteral("a"), Qt::CaseInsensitive, QRegExp::RegExp2);
    QStringList told;
    logInto(told, *editor.widget);
    Q_EMIT editor.condition->si_filterContentChanged();
    QCOMPARE(told, (QStringList{QStringLiteral("text 'a'"), QStringLiteral("case 0")}));
    QCOMPARE(editor.condition->patternSyntax(), QRegExp::RegExp2);
}

void TextFilterWidgetTest::isDisabledWithARestoredConditionThatIsOff()
{
    Editor editor;
    StringFilterCondition saved(0, 33, nullptr);
    QVERIFY(restore(*editor.condition, saved));
    QVERIFY(!editor.widget->isEnabled());
    saved.setEnabled(true);
    QVERIFY(restore(*editor.condition, saved));
    QVERIFY(editor.widget->isEnabled());
}

void TextFilterWidgetTest::isWorkedByKeysAlone()
{
    Editor editor;
    QVERIFY(editor.form.isActive());
    editor.condition->setPattern(QStringLiteral("a"));
    Q_EMIT editor.condition->si_filterContentChanged();
    QCOMPARE(editor.form.reachedByTab(*editor.widget), rowOf(*editor.widget));
}

void TextFilterWidgetTest::outlivesTheCondition()
{
    auto* const condition = new StringFilterCondition(0, 33, nullptr);
    auto* const widget = new TextFilterWidget(condition, nullptr);
    Form form(widget);
    QVERIFY(form.isActive());
    delete condition;
    QVERIFY(widget->isEnabled());
    retype(part<QLineEdit>(*widget, QStringLiteral("TextEdit")), QStringLiteral("tower"));
    choose(part<QComboBox>(*widget, QStringLiteral("PatternSyntaxCombobox")), 1);
    click(part<QCheckBox>(*widget, QStringLiteral("CaseSensitiveCheckbox")));
    auto& reset = part<QPushButton>(*widget, QStringLiteral("ResetFilterButton"));
    QVERIFY(reset.isEnabled());
    click(reset);
    QVERIFY(!reset.isEnabled());
    QStringList told;
    logInto(told, *widget);
    widget->resetFilter();
    QCOMPARE(told, QStringList(QStringLiteral("text ''")));
}

void TextFilterWidgetTest::doesWithoutACondition()
{
    TextFilterWidget widget(nullptr, nullptr);
    retype(part<QLineEdit>(widget, QStringLiteral("TextEdit")), QStringLiteral("tower"));
    QVERIFY(part<QPushButton>(widget, QStringLiteral("ResetFilterButton")).isEnabled());
}

void TextFilterWidgetTest::theConditionOutlivesIt()
{
    StringFilterCondition condition(0, 33, nullptr);
    delete new TextFilterWidget(&condition, nullptr);
    StringFilterCondition saved(0, 33, nullptr);
    QVERIFY(restore(condition, saved));
    QVERIFY(!condition.enabled());
}

QTEST_MAIN(TextFilterWidgetTest)
#include "tst_textfilterwidget.moc"
