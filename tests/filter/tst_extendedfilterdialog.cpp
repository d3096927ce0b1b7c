#include <zelkoguibase/filter/extendedfilterdialog.h>

#include "differentrecords.h"
#include "filterwindow.h"
#include "iconpicture.h"
#include "menuanswer.h"

#include <console/hands/operatorhands.h>
#include <resources/zelkoicons.h>
#include <zelkoguibase/filter/stringfiltercondition.h>

#include <QAccessible>
#include <QDialogButtonBox>
#include <QLabel>
#include <QScrollBar>

#include <functional>

using namespace ZelkoGUI::Filter;
using differentrecords::both;
using differentrecords::twoRecords;
using Dialog = ExtendedFilterDialog;
using Record = ZELKO_XML::ZELKO_RecordData;

namespace {

using Hands = std::function<void(FilterWindow&)>;

bool canHaveFocus(const QWidget& widget)
{
    return widget.isVisible() && widget.isEnabled() && (widget.focusPolicy() & Qt::TabFocus) != 0;
}

} // namespace

class ExtendedFilterDialogTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();

    void isTheWindowOfTheExtendedFilter();
    void buttonsAreNamedAndExplained_data();
    void buttonsAreNamedAndExplained();

    void limitsOfAKindStandBelowEachOther();
    void rowsEndWhereTheButtonsDo();

    void staysInForceWhileTheWindowIsClosed();
    void staysInForceWhenTheWindowIsGone();

    void resetAllIsThereWhileAFilterIsActive_data();
    void resetAllIsThereWhileAFilterIsActive();
    void resetGoesFromTheFirstRowToTheLast();
    void caseAndSyntaxStayAfterReset();

    void withoutInterfacesTheRowIsGoneAndItsFilterOff();
    void aRowThatWasGoneFromTheBeginningCanBeUsed();
    void aWindowWithoutTheRowHasNoInterfaceFilter();

    void aDeletedConditionIsPassedBy();
    void aLimitThatIsLeftOfARangeStaysInForce();
    void aDeletedModelLeavesAnIdleWindow();
    void theModelMayBelongToTheWindow();
    void aNewWindowPassesNothingUntilItsValuesAreSelected();
    void theWindowMayGoWhileItsFileDialogIsOpen_data();
    void theWindowMayGoWhileItsFileDialogIsOpen();

    void canBeWorkedWithKeysAlone();
    void returnPressesNothingButTheButtonWithTheFocus();
    void theMenuKeyOpensTheMenuOfAField_data();
    void theMenuKeyOpensTheMenuOfAField();
    void everyRowIsFilteredByKeysAlone_data();
    void everyRowIsFilteredByKeysAlone();
    void everythingHasAnAccessibleNameThatSaysItsRow();
    void theListOfValuesIsNamedAfterItsRow();
    void theListShowsFewValuesAtOnceAndManyWithAScrollBar();
};

void ExtendedFilterDialogTest::initTestCase()
{
    registerZelkoIcons();
}

void ExtendedFilterDialogTest::isTheWindowOfTheExtendedFilter()
{
    QWidget parent;
    MultiFilterSortProxyModel proxy(nullptr);
    const Dialog dialog(&proxy, FilterWindow::allColumns(), &parent);
    QCOMPARE(dialog.objectName(), QStringLiteral("ExtendedFilterDialog"));
    QCOMPARE(dialog.windowTitle(), QStringLiteral("Extended Filter Settings"));
    QCOMPARE(picture(dialog.windowIcon()), picture(QIcon(QStringLiteral(":/Filter/Icons/FilterActive.svg"))));
    QCOMPARE(dialog.windowFlags(),
             Qt::Dialog | Qt::WindowTitleHint | Qt::WindowSystemMenuHint | Qt::WindowMinMaxButtonsHint);
    QCOMPARE(dialog.parentWidget(), &parent);
    QVERIFY(!dialog.isModal());
}

void ExtendedFilterDialogTest::buttonsAreNamedAndExplained_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("icon");
    QTest::addColumn<QString>("toolTip");
    QTest::addColumn<QDialogButtonBox::ButtonRole>("role");

    QTest::newRow("Reset All") << "ResetAllFilterButton"
                               << ":/Filter/Icons/Reset.svg"
                               << "reset all filter settings" << QDialogButtonBox::ResetRole;
    QTest::newRow("Save...") << "SaveFilterButton"
                             << ":/Filter/Icons/Save.svg"
                             << "save extended filter settings to file" << QDialogButtonBox::ActionRole;
    QTest::newRow("Restore...") << "RestoreFilterButton"
                                << ":/Filter/Icons/OpenFolder.svg"
                                << "restore extended filter settings from file" << QDialogButtonBox::ActionRole;
}

