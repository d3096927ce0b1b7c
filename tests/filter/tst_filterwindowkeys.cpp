#include <zelkoguibase/filter/extendedfilterdialog.h>

#include "filterwindow.h"
#include "menuanswer.h"

#include <console/hands/operatorhands.h>

#include <QAccessible>
#include <QDateTimeEdit>
#include <QLabel>

namespace {

bool canHaveFocus(const QWidget& widget)
{
    return widget.isVisible() && widget.isEnabled() && (widget.focusPolicy() & Qt::TabFocus) != 0;
}

/// Switches everything on, and gives all that can have the focus in the rows.
QList<QWidget*> enabledFields(const FilterWindow& window)
{
    QList<QWidget*> fields;
    for (int row = 0; row < window.form()->rowCount(); ++row) {
        const QWidget* const editor = window.cell(row, QFormLayout::FieldRole);
        for (QCheckBox* const box : editor->findChildren<QCheckBox*>()) {
            editorhands::click(*box);
        }
        for (QWidget* const part : editor->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly)) {
            if (canHaveFocus(*part)) {
                fields << part;
            }
        }
    }
    return fields;
}

} // namespace

/// The extended filter window for those who have no mouse, or do not see it.
class FilterWindowKeysTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void canBeWorkedWithKeysAlone();
    void returnPressesNothingButTheButtonWithTheFocus();
    void escapeClosesTheWindowFromEveryField();
    void returnInAFieldChangesNothing();
    void theMenuKeyOpensTheMenuOfAField_data();
    void theMenuKeyOpensTheMenuOfAField();
    void everyRowIsFilteredByKeysAlone_data();
    void everyRowIsFilteredByKeysAlone();
    void everythingHasAnAccessibleNameThatSaysItsRow();
    void theListOfValuesIsNamedAfterItsRow();
};

void FilterWindowKeysTest::canBeWorkedWithKeysAlone()
{
    FilterWindow window;
    QList<QWidget*> reached;
    QWidget* const first = window.dialog().focusWidget();
    do {
        reached << QApplication::focusWidget();
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    } while (QApplication::focusWidget() != first && reached.size() < 100);
    for (QWidget* const child : window.dialog().findChildren<QWidget*>()) {
        QVERIFY2(!canHaveFocus(*child) || reached.contains(child), qPrintable(child->objectName()));
    }
    // Rows come from the top to the bottom.
    int lowest = 0;
    for (QWidget* const widget : std::as_const(reached)) {
        const int top = widget->mapTo(&window.dialog(), QPoint(0, widget->height() / 2)).y();
        QVERIFY(top >= lowest - widget->height() / 2);
        lowest = top;
    }
}

void FilterWindowKeysTest::returnPressesNothingButTheButtonWithTheFocus()
{
    FilterWindow window;
    const QString editor = QStringLiteral("NameFilterWidget");
    window.type(editor, QStringLiteral("TextEdit"), QStringLiteral("band"));
    auto* const edit = window.part<QLineEdit>(editor, QStringLiteral("TextEdit"));
    const QMap<QString, QString> typed = window.state();
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter}) {
        QTest::keyClick(edit, key);
        QCOMPARE(window.state(), typed);
        QVERIFY(window.dialog().isVisible());
    }
    for (QPushButton* const button : window.dialog().findChildren<QPushButton*>()) {
        QVERIFY2(!button->isDefault(), qPrintable(button->objectName()));
    }
    QPushButton* const reset = window.button(QStringLiteral("ResetAllFilterButton"));
    reset->setFocus();
    QTest::keyClick(reset, Qt::Key_Return);
    QVERIFY(!window.dialog().hasActiveFilter());
}

void FilterWindowKeysTest::escapeClosesTheWindowFromEveryField()
{
    FilterWindow window;
    const QList<QWidget*> fields = enabledFields(window);
    QVERIFY(fields.size() > 40);
    const QMap<QString, QString> before = window.state();
    for (QWidget* const field : fields) {
        field->setFocus();
        QCOMPARE(QApplication::focusWidget(), field);
        QTest::keyClick(field, Qt::Key_Escape);
        QVERIFY2(!window.dialog().isVisible(), qPrintable(field->accessibleName()));
        window.dialog().show();
        window.dialog().activateWindow();
        QTRY_VERIFY_WITH_TIMEOUT(window.dialog().isActiveWindow(), patience);
    }
    QCOMPARE(window.state(), before);
}

// But for dates and times, which it enters as if they were typed once more.
void FilterWindowKeysTest::returnInAFieldChangesNothing()
{
    FilterWindow window;
    const QMap<QString, QString> empty = window.state();
    const QList<QWidget*> fields = enabledFields(window);
    const QMap<QString, QString> before = window.state();
    QVERIFY(before != empty);
    for (QWidget* const field : fields) {
        if (!qobject_cast<QPushButton*>(field) && !qobject_cast<QDateTimeEdit*>(field)) {
            field->setFocus();
            QTest::keyClick(field, Qt::Key_Return);
            QVERIFY2(window.dialog().isVisible(), qPrintable(field->accessibleName()));
            QCOMPARE(window.state(), before);
        }
    }
}

void FilterWindowKeysTest::theMenuKeyOpensTheMenuOfAField_data()
{
    QTest::addColumn<QString>("editor");
    QTest::addColumn<QString>("box");
    QTest::addColumn<QString>("field");

    const QString lower = QStringLiteral("LowerLimitCheckbox");
    QTest::newRow("a text") << QStringLiteral("NameFilterWidget") << QStringLiteral("CaseSensitiveCheckbox")
                            << QStringLiteral("TextEdit");
    QTest::newRow("a number") << QStringLiteral("SizeFilterWidget") << lower << QStringLiteral("LowerLimitEdit");
    QTest::newRow("a duration") << QStringLiteral("DurationFilterWidget") << lower
                                << QStringLiteral("LowerLimitTimeEdit");
    QTest::newRow("a day") << QStringLiteral("StartTimeFilterWidget") << lower
                           << QStringLiteral("LowerLimitDateTimeEdit");
}

