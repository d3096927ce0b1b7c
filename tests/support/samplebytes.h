#pragma once

#include "storedrecord.h"

namespace ZelkoTest {

/// Bytes of which no part of more than a few looks like another.
inline QByteArray sampleBytes(qsizetype count)
{
    QByteArray bytes(count, Qt::Uninitialized);
    quint32 state = 1;
    for (char& byte : bytes) {
        state = state * 1'664'525U + 1'013'904'223U;
        byte = static_cast<char>(state >> 24);
    }
    return bytes;
}

/// Puts a record with these samples into the folder of a device.
inline bool storeSamples(const QString& device, const ZELKO_XML::ZELKO_RecordData& record, const QByteArray& samples)
{
    const QString file = ZELKO_XML::sampleFileName(record.GetRecordID(), record.GetDataFormat());
    return storeRecord(device, record, 0) &&
           writeBytes(device + QLatin1Char('/') + record.GetRecordID() + QLatin1Char('/') + file, samples);
}

} // namespace ZelkoTest
