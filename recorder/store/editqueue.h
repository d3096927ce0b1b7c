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

    /// Called in place of the answer, on the same thread, if the edit came too late to be made: nobody writes the
    /// record any more, so it can be asked for as that of any other.
    using Over = std::function<void()>;

    struct Entry
    {
        RecordEdit edit;
        Answer answer;
        Over over; ///< may be null
    };

    /// `posted` is called with each edit that is taken, on the thread that posts it; no more once `end` has returned.
    explicit EditQueue(std::function<void()> posted = {});

    /// False, and nobody is called, if whoever writes the record is in its last step or has ended. An edit that wants
    /// to know when that is over waits for the end of the last step.
    bool post(const Entry& entry);
    bool post(const RecordEdit& edit, const Answer& answer) { return post({edit, answer, {}}); }

    /// Takes out all that wait, in the order in which they came.
    std::vector<Entry> take();

    /// As `take`, before the last step: no more can be made from then on.
    std::vector<Entry> close();

    /// After `close` and the last step: tells those that have come in between that it is over.
    void end();

private:
    enum class Stage { Open, Closed, Ended };

    const std::function<void()> m_posted;
    std::mutex m_mutex;
    std::vector<Entry> m_entries;
    Stage m_stage = Stage::Open;
};

} // namespace ZelkoRecorder
