#include <console/demo/expectedrecord.h>

#include <recorder/source/sourcefactory.h>

#include <zelkobase/models/abstractrecordlistmodel.h>

namespace ZelkoConsole {
namespace {

using Model = ZelkoCommon::AbstractRecordListModel;
using Status = ZELKO_XML::ZELKO_RecordData::RecordStatus;

QVariant cell(const QAbstractItemModel& list, int row, Model::Column column)
{
    return list.index(row, column).data(Model::SortRole);
}

} // namespace

std::optional<ExpectedRecord> ExpectedRecord::ofSource(const QString& source, QString* error)
{
    const auto signal = ZelkoRecorder::SourceFactory::create(source, error);
    if (!signal) {
        return std::nullopt;
    }
    const ZelkoRecorder::SourceDescription& description = signal->description();
    if (description.totalFrames < 0) {
        *error = QStringLiteral("\"%1\" never ends").arg(source);
        return std::nullopt;
    }
    ExpectedRecord record;
    record.name = description.name;
    record.startTime = description.startTime();
    record.frequency = description.segments.constLast().centreFrequency;
    record.size = static_cast<quint64>(description.totalFrames * description.format.bytesPerFrame());
    record.length = std::chrono::milliseconds(description.microsecondsAt(description.totalFrames) / 1000);
    return record;
}

int ExpectedRecord::countIn(const QAbstractItemModel& list) const
{
    int count = 0;
    for (int row = 0; row < list.rowCount(); ++row) {
        const bool isOne = cell(list, row, Model::NameColumn).toString() == name &&
                           (startTime == 0 || cell(list, row, Model::StartTimeColumn).toULongLong() == startTime) &&
                           cell(list, row, Model::FrequencyColumn).toULongLong() == frequency &&
                           cell(list, row, Model::SizeColumn).toULongLong() == size &&
                           cell(list, row, Model::StatusColumn).toInt() == static_cast<int>(Status::Finished);
        count += isOne ? 1 : 0;
    }
    return count;
}

} // namespace ZelkoConsole
