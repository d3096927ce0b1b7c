#pragma once

#include "signallog.h"
#include "testbookmarks.h"

#include <zelkoguibase/bookmarks/bookmarkmodel.h>

/// SignalLog with the signals of a bookmark model: "state 2", "update R of D: 1000000 a, 2000000 b", "normalized 1",
/// "out of range 0".
class BookmarkSignalLog : public SignalLog
{
public:
    using Model = ZelkoGUI::BookmarkModel;

    explicit BookmarkSignalLog(const Model* model)
        : SignalLog(model)
    {
        logNumber(model, &Model::si_synchStateChanged, QStringLiteral("state "));
        logNumber(model, &Model::si_normalizedChanged, QStringLiteral("normalized "));
        logNumber(model, &Model::si_timestampsOutOfRange, QStringLiteral("out of range "));
        QObject::connect(model, &Model::si_updateBookmarks, &m_context,
                         [this](const QString& record, const Model::Entries& bookmarks, const QString& device) {
                             add(QStringLiteral("update %1 of %2: %3")
                                     .arg(record, device, bookmarkTexts(bookmarks).join(QStringLiteral(", "))));
                         });
    }

    /// What comes after each change of a list in order and within the record.
    static QStringList inOrder() { return {QStringLiteral("normalized 1"), QStringLiteral("out of range 0")}; }

private:
    template <typename Signal>
    void logNumber(const Model* model, Signal signal, const QString& text)
    {
        QObject::connect(model, signal, &m_context,
                         [this, text](auto value) { add(text + QString::number(static_cast<int>(value))); });
    }
};
