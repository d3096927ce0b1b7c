#include <overviewdisplay/overviewstream.h>

#include "overviewgate_p.h"
#include "overviewsocket_p.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <array>
#include <deque>
#include <mutex>
#include <thread>

namespace SPECTRUM_OVERVIEW {

using ZelkoCommon::OverviewLine;
using ZelkoCommon::OverviewPiece;

namespace {

constexpr std::size_t largestDatagram = OverviewLine::headSize + 2 * OverviewLine::mostBins;

/// Ends the waiting of another thread, for good.
class EndSign
{
public:
    EndSign()
        : m_event(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK))
    {}
    ~EndSign() { ::close(m_event); }
    EndSign(const EndSign&) = delete;
    EndSign& operator=(const EndSign&) = delete;

    void give() const { ::eventfd_write(m_event, 1); }

    // Until there is something to read, or the sign is given.
    void wait(int descriptor) const
    {
        std::array<pollfd, 2> waited{{{descriptor, POLLIN, 0}, {m_event, POLLIN, 0}}};
        constexpr int look = 100; // milliseconds, where there is no event to be had
        ::poll(waited.data(), waited.size(), m_event < 0 ? look : -1);
    }

private:
    const int m_event;
};

/// What one thread puts in and another takes out.
class PieceQueue
{
public:
    // Whether there was nothing before. What there is no room for is lost.
    bool put(OverviewPiece piece)
    {
        const std::lock_guard lock(m_mutex);
        if (m_pieces.size() >= OverviewStream::mostWaiting) {
            ++m_refused;
            return false;
        }
        m_pieces.push_back(std::move(piece));
        return m_pieces.size() == 1;
    }
    std::vector<OverviewPiece> take(std::size_t most)
    {
        const std::lock_guard lock(m_mutex);
        const auto count = static_cast<std::ptrdiff_t>(std::min(most, m_pieces.size()));
        const auto end = m_pieces.begin() + count;
        std::vector<OverviewPiece> taken(std::make_move_iterator(m_pieces.begin()), std::make_move_iterator(end));
        m_pieces.erase(m_pieces.begin(), end);
        return taken;
    }
    void refuse()
    {
        const std::lock_guard lock(m_mutex);
        ++m_refused;
    }
    quint64 refused() const
    {
        const std::lock_guard lock(m_mutex);
        return m_refused;
    }

private:
    mutable std::mutex m_mutex;
    std::deque<OverviewPiece> m_pieces;
    quint64 m_refused = 0;
};

} // namespace

struct OverviewStream::Private
{
    Private(std::unique_ptr<OverviewSocket> open, quint64 cookie, const OverviewWish& wish, std::function<void()> wake)
        : socket(std::move(open))
        , ownAddress(socket ? socket->ownAddress() : QString())
        , port(socket ? socket->port() : quint16{0})
        , gate(socket ? socket->senders() : std::vector<std::string>(), cookie, wish)
        , wakeUp(std::move(wake))
    {
        if (socket) {
            thread = std::jthread([this](const std::stop_token& stop) { run(stop); });
        }
    }
    ~Private()
    {
        thread.request_stop();
        end.give();
    }
    Private(const Private&) = delete;
    Private& operator=(const Private&) = delete;

    void run(const std::stop_token& stop)
    {
        while (!stop.stop_requested()) {
            if (!hearOne()) {
                end.wait(socket->descriptor());
            }
        }
    }

    // False when nothing waits.
    bool hearOne()
    {
        std::array<char, largestDatagram> buffer{};
        std::size_t size = 0;
        Sender sender;
        if (!socket->read(buffer.data(), buffer.size(), &size, &sender)) {
            return false;
        }
        const QByteArrayView datagram(buffer.data(), static_cast<qsizetype>(std::min(size, buffer.size())));
        auto piece = size > buffer.size() ? std::nullopt : gate.admit(datagram, sender);
        if (!piece) {
            queue.refuse();
        } else if (queue.put(std::move(*piece))) {
            wakeUp();
        }
        return true;
    }

    const std::unique_ptr<OverviewSocket> socket;
    const QString ownAddress;
    const quint16 port;
    OverviewGate gate;
    const std::function<void()> wakeUp;
    PieceQueue queue;
    const EndSign end;
    std::jthread thread; // goes first
};

OverviewStream::OverviewStream(const QString& recorder, quint64 cookie, const OverviewWish& wish,
                               std::function<void()> wakeUp)
    : d(std::make_unique<Private>(OverviewSocket::open(recorder), cookie, wish, std::move(wakeUp)))
{}

OverviewStream::~OverviewStream() = default;

quint16 OverviewStream::port() const
{
    return d->port;
}

QString OverviewStream::ownAddress() const
{
    return d->ownAddress;
}

std::vector<OverviewPiece> OverviewStream::take(std::size_t most)
{
    return d->queue.take(most);
}

quint64 OverviewStream::refused() const
{
    return d->queue.refused();
}

} // namespace SPECTRUM_OVERVIEW
