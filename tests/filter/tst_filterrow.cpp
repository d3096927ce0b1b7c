#include <zelkoguibase/filter/extendedfilterdialog.h>

#include "differentrecords.h"
#include "filterwindow.h"
#include "iconpicture.h"
#include "markingtranslator.h"

#include <zelkoguibase/filter/booleanbuttonfilterwidget.h>
#include <zelkoguibase/filter/booleanfiltercondition.h>
#include <zelkoguibase/filter/datetimefilterwidget.h>
#include <zelkoguibase/filter/enumerationfiltercondition.h>
#include <zelkoguibase/filter/enumerationfilterwidget.h>
#include <zelkoguibase/filter/numberfiltercondition.h>
#include <zelkoguibase/filter/sizefilterwidget.h>
#include <zelkoguibase/filter/stringfiltercondition.h>
#include <zelkoguibase/filter/textfilterwidget.h>

#include <QFormLayout>
#include <QLabel>
#include <QVBoxLayout>

#include <functional>

using namespace ZelkoGUI::Filter;
using differentrecords::both;
using differentrecords::twoRecords;
using Dialog = ExtendedFilterDialog;
using Record = ZELKO_XML::ZELKO_RecordData;

namespace {

using Hands = std::function<void(FilterWindow&)>;
using Fits = std::function<bool(const QObject*)>;

template <typename C>
Fits isA()
{
    return [](const QObject* object) { return dynamic_cast<const C*>(object) != nullptr; };
}

template <typename E>
Fits editsValues()
{
    return isA<EnumerationFilterWidget<E>>();
}

QStringList labels(const FilterWindow& window)
{
    QStringList texts;
    for (int row = 0; row < window.form()->rowCount(); ++row) {
        texts << window.cell(row, QFormLayout::LabelRole)->findChild<QLabel*>()->text();
    }
    return texts;
}

QStringList textsOf(const QComboBox& box)
{
    QStringList texts;
    for (int i = 0; i < box.count(); ++i) {
        texts << box.itemText(i);
    }
    return texts;
}

} // namespace

/// The rows of the extended filter window, each by itself.
class FilterRowTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void columnsAreBits();
    void eachRowHasItsEditorAndConditions_data();
    void eachRowHasItsEditorAndConditions();
    void rowsStandInTheOrderOfTheColumns();
    void rowsAreTranslated();
    void bitsOfNoRowAreIgnored();
    void labelsStayCentred();
    void numbersAreEnteredInUnits_data();
    void numbersAreEnteredInUnits();
    void allWordsOfAnEnumerationCanBeChosen_data();
    void allWordsOfAnEnumerationCanBeChosen();
    void theDeletableButtonSaysNoOrYes();
    void eachRowFiltersAtOnce_data();
    void eachRowFiltersAtOnce();
    void aRangeHasTwoEnds();
    void rowsCombine();
};

void FilterRowTest::columnsAreBits()
{
    using Model = ZelkoCommon::AbstractRecordListModel;
    QCOMPARE(int{Dialog::NameColumn}, 1 << Model::NameColumn);
    QCOMPARE(int{Dialog::SizeColumn}, 1 << Model::SizeColumn);
    QCOMPARE(int{Dialog::StartTimeColumn}, 1 << Model::StartTimeColumn);
    QCOMPARE(int{Dialog::StopTimeColumn}, 1 << Model::StopTimeColumn);
    QCOMPARE(int{Dialog::DurationColumn}, 1 << Model::DurationColumn);
    QCOMPARE(int{Dialog::DataRateColumn}, 1 << Model::DataRateColumn);
    QCOMPARE(int{Dialog::DataFormatColumn}, 1 << Model::DataFormatColumn);
    QCOMPARE(int{Dialog::RecordIDColumn}, 1 << Model::RecordIDColumn);
    QCOMPARE(int{Dialog::StatusColumn}, 1 << Model::StatusColumn);
    QCOMPARE(int{Dialog::FrequencyColumn}, 1 << Model::FrequencyColumn);
    QCOMPARE(int{Dialog::BandwidthColumn}, 1 << Model::BandwidthColumn);
    QCOMPARE(int{Dialog::SampleRateColumn}, 1 << Model::SampleRateColumn);
    QCOMPARE(int{Dialog::DeletableColumn}, 1 << Model::DeletableColumn);
    QCOMPARE(int{Dialog::InterfaceColumn}, 1 << Model::InterfaceColumn);
}

