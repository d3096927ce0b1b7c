#pragma once

#include "toldrecords.h"

/// A record list whose records have comments.
class CommentedRecords final : public ToldRecords
{
public:
    using Comments = QVector<ZELKO_XML::HistoryEntry>;

    /// A comment so many seconds behind the begin of the records.
    static ZELKO_XML::HistoryEntry comment(int second, const QString& text)
    {
        ZELKO_XML::HistoryEntry entry;
        entry.SetTimestamp(recordBegin + static_cast<quint64>(second) * 1'000'000);
        entry.SetHistoryEntry(text);
        return entry;
    }
    static RecordDataPtr record(const QString& id, const Comments& comments)
    {
        const auto record = makeRecord(id);
        record->SetHistoryEntry(comments);
        return record;
    }

    CommentedRecords() = default;
    CommentedRecords(const QString& id, const Comments& comments) { add(record(id, comments)); }

    using ToldRecords::store;
    void store(const QString& id, const Comments& comments) { store(record(id, comments)); }
};

/// Two comments, and how they are shown.
inline const CommentedRecords::Comments twoComments{CommentedRecords::comment(1, QStringLiteral("first")),
                                                    CommentedRecords::comment(2, QStringLiteral("second"))};
inline const QStringList rowsOfTwo{QStringLiteral("2023-11-14 23:13:21 | first"),
                                   QStringLiteral("2023-11-14 23:13:22 | second"), QStringLiteral(" | ")};
