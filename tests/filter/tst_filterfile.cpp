#include <zelkoguibase/filter/extendedfilterdialog.h>

#include "filedialogasked.h"
#include "filterdocument.h"
#include "filterfolder.h"
#include "filterschema.h"
#include "filterwindow.h"
#include "readonlyfolder.h"
#include "tracemask.h"
#include "tracetexts.h"
#include "windowsignals.h"

#include <zelkoguibase/filter/enumerationfiltercondition.h>
#include <zelkoguibase/filter/numberfiltercondition.h>
#include <zelkoguibase/filter/stringfiltercondition.h>

#include <QDateTimeEdit>

using namespace filterdocument;
using namespace ZelkoGUI::Filter;
using Dialog = ExtendedFilterDialog;
using ZELKO_XML::FilterConditionList;
using ZelkoTest::askedBy;
using ZelkoTest::objectionsOfFilterSchema;

/// Saving and restoring, with the hands of an operator.
class FilterFileTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // Each test starts with a configuration that knows no folder.
    void init() { m_folder = std::make_unique<FilterFolder>(); }

    void whatIsSavedComesBack();
    void aFileObeysTheSchema();
    void aRangeIsTwoEntries();
    void whatIsSwitchedOffIsSavedToo();
    void aSmallWindowSavesItsRowsOnly();
    void aSmallFileChangesItsRowsOnly();
    void aLargeFileIsTakenAsFarAsThereAreRows();
    void rowsAreRestoredOneAfterTheOther();
    void aLimitFollowsItsRowWhateverTypeTheFileNames_data();
    void aLimitFollowsItsRowWhateverTypeTheFileNames();
    void extremeLimitsAreShownSomehow_data();
    void extremeLimitsAreShownSomehow();

    void filesAreCalledXml_data();
    void filesAreCalledXml();
    void aFileWithTheLongerNameIsReplacedUnasked();
    void fileDialogsAskForFiltersInTheFolderOfTheLastFile();
    void cancellingChangesNothing_data();
    void cancellingChangesNothing();
    void theWindowMayGoWhileAFileIsChosen_data();
    void theWindowMayGoWhileAFileIsChosen();
    void aFileThatCannotBeSavedIsTracedOnly();
    void failuresAreTracedAsErrors_data();
    void failuresAreTracedAsErrors();
    void nothingIsTracedThatIsNotWanted();

    void aDocumentWithoutAnIdIsAccepted();

    void conditionsWithoutAnEntryAreTraced();
    void deletedConditionsAreTraced();

private:
    QString file(const QString& name = QStringLiteral("filter.xml")) const { return m_folder->file(name); }
    void write(const QByteArray& bytes) const { m_folder->write(bytes); }

    std::unique_ptr<FilterFolder> m_folder;
};

void FilterFileTest::whatIsSavedComesBack()
{
    FilterWindow window;
    const QString name = QStringLiteral("NameFilterWidget");
    const QString size = QStringLiteral("SizeFilterWidget");
    const QString start = QStringLiteral("StartTimeFilterWidget");
    const QString duration = QStringLiteral("DurationFilterWidget");
    window.type(name, QStringLiteral("TextEdit"), QStringLiteral("band*"));
    window.choose(name, QStringLiteral("PatternSyntaxCombobox"), QStringLiteral("Wildcard"));
    window.check(name, QStringLiteral("CaseSensitiveCheckbox"));
    window.check(size, QStringLiteral("UpperLimitCheckbox"));
    window.choose(size, QStringLiteral("UnitCombobox"), QStringLiteral("kByte"));
    window.type(size, QStringLiteral("UpperLimitEdit"), QStringLiteral("12"));
    window.check(start, QStringLiteral("LowerLimitCheckbox"));
    window.type(start, QStringLiteral("LowerLimitDateTimeEdit"), QStringLiteral("10062024"));
    window.check(duration, QStringLiteral("UpperLimitCheckbox"));
    window.type(duration, QStringLiteral("UpperLimitTimeEdit"), QStringLiteral("000010"));
    window.check(QStringLiteral("DeletableFilterWidget"), QStringLiteral("EnableFilter"));
    window.toggleValues(QStringLiteral("StatusFilterWidget"), {QStringLiteral("damaged"), QStringLiteral("finished")});
    const QMap<QString, QString> saved = window.state();
    QCOMPARE(window.saveAs(file()), QString());

    FilterWindow other;
    QVERIFY(other.state() != saved);
    QCOMPARE(other.restoreFrom(file()), QString());
    QCOMPARE(other.state(), saved);
    QVERIFY(other.canReset());
    QCOMPARE(other.part<QLineEdit>(name, QStringLiteral("TextEdit"))->text(), QStringLiteral("band*"));
    QVERIFY(other.part<QCheckBox>(name, QStringLiteral("CaseSensitiveCheckbox"))->isChecked());
    QVERIFY(other.part<QCheckBox>(size, QStringLiteral("UpperLimitCheckbox"))->isChecked());
    QVERIFY(!other.part<QCheckBox>(size, QStringLiteral("LowerLimitCheckbox"))->isChecked());
    QCOMPARE(other.part<QLineEdit>(size, QStringLiteral("UpperLimitEdit"))->text(), QStringLiteral("12288"));
    QCOMPARE(other.part<QDateTimeEdit>(start, QStringLiteral("LowerLimitDateTimeEdit"))->date(), QDate(2024, 6, 10));
    QCOMPARE(other.part<QDateTimeEdit>(duration, QStringLiteral("UpperLimitTimeEdit"))->time().second(), 10);
    other.resetAll();
    QVERIFY(!other.canReset());
}