void FilterRowTest::eachRowHasItsEditorAndConditions_data()
{
    QTest::addColumn<int>("column");
    QTest::addColumn<QString>("editorName");
    QTest::addColumn<Fits>("isEditor");
    QTest::addColumn<QString>("conditionNames");
    QTest::addColumn<Fits>("isCondition");

    const auto row = [](const char* label, int column, const char* editor, const Fits& isEditor, const char* conditions,
                        const Fits& isCondition) {
        QTest::newRow(label) << column << QString::fromLatin1(editor) << isEditor << QString::fromLatin1(conditions)
                             << isCondition;
    };
    const Fits isRange = isA<NumberFilterCondition<double>>();
    const Fits isSpan = isA<NumberFilterCondition<QDateTime>>();
    row("Name", 0, "NameFilterWidget", isA<TextFilterWidget>(), "NameFilter", isA<StringFilterCondition>());
    row("Size", 1, "SizeFilterWidget", isA<SizeFilterWidget>(), "SizeLowerLimit SizeUpperLimit", isRange);
    row("Start Time", 2, "StartTimeFilterWidget", isA<DateTimeFilterWidget>(),
        "StartTimeLowerLimit StartTimeUpperLimit", isSpan);
    row("Stop Time", 3, "StopTimeFilterWidget", isA<DateTimeFilterWidget>(), "StopTimeLowerLimit StopTimeUpperLimit",
        isSpan);
    row("Duration", 4, "DurationFilterWidget", isA<DateTimeFilterWidget>(), "DurationLowerLimit DurationUpperLimit",
        isA<NumberFilterCondition<QTime>>());
    row("Data Rate", 5, "DataRateFilterWidget", editsValues<Record::DataRate>(), "DataRateFilter",
        isA<EnumerationFilterCondition<Record::DataRate>>());
    row("Data Format", 6, "DataFormatFilterWidget", editsValues<Record::DataFormat>(), "DataFormatFilter",
        isA<EnumerationFilterCondition<Record::DataFormat>>());
    row("Record ID", 7, "RecordIDFilterWidget", isA<TextFilterWidget>(), "IDFilter", isA<StringFilterCondition>());
    row("Status", 8, "StatusFilterWidget", editsValues<Record::RecordStatus>(), "StatusFilter",
        isA<EnumerationFilterCondition<Record::RecordStatus>>());
    row("Frequency", 9, "FrequencyFilterWidget", isA<SizeFilterWidget>(), "FrequencyLowerLimit FrequencyUpperLimit",
        isRange);
    row("Bandwidth", 10, "BandwidthFilterWidget", isA<SizeFilterWidget>(), "BandwidthLowerLimit BandwidthUpperLimit",
        isRange);
    row("Sample Rate", 11, "SampleRateFilterWidget", isA<SizeFilterWidget>(),
        "SampleRateLowerLimit SampleRateUpperLimit", isRange);
    row("Deletable", 12, "DeletableFilterWidget", isA<BooleanButtonFilterWidget>(), "DeletableFlag",
        isA<BooleanFilterCondition>());
    row("Interface", 13, "InterfaceFilterWidget", editsValues<Record::Interface>(), "InterfaceFilter",
        isA<EnumerationFilterCondition<Record::Interface>>());
}

void FilterRowTest::eachRowHasItsEditorAndConditions()
{
    QFETCH(int, column);
    QFETCH(QString, editorName);
    QFETCH(Fits, isEditor);
    QFETCH(QString, conditionNames);
    QFETCH(Fits, isCondition);

    FilterWindow window(FilterWindow::Columns(1U << column));
    QCOMPARE(labels(window), QStringList(QString::fromLatin1(QTest::currentDataTag())));
    QWidget* const editor = window.cell(0, QFormLayout::FieldRole);
    QCOMPARE(editor->objectName(), editorName);
    QVERIFY(isEditor(editor));
    QCOMPARE(editor->contentsMargins(), QMargins());
    QCOMPARE(window.conditionNames().join(QLatin1Char(' ')), conditionNames);
    for (const auto& condition : window.dialog().filters()) {
        QVERIFY(isCondition(condition));
        QCOMPARE(condition->filterKeyColumn(), column);
        QCOMPARE(condition->filterRole(), 33);
        QVERIFY(qobject_cast<MultiFilterSortProxyModel*>(condition->parent()));
    }
}

