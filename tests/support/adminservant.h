#pragma once

#include "calllog.h"

#include <zelkoidl/recorderservice.hh>

/// The administration interface of a test: notes each call and answers what it is told to.
class AdminServant : public POA_QD_ZLK::IF_ZELKO_Admin, public PortableServer::RefCountServantBase
{
public:
    explicit AdminServant(CallLog& log)
        : m_log(log)
    {}

    CORBA::ULong status = 0;

    CORBA::ULong removeHistoryEntry(const char* device, const char* record, CORBA::LongLong entryKey) override
    {
        return noted("removeHistoryEntry", device, record, entryKey);
    }
    CORBA::ULong addHistory(const char* device, const char* record, const CORBA::WChar* text) override
    {
        return noted("addHistory", device, record, text);
    }
    CORBA::ULong copyRecord(const char* device, const char* record, CORBA::String_out newRecord,
                            const QD_ZLK::TimeRangeSeq& ranges, const CORBA::WChar* newName) override
    {
        newRecord = CORBA::string_dup("copy");
        return noted("copyRecord", device, record, texts(ranges), newName);
    }
    CORBA::ULong setRecordComment(const char* device, const char* record, const CORBA::WChar* recordComment) override
    {
        return noted("setRecordComment", device, record, recordComment);
    }
    CORBA::ULong setRecordDeletableFlag(const char* device, const char* record, CORBA::Boolean deletable) override
    {
        return noted("setRecordDeletableFlag", device, record, deletable);
    }
    CORBA::ULong addBookmarks(const char* device, const char* record,
                              const QD_ZLK::RecordBookmarkSeq& bookmarks) override
    {
        return noted("addBookmarks", device, record, texts(bookmarks));
    }
    CORBA::ULong deleteBookmarks(const char* device, const char* record,
                                 const QD_ZLK::RecordBookmarkSeq& bookmarks) override
    {
        return noted("deleteBookmarks", device, record, texts(bookmarks));
    }
    CORBA::ULong getDeviceTime(const char* device, CORBA::LongLong& deviceTime, CORBA::Boolean& synchronised) override
    {
        deviceTime = 0x0102030405060708;
        synchronised = true;
        return noted("getDeviceTime", device);
    }
    CORBA::ULong setDeviceTime(const char* device, CORBA::LongLong deviceTime) override
    {
        return noted("setDeviceTime", device, deviceTime);
    }
    CORBA::ULong getOverviewSpectrumStreamed(const char* device, const char* record, CORBA::LongLong start,
                                             CORBA::LongLong stop, CORBA::LongLong lineCount, CORBA::Long order,
                                             QD_ZLK::FftWindow window, const char* host, CORBA::UShort port) override
    {
        return noted("getOverviewSpectrumStreamed", device, record, start, stop, lineCount, order,
                     static_cast<int>(window), host, port);
    }
    CORBA::ULong getRecord(const char* device, const char* record, QD_ZLK::RecordInfo_out recordData) override
    {
        recordData = new QD_ZLK::RecordInfo();
        recordData->recordId = record;
        return noted("getRecord", device, record);
    }
    CORBA::ULong requestRecordDataDetail(const char* device, const char* record) override
    {
        return noted("requestRecordDataDetail", device, record);
    }

protected:
    template <typename... Parameters>
    CORBA::ULong noted(const char* operation, const Parameters&... parameters)
    {
        m_log.note(operation, parameters...);
        return status;
    }

private:
    static QStringList texts(const QD_ZLK::TimeRangeSeq& ranges)
    {
        QStringList result;
        for (CORBA::ULong i = 0; i < ranges.length(); ++i) {
            result << QStringLiteral("%1 to %2").arg(ranges[i].start).arg(ranges[i].stop);
        }
        return result;
    }
    static QStringList texts(const QD_ZLK::RecordBookmarkSeq& bookmarks)
    {
        QStringList result;
        for (CORBA::ULong i = 0; i < bookmarks.length(); ++i) {
            result << QStringLiteral("%1 at %2")
                          .arg(ZelkoCommon::fromCorba(bookmarks[i].text.in()))
                          .arg(bookmarks[i].position);
        }
        return result;
    }

    CallLog& m_log;
};