void FilterFileTest::aFileObeysTheSchema()
{
    FilterWindow window;
    window.type(QStringLiteral("NameFilterWidget"), QStringLiteral("TextEdit"), QStringLiteral("<&>\"'"));
    window.toggleValues(QStringLiteral("InterfaceFilterWidget"), {QStringLiteral("USB")});
    window.saveAs(file());
    QCOMPARE(objectionsOfFilterSchema(file()), QString());
}

void FilterFileTest::aRangeIsTwoEntries()
{
    FilterWindow window;
    const QString editor = QStringLiteral("SizeFilterWidget");
    window.check(editor, QStringLiteral("LowerLimitCheckbox"));
    window.check(editor, QStringLiteral("UpperLimitCheckbox"));
    window.choose(editor, QStringLiteral("UnitCombobox"), QStringLiteral("MByte"));
    window.type(editor, QStringLiteral("LowerLimitEdit"), QStringLiteral("1"));
    window.type(editor, QStringLiteral("UpperLimitEdit"), QStringLiteral("100"));
    window.saveAs(file());
    FilterConditionList list;
    QVERIFY(list.LoadXml(file()));
    QCOMPARE(list.GetID(), QStringLiteral("ExtendedRecordListFilter"));
    QCOMPARE(list.GetFilterCondition().size(), 21);
    const auto requireLimit = [&list](int at, const QString& name, int comparator, const QString& value) {
        const ZELKO_XML::FilterCondition& condition = list.GetFilterCondition()[at];
        QCOMPARE(condition.GetName(), name);
        QCOMPARE(condition.GetColumn(), 1);
        QCOMPARE(condition.GetRole(), 33);
        QVERIFY(condition.GetEnabled());
        QCOMPARE(static_cast<int>(condition.GetNumberFilter().GetType()), 0);
        QCOMPARE(static_cast<int>(condition.GetNumberFilter().GetComparator()), comparator);
        QCOMPARE(condition.GetNumberFilter().GetFilterValue(), value);
    };
    requireLimit(1, QStringLiteral("SizeLowerLimit"), 4, QStringLiteral("1.04858e+06"));
    requireLimit(2, QStringLiteral("SizeUpperLimit"), 3, QStringLiteral("1.04858e+08"));
}

void FilterFileTest::whatIsSwitchedOffIsSavedToo()
{
    FilterWindow window;
    const QString editor = QStringLiteral("FrequencyFilterWidget");
    window.check(editor, QStringLiteral("LowerLimitCheckbox"));
    window.type(editor, QStringLiteral("LowerLimitEdit"), QStringLiteral("4321"));
    window.check(editor, QStringLiteral("LowerLimitCheckbox"));
    window.saveAs(file());
    FilterWindow other;
    other.check(editor, QStringLiteral("LowerLimitCheckbox"));
    other.restoreFrom(file());
    QVERIFY(!other.canReset());
    QVERIFY(!other.part<QCheckBox>(editor, QStringLiteral("LowerLimitCheckbox"))->isChecked());
    QCOMPARE(other.part<QLineEdit>(editor, QStringLiteral("LowerLimitEdit"))->text(), QStringLiteral("4321"));
}