void FilterRowTest::rowsStandInTheOrderOfTheColumns()
{
    FilterWindow window;
    const QString expected = QStringLiteral("Name,Size,Start Time,Stop Time,Duration,Data Rate,Data Format,Record ID,"
                                            "Status,Frequency,Bandwidth,Sample Rate,Deletable,Interface");
    QCOMPARE(labels(window).join(QLatin1Char(',')), expected);
    QCOMPARE(window.form()->spacing(), 0);
    const QString conditions = QStringLiteral(
        "NameFilter,SizeLowerLimit,SizeUpperLimit,StartTimeLowerLimit,StartTimeUpperLimit,StopTimeLowerLimit,"
        "StopTimeUpperLimit,DurationLowerLimit,DurationUpperLimit,DataRateFilter,DataFormatFilter,IDFilter,"
        "StatusFilter,"
        "FrequencyLowerLimit,FrequencyUpperLimit,BandwidthLowerLimit,BandwidthUpperLimit,SampleRateLowerLimit,"
        "SampleRateUpperLimit,DeletableFlag,InterfaceFilter");
    QCOMPARE(window.conditionNames().join(QLatin1Char(',')), conditions);
}

void FilterRowTest::rowsAreTranslated()
{
    const ZelkoTest::MarkingTranslator translator("ZelkoGUI::Filter::ExtendedFilterDialog");
    FilterWindow window(Dialog::StartTimeColumn | Dialog::SizeColumn | Dialog::DeletableColumn);
    QCOMPARE(labels(window),
             (QStringList{QStringLiteral("<Size>"), QStringLiteral("<Start Time>"), QStringLiteral("<Deletable>")}));
    const auto* const units =
        window.part<QComboBox>(QStringLiteral("SizeFilterWidget"), QStringLiteral("UnitCombobox"));
    QCOMPARE(units->itemText(1), QStringLiteral("<kByte>"));
    const auto* const flag =
        window.part<QPushButton>(QStringLiteral("DeletableFilterWidget"), QStringLiteral("PushButton"));
    QCOMPARE(flag->text(), QStringLiteral("<yes>"));
}

void FilterRowTest::bitsOfNoRowAreIgnored()
{
    FilterWindow window(FilterWindow::Columns(0xC000 | Dialog::SizeColumn));
    QCOMPARE(labels(window), QStringList(QStringLiteral("Size")));
    FilterWindow empty{FilterWindow::Columns()};
    QVERIFY(empty.dialog().filters().isEmpty());
    QVERIFY(!empty.canReset());
}

void FilterRowTest::labelsStayCentred()
{
    FilterWindow window;
    window.dialog().resize(window.dialog().width(), window.dialog().height() + 300);
    for (int row = 0; row < 14; ++row) {
        QWidget* const widget = window.cell(row, QFormLayout::LabelRole);
        auto* const layout = qobject_cast<QVBoxLayout*>(widget->layout());
        QVERIFY(layout);
        QCOMPARE(layout->contentsMargins(), QMargins());
        QCOMPARE(layout->count(), 3);
        QCOMPARE(layout->stretch(0), 1);
        QVERIFY(qobject_cast<QLabel*>(layout->itemAt(1)->widget()));
        QCOMPARE(layout->stretch(2), 1);
        widget->resize(widget->width(), 200);
        layout->activate();
        QVERIFY(qAbs(widget->findChild<QLabel*>()->geometry().center().y() - 100) <= 1);
    }
}

void FilterRowTest::numbersAreEnteredInUnits_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("units");
    QTest::addColumn<double>("step");

    const QString hertz = QStringLiteral("Hz,kHz,MHz,GHz");
    QTest::newRow("sizes") << "Size"
                           << "Byte,kByte,MByte,GByte" << 1024.0;
    QTest::newRow("frequencies") << "Frequency" << hertz << 1000.0;
    QTest::newRow("bandwidths") << "Bandwidth" << hertz << 1000.0;
    QTest::newRow("sample rates") << "SampleRate" << hertz << 1000.0;
}

