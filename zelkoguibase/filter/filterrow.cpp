#include <zelkoguibase/filter/filterrow_p.h>

#include <zelkoguibase/filter/booleanbuttonfilterwidget.h>
#include <zelkoguibase/filter/booleanfiltercondition.h>
#include <zelkoguibase/filter/datetimefilterwidget.h>
#include <zelkoguibase/filter/enumerationfiltercondition.h>
#include <zelkoguibase/filter/enumerationfilterwidget.h>
#include <zelkoguibase/filter/numberfiltercondition.h>
#include <zelkoguibase/filter/sizefilterwidget.h>
#include <zelkoguibase/filter/stringfiltercondition.h>
#include <zelkoguibase/filter/textfilterwidget.h>

#include <zelkobase/models/abstractrecordlistmodel.h>

#include <bit>

namespace ZelkoGUI::Filter {
namespace {

using Conditions = FilterRow::Conditions;
using Record = ZELKO_XML::ZELKO_RecordData;
using Units = QList<QPair<QString, double>>;

constexpr int role = ZelkoCommon::AbstractRecordListModel::ValueRole;

// Each editor gets conditions that the same kind has made, so their class is known.
template <typename C>
C* as(AbstractFilterCondition* condition)
{
    return static_cast<C*>(condition);
}

template <typename T>
QList<NumberFilterCondition<T>*> asLimits(const Conditions& conditions)
{
    return {as<NumberFilterCondition<T>>(conditions[0]), as<NumberFilterCondition<T>>(conditions[1])};
}

template <typename T>
Conditions limits(int column)
{
    return {new NumberFilterCondition<T>(T(), column, role, nullptr),
            new NumberFilterCondition<T>(T(), column, role, nullptr)};
}

Units byteUnits()
{
    return {{ExtendedFilterDialog::tr("Byte"), 1},
            {ExtendedFilterDialog::tr("kByte"), 1024},
            {ExtendedFilterDialog::tr("MByte"), 1'048'576},
            {ExtendedFilterDialog::tr("GByte"), 1'073'741'824}};
}

Units hertzUnits()
{
    return {{ExtendedFilterDialog::tr("Hz"), 1},
            {ExtendedFilterDialog::tr("kHz"), 1'000},
            {ExtendedFilterDialog::tr("MHz"), 1'000'000},
            {ExtendedFilterDialog::tr("GHz"), 1'000'000'000}};
}

template <Units (*units)()>
QWidget* numberEditor(const Conditions& conditions, QWidget* parent)
{
    return new SizeFilterWidget(asLimits<double>(conditions), units(), parent);
}

template <Units (*units)()>
constexpr FilterRow::Kind numberKind{&limits<double>, &numberEditor<units>};

template <typename T>
QWidget* timeEditor(const Conditions& conditions, QWidget* parent)
{
    return new DateTimeFilterWidget(asLimits<T>(conditions), parent);
}

template <typename T>
constexpr FilterRow::Kind timeKind{&limits<T>, &timeEditor<T>};

template <typename C>
Conditions single(int column)
{
    return {new C(column, role, nullptr)};
}

QWidget* textEditor(const Conditions& conditions, QWidget* parent)
{
    return new TextFilterWidget(as<StringFilterCondition>(conditions[0]), parent);
}

constexpr FilterRow::Kind textKind{&single<StringFilterCondition>, &textEditor};

QWidget* deletableEditor(const Conditions& conditions, QWidget* parent)
{
    auto* const editor = new BooleanButtonFilterWidget(as<BooleanFilterCondition>(conditions[0]), parent);
    editor->setLabels({ExtendedFilterDialog::tr("no"), QIcon(QStringLiteral(":/Zelko/RecordList/ResetDeletable.svg"))},
                      {ExtendedFilterDialog::tr("yes"), QIcon(QStringLiteral(":/Zelko/RecordList/SetDeletable.svg"))});
    return editor;
}

constexpr FilterRow::Kind deletableKind{&single<BooleanFilterCondition>, &deletableEditor};

// The number of an enumerator is the place of its word.
template <typename E>
QList<QPair<E, QString>> namedValues(const QStringList& words)
{
    QList<QPair<E, QString>> values;
    for (int number = 0; number < words.size(); ++number) {
        values.append({static_cast<E>(number), words[number]});
    }
    return values;
}

template <typename E, QStringList (*words)()>
Conditions enumerationConditions(int column)
{
    return {new EnumerationFilterCondition<E>(static_cast<int>(words().size()), column, role, nullptr)};
}

template <typename E, QStringList (*words)()>
QWidget* enumerationEditor(const Conditions& conditions, QWidget* parent)
{
    return new EnumerationFilterWidget<E>(as<EnumerationFilterCondition<E>>(conditions[0]), namedValues<E>(words()),
                                          parent);
}

template <typename E, QStringList (*words)()>
constexpr FilterRow::Kind enumerationKind{&enumerationConditions<E, words>, &enumerationEditor<E, words>};

} // namespace

const std::vector<FilterRow>& FilterRow::all()
{
    static const std::vector<FilterRow> rows{
        {ExtendedFilterDialog::NameColumn,
         QT_TRANSLATE_NOOP("ZelkoGUI::Filter::ExtendedFilterDialog", "Name"),
         "NameFilterWidget",
         {"NameFilter"},
         textKind},
        {ExtendedFilterDialog::SizeColumn,
         QT_TRANSLATE_NOOP("ZelkoGUI::Filter::ExtendedFilterDialog", "Size"),
         "SizeFilterWidget",
         {"SizeLowerLimit", "SizeUpperLimit"},
         numberKind<&byteUnits>},
        {ExtendedFilterDialog::StartTimeColumn,
         QT_TRANSLATE_NOOP("ZelkoGUI::Filter::ExtendedFilterDialog", "Start Time"),
         "StartTimeFilterWidget",
         {"StartTimeLowerLimit", "StartTimeUpperLimit"},
         timeKind<QDateTime>},
        {ExtendedFilterDialog::StopTimeColumn,
         QT_TRANSLATE_NOOP("ZelkoGUI::Filter::ExtendedFilterDialog", "Stop Time"),
         "StopTimeFilterWidget",
         {"StopTimeLowerLimit", "StopTimeUpperLimit"},
         timeKind<QDateTime>},
        {ExtendedFilterDialog::DurationColumn,
         QT_TRANSLATE_NOOP("ZelkoGUI::Filter::ExtendedFilterDialog", "Duration"),
         "DurationFilterWidget",
         {"DurationLowerLimit", "DurationUpperLimit"},
         timeKind<QTime>},
        {ExtendedFilterDialog::DataRateColumn,
         QT_TRANSLATE_NOOP("ZelkoGUI::Filter::ExtendedFilterDialog", "Data Rate"),
         "DataRateFilterWidget",
         {"DataRateFilter"},
         enumerationKind<Record::DataRate, &Record::GetGUIDataRates>},
        {ExtendedFilterDialog::DataFormatColumn,
         QT_TRANSLATE_NOOP("ZelkoGUI::Filter::ExtendedFilterDialog", "Data Format"),
         "DataFormatFilterWidget",
         {"DataFormatFilter"},
         enumerationKind<Record::DataFormat, &Record::GetGUIDataFormats>},
        {ExtendedFilterDialog::RecordIDColumn,
         QT_TRANSLATE_NOOP("ZelkoGUI::Filter::ExtendedFilterDialog", "Record ID"),
         "RecordIDFilterWidget",
         {"IDFilter"},
         textKind},
        {ExtendedFilterDialog::StatusColumn,
         QT_TRANSLATE_NOOP("ZelkoGUI::Filter::ExtendedFilterDialog", "Status"),
         "StatusFilterWidget",
         {"StatusFilter"},
         enumerationKind<Record::RecordStatus, &Record::GetGUIRecordStatuss>},
        {ExtendedFilterDialog::FrequencyColumn,
         QT_TRANSLATE_NOOP("ZelkoGUI::Filter::ExtendedFilterDialog", "Frequency"),
         "FrequencyFilterWidget",
         {"FrequencyLowerLimit", "FrequencyUpperLimit"},
         numberKind<&hertzUnits>},
        {ExtendedFilterDialog::BandwidthColumn,
         QT_TRANSLATE_NOOP("ZelkoGUI::Filter::ExtendedFilterDialog", "Bandwidth"),
         "BandwidthFilterWidget",
         {"BandwidthLowerLimit", "BandwidthUpperLimit"},
         numberKind<&hertzUnits>},
        {ExtendedFilterDialog::SampleRateColumn,
         QT_TRANSLATE_NOOP("ZelkoGUI::Filter::ExtendedFilterDialog", "Sample Rate"),
         "SampleRateFilterWidget",
         {"SampleRateLowerLimit", "SampleRateUpperLimit"},
         numberKind<&hertzUnits>},
        {ExtendedFilterDialog::DeletableColumn,
         QT_TRANSLATE_NOOP("ZelkoGUI::Filter::ExtendedFilterDialog", "Deletable"),
         "DeletableFilterWidget",
         {"DeletableFlag"},
         deletableKind},
        {ExtendedFilterDialog::InterfaceColumn,
         QT_TRANSLATE_NOOP("ZelkoGUI::Filter::ExtendedFilterDialog", "Interface"),
         "InterfaceFilterWidget",
         {"InterfaceFilter"},
         enumerationKind<Record::Interface, &Record::GetGUIInterfaces>},
    };
    return rows;
}

int FilterRow::column() const
{
    return std::countr_zero(static_cast<unsigned>(bit));
}

Conditions FilterRow::makeConditions() const
{
    Conditions conditions = kind.conditions(column());
    for (int i = 0; i < conditions.size(); ++i) {
        conditions[i]->setObjectName(QLatin1String(conditionNames[static_cast<std::size_t>(i)]));
    }
    return conditions;
}

QWidget* FilterRow::makeEditor(const Conditions& conditions, QWidget* parent) const
{
    QWidget* const editor = kind.editor(conditions, parent);
    editor->setObjectName(QLatin1String(editorName));
    return editor;
}

} // namespace ZelkoGUI::Filter