void FilterFileTest::aSmallWindowSavesItsRowsOnly()
{
    FilterWindow window(Dialog::NameColumn | Dialog::SizeColumn);
    QCOMPARE(window.form()->rowCount(), 2);
    window.saveAs(file());
    FilterConditionList list;
    QVERIFY(list.LoadXml(file()));
    QStringList names;
    for (const ZELKO_XML::FilterCondition& condition : list.GetFilterCondition()) {
        names << condition.GetName();
    }
    QCOMPARE(names.join(QLatin1Char(' ')), QStringLiteral("NameFilter SizeLowerLimit SizeUpperLimit"));
}

void FilterFileTest::aSmallFileChangesItsRowsOnly()
{
    FilterWindow small(Dialog::NameColumn | Dialog::SizeColumn);
    small.type(QStringLiteral("NameFilterWidget"), QStringLiteral("TextEdit"), QStringLiteral("band"));
    small.check(QStringLiteral("SizeFilterWidget"), QStringLiteral("LowerLimitCheckbox"));
    small.check(QStringLiteral("SizeFilterWidget"), QStringLiteral("UpperLimitCheckbox"));
    small.saveAs(file());

    FilterWindow full;
    full.check(QStringLiteral("DeletableFilterWidget"), QStringLiteral("EnableFilter"));
    const QMap<QString, QString> before = full.state();
    QCOMPARE(full.restoreFrom(file()), QString());
    const QMap<QString, QString> after = full.state();
    QStringList changed;
    for (auto it = after.cbegin(); it != after.cend(); ++it) {
        if (before[it.key()] != it.value()) {
            changed << it.key();
        }
    }
    QCOMPARE(changed.join(QLatin1Char(' ')), QStringLiteral("NameFilter SizeLowerLimit SizeUpperLimit"));
    QCOMPARE(FilterFolder::remembered(), m_folder->path());
}

void FilterFileTest::aLargeFileIsTakenAsFarAsThereAreRows()
{
    FilterWindow full;
    full.type(QStringLiteral("RecordIDFilterWidget"), QStringLiteral("TextEdit"), QStringLiteral("7"));
    full.check(QStringLiteral("DeletableFilterWidget"), QStringLiteral("EnableFilter"));
    full.saveAs(file());
    FilterWindow small(FilterWindow::Columns(Dialog::RecordIDColumn));
    QCOMPARE(small.restoreFrom(file()), QString());
    QCOMPARE(small.condition<StringFilterCondition>(QStringLiteral("IDFilter"))->pattern(), QStringLiteral("7"));
}

void FilterFileTest::rowsAreRestoredOneAfterTheOther()
{
    FilterWindow window(Dialog::NameColumn | Dialog::SizeColumn);
    window.type(QStringLiteral("NameFilterWidget"), QStringLiteral("TextEdit"), QStringLiteral("band"));
    window.check(QStringLiteral("SizeFilterWidget"), QStringLiteral("LowerLimitCheckbox"));
    window.saveAs(file());
    window.resetAll();
    WindowSignals changes(window.dialog());
    window.restoreFrom(file());
    QCOMPARE(changes.take().join(QStringLiteral(", ")),
             QStringLiteral("NameFilter filter, NameFilter content, SizeLowerLimit filter, SizeLowerLimit content, "
                            "SizeUpperLimit content"));
}

void FilterFileTest::aLimitFollowsItsRowWhateverTypeTheFileNames_data()
{
    QTest::addColumn<QByteArray>("type");
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<double>("value");

    QTest::newRow("a whole number") << QByteArray("Int") << QByteArray("4096") << 4096.0;
    QTest::newRow("a moment") << QByteArray("DateTime") << QByteArray("4096") << 4096.0;
    QTest::newRow("a duration, which is no number") << QByteArray("Time") << QByteArray("00:00:10.000") << 0.0;
}

