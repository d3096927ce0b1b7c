#include <recorder/store/recordcopy.h>

#include <recorder/source/regularfile.h>
#include <recorder/store/recordedits.h>
#include <recorder/store/recordid.h>
#include <recorder/store/recordrepair.h>
#include <recorder/store/storedfiles.h>

#include <QDir>
#include <QFileInfo>

#include <algorithm>

namespace ZelkoRecorder {

using ZELKO_XML::BookmarkEntry;
using ZELKO_XML::IndexEntry;
using ZELKO_XML::ZELKO_RecordData;

namespace {

// The client reckons positions from times and cuts off what is behind the point, so the nearest frame is meant.
quint64 nearestFrame(const RecordTimeline& timeline, quint64 position)
{
    const quint64 within = std::clamp(position, timeline.startOffset(), timeline.stopOffset()) - timeline.startOffset();
    const quint64 frame = timeline.bytesPerFrame();
    return std::min(timeline.startOffset() + (within + frame / 2) / frame * frame, timeline.stopOffset());
}

RecordRange positionsOf(const RecordTimeline& timeline, const RecordRange& range, RecordRange::Unit unit)
{
    if (unit == RecordRange::Unit::Positions) {
        return {nearestFrame(timeline, range.start), nearestFrame(timeline, range.stop)};
    }
    return {nearestFrame(timeline, timeline.offsetAt(range.start)),
            nearestFrame(timeline, timeline.offsetAt(range.stop))};
}

bool isWithin(quint64 time, const RecordTimeline& timeline, const RecordRanges& parts)
{
    return std::any_of(parts.begin(), parts.end(), [&](const RecordRange& part) {
        return time >= timeline.timeAt(part.start) && time <= timeline.endTimeAt(part.stop);
    });
}

QVector<BookmarkEntry> bookmarksWithin(const ZELKO_RecordData& record, const RecordTimeline& timeline,
                                       const RecordRanges& parts)
{
    QVector<BookmarkEntry> kept = record.GetBookmarkEntry();
    kept.removeIf([&](const BookmarkEntry& bookmark) { return !isWithin(bookmark.GetTimestamp(), timeline, parts); });
    return kept;
}

} // namespace

RecordCopy::RecordCopy(const DeviceStore& store, const QString& sourceID, const RecordRanges& ranges,
                       RecordRange::Unit unit, const QString& name, quint64 now)
    : m_store(store)
    , m_now(now)
    , m_status(name.size() > longestRecordName ? StoreStatus::TooLong : prepare(sourceID, ranges, unit))
{
    if (m_status == StoreStatus::Done) {
        describe(name);
        m_status = ByteTransfer::hasRoomFor(size(), store.folder()) ? StoreStatus::Done : StoreStatus::NoSpace;
    }
}

QString RecordCopy::recordID() const
{
    return m_status == StoreStatus::Done ? m_target.GetRecordID() : QString();
}

StoreStatus RecordCopy::prepare(const QString& sourceID, const RecordRanges& ranges, RecordRange::Unit unit)
{
    if (const StoreStatus status = readWhole(m_store, sourceID, &m_source); status != StoreStatus::Done) {
        return status;
    }
    if (m_source->GetDataRate() == ZELKO_RecordData::DataRate::RawStream) {
        return StoreStatus::NotAllowed;
    }
    return cut(ranges, unit) ? StoreStatus::Done : StoreStatus::BadRange;
}

bool RecordCopy::cut(const RecordRanges& ranges, RecordRange::Unit unit)
{
    if (ranges.isEmpty() || ranges.size() > mostRanges) {
        return false;
    }
    const RecordTimeline timeline(*m_source);
    quint64 end = 0;
    for (const RecordRange& range : ranges) {
        const RecordRange part = positionsOf(timeline, range, unit);
        if (range.start >= range.stop || part.start >= part.stop || part.start < end) {
            return false;
        }
        end = part.stop;
        m_parts.append(part);
    }
    return true;
}

void RecordCopy::describe(const QString& name)
{
    const RecordTimeline timeline(*m_source);
    m_target = *m_source;
    m_target.SetRecordName(name);
    m_target.SetSize(0);
    m_target.SetIndexEntry({});
    for (const RecordRange& part : std::as_const(m_parts)) {
        describePart(timeline, part);
    }
    m_target.SetStartTime(timeline.timeAt(m_parts.constFirst().start));
    m_target.SetRecordID(createRecordId(m_target.GetStartTime()));
    m_target.SetStartPosition(0);
    m_target.SetRecordingLoopSize(0);
    m_target.SetBookmarkEntry(bookmarksWithin(*m_source, timeline, m_parts));
    appendComment(m_target, QStringLiteral("Copied from %1").arg(m_source->GetRecordID()), m_now);
    closeAtLastIndexEntry(m_target);
    m_target.SetDeletable(true); // the protection of the original is not for its copies
}

// Its begin, what the index has in between, and its end.
void RecordCopy::describePart(const RecordTimeline& timeline, const RecordRange& part)
{
    const quint64 place = m_target.GetSize();
    const auto append = [&](IndexEntry entry, quint64 position) {
        entry.SetRecordOffset(place + position - part.start);
        m_target.AppendIndexEntry(entry);
    };
    append(timeline.entryAt(part.start), part.start);
    for (const IndexEntry& entry : timeline.points()) {
        if (entry.GetRecordOffset() > part.start && entry.GetRecordOffset() < part.stop) {
            append(entry, entry.GetRecordOffset());
        }
    }
    IndexEntry end = std::as_const(m_target).GetIndexEntry().constLast();
    end.SetTimestamp(timeline.endTimeAt(part.stop));
    append(end, part.stop);
    m_target.SetSize(place + part.stop - part.start);
}

StoreStatus RecordCopy::run(const ByteTransfer::Watcher& watcher)
{
    m_status = write(watcher);
    if (m_status == StoreStatus::Done && !m_store.publish(m_target.GetRecordID())) {
        const bool isThere = QFileInfo::exists(m_store.recordFolder(m_target.GetRecordID()));
        m_status = isThere ? StoreStatus::Uncertain : StoreStatus::DiskRefused;
    }
    if (m_status != StoreStatus::Done) {
        QDir(m_store.birthFolder(m_target.GetRecordID())).removeRecursively();
    }
    return m_status;
}

RecordPointer RecordCopy::record() const
{
    return std::make_shared<ZELKO_RecordData>(m_target);
}

StoreStatus RecordCopy::write(const ByteTransfer::Watcher& watcher) const
{
    QString error;
    const auto source =
        openRegularFile(sampleFilePath(m_store.recordFolder(m_source->GetRecordID()), *m_source), &error);
    if (!source) {
        return StoreStatus::UnknownRecord;
    }
    const QString folder = m_store.birthFolder(m_target.GetRecordID());
    QFile samples(sampleFilePath(folder, m_target));
    if (!QDir().mkpath(folder) || !samples.open(QIODevice::WriteOnly | QIODevice::NewOnly | QIODevice::Unbuffered)) {
        return StoreStatus::DiskRefused;
    }
    ByteTransfer transfer(watcher);
    for (const RecordRange& part : m_parts) {
        if (const StoreStatus status = transfer.append(*source, part.start, part.stop - part.start, samples);
            status != StoreStatus::Done) {
            return status;
        }
    }
    return ByteTransfer::flush(samples) && saveMetaData(folder, m_target) ? StoreStatus::Done
                                                                          : StoreStatus::DiskRefused;
}

} // namespace ZelkoRecorder