void ExtendedFilterDialogTest::buttonsAreNamedAndExplained()
{
    QFETCH(QString, name);
    QFETCH(QString, icon);
    QFETCH(QString, toolTip);
    QFETCH(QDialogButtonBox::ButtonRole, role);

    FilterWindow window;
    auto* const box = window.dialog().findChild<QDialogButtonBox*>(QStringLiteral("DialogButtonBox"));
    QVERIFY(box);
    QCOMPARE(box->buttons().size(), 3);
    QCOMPARE(window.dialog().layout()->itemAt(1)->widget(), box);
    QPushButton* const button = window.button(name);
    QVERIFY(box->buttons().contains(button));
    QCOMPARE(button->text(), QString::fromLatin1(QTest::currentDataTag()));
    QVERIFY(!picture(button->icon()).isNull());
    QCOMPARE(picture(button->icon()), picture(QIcon(icon)));
    QCOMPARE(button->toolTip(), toolTip);
    QCOMPARE(box->buttonRole(button), role);
}

void ExtendedFilterDialogTest::limitsOfAKindStandBelowEachOther()
{
    const QList<QStringList> kinds{{QStringLiteral("StartTimeFilterWidget"), QStringLiteral("StopTimeFilterWidget"),
                                    QStringLiteral("DurationFilterWidget")},
                                   {QStringLiteral("SizeFilterWidget"), QStringLiteral("FrequencyFilterWidget"),
                                    QStringLiteral("BandwidthFilterWidget"), QStringLiteral("SampleRateFilterWidget")}};
    FilterWindow window;
    for (const QStringList& editors : kinds) {
        for (const QString& editor : editors) {
            const auto left = [&](const QString& of) {
                return window.part<QWidget>(of, QStringLiteral("UpperLimitCheckbox"))
                    ->mapTo(&window.dialog(), QPoint())
                    .x();
            };
            QCOMPARE(left(editor), left(editors.first()));
        }
    }
}

void ExtendedFilterDialogTest::rowsEndWhereTheButtonsDo()
{
    FilterWindow window;
    const auto right = [&window](const QWidget& widget) {
        return widget.mapTo(&window.dialog(), QPoint(widget.width(), 0)).x();
    };
    const int edge = right(*window.button(QStringLiteral("RestoreFilterButton")));
    QCOMPARE(right(*window.part<QWidget>(QStringLiteral("StatusFilterWidget"), QStringLiteral("SelectButton"))), edge);
    QCOMPARE(right(*window.part<QWidget>(QStringLiteral("SizeFilterWidget"), QStringLiteral("UnitCombobox"))), edge);
    QCOMPARE(right(*window.part<QWidget>(QStringLiteral("DurationFilterWidget"), QStringLiteral("UpperLimitTimeEdit"))),
             edge);
}

void ExtendedFilterDialogTest::staysInForceWhileTheWindowIsClosed()
{
    FilterWindow window(FilterWindow::allColumns(), twoRecords());
    window.type(QStringLiteral("NameFilterWidget"), QStringLiteral("TextEdit"), QStringLiteral("band"));
    QTest::keyClick(&window.dialog(), Qt::Key_Escape);
    QVERIFY(!window.dialog().isVisible());
    QCOMPARE(window.shownRecords(), QStringList(QStringLiteral("R1")));
    QVERIFY(window.dialog().hasActiveFilter());
    window.dialog().show();
    QCOMPARE(window.part<QLineEdit>(QStringLiteral("NameFilterWidget"), QStringLiteral("TextEdit"))->text(),
             QStringLiteral("band"));
    window.resetAll();
    QCOMPARE(window.shownRecords(), both());
}

void ExtendedFilterDialogTest::staysInForceWhenTheWindowIsGone()
{
    FilterWindow window(FilterWindow::allColumns(), twoRecords());
    window.type(QStringLiteral("NameFilterWidget"), QStringLiteral("TextEdit"), QStringLiteral("band"));
    window.closeForGood();
    QCOMPARE(window.shownRecords(), QStringList(QStringLiteral("R1")));
    QVERIFY(window.condition(QStringLiteral("NameFilter"))->filterActive());
}