void FilterFileTest::aLimitFollowsItsRowWhateverTypeTheFileNames()
{
    QFETCH(QByteArray, type);
    QFETCH(QByteArray, text);
    QFETCH(double, value);
    write(sizeLimit(type, text));
    FilterWindow window;
    QCOMPARE(window.restoreFrom(file()), QString());
    const auto* const limit = window.condition<NumberFilterCondition<double>>(QStringLiteral("SizeLowerLimit"));
    QVERIFY(limit->enabled());
    QCOMPARE(limit->value(), value);
    QCOMPARE(window.part<QLineEdit>(QStringLiteral("SizeFilterWidget"), QStringLiteral("LowerLimitEdit"))->text(),
             QString::number(value));
}

void FilterFileTest::extremeLimitsAreShownSomehow_data()
{
    QTest::addColumn<QByteArray>("document");

    for (const char* const number : {"1e308", "-1e308", "inf", "-inf", "nan", "1e-308", "-1", "9.3e18"}) {
        QTest::addRow("a size of %s", number) << sizeLimit("Double", number);
    }
    QTest::newRow("no duration") << documentWith(entry("DurationLowerLimit", 4, limit("Time", "")));
    QTest::newRow("the first moment") << documentWith(
        entry("StartTimeLowerLimit", 2, limit("DateTime", "-9000000000000000000")));
    QTest::newRow("the last moment") << documentWith(
        entry("StopTimeLowerLimit", 3, limit("DateTime", "9000000000000000000")));
    QTest::newRow("no enumerator") << documentWith(entry("StatusFilter", 8, "<EnumFilter/>"));
    QTest::newRow("enumerators that do not exist")
        << documentWith(entry("StatusFilter", 8,
                              "<EnumFilter><EnumValue>2147483647</EnumValue><EnumValue>-2147483648</EnumValue>"
                              "<EnumValue>5</EnumValue></EnumFilter>"));
}

// The file is in order; the editors must bear what they cannot show, and so must the next file.
void FilterFileTest::extremeLimitsAreShownSomehow()
{
    QFETCH(QByteArray, document);
    write(document);
    FilterWindow window;
    QCOMPARE(window.restoreFrom(file()), QString());
    QVERIFY(window.canReset());
    const QMap<QString, QString> restored = window.state();
    const QString again = file(QStringLiteral("again.xml"));
    QCOMPARE(window.saveAs(again), QString());
    QCOMPARE(objectionsOfFilterSchema(again), QString());
    FilterWindow other;
    QCOMPARE(other.restoreFrom(again), QString());
    QCOMPARE(other.state(), restored);
    other.resetAll();
    QVERIFY(!other.canReset());
}

void FilterFileTest::filesAreCalledXml_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("written");

    QTest::newRow("the suffix") << "filter.xml"
                                << "filter.xml";
    QTest::newRow("none") << "filter"
                          << "filter.xml";
    QTest::newRow("another one") << "filter.txt"
                                 << "filter.txt.xml";
    QTest::newRow("in capitals") << "filter.XML"
                                 << "filter.XML.xml";
    QTest::newRow("two") << "filter.xml.old"
                         << "filter.xml.old.xml";
}

void FilterFileTest::filesAreCalledXml()
{
    QFETCH(QString, typed);
    QFETCH(QString, written);
    FilterWindow window;
    window.saveAs(file(typed));
    QCOMPARE(QDir(m_folder->path()).entryList({QStringLiteral("filter*")}, QDir::Files), QStringList(written));
    FilterConditionList list;
    QVERIFY(list.LoadXml(file(written)));
}

void FilterFileTest::aFileWithTheLongerNameIsReplacedUnasked()
{
    write("no XML");
    FilterWindow window;
    QCOMPARE(window.saveAs(file(QStringLiteral("filter"))), QString());
    FilterConditionList list;
    QVERIFY(list.LoadXml(file()));
    QCOMPARE(list.GetFilterCondition().size(), 21);
}

