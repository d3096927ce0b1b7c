#pragma once

#include <zelkobase/connection/zelkobaseconnection_export.h>

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <variant>

namespace ZelkoCommon {

/// The one way from the threads of a link to the thread of the tree. Data and the state of the connection stand in it
/// in the order in which they came about, so that nothing is shown of a connection that is known to be over.
class ZELKOBASECONNECTION_EXPORT LinkQueue
{
public:
    struct Batch
    {
        std::string bytes;
    };
    struct Disconnected
    {
        std::string reason; ///< for people, in UTF-8
    };
    struct ConnectFailed
    {
        std::string reason;    ///< for people, in UTF-8
        bool isDenied = false; ///< the server is there and does not admit the user
    };
    struct WriteRefused
    {
        std::string reason; ///< for people, in UTF-8
    };
    using Entry = std::variant<Batch, Disconnected, ConnectFailed, WriteRefused>;

    /// `wakeUp` is called by the thread that puts something into the empty queue, once until the queue was found empty.
    /// It must not call the queue. `maxBytes` bounds what waits.
    LinkQueue(std::function<void()> wakeUp, std::size_t maxBytes);

    /// Begins a connection and gives its number. Batches of earlier ones are refused from here on.
    std::uint64_t open();

    /// Ends the connection if it is the present one: nothing of it comes behind this entry.
    void close(std::uint64_t connection, const std::string& reason);

    /// Puts a batch of a connection into the queue; waits while the queue is full, up to `patience`. False when the
    /// connection is over or the queue stayed full.
    bool put(std::uint64_t connection, std::string bytes, std::chrono::milliseconds patience);

    /// Tells that an attempt to connect failed, and whether the server denied access.
    void reportFailure(const std::string& reason, bool isDenied = false);

    /// Tells that the server refused a write of a connection; nothing when that is over.
    void reportRefusal(std::uint64_t connection, const std::string& reason);

    /// From the return on `wakeUp` is not called any more, and batches are refused.
    void shutDown();

    /// Takes the next entry; none when the queue is empty.
    std::optional<Entry> take();

private:
    void append(Entry entry);                    // with the mutex held
    bool isOpen(std::uint64_t connection) const; // with the mutex held

    std::function<void()> m_wakeUp;
    const std::size_t m_maxBytes;

    std::mutex m_mutex;
    std::condition_variable m_roomOrEnd;
    std::deque<Entry> m_entries;
    std::size_t m_bytes = 0;
    std::uint64_t m_connection = 0; // counts up; 0 before the first one
    bool m_open = false;
    bool m_awake = false;
};

} // namespace ZelkoCommon