void ExtendedFilterDialogTest::resetAllIsThereWhileAFilterIsActive_data()
{
    QTest::addColumn<Hands>("activate");

    const auto typed = [](const char* editor) -> Hands {
        return [=](FilterWindow& window) {
            window.type(QLatin1String(editor), QStringLiteral("TextEdit"), QStringLiteral("x"));
        };
    };
    const auto checked = [](const char* editor, const char* box) -> Hands {
        return [=](FilterWindow& window) { window.check(QLatin1String(editor), QLatin1String(box)); };
    };
    const auto deselected = [](const char* editor, const QString& word) -> Hands {
        return [=](FilterWindow& window) { window.toggleValues(QLatin1String(editor), {word}); };
    };
    QTest::newRow("a name") << typed("NameFilterWidget");
    QTest::newRow("an ID") << typed("RecordIDFilterWidget");
    for (const char* const range :
         {"Size", "StartTime", "StopTime", "Duration", "Frequency", "Bandwidth", "SampleRate"}) {
        const QByteArray editor = QByteArray(range) + "FilterWidget";
        QTest::addRow("a lower limit of %s", range) << Hands(
            [editor, checked](FilterWindow& window) { checked(editor.constData(), "LowerLimitCheckbox")(window); });
        QTest::addRow("an upper limit of %s", range) << Hands(
            [editor, checked](FilterWindow& window) { checked(editor.constData(), "UpperLimitCheckbox")(window); });
    }
    QTest::newRow("the flag") << checked("DeletableFilterWidget", "EnableFilter");
    QTest::newRow("a data rate") << deselected("DataRateFilterWidget", Record::GetGUIDataRates().constFirst());
    QTest::newRow("a data format") << deselected("DataFormatFilterWidget", Record::GetGUIDataFormats().constLast());
    QTest::newRow("a status") << deselected("StatusFilterWidget", Record::GetGUIRecordStatuss().constFirst());
    QTest::newRow("an interface") << deselected("InterfaceFilterWidget", Record::GetGUIInterfaces().constLast());
}

void ExtendedFilterDialogTest::resetAllIsThereWhileAFilterIsActive()
{
    QFETCH(Hands, activate);

    FilterWindow window;
    QVERIFY(!window.canReset());
    activate(window);
    QVERIFY(window.canReset());
    QVERIFY(window.dialog().hasActiveFilter());
    window.resetAll();
    QVERIFY(!window.canReset());
    QVERIFY(!window.dialog().hasActiveFilter());
    for (const char* const text : {"NameFilter", "IDFilter"}) {
        QCOMPARE(window.condition<StringFilterCondition>(QLatin1String(text))->pattern(), QString());
    }
}

void ExtendedFilterDialogTest::resetGoesFromTheFirstRowToTheLast()
{
    FilterWindow window;
    window.toggleValues(QStringLiteral("InterfaceFilterWidget"), {QStringLiteral("USB")});
    window.check(QStringLiteral("SizeFilterWidget"), QStringLiteral("UpperLimitCheckbox"));
    window.check(QStringLiteral("SizeFilterWidget"), QStringLiteral("LowerLimitCheckbox"));
    window.type(QStringLiteral("RecordIDFilterWidget"), QStringLiteral("TextEdit"), QStringLiteral("x"));
    window.type(QStringLiteral("NameFilterWidget"), QStringLiteral("TextEdit"), QStringLiteral("x"));
    QStringList changed;
    for (const auto& condition : window.dialog().filters()) {
        connect(condition, &AbstractFilterCondition::si_filterChanged, this,
                [&changed, name = condition->objectName()] { changed << name; });
    }
    window.dialog().sl_resetFilter();
    QCOMPARE(changed.join(QLatin1Char(' ')),
             QStringLiteral("NameFilter SizeLowerLimit SizeUpperLimit IDFilter InterfaceFilter"));
}

void ExtendedFilterDialogTest::caseAndSyntaxStayAfterReset()
{
    FilterWindow window;
    const QString editor = QStringLiteral("NameFilterWidget");
    window.type(editor, QStringLiteral("TextEdit"), QStringLiteral("x*"));
    window.check(editor, QStringLiteral("CaseSensitiveCheckbox"));
    window.choose(editor, QStringLiteral("PatternSyntaxCombobox"), QStringLiteral("Wildcard"));
    window.resetAll();
    const auto* const condition = window.condition<StringFilterCondition>(QStringLiteral("NameFilter"));
    QCOMPARE(condition->pattern(), QString());
    QCOMPARE(condition->caseSensitive(), Qt::CaseSensitive);
    QCOMPARE(condition->patternSyntax(), QRegExp::Wildcard);
}

