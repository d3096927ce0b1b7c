#pragma once

#include <recorder/service/devicecalls.h>
#include <recorder/service/overviewdesk.h>
#include <recorder/users/turnstile.h>

#include <zelkoidl/recorderservice.hh>

#include <memory>

namespace ZelkoRecorder {

/// Changes records as the ORB sees it. Served on threads of the ORB. They wait until the thread that the record belongs
/// to has done the work: the device's worker, the recording, or the copier. The results are numbers of
/// ZelkoCommon::ServiceStatus.
class AdminServant final : public POA_QD_ZLK::IF_ZELKO_Admin, public PortableServer::RefCountServantBase
{
public:
    /// `largestAnswer`: bytes of a record that is too large to be told.
    AdminServant(DeviceCalls calls, std::shared_ptr<OverviewDesk> overviews, const Turnstile::Options& copies,
                 std::size_t largestAnswer);

    CORBA::ULong removeHistoryEntry(const char* device, const char* record, CORBA::LongLong entryKey) override;
    CORBA::ULong addHistory(const char* device, const char* record, const CORBA::WChar* text) override;

    /// A range is one of times. It is one of positions, in bytes, where it ends before the record has begun: so early
    /// no record has a time, and clients that know positions only send those.
    /// LimitReached where as many copies are under way as may be.
    CORBA::ULong copyRecord(const char* device, const char* record, CORBA::String_out newRecord,
                            const QD_ZLK::TimeRangeSeq& ranges, const CORBA::WChar* newName) override;
    CORBA::ULong setRecordComment(const char* device, const char* record, const CORBA::WChar* recordComment) override;
    CORBA::ULong setRecordDeletableFlag(const char* device, const char* record, CORBA::Boolean deletable) override;

    /// The record has these bookmarks and no others from then on; see RecordChanges.
    CORBA::ULong addBookmarks(const char* device, const char* record,
                              const QD_ZLK::RecordBookmarkSeq& bookmarks) override;
    CORBA::ULong deleteBookmarks(const char* device, const char* record,
                                 const QD_ZLK::RecordBookmarkSeq& bookmarks) override;
    CORBA::ULong getDeviceTime(const char* device, CORBA::LongLong& deviceTime, CORBA::Boolean& synchronised) override;
    CORBA::ULong setDeviceTime(const char* device, CORBA::LongLong deviceTime) override;
    CORBA::ULong getOverviewSpectrumStreamed(const char* device, const char* record, CORBA::LongLong start,
                                             CORBA::LongLong stop, CORBA::LongLong lineCount, CORBA::Long fftLength,
                                             QD_ZLK::FftWindow window, const char* host, CORBA::UShort port) override;

    /// Where a status says why there is no record, it is told by that and an empty record; exAdmin is for a record that
    /// is there and cannot be told.
    CORBA::ULong getRecord(const char* device, const char* record, QD_ZLK::RecordInfo_out recordData) override;
    CORBA::ULong requestRecordDataDetail(const char* device, const char* record) override;

    using Bookmarks = QVector<ZELKO_XML::BookmarkEntry>;

private:
    using BookmarkChange = StoreStatus (DeviceService::*)(const QString& record, const Bookmarks& bookmarks);

    CORBA::ULong changeBookmarks(const char* device, const char* record, const QD_ZLK::RecordBookmarkSeq& bookmarks,
                                 BookmarkChange make) const;
    CORBA::ULong change(Action action, const char* device, const char* record,
                        const std::function<StoreStatus(DeviceService&)>& make) const;

    const DeviceCalls m_calls;
    const std::shared_ptr<OverviewDesk> m_overviews;
    const std::size_t m_largestAnswer;
    Turnstile m_copies;
};

} // namespace ZelkoRecorder
