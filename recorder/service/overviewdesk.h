#pragma once

#include <recorder/service/overviewjob.h>

#include <list>
#include <memory>
#include <mutex>
#include <string>
#include <thread>

namespace ZelkoRecorder {

class DeviceService;

/// Sends overviews, each on a thread of its own that gives way to all others, and no faster than a network likes it.
/// An overview goes to one port of the client that asks; a client is an address, and few at once are served. One ends
/// with its last line, with another wish for the same port, or when nobody has that port any more. Any thread.
class OverviewDesk
{
public:
    struct Options
    {
        int mostAtOnce = 8;
        int mostOfClient = 4;          ///< at once; the oldest of them ends for one more
        int datagramsPerSecond = 2000; ///< of each overview
    };

    /// The two ends of a client's call, in numbers.
    struct Call
    {
        std::string peer;   ///< empty: this process
        std::string called; ///< from where it expects the answer; empty: from any address of this host
    };

    explicit OverviewDesk(const Options& options);

    /// Ends all of them.
    ~OverviewDesk();

    /// Begins to send what the client of this call wants; what was sent to the same port before has ended by then.
    /// NotAllowed for any address but its own, BadArgument for no port, LimitReached where too many are sent to others;
    /// otherwise as OverviewJob says.
    ZelkoCommon::ServiceStatus begin(DeviceService& device, const OverviewWish& wish, const Call& call);

    /// Ends all of them, and begins none any more.
    void close();

private:
    struct Running;
    using RunningList = std::list<std::unique_ptr<Running>>;

    template <typename Choice>
    void end(const Choice& choice, RunningList& ended);
    void makeRoom(const std::string& client, quint16 port, RunningList& ended);

    const Options m_options;
    std::mutex m_mutex;
    RunningList m_running;
    bool m_closed = false;
};

} // namespace ZelkoRecorder