void ExtendedFilterDialogTest::withoutInterfacesTheRowIsGoneAndItsFilterOff()
{
    FilterWindow window(FilterWindow::allColumns(), twoRecords());
    window.toggleValues(QStringLiteral("InterfaceFilterWidget"), {QStringLiteral("USB")});
    QCOMPARE(window.shownRecords(), QStringList(QStringLiteral("R1")));
    QWidget* const label = window.cell(13, QFormLayout::LabelRole);
    QWidget* const editor = window.editor(QStringLiteral("InterfaceFilterWidget"));

    window.dialog().enableInterfaceFilter(false);
    QCOMPARE(window.shownRecords(), both());
    QVERIFY(!window.dialog().hasActiveFilter());
    QVERIFY(!label->isVisible() && !editor->isVisible());
    QVERIFY(window.editor(QStringLiteral("DeletableFilterWidget"))->isVisible());
    window.dialog().hide();
    window.dialog().show();
    QVERIFY(!label->isVisible() && !editor->isVisible());

    window.dialog().enableInterfaceFilter(true);
    QVERIFY(label->isVisible() && editor->isVisible());
    QCOMPARE(window.shownRecords(), QStringList(QStringLiteral("R1")));
}

void ExtendedFilterDialogTest::aRowThatWasGoneFromTheBeginningCanBeUsed()
{
    FilterWindow window(FilterWindow::allColumns(), twoRecords(),
                        [](Dialog& dialog) { dialog.enableInterfaceFilter(false); });
    QWidget* const editor = window.editor(QStringLiteral("InterfaceFilterWidget"));
    QTRY_VERIFY(!editor->isEnabled());
    window.dialog().enableInterfaceFilter(true);
    QVERIFY(editor->isVisible());
    window.toggleValues(QStringLiteral("InterfaceFilterWidget"), {QStringLiteral("USB")});
    QCOMPARE(window.shownRecords(), QStringList(QStringLiteral("R1")));
}

void ExtendedFilterDialogTest::aWindowWithoutTheRowHasNoInterfaceFilter()
{
    FilterWindow window(Dialog::NameColumn | Dialog::DeletableColumn);
    const QMap<QString, QString> before = window.state();
    window.dialog().enableInterfaceFilter(true);
    window.dialog().enableInterfaceFilter(false);
    QCOMPARE(window.state(), before);
    QVERIFY(window.cell(1, QFormLayout::FieldRole)->isVisible());
}

void ExtendedFilterDialogTest::aDeletedConditionIsPassedBy()
{
    FilterWindow window(FilterWindow::allColumns(), twoRecords());
    window.type(QStringLiteral("NameFilterWidget"), QStringLiteral("TextEdit"), QStringLiteral("band"));
    delete window.condition(QStringLiteral("NameFilter"));
    delete window.condition(QStringLiteral("SizeUpperLimit"));
    delete window.condition(QStringLiteral("InterfaceFilter"));
    QCOMPARE(window.conditionNames().count(QString()), 3);
    QVERIFY(!window.dialog().hasActiveFilter());
    QVERIFY(!window.canReset());
    QCOMPARE(window.shownRecords(), both());
    QVERIFY(!window.editor(QStringLiteral("SizeFilterWidget"))->isEnabled());
    QVERIFY(!window.editor(QStringLiteral("InterfaceFilterWidget"))->isEnabled());
    window.dialog().enableInterfaceFilter(false);
    window.check(QStringLiteral("DeletableFilterWidget"), QStringLiteral("EnableFilter"));
    QVERIFY(window.canReset());
    window.resetAll();
    QVERIFY(!window.canReset());
}

void ExtendedFilterDialogTest::aLimitThatIsLeftOfARangeStaysInForce()
{
    FilterWindow window(FilterWindow::allColumns(), twoRecords());
    const QString editor = QStringLiteral("SizeFilterWidget");
    window.check(editor, QStringLiteral("UpperLimitCheckbox"));
    window.check(editor, QStringLiteral("LowerLimitCheckbox"));
    QVERIFY(window.shownRecords().isEmpty());
    delete window.condition(QStringLiteral("SizeLowerLimit"));
    window.resetAll();
    QVERIFY(window.shownRecords().isEmpty());
    QVERIFY(window.canReset());
    delete window.condition(QStringLiteral("SizeUpperLimit"));
    QCOMPARE(window.shownRecords(), both());
    QVERIFY(!window.canReset());
}

