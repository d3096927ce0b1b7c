#pragma once

#include "signallog.h"

#include <zelkobase/models/abstractrecordlistmodel.h>

/// SignalLog with the signals of a record list: "record changed A", "record deleted A", "deleted while recording A",
/// "all records changed", "status of A 2 after 5".
class RecordSignalLog : public SignalLog
{
public:
    using Model = ZelkoCommon::AbstractRecordListModel;

    explicit RecordSignalLog(const Model* model)
        : SignalLog(model)
    {
        logID(model, &Model::si_recordChanged, QStringLiteral("record changed "));
        logID(model, &Model::si_recordDeleted, QStringLiteral("record deleted "));
        logID(model, &Model::si_recordDeletedWhileRecording, QStringLiteral("deleted while recording "));
        QObject::connect(model, &Model::si_allRecordsChanged, &m_context,
                         [this] { add(QStringLiteral("all records changed")); });
        QObject::connect(
            model, &Model::si_recordStatusChanged, &m_context,
            [this](const QString& id, Model::RecordData::RecordStatus now, Model::RecordData::RecordStatus before) {
                add(QStringLiteral("status of %1 %2 after %3")
                        .arg(id, QString::number(static_cast<int>(now)), QString::number(static_cast<int>(before))));
            });
    }

private:
    template <typename Signal>
    void logID(const Model* model, Signal signal, const QString& text)
    {
        QObject::connect(model, signal, &m_context, [this, text](const QString& id) { add(text + id); });
    }
};
