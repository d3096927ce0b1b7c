#include <zelkoguibase/filter/extendedfilterdialog.h>

#include "differentrecords.h"
#include "filterwindow.h"
#include "iconpicture.h"
#include "patience.h"

#include <resources/zelkoicons.h>
#include <zelkoguibase/filter/stringfiltercondition.h>

#include <QDialogButtonBox>
#include <QScrollBar>

#include <functional>

using namespace ZelkoGUI::Filter;
using differentrecords::both;
using differentrecords::twoRecords;
using Dialog = ExtendedFilterDialog;
using Record = ZELKO_XML::ZELKO_RecordData;

namespace {

using Hands = std::function<void(FilterWindow&)>;

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
    QTRY_VERIFY_WITH_TIMEOUT(!editor->isEnabled(), patience);
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
