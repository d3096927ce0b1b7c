#pragma once

#include <zelkobase/orb/corbatext.h>

#include <zelkoidl/recorderservice.hh>

/// One value of each structure of the recorder service, no two of whose fields have the same bytes.
namespace servicevalues {

inline QD_ZLK::TimeRange range()
{
    return {0x0102030405060708, 0x1112131415161718};
}

inline QD_ZLK::RecordBookmark bookmark()
{
    QD_ZLK::RecordBookmark result;
    result.position = 0x2122232425262728;
    result.text = ZelkoCommon::toWideCorba(QStringLiteral("Ä\U0001F4E1"));
    return result;
}

inline QD_ZLK::RecordHistoryEntry historyEntry()
{
    QD_ZLK::RecordHistoryEntry result;
    result.entryKey = 0x3132333435363738;
    result.text = ZelkoCommon::toWideCorba(QStringLiteral("h"));
    return result;
}

inline QD_ZLK::RecordIndexEntry indexEntry()
{
    return {0x0102030405060708, 0x1112131415161718, 0x2122232425262728, 0x31323334, 0x41424344};
}

inline QD_ZLK::RecordInfo info()
{
    QD_ZLK::RecordInfo result;
    result.recordId = "id";
    result.recordName = ZelkoCommon::toWideCorba(QStringLiteral("n"));
    result.startTime = 0x0102030405060708;
    result.stopTime = 0x1112131415161718;
    result.size = 0x2122232425262728;
    result.kind = QD_ZLK::KIND_DAMAGED;
    result.format = QD_ZLK::FORMAT_OTHER;
    result.startPosition = 0x3132333435363738;
    result.stopPosition = 0x4142434445464748;
    result.loopSize = 0x5152535455565758;
    result.dataRate = QD_ZLK::RATE_VARIABLE;
    result.deletable = true;
    result.indexEntries.length(1);
    result.indexEntries[0] = indexEntry();
    result.bookmarks.length(1);
    result.bookmarks[0] = bookmark();
    result.history.length(1);
    result.history[0] = historyEntry();
    return result;
}

inline QD_ZLK::RecordMetaData metaData()
{
    QD_ZLK::RecordMetaData result;
    result.deviceId = "device";
    result.recordId = "r";
    result.recordName = ZelkoCommon::toWideCorba(QStringLiteral("n"));
    result.startTime = 0x0102030405060708;
    result.stopTime = 0x1112131415161718;
    result.format = QD_ZLK::FORMAT_OTHER;
    result.dataRate = QD_ZLK::RATE_VARIABLE;
    result.size = 0x2122232425262728;
    result.startPosition = 0x3132333435363738;
    result.stopPosition = 0x4142434445464748;
    result.loopSize = 0x5152535455565758;
    result.tunerFrequency = 0x6162636465666768;
    result.sampleRate = 0x7172737475767778;
    result.bandwidth = 0x01020304;
    result.indexEntryCount = 0x11121314;
    result.firstIndexTime = 0x0a0b0c0d0e0f1011;
    result.lastIndexTime = 0x1a1b1c1d1e1f2021;
    return result;
}

inline QD_ZLK::DataEndpoint endpoint()
{
    return {QD_ZLK::ENDPOINT_OPTICAL, 0x01020304, 0x11121314, 0x2122232425262728};
}

inline QD_ZLK::DataEndpointNG namedEndpoint()
{
    QD_ZLK::DataEndpointNG result;
    result.kind = QD_ZLK::ENDPOINT_TCP;
    result.address = "mast";
    result.portNumber = 0x11121314;
    result.streamId = 0x2122232425262728;
    return result;
}

/// A sequence of the given elements.
template <typename Sequence, typename... Elements>
Sequence sequenceOf(const Elements&... elements)
{
    Sequence result;
    result.length(sizeof...(elements));
    CORBA::ULong next = 0;
    ((result[next++] = elements), ...);
    return result;
}

} // namespace servicevalues