void FilterFileTest::fileDialogsAskForFiltersInTheFolderOfTheLastFile()
{
    FilterWindow window;
    const auto requireAsked = [&window](const char* button, const QString& title, QFileDialog::AcceptMode mode,
                                        const QString& folder) {
        const auto asked = askedBy([&] { window.press(QLatin1String(button)); });
        QVERIFY(asked);
        QCOMPARE(asked->parent, &window.dialog());
        QCOMPARE(asked->title, title);
        QCOMPARE(asked->folder, folder);
        QCOMPARE(asked->nameFilters, QStringList(QStringLiteral("XML Files (*.xml)")));
        QCOMPARE(asked->acceptMode, mode);
    };
    const auto requireFolder = [&](const QString& folder) {
        requireAsked("SaveFilterButton", QStringLiteral("Save Settings to file"), QFileDialog::AcceptSave, folder);
        requireAsked("RestoreFilterButton", QStringLiteral("Restore Settings from file"), QFileDialog::AcceptOpen,
                     folder);
    };
    const QString other = m_folder->makeFolder(QStringLiteral("other"));
    window.saveAs(file());
    QCOMPARE(FilterFolder::remembered(), m_folder->path());
    requireFolder(m_folder->path());
    window.saveAs(other + QStringLiteral("/filter.xml"));
    requireFolder(other);
    window.restoreFrom(file());
    requireFolder(m_folder->path());
    QFile configuration(file(QStringLiteral("user.ini")));
    QVERIFY(configuration.open(QIODevice::ReadOnly));
    QVERIFY(configuration.readAll().contains("ExtendedRecordListFilterFolder"));
}

void FilterFileTest::cancellingChangesNothing_data()
{
    QTest::addColumn<QString>("button");

    QTest::newRow("saving") << "SaveFilterButton";
    QTest::newRow("restoring") << "RestoreFilterButton";
}

// Without a remembered folder the file dialog begins where the last one was.
void FilterFileTest::cancellingChangesNothing()
{
    QFETCH(QString, button);
    const QString lastOne = m_folder->makeFolder(QStringLiteral("last one"));
    QFileDialog().setDirectory(lastOne);
    FilterWindow window;
    window.type(QStringLiteral("NameFilterWidget"), QStringLiteral("TextEdit"), QStringLiteral("band"));
    const QMap<QString, QString> before = window.state();
    WindowSignals changes(window.dialog());
    const TraceTexts traces;
    const auto asked = askedBy([&] { window.press(button); });
    QVERIFY(asked);
    QCOMPARE(asked->folder, lastOne);
    QCOMPARE(window.state(), before);
    QCOMPARE(changes.take(), QStringList());
    QCOMPARE(FilterFolder::remembered(), QString());
    QVERIFY(traces.withSources().isEmpty());
    QVERIFY(QDir(m_folder->path()).entryList({QStringLiteral("*.xml")}).isEmpty());
}

void FilterFileTest::theWindowMayGoWhileAFileIsChosen_data()
{
    QTest::addColumn<QString>("button");
    QTest::addColumn<QString>("chosen");

    QTest::newRow("saving") << "SaveFilterButton"
                            << "other.xml";
    QTest::newRow("restoring") << "RestoreFilterButton"
                               << "filter.xml";
}

void FilterFileTest::theWindowMayGoWhileAFileIsChosen()
{
    QFETCH(QString, button);
    QFETCH(QString, chosen);
    write(documentWith(goodEntry));
    FilterWindow window;
    const TraceTexts traces;
    window.goWhileChoosing(button, file(chosen));
    QCOMPARE(window.condition<StringFilterCondition>(QStringLiteral("NameFilter"))->pattern(), QString());
    QCOMPARE(QDir(m_folder->path()).entryList({QStringLiteral("*.xml")}), QStringList(QStringLiteral("filter.xml")));
    QCOMPARE(FilterFolder::remembered(), QString());
    QCOMPARE(traces.withSources(), QStringList());
}

void FilterFileTest::aFileThatCannotBeSavedIsTracedOnly()
{
    const QString locked = m_folder->makeFolder(QStringLiteral("locked"));
    FilterWindow window;
    const TraceTexts traces;
    {
        const ZelkoTest::ReadOnlyFolder readOnly(locked);
        QCOMPARE(window.saveAs(locked + QStringLiteral("/filter")), QString());
    }
    QCOMPARE(window.lastWarning().parent, nullptr);
    QVERIFY(traces.withSources()
                .join(QLatin1Char('\n'))
                .endsWith(QStringLiteral("extendedfilterdialog.cpp: ExtendedFileDialog: Exception while saving filter "
                                         "filter could not be saved to %1/filter.xml")
                              .arg(locked)));
    QVERIFY(QDir(locked).isEmpty());
    QCOMPARE(FilterFolder::remembered(), QString());
}

