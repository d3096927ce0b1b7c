#pragma once

#include <recorder/service/overviewjob.h>

#include <list>
#include <memory>
#include <mutex>
#include <string>
#include <thread>

namespace ZelkoRecorder {

class DeviceService;

/// Sends overviews, each on a thread of its own and no faster than a network likes it: one for each client at a time,
/// and few at once. Any thread.
class OverviewDesk
{
public:
    struct Options
    {
        int mostAtOnce = 4;
        int datagramsPerSecond = 2000; ///< of each overview
    };

    explicit OverviewDesk(const Options& options);

    /// Ends all of them.
    ~OverviewDesk();

    /// Begins to send what the client at the address `peer` wants, which is this process where it is empty. What it
    /// wanted before ends. NotAllowed for any address but its own; otherwise as OverviewJob says.
    ZelkoCommon::ServiceStatus begin(DeviceService& device, const OverviewWish& wish, const std::string& peer);

    /// Ends all of them, and begins none any more.
    void close();

private:
    struct Running;

    void endOf(const std::string& peer, std::list<std::unique_ptr<Running>>& ended);

    const Options m_options;
    std::mutex m_mutex;
    std::list<std::unique_ptr<Running>> m_running;
    bool m_closed = false;
};

} // namespace ZelkoRecorder
