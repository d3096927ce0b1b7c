#include "recordcolumns_p.h"

#include <zelkobase/models/abstractrecordlistmodel.h>
#include <zelkobase/models/unittext.h>

#include <observerbase/datetime.h>

#include <QTime>

#include <array>

namespace ZelkoCommon {
namespace {

using ZELKO_XML::IndexEntry;
using Record = ZELKO_XML::ZELKO_RecordData;

// Quantities

quint64 durationOf(const Record& record)
{
    return record.GetStopTime() > record.GetStartTime() ? record.GetStopTime() - record.GetStartTime() : 0;
}

// A time of day is what a duration is compared as, so whole days fall away.
QTime asTimeOfDay(quint64 microseconds)
{
    constexpr quint64 millisecondsPerDay = 24ULL * 60 * 60 * 1000;
    return QTime::fromMSecsSinceStartOfDay(static_cast<int>(microseconds / 1000 % millisecondsPerDay));
}

// The receiver may be tuned while it records; the last entry tells how it stands, for a record that grows: right now.
template <auto getter>
quint64 lastSetting(const Record& record)
{
    const auto& index = record.GetIndexEntry();
    return index.isEmpty() ? 0 : (index.constLast().*getter)();
}

template <auto getter>
QString hertzText(const Record& record)
{
    const quint64 hertz = lastSetting<getter>(record);
    return hertz == 0 ? QString() : unittext::hertz(hertz);
}

template <auto getter>
QVariant hertzValue(const Record& record)
{
    return static_cast<double>(lastSetting<getter>(record));
}

template <auto getter>
RecordColumn hertzColumn(const char* header)
{
    return {header, true, &hertzText<getter>, &hertzValue<getter>, &hertzValue<getter>};
}

// Moments

template <auto getter>
RecordColumn momentColumn(const char* header)
{
    return {header, false, [](const Record& record) { return unittext::moment((record.*getter)()); },
            [](const Record& record) { return QVariant((record.*getter)()); },
            [](const Record& record) { return QVariant(Vorn::DateTime::fromMicroseconds((record.*getter)())); }};
}

// Texts and enumerations

template <auto getter>
QVariant sharedText(const Record& record)
{
    return (record.*getter)();
}

template <auto getter>
RecordColumn textColumn(const char* header)
{
    return {header, false, [](const Record& record) -> QString { return (record.*getter)(); }, &sharedText<getter>,
            &sharedText<getter>};
}

template <auto getter, auto names>
RecordColumn enumColumn(const char* header)
{
    return {header, false, [](const Record& record) { return names().value(static_cast<int>((record.*getter)())); },
            [](const Record& record) { return QVariant(static_cast<int>((record.*getter)())); },
            [](const Record& record) { return QVariant::fromValue((record.*getter)()); }};
}

RecordColumn sizeColumn(const char* header)
{
    return {header, true, [](const Record& record) { return unittext::size(record.GetSize()); },
            [](const Record& record) { return QVariant(record.GetSize()); },
            [](const Record& record) { return QVariant(static_cast<double>(record.GetSize())); }};
}

// A record without a stop time has no duration to show yet.
RecordColumn durationColumn(const char* header)
{
    return {header, true,
            [](const Record& record) {
                return record.GetStopTime() == 0 ? QString() : unittext::duration(durationOf(record));
            },
            [](const Record& record) { return QVariant(durationOf(record)); },
            [](const Record& record) { return QVariant(asTimeOfDay(durationOf(record))); }};
}

RecordColumn deletableColumn(const char* header)
{
    return {header, false,
            [](const Record& record) {
                return record.GetDeletable() ? AbstractRecordListModel::tr("yes") : AbstractRecordListModel::tr("no");
            },
            [](const Record& record) { return QVariant(static_cast<int>(record.GetDeletable())); },
            [](const Record& record) { return QVariant(record.GetDeletable()); }};
}

} // namespace

const RecordColumn& recordColumn(int column)
{
    static const std::array<RecordColumn, AbstractRecordListModel::ColumnCount> columns{
        textColumn<&Record::GetRecordName>(QT_TRANSLATE_NOOP("ZelkoCommon::AbstractRecordListModel", "Name")),
        sizeColumn(QT_TRANSLATE_NOOP("ZelkoCommon::AbstractRecordListModel", "Size")),
        momentColumn<&Record::GetStartTime>(QT_TRANSLATE_NOOP("ZelkoCommon::AbstractRecordListModel", "Start Time")),
        momentColumn<&Record::GetStopTime>(QT_TRANSLATE_NOOP("ZelkoCommon::AbstractRecordListModel", "Stop Time")),
        durationColumn(QT_TRANSLATE_NOOP("ZelkoCommon::AbstractRecordListModel", "Duration")),
        enumColumn<&Record::GetDataRate, &Record::GetGUIDataRates>(
            QT_TRANSLATE_NOOP("ZelkoCommon::AbstractRecordListModel", "Data Rate")),
        enumColumn<&Record::GetDataFormat, &Record::GetGUIDataFormats>(
            QT_TRANSLATE_NOOP("ZelkoCommon::AbstractRecordListModel", "Data Format")),
        textColumn<&Record::GetRecordID>(QT_TRANSLATE_NOOP("ZelkoCommon::AbstractRecordListModel", "Record ID")),
        enumColumn<&Record::GetRecordStatus, &Record::GetGUIRecordStatuss>(
            QT_TRANSLATE_NOOP("ZelkoCommon::AbstractRecordListModel", "Status")),
        hertzColumn<&IndexEntry::GetTunerFrequency>(
            QT_TRANSLATE_NOOP("ZelkoCommon::AbstractRecordListModel", "Frequency")),
        hertzColumn<&IndexEntry::GetBandwidth>(QT_TRANSLATE_NOOP("ZelkoCommon::AbstractRecordListModel", "Bandwidth")),
        hertzColumn<&IndexEntry::GetSampleRate>(
            QT_TRANSLATE_NOOP("ZelkoCommon::AbstractRecordListModel", "Sample Rate")),
        deletableColumn(QT_TRANSLATE_NOOP("ZelkoCommon::AbstractRecordListModel", "Deletable")),
        enumColumn<&Record::GetInterface, &Record::GetGUIInterfaces>(
            QT_TRANSLATE_NOOP("ZelkoCommon::AbstractRecordListModel", "Interface")),
    };
    return columns[static_cast<std::size_t>(column)];
}

} // namespace ZelkoCommon
