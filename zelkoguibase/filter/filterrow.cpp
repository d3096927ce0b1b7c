#include "filterrow_p.h"

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

using Dialog = ExtendedFilterDialog;
using Conditions = FilterRow::Conditions;
using Editor = FilterRow::Editor;
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
    return {{FilterRow::tr("Byte"), 1},
            {FilterRow::tr("kByte"), 1024},
            {FilterRow::tr("MByte"), 1'048'576},
            {FilterRow::tr("GByte"), 1'073'741'824}};
}

Units hertzUnits()
{
    return {{FilterRow::tr("Hz"), 1},
            {FilterRow::tr("kHz"), 1'000},
            {FilterRow::tr("MHz"), 1'000'000},
            {FilterRow::tr("GHz"), 1'000'000'000}};
}

template <Units (*units)()>
Editor numberEditor(const Conditions& conditions, QWidget* parent)
{
    return Editor(new SizeFilterWidget(asLimits<double>(conditions), units(), parent));
}

template <Units (*units)()>
constexpr FilterRow::Kind numberKind{&limits<double>, &numberEditor<units>};

template <typename T>
Editor timeEditor(const Conditions& conditions, QWidget* parent)
{
    return Editor(new DateTimeFilterWidget(asLimits<T>(conditions), parent));
}

template <typename T>
constexpr FilterRow::Kind timeKind{&limits<T>, &timeEditor<T>};

template <typename C>
Conditions single(int column)
{
    return {new C(column, role, nullptr)};
}

Editor textEditor(const Conditions& conditions, QWidget* parent)
{
    return Editor(new TextFilterWidget(as<StringFilterCondition>(conditions[0]), parent));
}

constexpr FilterRow::Kind textKind{&single<StringFilterCondition>, &textEditor};

Editor deletableEditor(const Conditions& conditions, QWidget* parent)
{
    auto* const editor = new BooleanButtonFilterWidget(as<BooleanFilterCondition>(conditions[0]), parent);
    editor->setLabels({FilterRow::tr("no"), QIcon(QStringLiteral(":/Zelko/RecordList/ResetDeletable.svg"))},
                      {FilterRow::tr("yes"), QIcon(QStringLiteral(":/Zelko/RecordList/SetDeletable.svg"))});
    return Editor(editor);
}

constexpr FilterRow::Kind deletableKind{&single<BooleanFilterCondition>, &deletableEditor};

template <typename E, QStringList (*words)()>
Conditions enumerationConditions(int column)
{
    return {new EnumerationFilterCondition<E>(static_cast<int>(words().size()), column, role, nullptr)};
}

template <typename E, QStringList (*words)()>
Editor enumerationEditor(const Conditions& conditions, QWidget* parent)
{
    using Widget = EnumerationFilterWidget<E>;
    return Editor(new Widget(as<EnumerationFilterCondition<E>>(conditions[0]), Widget::numbered(words()), parent));
}

template <typename E, QStringList (*words)()>
constexpr FilterRow::Kind enumerationKind{&enumerationConditions<E, words>, &enumerationEditor<E, words>};

QString editorName(const char* name)
{
    return QLatin1String(name) + QLatin1String("FilterWidget");
}

FilterRow singleRow(Dialog::enFilterColumn bit, const char* label, const char* name, const char* conditionName,
                    const FilterRow::Kind& kind)
{
    return {bit, label, editorName(name), {QLatin1String(conditionName)}, kind};
}

FilterRow rangeRow(Dialog::enFilterColumn bit, const char* label, const char* name, const FilterRow::Kind& kind)
{
    const QString what = QLatin1String(name);
    return {
        bit, label, editorName(name), {what + QLatin1String("LowerLimit"), what + QLatin1String("UpperLimit")}, kind};
}

} // namespace

const std::vector<FilterRow>& FilterRow::all()
{
    static const std::vector<FilterRow> rows{
        singleRow(Dialog::NameColumn, QT_TR_NOOP("Name"), "Name", "NameFilter", textKind),
        rangeRow(Dialog::SizeColumn, QT_TR_NOOP("Size"), "Size", numberKind<&byteUnits>),
        rangeRow(Dialog::StartTimeColumn, QT_TR_NOOP("Start Time"), "StartTime", timeKind<QDateTime>),
        rangeRow(Dialog::StopTimeColumn, QT_TR_NOOP("Stop Time"), "StopTime", timeKind<QDateTime>),
        rangeRow(Dialog::DurationColumn, QT_TR_NOOP("Duration"), "Duration", timeKind<QTime>),
        singleRow(Dialog::DataRateColumn, QT_TR_NOOP("Data Rate"), "DataRate", "DataRateFilter",
                  enumerationKind<Record::DataRate, &Record::GetGUIDataRates>),
        singleRow(Dialog::DataFormatColumn, QT_TR_NOOP("Data Format"), "DataFormat", "DataFormatFilter",
                  enumerationKind<Record::DataFormat, &Record::GetGUIDataFormats>),
        singleRow(Dialog::RecordIDColumn, QT_TR_NOOP("Record ID"), "RecordID", "IDFilter", textKind),
        singleRow(Dialog::StatusColumn, QT_TR_NOOP("Status"), "Status", "StatusFilter",
                  enumerationKind<Record::RecordStatus, &Record::GetGUIRecordStatuss>),
        rangeRow(Dialog::FrequencyColumn, QT_TR_NOOP("Frequency"), "Frequency", numberKind<&hertzUnits>),
        rangeRow(Dialog::BandwidthColumn, QT_TR_NOOP("Bandwidth"), "Bandwidth", numberKind<&hertzUnits>),
        rangeRow(Dialog::SampleRateColumn, QT_TR_NOOP("Sample Rate"), "SampleRate", numberKind<&hertzUnits>),
        singleRow(Dialog::DeletableColumn, QT_TR_NOOP("Deletable"), "Deletable", "DeletableFlag", deletableKind),
        singleRow(Dialog::InterfaceColumn, QT_TR_NOOP("Interface"), "Interface", "InterfaceFilter",
                  enumerationKind<Record::Interface, &Record::GetGUIInterfaces>),
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
        conditions[i]->setObjectName(conditionNames[i]);
    }
    return conditions;
}

FilterRow::Editor FilterRow::makeEditor(const Conditions& conditions, QWidget* parent) const
{
    const Editor editor = kind.editor(conditions, parent);
    editor.widget->setObjectName(editorName);
    return editor;
}

} // namespace ZelkoGUI::Filter
