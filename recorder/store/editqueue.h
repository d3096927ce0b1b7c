#pragma once

#include <recorder/store/recordedits.h>

#include <functional>
#include <mutex>
#include <vector>

namespace ZelkoRecorder {

/// Edits of a record that somebody else is writing, on their way to that one. Any thread.
class EditQueue
{
public:
    /// Called once, on the thread of whoever makes the edit: with `Done` it is durable.
    using Answer = std::function<void(StoreStatus)>;

    struct Entry
    {
        RecordEdit edit;
        Answer answer;
    };

    /// `posted` is called with each edit that is taken, on the thread that posts it; no more once `close` has returned.
    explicit EditQueue(std::function<void()> posted = {});

    /// False, and nobody is called, if the queue was closed.
    bool post(const RecordEdit& edit, const Answer& answer);

    /// Takes out all that wait, in the order in which they came.
    std::vector<Entry> take();

    /// As `take`; no more can be posted from then on.
    std::vector<Entry> close();

private:
    const std::function<void()> m_posted;
    std::mutex m_mutex;
    std::vector<Entry> m_entries;
    bool m_closed = false;
};

} // namespace ZelkoRecorder
