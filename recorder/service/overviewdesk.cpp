#include <recorder/service/overviewdesk.h>

#include <recorder/served/deviceservice.h>

#include <zelkobase/orb/hostaddress.h>

#include <netdb.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <condition_variable>
#include <tuple>

namespace ZelkoRecorder {

using ZelkoCommon::ServiceStatus;

namespace {

// A socket that is connected to an address in numbers; sends datagrams until it goes.
class DatagramSocket
{
public:
    // A client takes what comes from the address that it has called, and the way to it may begin at another one.
    DatagramSocket(const std::string& own, const std::string& host, quint16 port)
    {
        if (const auto peer = ZelkoCommon::datagramAddress(host, port)) {
            m_socket = ::socket(peer->ai_family, peer->ai_socktype | SOCK_CLOEXEC, peer->ai_protocol);
            bindTo(own, peer->ai_family);
            m_connected = m_socket >= 0 && ::connect(m_socket, peer->ai_addr, peer->ai_addrlen) == 0;
        }
    }
    ~DatagramSocket()
    {
        if (m_socket >= 0) {
            ::close(m_socket);
        }
    }
    DatagramSocket(const DatagramSocket&) = delete;
    DatagramSocket& operator=(const DatagramSocket&) = delete;

    bool isConnected() const { return m_connected; }

    // False once it is known that nobody has the port. A datagram that is lost otherwise is lost, whether here or on
    // its way.
    bool send(const QByteArray& datagram) const
    {
        const auto size = static_cast<std::size_t>(datagram.size());
        return ::send(m_socket, datagram.constData(), size, MSG_NOSIGNAL) >= 0 || errno != ECONNREFUSED;
    }

private:
    // Where this host does not have that address any more, any other has to do.
    void bindTo(const std::string& own, int family) const
    {
        constexpr quint16 anyPort = 0;
        const auto address = ZelkoCommon::datagramAddress(own, anyPort);
        if (address && address->ai_family == family) {
            std::ignore = ::bind(m_socket, address->ai_addr, address->ai_addrlen);
        }
    }

    int m_socket = -1;
    bool m_connected = false;
};

// Lets datagrams go no faster than one each `pause`. Time that was slept too long is made up for, that of the disk is
// not: a line that took long does not come all at once.
class Pace
{
public:
    explicit Pace(std::chrono::microseconds pause)
        : m_pause(pause)
        , m_next(Clock::now())
    {}

    // False if `stop` came before.
    bool wait(const std::stop_token& stop)
    {
        constexpr std::chrono::milliseconds oversleep(5);
        m_next = std::max(m_next, Clock::now() - oversleep) + m_pause;
        std::unique_lock lock(m_mutex);
        m_wake.wait_until(lock, stop, m_next, [] { return false; });
        return !stop.stop_requested();
    }

private:
    using Clock = std::chrono::steady_clock;

    const std::chrono::microseconds m_pause;
    Clock::time_point m_next;
    std::mutex m_mutex;
    std::condition_variable_any m_wake;
};

// Whoever records or replays needs the processor more.
void giveWayToOtherThreads()
{
    constexpr int patient = 10;
    ::setpriority(PRIO_PROCESS, static_cast<id_t>(::syscall(SYS_gettid)), patient);
}

} // namespace

struct OverviewDesk::Running
{
    Running(std::string toClient, quint16 toPort, std::unique_ptr<OverviewJob> work,
            std::unique_ptr<DatagramSocket> target, int datagramsPerSecond)
        : client(std::move(toClient))
        , port(toPort)
        , job(std::move(work))
        , socket(std::move(target))
        , pace(std::chrono::microseconds(1'000'000 / datagramsPerSecond))
        , thread([this](const std::stop_token& stop) { run(stop); })
    {}

    void run(const std::stop_token& stop)
    {
        giveWayToOtherThreads();
        job->run([&](const QByteArray& datagram) { return socket->send(datagram) && pace.wait(stop); }, stop);
        done = true;
    }

    const std::string client;
    const quint16 port;
    const std::unique_ptr<OverviewJob> job;
    const std::unique_ptr<DatagramSocket> socket;
    Pace pace;
    std::atomic<bool> done = false;
    std::jthread thread; // goes first
};

OverviewDesk::OverviewDesk(const Options& options)
    : m_options(options)
{}

OverviewDesk::~OverviewDesk()
{
    close();
}

ServiceStatus OverviewDesk::begin(DeviceService& device, const OverviewWish& wish, const Call& call)
{
    const std::string client = call.peer.empty() ? ZelkoCommon::loopbackAddress : call.peer;
    if (!wish.host.empty() && ZelkoCommon::plainAddress(wish.host) != client) {
        return ServiceStatus::NotAllowed;
    }
    const RecordPointer record = device.record(wish.record);
    if (!record) {
        return ServiceStatus::NoSuchRecord;
    }
    auto socket = std::make_unique<DatagramSocket>(call.called, client, wish.port);
    if (wish.port == 0 || !socket->isConnected()) {
        return ServiceStatus::BadArgument;
    }
    auto job = std::make_unique<OverviewJob>(device.store(), *record, wish);
    if (job->status() != ServiceStatus::None) {
        return job->status();
    }
    RunningList ended; // joined without the mutex
    const std::lock_guard lock(m_mutex);
    if (m_closed) {
        return ServiceStatus::ShuttingDown;
    }
    makeRoom(client, wish.port, ended);
    if (static_cast<int>(m_running.size()) >= m_options.mostAtOnce) {
        return ServiceStatus::LimitReached;
    }
    m_running.push_back(
        std::make_unique<Running>(client, wish.port, std::move(job), std::move(socket), m_options.datagramsPerSecond));
    return ServiceStatus::None;
}

// Those that it chooses, and those that have come to their end anyway. With the mutex held.
template <typename Choice>
void OverviewDesk::end(const Choice& choice, RunningList& ended)
{
    for (auto at = m_running.begin(); at != m_running.end();) {
        const auto running = at++;
        if ((*running)->done || choice(**running)) {
            (*running)->thread.request_stop();
            ended.splice(ended.end(), m_running, running);
        }
    }
}

// For one more to this port of this client. With the mutex held.
void OverviewDesk::makeRoom(const std::string& client, quint16 port, RunningList& ended)
{
    const auto isOfClient = [&](const auto& running) { return running->client == client; };
    end([&](const Running& running) { return running.client == client && running.port == port; }, ended);
    if (std::count_if(m_running.begin(), m_running.end(), isOfClient) >= m_options.mostOfClient) {
        const Running* const oldest = std::find_if(m_running.begin(), m_running.end(), isOfClient)->get();
        end([&](const Running& running) { return &running == oldest; }, ended);
    }
}

void OverviewDesk::close()
{
    RunningList ended; // joined without the mutex
    const std::lock_guard lock(m_mutex);
    m_closed = true;
    end([](const Running&) { return true; }, ended);
}

} // namespace ZelkoRecorder
