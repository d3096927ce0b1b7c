#pragma once

#include "samplebytes.h"

#include <recorder/store/recordcopy.h>
#include <recorder/store/recordedits.h>

#include <QRandomGenerator>

namespace ZelkoTest {

/// Random changes of one record as clients ask for them. They follow from a number alone, in the process that changes
/// and in the one that looks.
class RandomChanges
{
    using BookmarkEntry = ZELKO_XML::BookmarkEntry;
    using HistoryEntry = ZELKO_XML::HistoryEntry;
    using ZELKO_RecordData = ZELKO_XML::ZELKO_RecordData;

public:
    static constexpr qsizetype samples = 40'000; ///< bytes of the record

    explicit RandomChanges(const ZELKO_RecordData& record, quint32 seed)
        : m_record(record)
        , m_random(seed)
    {}

    enum class Kind { Comment, Deletable, SetBookmarks, DeleteBookmarks, AddHistory, RemoveHistory, Copy, Count };

    /// The next change, made to the record here.
    Kind next()
    {
        m_number = m_random.bounded(1'000'000U);
        m_kind = static_cast<Kind>(m_random.bounded(static_cast<int>(Kind::Count)));
        apply();
        return m_kind;
    }

    const ZELKO_RecordData& record() const { return m_record; }

    /// The text of the change, which is the name of the new record where it is a copy.
    QString text() const { return QStringLiteral("%1%2").arg(QLatin1String(textPrefix)).arg(m_number); }

    /// What a copy of that name holds of the record's samples.
    static QByteArray copiedSamples(const QByteArray& original, const QString& name)
    {
        const quint32 number = QStringView(name).mid(QLatin1String(textPrefix).size()).toUInt();
        return original.mid(static_cast<qsizetype>(begin(number)), samples / 2);
    }

    /// The same change, asked of a recorder that takes them as its DeviceService does. A copy gives the ID of the new
    /// record.
    template <typename Service>
    auto ask(Service& service, QString* newID) const;

    /// Whether a record is in this state; the time of a comment is up to whoever stores it.
    bool isStateOf(const ZELKO_RecordData& other) const
    {
        ZELKO_RecordData same = other;
        same.SetHistoryEntry(std::as_const(m_record).GetHistoryEntry());
        return same == m_record && texts(other) == texts(m_record);
    }

private:
    static constexpr char textPrefix[] = "text ";

    static QStringList texts(const ZELKO_RecordData& record)
    {
        QStringList result;
        for (const HistoryEntry& comment : record.GetHistoryEntry()) {
            result.append(comment.GetHistoryEntry());
        }
        return result;
    }
    static quint64 begin(quint32 number) { return 4 * (number % 5000); } // of a copy of half of the samples
    QVector<BookmarkEntry> bookmarks() const { return {bookmark(m_number), bookmark(m_number + 1)}; }
    static BookmarkEntry bookmark(quint64 number)
    {
        BookmarkEntry entry;
        entry.SetTimestamp(10'000'000 + number);
        entry.SetBookmark(QStringLiteral("mark %1").arg(number));
        return entry;
    }
    void apply();

    ZELKO_RecordData m_record;
    QRandomGenerator m_random;
    Kind m_kind = Kind::Count;
    quint32 m_number = 0;
    QVector<BookmarkEntry> m_deleted;
    qsizetype m_removed = -1; // the place of a comment
};

inline void RandomChanges::apply()
{
    const QVector<BookmarkEntry> marks = std::as_const(m_record).GetBookmarkEntry();
    QVector<HistoryEntry> history = std::as_const(m_record).GetHistoryEntry();
    switch (m_kind) {
    case Kind::Comment:
        m_record.SetRecordName(text());
        break;
    case Kind::Deletable:
        m_record.SetDeletable(m_number % 2 == 0);
        break;
    case Kind::SetBookmarks:
        m_record.SetBookmarkEntry(bookmarks());
        break;
    case Kind::DeleteBookmarks:
        m_deleted = marks.mid(0, 1);
        if (!marks.isEmpty()) {
            m_record.SetBookmarkEntry(marks.mid(1));
        }
        break;
    case Kind::AddHistory:
        ZelkoRecorder::appendComment(m_record, text(), 0);
        break;
    case Kind::RemoveHistory:
        m_removed = history.isEmpty() ? -1 : static_cast<qsizetype>(m_number) % history.size();
        if (m_removed >= 0) {
            history.removeAt(m_removed);
            m_record.SetHistoryEntry(history);
        }
        break;
    case Kind::Copy:
    case Kind::Count:
        break;
    }
}

template <typename Service>
auto RandomChanges::ask(Service& service, QString* newID) const
{
    using Status = decltype(service.setComment(QString(), QString()));
    const QString& id = m_record.GetRecordID();
    switch (m_kind) {
    case Kind::Comment:
        return service.setComment(id, text());
    case Kind::Deletable:
        return service.setDeletable(id, m_number % 2 == 0);
    case Kind::SetBookmarks:
        return service.setBookmarks(id, bookmarks());
    case Kind::DeleteBookmarks:
        return service.deleteBookmarks(id, m_deleted);
    case Kind::AddHistory:
        return service.addHistory(id, text());
    case Kind::RemoveHistory:
        return m_removed < 0
                   ? Status{}
                   : service.removeHistory(id, service.record(id)->GetHistoryEntry().at(m_removed).GetTimestamp());
    case Kind::Copy:
        return service.copy(id, {{begin(m_number), begin(m_number) + samples / 2}},
                            ZelkoRecorder::RecordRange::Unit::Positions, text(), newID);
    case Kind::Count:
        break;
    }
    Q_UNREACHABLE();
}

} // namespace ZelkoTest
