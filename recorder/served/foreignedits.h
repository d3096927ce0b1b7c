#pragma once

#include <recorder/store/editqueue.h>

#include <QString>

#include <map>
#include <memory>
#include <mutex>

namespace ZelkoRecorder {

/// Where edits of records go that somebody else is recording. Any thread.
class ForeignEdits
{
public:
    /// From here on edits of the record go to `edits`, until `end`.
    void begin(const QString& recordID, const std::shared_ptr<EditQueue>& edits);
    void end(const QString& recordID);

    /// False, and nobody is answered, if nobody takes edits of the record, or no longer; otherwise as EditQueue has it.
    bool post(const QString& recordID, const EditQueue::Entry& entry);

private:
    std::mutex m_mutex;
    std::map<QString, std::shared_ptr<EditQueue>> m_edits;
};

} // namespace ZelkoRecorder
