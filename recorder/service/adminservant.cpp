#include <recorder/service/adminservant.h>

#include <recorder/service/recordwire.h>
#include <recorder/store/recordchanges.h>

#include <zelkobase/data/recordextent.h>
#include <zelkobase/orb/callingpeer.h>
#include <zelkobase/orb/corbatext.h>
#include <zelkobase/service/refusaltext.h>

#include <algorithm>
#include <optional>

namespace ZelkoRecorder {

using ZelkoCommon::fromCorba;
using ZelkoCommon::ServiceStatus;
using ZelkoCommon::statusCode;
using ZelkoCommon::toCorba;

namespace {

CORBA::ULong wireStatus(ServiceStatus status)
{
    return static_cast<CORBA::ULong>(statusCode(status));
}

// False, with why in `problem`, if one of them marks no moment, or there are more than any record has.
bool readBookmarks(const QD_ZLK::RecordBookmarkSeq& wire, AdminServant::Bookmarks* result, StoreStatus* problem)
{
    if (wire.length() > static_cast<CORBA::ULong>(RecordChanges::mostBookmarks)) {
        *problem = StoreStatus::TooMany;
        return false;
    }
    for (CORBA::ULong i = 0; i < wire.length(); ++i) {
        if (wire[i].position < 0) {
            *problem = StoreStatus::BadRange;
            return false;
        }
        ZELKO_XML::BookmarkEntry bookmark;
        bookmark.SetTimestamp(static_cast<quint64>(wire[i].position));
        bookmark.SetBookmark(fromCorba(static_cast<const CORBA::WChar*>(wire[i].text)));
        result->append(bookmark);
    }
    return true;
}

std::optional<RecordRanges> rangesOf(const QD_ZLK::TimeRangeSeq& wire)
{
    if (wire.length() > static_cast<CORBA::ULong>(RecordCopy::mostRanges)) {
        return std::nullopt;
    }
    RecordRanges result;
    for (CORBA::ULong i = 0; i < wire.length(); ++i) {
        if (wire[i].start < 0 || wire[i].stop < 0) {
            return std::nullopt;
        }
        result.append({static_cast<quint64>(wire[i].start), static_cast<quint64>(wire[i].stop)});
    }
    return result;
}

RecordRange::Unit unitOf(const RecordRanges& ranges, const ZELKO_XML::ZELKO_RecordData& record)
{
    const quint64 begin = ZELKO_XML::recordExtent(record).start;
    const bool areEarly =
        std::all_of(ranges.begin(), ranges.end(), [&](const RecordRange& range) { return range.stop <= begin; });
    return areEarly ? RecordRange::Unit::Positions : RecordRange::Unit::Times;
}

} // namespace

AdminServant::AdminServant(DeviceCalls calls, std::shared_ptr<OverviewDesk> overviews, const Turnstile::Options& copies,
                           std::size_t largestAnswer)
    : m_calls(std::move(calls))
    , m_overviews(std::move(overviews))
    , m_largestAnswer(largestAnswer)
    , m_copies(copies)
{}

CORBA::ULong AdminServant::change(Action action, const char* device, const char* record,
                                  const std::function<StoreStatus(DeviceService&)>& make) const
{
    return wireStatus(
        m_calls.onRecord(action, device, record, [&](DeviceService& service) { return serviceStatus(make(service)); }));
}

CORBA::ULong AdminServant::removeHistoryEntry(const char* device, const char* record, CORBA::LongLong entryKey)
{
    return change(Action::EditHistory, device, record, [&](DeviceService& service) {
        return entryKey < 0 ? StoreStatus::UnknownEntry
                            : service.removeHistory(fromCorba(record), static_cast<quint64>(entryKey));
    });
}

CORBA::ULong AdminServant::addHistory(const char* device, const char* record, const CORBA::WChar* text)
{
    return change(Action::EditHistory, device, record,
                  [&](DeviceService& service) { return service.addHistory(fromCorba(record), fromCorba(text)); });
}

CORBA::ULong AdminServant::copyRecord(const char* device, const char* record, CORBA::String_out newRecord,
                                      const QD_ZLK::TimeRangeSeq& ranges, const CORBA::WChar* newName)
{
    QString newID;
    const auto copy = [&](DeviceService& service) {
        const Turnstile::Place place(m_copies, ZelkoCommon::callingPeer());
        if (!place) {
            return StoreStatus::TooMany;
        }
        const auto parts = rangesOf(ranges);
        const RecordPointer source = service.record(fromCorba(record));
        if (!parts || !source) {
            return source ? StoreStatus::BadRange : StoreStatus::UnknownRecord;
        }
        return service.copy(fromCorba(record), *parts, unitOf(*parts, *source), fromCorba(newName), &newID);
    };
    const CORBA::ULong status = change(Action::CopyRecord, device, record, copy);
    newRecord = toCorba(newID)._retn();
    return status;
}

CORBA::ULong AdminServant::setRecordComment(const char* device, const char* record, const CORBA::WChar* recordComment)
{
    return change(Action::EditComment, device, record, [&](DeviceService& service) {
        return service.setComment(fromCorba(record), fromCorba(recordComment));
    });
}

CORBA::ULong AdminServant::setRecordDeletableFlag(const char* device, const char* record, CORBA::Boolean deletable)
{
    return change(Action::SetDeletable, device, record,
                  [&](DeviceService& service) { return service.setDeletable(fromCorba(record), deletable); });
}

CORBA::ULong AdminServant::changeBookmarks(const char* device, const char* record,
                                           const QD_ZLK::RecordBookmarkSeq& bookmarks, BookmarkChange make) const
{
    return change(Action::EditBookmarks, device, record, [&](DeviceService& service) {
        Bookmarks entries;
        StoreStatus problem = StoreStatus::Done;
        return readBookmarks(bookmarks, &entries, &problem) ? (service.*make)(fromCorba(record), entries) : problem;
    });
}

CORBA::ULong AdminServant::addBookmarks(const char* device, const char* record,
                                        const QD_ZLK::RecordBookmarkSeq& bookmarks)
{
    return changeBookmarks(device, record, bookmarks, &DeviceService::setBookmarks);
}

CORBA::ULong AdminServant::deleteBookmarks(const char* device, const char* record,
                                           const QD_ZLK::RecordBookmarkSeq& bookmarks)
{
    return changeBookmarks(device, record, bookmarks, &DeviceService::deleteBookmarks);
}

CORBA::ULong AdminServant::getDeviceTime(const char* device, CORBA::LongLong& deviceTime, CORBA::Boolean& synchronised)
{
    deviceTime = 0;
    synchronised = false;
    return wireStatus(m_calls.onDevice(Action::Look, device, [&](DeviceService& service) {
        deviceTime = service.clock().now();
        synchronised = !service.clock().isShifted();
        return ServiceStatus::None;
    }));
}

CORBA::ULong AdminServant::setDeviceTime(const char* device, CORBA::LongLong deviceTime)
{
    return wireStatus(m_calls.onDevice(Action::SetDeviceTime, device, [&](DeviceService& service) {
        if (!DeviceClock::isSettable(deviceTime)) {
            return ServiceStatus::BadArgument;
        }
        return service.clock().set(deviceTime) ? ServiceStatus::None : ServiceStatus::DiskFailed;
    }));
}

CORBA::ULong AdminServant::getOverviewSpectrumStreamed(const char* device, const char* record, CORBA::LongLong start,
                                                       CORBA::LongLong stop, CORBA::LongLong lineCount,
                                                       CORBA::Long fftLength, QD_ZLK::FftWindow window,
                                                       const char* host, CORBA::UShort port)
{
    return wireStatus(m_calls.onRecord(Action::StreamOverview, device, record, [&](DeviceService& service) {
        OverviewWish wish;
        wish.device = fromCorba(device);
        wish.record = fromCorba(record);
        wish.start = start;
        wish.stop = stop;
        wish.lineCount = lineCount;
        wish.fftLength = fftLength;
        wish.window = static_cast<SpectrumWindow>(window);
        wish.host = host;
        wish.port = port;
        return m_overviews->begin(service, wish, {ZelkoCommon::callingPeer(), ZelkoCommon::calledAddress()});
    }));
}

CORBA::ULong AdminServant::getRecord(const char* device, const char* record, QD_ZLK::RecordInfo_out recordData)
{
    QD_ZLK::RecordInfo_var info = new QD_ZLK::RecordInfo(recordInfo(ZELKO_XML::ZELKO_RecordData()));
    const ServiceStatus status = m_calls.onRecord(Action::Look, device, record, [&](DeviceService& service) {
        const RecordPointer found = service.record(fromCorba(record));
        if (!found) {
            return ServiceStatus::NoSuchRecord;
        }
        info = new QD_ZLK::RecordInfo(recordInfo(*found));
        return ServiceStatus::None;
    });
    if (wireSize(info) > m_largestAnswer) {
        throw QD_ZLK::IF_ZELKO_Admin::exAdmin(QD_ZLK::IF_ZELKO_Admin::ADMIN_FAILED,
                                              toCorba(ZelkoCommon::toText({ServiceStatus::AnswerTooLarge, {}})));
    }
    recordData = info._retn();
    return wireStatus(status);
}

CORBA::ULong AdminServant::requestRecordDataDetail(const char* device, const char* record)
{
    return change(Action::SyncOneRecord, device, record,
                  [&](DeviceService& service) { return service.synchronize(fromCorba(record)); });
}

} // namespace ZelkoRecorder
