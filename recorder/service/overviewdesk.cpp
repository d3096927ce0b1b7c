#include <recorder/service/overviewdesk.h>

#include <recorder/served/deviceservice.h>

#include <zelkobase/orb/hostaddress.h>

#include <netdb.h>
#include <sys/socket.h>
#include <unistd.h>

#include <atomic>
#include <condition_variable>

namespace ZelkoRecorder {

using ZelkoCommon::ServiceStatus;

namespace {

// A socket that is connected to an address in numbers; sends datagrams until it goes.
class DatagramSocket
{
public:
    DatagramSocket(const std::string& host, quint16 port)
    {
        addrinfo hints{};
        hints.ai_socktype = SOCK_DGRAM;
        hints.ai_flags = AI_NUMERICHOST | AI_NUMERICSERV;
        addrinfo* found = nullptr;
        if (::getaddrinfo(host.c_str(), std::to_string(port).c_str(), &hints, &found) == 0) {
            m_socket = ::socket(found->ai_family, found->ai_socktype | SOCK_CLOEXEC, found->ai_protocol);
            m_connected = m_socket >= 0 && ::connect(m_socket, found->ai_addr, found->ai_addrlen) == 0;
            ::freeaddrinfo(found);
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

    // A datagram that is lost is lost, whether here or on its way.
    void send(const QByteArray& datagram) const
    {
        ::send(m_socket, datagram.constData(), static_cast<std::size_t>(datagram.size()), MSG_NOSIGNAL);
    }

private:
    int m_socket = -1;
    bool m_connected = false;
};

} // namespace

struct OverviewDesk::Running
{
    Running(const std::string& client, std::unique_ptr<OverviewJob> work, std::unique_ptr<DatagramSocket> target,
            std::chrono::microseconds pause)
        : peer(client)
        , job(std::move(work))
        , socket(std::move(target))
        , thread([this, pause](const std::stop_token& stop) {
            run(stop, pause);
            done = true;
        })
    {}

    void run(const std::stop_token& stop, std::chrono::microseconds pause)
    {
        std::mutex mutex;
        std::condition_variable_any wake;
        auto next = std::chrono::steady_clock::now();
        job->run([&](const QByteArray& datagram) {
            socket->send(datagram);
            next += pause;
            std::unique_lock lock(mutex);
            wake.wait_until(lock, stop, next, [] { return false; });
            return !stop.stop_requested();
        });
    }

    const std::string peer;
    const std::unique_ptr<OverviewJob> job;
    const std::unique_ptr<DatagramSocket> socket;
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

ServiceStatus OverviewDesk::begin(DeviceService& device, const OverviewWish& wish, const std::string& peer)
{
    const std::string client = peer.empty() ? ZelkoCommon::loopbackAddress : peer;
    if (!wish.host.empty() && ZelkoCommon::plainAddress(wish.host) != client) {
        return ServiceStatus::NotAllowed;
    }
    const RecordPointer record = device.record(wish.record);
    if (!record) {
        return ServiceStatus::NoSuchRecord;
    }
    auto socket = std::make_unique<DatagramSocket>(client, wish.port);
    if (wish.port == 0 || !socket->isConnected()) {
        return ServiceStatus::BadArgument;
    }
    auto job = std::make_unique<OverviewJob>(device.store(), *record, wish);
    if (job->status() != ServiceStatus::None) {
        return job->status();
    }
    std::list<std::unique_ptr<Running>> ended; // joined without the mutex
    const std::lock_guard lock(m_mutex);
    endOf(client, ended);
    if (m_closed) {
        return ServiceStatus::ShuttingDown;
    }
    if (static_cast<int>(m_running.size()) >= m_options.mostAtOnce) {
        return ServiceStatus::LimitReached;
    }
    const std::chrono::microseconds pause(1'000'000 / m_options.datagramsPerSecond);
    m_running.push_back(std::make_unique<Running>(client, std::move(job), std::move(socket), pause));
    return ServiceStatus::None;
}

// With those that have come to their end anyway. With the mutex held.
void OverviewDesk::endOf(const std::string& peer, std::list<std::unique_ptr<Running>>& ended)
{
    for (auto running = m_running.begin(); running != m_running.end();) {
        const auto next = std::next(running);
        if ((*running)->peer == peer || (*running)->done) {
            (*running)->thread.request_stop();
            ended.splice(ended.end(), m_running, running);
        }
        running = next;
    }
}

void OverviewDesk::close()
{
    std::list<std::unique_ptr<Running>> ended;
    const std::lock_guard lock(m_mutex);
    m_closed = true;
    for (const auto& running : m_running) {
        running->thread.request_stop();
    }
    ended.swap(m_running);
}

} // namespace ZelkoRecorder
