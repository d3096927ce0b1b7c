#pragma once

#include <QString>

#include <functional>
#include <mutex>

namespace ZelkoRecorder {

/// The clock of a device: that of the machine, shifted by what somebody has set it to. The shift is kept in a file of
/// the device's folder. Times are microseconds since the epoch. Any thread.
class DeviceClock
{
public:
    using MachineClock = std::function<qint64()>;

    /// The latest time that it can be set to: the end of the year 9999.
    static constexpr qint64 latest = 253'402'300'799'999'999;

    /// `folder` is that of the device. A shift that cannot be read counts as none, and is told to the log.
    explicit DeviceClock(const QString& folder, MachineClock machine = machineTime);

    /// Whether `set` takes such a time: from 1970 to `latest`.
    static constexpr bool isSettable(qint64 time) { return time >= 0 && time <= latest; }

    qint64 now() const;

    /// Whether it was ever set to another time than that of the machine.
    bool isShifted() const;

    /// From now on it is `time`; durable when it returns true. False, with the clock as it was, for a time that is
    /// not settable, or if the disk refuses. The clock always goes by what its file says.
    bool set(qint64 time);

    /// The time of the machine.
    static qint64 machineTime();

private:
    qint64 readShift() const;

    const QString m_path;
    const MachineClock m_machine;
    mutable std::mutex m_mutex;
    qint64 m_shift;
};

} // namespace ZelkoRecorder