void FilterRowTest::numbersAreEnteredInUnits()
{
    QFETCH(QString, name);
    QFETCH(QString, units);
    QFETCH(double, step);

    FilterWindow window;
    const QString editor = name + QStringLiteral("FilterWidget");
    const auto* const limit = window.condition<NumberFilterCondition<double>>(name + QStringLiteral("LowerLimit"));
    const auto* const box = window.part<QComboBox>(editor, QStringLiteral("UnitCombobox"));
    QCOMPARE(textsOf(*box).join(QLatin1Char(',')), units);
    QCOMPARE(box->currentIndex(), 0);
    window.check(editor, QStringLiteral("LowerLimitCheckbox"));
    window.type(editor, QStringLiteral("LowerLimitEdit"), QStringLiteral("3"));
    double factor = 1;
    for (const QString& unit : units.split(QLatin1Char(','))) {
        window.choose(editor, QStringLiteral("UnitCombobox"), unit);
        QCOMPARE(box->currentText(), unit);
        QCOMPARE(limit->value(), 3 * factor);
        factor *= step;
    }
}

void FilterRowTest::allWordsOfAnEnumerationCanBeChosen_data()
{
    QTest::addColumn<QString>("editor");
    QTest::addColumn<QStringList>("words");

    QTest::newRow("data rates") << "DataRateFilterWidget" << Record::GetGUIDataRates();
    QTest::newRow("data formats") << "DataFormatFilterWidget" << Record::GetGUIDataFormats();
    QTest::newRow("statuses") << "StatusFilterWidget" << Record::GetGUIRecordStatuss();
    QTest::newRow("interfaces") << "InterfaceFilterWidget" << Record::GetGUIInterfaces();
}

void FilterRowTest::allWordsOfAnEnumerationCanBeChosen()
{
    QFETCH(QString, editor);
    QFETCH(QStringList, words);

    FilterWindow window;
    const QListView* const list = window.openValues(editor);
    QVERIFY(list);
    QStringList shown;
    for (int row = 2; row < list->model()->rowCount(); ++row) {
        const QModelIndex index = list->model()->index(row, 0);
        QCOMPARE(index.data(Qt::CheckStateRole).toInt(), int{Qt::Checked});
        shown << index.data().toString();
    }
    QCOMPARE(shown, words);
}

void FilterRowTest::theDeletableButtonSaysNoOrYes()
{
    FilterWindow window;
    const QString editor = QStringLiteral("DeletableFilterWidget");
    auto* const button = window.part<QPushButton>(editor, QStringLiteral("PushButton"));
    window.check(editor, QStringLiteral("EnableFilter"));
    const auto says = [&](const QString& text, const QString& icon) {
        QCOMPARE(button->text(), text);
        QCOMPARE(picture(button->icon()), picture(QIcon(icon)));
    };
    says(QStringLiteral("yes"), QStringLiteral(":/Zelko/RecordList/SetDeletable.svg"));
    QTest::mouseClick(button, Qt::LeftButton);
    says(QStringLiteral("no"), QStringLiteral(":/Zelko/RecordList/ResetDeletable.svg"));
}