void ExtendedFilterDialogTest::aDeletedModelLeavesAnIdleWindow()
{
    FilterWindow window;
    window.check(QStringLiteral("SizeFilterWidget"), QStringLiteral("LowerLimitCheckbox"));
    window.dropProxy();
    QVERIFY(!window.dialog().hasActiveFilter());
    window.dialog().resetFilter();
    window.dialog().enableInterfaceFilter(true);
    window.type(QStringLiteral("NameFilterWidget"), QStringLiteral("TextEdit"), QStringLiteral("band"));
    QVERIFY(!window.dialog().hasActiveFilter());
}

void ExtendedFilterDialogTest::theModelMayBelongToTheWindow()
{
    auto* const proxy = new MultiFilterSortProxyModel(nullptr);
    auto* const dialog = new Dialog(proxy, FilterWindow::allColumns(), nullptr);
    proxy->setParent(dialog);
    const QPointer<AbstractFilterCondition> condition = dialog->filters().constFirst();
    delete dialog;
    QVERIFY(!condition);
}

void ExtendedFilterDialogTest::aNewWindowPassesNothingUntilItsValuesAreSelected()
{
    FixedRecordModel records(twoRecords());
    MultiFilterSortProxyModel proxy(nullptr);
    proxy.setSourceModel(&records);
    Dialog dialog(&proxy, FilterWindow::allColumns(), nullptr);
    QCOMPARE(proxy.rowCount(), 0);
    QVERIFY(dialog.hasActiveFilter());
    dialog.resetFilter();
    QCOMPARE(proxy.rowCount(), 2);
    QVERIFY(!dialog.hasActiveFilter());
}

void ExtendedFilterDialogTest::theWindowMayGoWhileItsFileDialogIsOpen_data()
{
    QTest::addColumn<QString>("button");

    QTest::newRow("saving") << QStringLiteral("SaveFilterButton");
    QTest::newRow("restoring") << QStringLiteral("RestoreFilterButton");
}

void ExtendedFilterDialogTest::theWindowMayGoWhileItsFileDialogIsOpen()
{
    QFETCH(QString, button);
    FilterWindow window;
    const ZelkoConsole::DialogAnswer answer([&window](QWidget*) { window.closeForGood(); });
    QTimer::singleShot(0, window.button(button), &QPushButton::click);
    QTRY_VERIFY_WITH_TIMEOUT(answer.wasGiven(), patience);
}

void ExtendedFilterDialogTest::canBeWorkedWithKeysAlone()
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

void ExtendedFilterDialogTest::returnPressesNothingButTheButtonWithTheFocus()
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

void ExtendedFilterDialogTest::theMenuKeyOpensTheMenuOfAField_data()
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

void ExtendedFilterDialogTest::theMenuKeyOpensTheMenuOfAField()
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

void ExtendedFilterDialogTest::everyRowIsFilteredByKeysAlone_data()
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
void ExtendedFilterDialogTest::everyRowIsFilteredByKeysAlone()
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

void ExtendedFilterDialogTest::everythingHasAnAccessibleNameThatSaysItsRow()
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

void ExtendedFilterDialogTest::theListOfValuesIsNamedAfterItsRow()
{
    FilterWindow window;
    const QPointer<QListView> list = window.openValues(QStringLiteral("DataRateFilterWidget"));
    QVERIFY(list);
    QCOMPARE(list->accessibleName(), QStringLiteral("Data Rate: Select Values to show"));
    QCOMPARE(list->windowTitle(), QStringLiteral("Select Values to show"));
    list->close();
}

void ExtendedFilterDialogTest::theListShowsFewValuesAtOnceAndManyWithAScrollBar()
{
    FilterWindow window;
    const auto scrolls = [&window](const QString& editor) {
        const QPointer<QListView> list = window.openValues(editor);
        const bool answer = list->verticalScrollBar()->maximum() > 0;
        list->close();
        return answer;
    };
    QVERIFY(!scrolls(QStringLiteral("StatusFilterWidget")));
    QVERIFY(scrolls(QStringLiteral("DataFormatFilterWidget")));
}

QTEST_MAIN(ExtendedFilterDialogTest)
#include "tst_extendedfilterdialog.moc"