void FilterWindowKeysTest::theMenuKeyOpensTheMenuOfAField()
{
    QFETCH(QString, editor);
    QFETCH(QString, box);
    QFETCH(QString, field);
    FilterWindow window;
    window.check(editor, box);
    window.part<QWidget>(editor, field)->setFocus();
    QStringList entries;
    const MenuAnswer answer([&](QMenu& menu) {
        entries = MenuAnswer::texts(menu);
        QTest::keyClick(&menu, Qt::Key_Escape);
    });
    ZelkoConsole::operatorhands::pressMenuKey();
    QTRY_VERIFY_WITH_TIMEOUT(answer.wasGiven(), patience);
    QVERIFY2(!entries.filter(QStringLiteral("Select All")).isEmpty(), qPrintable(entries.join(u',')));
    QVERIFY(window.dialog().isVisible());
}

void FilterWindowKeysTest::everyRowIsFilteredByKeysAlone_data()
{
    QTest::addColumn<QString>("editor");
    QTest::addColumn<QString>("part");
    QTest::addColumn<Qt::Key>("key");

    for (const char* const text : {"Name", "RecordID"}) {
        QTest::newRow(text) << QString::fromLatin1(text) << QStringLiteral("TextEdit") << Qt::Key_X;
    }
    for (const char* const range :
         {"Size", "StartTime", "StopTime", "Duration", "Frequency", "Bandwidth", "SampleRate"}) {
        QTest::addRow("from %s", range) << QString::fromLatin1(range) << QStringLiteral("LowerLimitCheckbox")
                                        << Qt::Key_Space;
        QTest::addRow("to %s", range) << QString::fromLatin1(range) << QStringLiteral("UpperLimitCheckbox")
                                      << Qt::Key_Space;
    }
    QTest::newRow("Deletable") << QStringLiteral("Deletable") << QStringLiteral("EnableFilter") << Qt::Key_Space;
    for (const char* const values : {"DataRate", "DataFormat", "Status", "Interface"}) {
        QTest::newRow(values) << QString::fromLatin1(values) << QStringLiteral("SelectButton") << Qt::Key_Return;
    }
}

// From the first field to that of the row with the Tab key, and through the list of values, where there is one.
void FilterWindowKeysTest::everyRowIsFilteredByKeysAlone()
{
    QFETCH(QString, editor);
    QFETCH(QString, part);
    QFETCH(Qt::Key, key);
    FilterWindow window;
    const QWidget* const wanted = window.part<QWidget>(editor + QStringLiteral("FilterWidget"), part);
    for (int i = 0; i < 100 && QApplication::focusWidget() != wanted; ++i) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    }
    QCOMPARE(QApplication::focusWidget(), wanted);
    QTest::keyClick(QApplication::focusWidget(), key);
    if (const QPointer<QListView> list = editorhands::openList(); list) {
        list->activateWindow();
        QTRY_VERIFY_WITH_TIMEOUT(list->hasFocus(), patience);
        QTest::keyClick(list, Qt::Key_End);
        QTest::keyClick(list, Qt::Key_Space);
        QTest::keyClick(list, Qt::Key_Escape);
        QTRY_VERIFY_WITH_TIMEOUT(!list, patience);
    }
    QVERIFY(window.dialog().hasActiveFilter());
    QVERIFY(window.dialog().isVisible());
    QVERIFY(window.canReset());
}

void FilterWindowKeysTest::everythingHasAnAccessibleNameThatSaysItsRow()
{
    FilterWindow window;
    const auto nameOf = [](QWidget* widget) {
        QAccessibleInterface* const interface = QAccessible::queryAccessibleInterface(widget);
        return interface ? interface->text(QAccessible::Name) : QString();
    };
    QSet<QString> names;
    for (int row = 0; row < window.form()->rowCount(); ++row) {
        QWidget* const editor = window.cell(row, QFormLayout::FieldRole);
        const QString label = window.cell(row, QFormLayout::LabelRole)->findChild<QLabel*>()->text();
        QCOMPARE(nameOf(editor), label);
        for (QWidget* const part : editor->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly)) {
            if ((part->focusPolicy() & Qt::TabFocus) != 0) {
                const QString name = qobject_cast<QComboBox*>(part) ? part->accessibleDescription() : nameOf(part);
                QCOMPARE(part->accessibleName(), name);
                QVERIFY2(name.startsWith(label + QStringLiteral(": ")) && name.size() > label.size() + 2,
                         qPrintable(part->objectName() + QStringLiteral(" is called ") + name));
                QVERIFY2(!names.contains(name), qPrintable(name));
                names.insert(name);
            }
        }
    }
    for (QPushButton* const button : window.dialog().findChild<QDialogButtonBox*>()->findChildren<QPushButton*>()) {
        QVERIFY(!nameOf(button).isEmpty());
    }
}

void FilterWindowKeysTest::theListOfValuesIsNamedAfterItsRow()
{
    FilterWindow window;
    const QPointer<QListView> list = window.openValues(QStringLiteral("DataRateFilterWidget"));
    QVERIFY(list);
    QCOMPARE(list->accessibleName(), QStringLiteral("Data Rate: Select Values to show"));
    QCOMPARE(list->windowTitle(), QStringLiteral("Select Values to show"));
    list->close();
}

QTEST_MAIN(FilterWindowKeysTest)
#include "tst_filterwindowkeys.moc"
