#pragma once

#include <QString>

namespace ZelkoRecorder {

/// Keeps a store to one process: two would repair and record over each other. Ends with the process, however it ends.
class StoreLock
{
public:
    StoreLock() = default;
    ~StoreLock();
    StoreLock(const StoreLock&) = delete;
    StoreLock& operator=(const StoreLock&) = delete;

    /// Makes the folder, durably, if it is missing and locks it. False, and a text for people in `error`, if that
    /// cannot be done or another process holds it.
    bool acquire(const QString& folder, QString* error);

private:
    int m_descriptor = -1;
};

} // namespace ZelkoRecorder