void FilterFileTest::failuresAreTracedAsErrors_data()
{
    QTest::addColumn<unsigned>("mask");
    QTest::addColumn<bool>("traced");

    QTest::newRow("errors are traced") << unsigned{ErrorHandler::TraceError} << true;
    QTest::newRow("only warnings are traced") << unsigned{ErrorHandler::TraceWarning} << false;
}

void FilterFileTest::failuresAreTracedAsErrors()
{
    QFETCH(unsigned, mask);
    QFETCH(bool, traced);
    const QString locked = m_folder->makeFolder(QStringLiteral("locked"));
    write("no XML");
    FilterWindow window;
    const TraceMask wanted(mask);
    const TraceTexts traces;
    QVERIFY(!window.restoreFrom(file()).isEmpty());
    QCOMPARE(traces.contain(QStringLiteral("ExtendedFileDialog: Exception while loading filter filter could not be "
                                           "loaded from ")),
             traced);
    const ZelkoTest::ReadOnlyFolder readOnly(locked);
    window.saveAs(locked + QStringLiteral("/filter"));
    QVERIFY(QDir(locked).isEmpty());
    QCOMPARE(traces.contain(QStringLiteral("ExtendedFileDialog: Exception while saving filter filter could not be "
                                           "saved to ")),
             traced);
}

void FilterFileTest::nothingIsTracedThatIsNotWanted()
{
    write("no XML");
    FilterWindow window;
    delete window.condition(QStringLiteral("NameFilter"));
    const TraceMask none(0);
    const TraceTexts traces;
    QVERIFY(!window.restoreFrom(file()).isEmpty());
    write(documentWith(goodEntry));
    QCOMPARE(window.restoreFrom(file()), QString());
    window.saveAs(file(QStringLiteral("other.xml")));
    QCOMPARE(traces.withSources(), QStringList());
}

void FilterFileTest::aDocumentWithoutAnIdIsAccepted()
{
    write("<FilterConditionList>" + goodEntry + "</FilterConditionList>");
    FilterWindow window;
    QCOMPARE(window.restoreFrom(file()), QString());
    QCOMPARE(window.condition<StringFilterCondition>(QStringLiteral("NameFilter"))->pattern(), QStringLiteral("x"));
    QCOMPARE(FilterFolder::remembered(), m_folder->path());
}

void FilterFileTest::conditionsWithoutAnEntryAreTraced()
{
    write(documentWith(goodEntry));
    FilterWindow window(Dialog::NameColumn | Dialog::SizeColumn);
    const TraceMask warnings(ErrorHandler::TraceWarning);
    const TraceTexts traces;
    QCOMPARE(window.restoreFrom(file()), QString());
    QCOMPARE(window.condition<StringFilterCondition>(QStringLiteral("NameFilter"))->pattern(), QStringLiteral("x"));
    const QString text = QStringLiteral("ExtendedFilterDialog: filter %1 could not be loaded from %2");
    QCOMPARE(traces.withSources().size(), 2);
    QVERIFY(traces.contain(text.arg(QStringLiteral("SizeLowerLimit"), file())));
    QVERIFY(traces.contain(text.arg(QStringLiteral("SizeUpperLimit"), file())));
    QCOMPARE(FilterFolder::remembered(), m_folder->path());
}

void FilterFileTest::deletedConditionsAreTraced()
{
    FilterWindow window(Dialog::NameColumn | Dialog::SizeColumn);
    window.check(QStringLiteral("SizeFilterWidget"), QStringLiteral("LowerLimitCheckbox"));
    delete window.condition(QStringLiteral("NameFilter"));
    const TraceMask errors(ErrorHandler::TraceError);
    const auto requireTrace = [](const TraceTexts& traces) {
        QCOMPARE(traces.withSources().size(), 1);
        QVERIFY(traces.contain(
            QStringLiteral("ExtendedFilterDialog: a filter has been deleted while the dialog is still open")));
    };
    {
        const TraceTexts traces;
        window.saveAs(file());
        requireTrace(traces);
    }
    FilterConditionList list;
    QVERIFY(list.LoadXml(file()));
    QCOMPARE(list.GetFilterCondition().size(), 2);
    window.resetAll();
    const TraceTexts traces;
    QCOMPARE(window.restoreFrom(file()), QString());
    requireTrace(traces);
    QVERIFY(window.condition(QStringLiteral("SizeLowerLimit"))->enabled());
}

QTEST_MAIN(FilterFileTest)
#include "tst_filterfile.moc"