void FilterRowTest::eachRowFiltersAtOnce_data()
{
    QTest::addColumn<Hands>("hands");
    QTest::addColumn<QStringList>("left");

    const QStringList first(QStringLiteral("R1"));
    const QStringList second(QStringLiteral("R2"));
    const auto typed = [](const char* editor, const char* text) -> Hands {
        return [=](FilterWindow& window) {
            window.type(QLatin1String(editor), QStringLiteral("TextEdit"), QLatin1String(text));
        };
    };
    const auto from = [](const char* editor, const char* field, const char* text, const char* unit = "") -> Hands {
        return [=](FilterWindow& window) {
            window.check(QLatin1String(editor), QStringLiteral("LowerLimitCheckbox"));
            window.type(QLatin1String(editor), QLatin1String(field), QLatin1String(text));
            if (*unit != 0) {
                window.choose(QLatin1String(editor), QStringLiteral("UnitCombobox"), QLatin1String(unit));
            }
        };
    };
    const auto without = [](const char* editor, const char* word) -> Hands {
        return [=](FilterWindow& window) { window.toggleValues(QLatin1String(editor), {QLatin1String(word)}); };
    };
    QTest::newRow("a name") << typed("NameFilterWidget", "band") << first;
    QTest::newRow("a size") << from("SizeFilterWidget", "LowerLimitEdit", "5", "GByte") << second;
    QTest::newRow("a start") << from("StartTimeFilterWidget", "LowerLimitDateTimeEdit", "10062024") << second;
    QTest::newRow("a stop") << from("StopTimeFilterWidget", "LowerLimitDateTimeEdit", "11062024") << second;
    QTest::newRow("a duration") << from("DurationFilterWidget", "LowerLimitTimeEdit", "020000") << second;
    QTest::newRow("data rates") << without("DataRateFilterWidget", "raw stream") << first;
    QTest::newRow("data formats") << without("DataFormatFilterWidget", "IQ 16 bit") << second;
    QTest::newRow("an ID") << typed("RecordIDFilterWidget", "2") << second;
    QTest::newRow("statuses") << without("StatusFilterWidget", "recording") << first;
    QTest::newRow("a frequency") << from("FrequencyFilterWidget", "LowerLimitEdit", "2", "GHz") << second;
    QTest::newRow("a bandwidth") << from("BandwidthFilterWidget", "LowerLimitEdit", "20", "MHz") << second;
    QTest::newRow("a sample rate") << from("SampleRateFilterWidget", "LowerLimitEdit", "49", "kHz") << second;
    QTest::newRow("what can be deleted") << Hands([](FilterWindow& window) {
        window.check(QStringLiteral("DeletableFilterWidget"), QStringLiteral("EnableFilter"));
    }) << first;
    QTest::newRow("interfaces") << without("InterfaceFilterWidget", "USB") << first;
}

void FilterRowTest::eachRowFiltersAtOnce()
{
    QFETCH(Hands, hands);
    QFETCH(QStringList, left);

    FilterWindow window(FilterWindow::allColumns(), twoRecords());
    QCOMPARE(window.shownRecords(), both());
    hands(window);
    QCOMPARE(window.shownRecords(), left);
    QVERIFY(window.dialog().hasActiveFilter());
    window.resetAll();
    QCOMPARE(window.shownRecords(), both());
}

void FilterRowTest::aRangeHasTwoEnds()
{
    FilterWindow window(FilterWindow::allColumns(), twoRecords());
    const QString editor = QStringLiteral("SizeFilterWidget");
    window.check(editor, QStringLiteral("UpperLimitCheckbox"));
    window.choose(editor, QStringLiteral("UnitCombobox"), QStringLiteral("MByte"));
    QCOMPARE(window.shownRecords(), QStringList(QStringLiteral("R1")));
    window.type(editor, QStringLiteral("UpperLimitEdit"), QStringLiteral("9000"));
    QCOMPARE(window.shownRecords(), both());
    window.check(editor, QStringLiteral("LowerLimitCheckbox"));
    window.type(editor, QStringLiteral("LowerLimitEdit"), QStringLiteral("3"));
    QCOMPARE(window.shownRecords(), QStringList(QStringLiteral("R2")));
}

void FilterRowTest::rowsCombine()
{
    FilterWindow window(FilterWindow::allColumns(), twoRecords());
    window.type(QStringLiteral("NameFilterWidget"), QStringLiteral("TextEdit"), QStringLiteral("a"));
    QCOMPARE(window.shownRecords(), both());
    window.type(QStringLiteral("RecordIDFilterWidget"), QStringLiteral("TextEdit"), QStringLiteral("1"));
    QCOMPARE(window.shownRecords(), QStringList(QStringLiteral("R1")));
    window.toggleValues(QStringLiteral("DataFormatFilterWidget"), {QStringLiteral("IQ 16 bit")});
    QCOMPARE(window.shownRecords(), QStringList());
}

QTEST_MAIN(FilterRowTest)
#include "tst_filterrow.moc"
