#pragma once

#include <recorder/store/devicestore.h>

namespace ZelkoRecorder {

/// Records without a signal, for trying a recorder under load. Record `number` of a device is always the same one.
class PreparedRecords
{
public:
    /// `count` records, numbered from 0, for the device of that name.
    PreparedRecords(const QString& device, int count);

    int count() const { return m_count; }

    /// The ID of a record; `number` is 0 to `count` - 1.
    QString recordId(int number) const;

    /// The number of the record with this ID; -1 if it is none of these.
    int numberOf(const QString& recordID) const;

    /// A finished record with a name, times, a format, a size and an index that could be real ones.
    ZELKO_XML::ZELKO_RecordData record(int number) const;

    /// Makes record `number` on disk with samples that are a hole in the file. Not durable: what the machine loses is
    /// made again the next time. Null if the disk refuses.
    RecordPointer write(const DeviceStore& store, int number) const;

private:
    const QString m_device;
    const int m_count;
};

} // namespace ZelkoRecorder
