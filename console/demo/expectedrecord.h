#pragma once

#include <QString>

#include <chrono>
#include <optional>

class QAbstractItemModel;

namespace ZelkoConsole {

/// What a list of records has to show of a source once it is recorded, read from the source itself.
struct ExpectedRecord
{
    QString name;
    quint64 startTime = 0; ///< microseconds since the epoch; 0 where the source does not say
    quint64 frequency = 0; ///< hertz, at the end of the signal; 0 where the source does not say
    quint64 size = 0;      ///< bytes, of the whole signal
    std::chrono::milliseconds length{0};

    /// Of a source as the recorder takes it, without a device. Nothing, and a text for people in `error`, for one that
    /// cannot be recorded or never ends.
    static std::optional<ExpectedRecord> ofSource(const QString& source, QString* error);

    /// How many finished records of this kind `list` shows: the model of a record list, or a proxy over one.
    int countIn(const QAbstractItemModel& list) const;

    bool operator==(const ExpectedRecord&) const = default;
};

} // namespace ZelkoConsole
