#include <zelkobase/discovery/zelkoudplistener.h>

#include <zelkobase/discovery/announcement.h>

#include <observerbase/errorhandler.h>
#include <observerbase/trace.h>

#include <QDateTime>
#include <QNetworkDatagram>
#include <QTimer>
#include <QUdpSocket>

#include <algorithm>
#include <vector>

namespace ZelkoCommon {

using ZELKO_XML::ZELKO_AvailableDevice;

namespace {

constexpr int datagramsPerTurn = 64;

// A network has some dozens of recorder devices; who announces more of them than this is making them up.
constexpr std::size_t maximumDevices = 1'000;

void traceWarning(const QString& text, int line)
{
    if (ErrorHandler::Instance()->traces(ErrorHandler::TraceWarning)) {
        _Q_Trace(text, __FILE__, line);
    }
}

bool haveAddressInCommon(const ZELKO_AvailableDevice& a, const ZELKO_AvailableDevice& b)
{
    const QVector<QString>& addresses = a.GetIPAddress();
    return std::any_of(addresses.begin(), addresses.end(),
                       [&b](const QString& address) { return b.GetIPAddress().contains(address); });
}

} // namespace

struct ZelkoUDPListener::Private
{
    explicit Private(ZelkoUDPListener* owner)
        : q(owner)
    {}

    void readSome();
    void hear(const QNetworkDatagram& datagram);
    bool remember(const ZELKO_AvailableDevice& device);

    ZelkoUDPListener* const q;
    QUdpSocket socket;
    QTimer nextTurn;
    std::vector<ZELKO_AvailableDevice> devices; // in the order of their first announcements
};

void ZelkoUDPListener::Private::readSome()
{
    for (int i = 0; i < datagramsPerTurn && socket.hasPendingDatagrams(); ++i) {
        hear(socket.receiveDatagram(Announcement::MaximumSize + 1));
    }
    if (socket.hasPendingDatagrams()) {
        nextTurn.start();
    }
}

void ZelkoUDPListener::Private::hear(const QNetworkDatagram& datagram)
{
    auto device = Announcement::read(datagram.data());
    if (!device) {
        traceWarning(
            QStringLiteral("ZelkoUDPListener: no announcement from %1").arg(datagram.senderAddress().toString()),
            __LINE__);
        return;
    }
    device->SetLastBroadcast(static_cast<quint64>(QDateTime::currentMSecsSinceEpoch()));
    if (remember(*device)) {
        Q_EMIT q->si_deviceUpdate(*device);
    }
}

// A device is known by its addresses. False when it is new and there are too many already.
bool ZelkoUDPListener::Private::remember(const ZELKO_AvailableDevice& device)
{
    const auto known = std::find_if(devices.begin(), devices.end(), [&device](const ZELKO_AvailableDevice& other) {
        return haveAddressInCommon(device, other);
    });
    if (known != devices.end()) {
        *known = device;
    } else if (devices.size() < maximumDevices) {
        devices.push_back(device);
    } else {
        return false;
    }
    return true;
}

ZelkoUDPListener::ZelkoUDPListener(QObject* parent, unsigned short port)
    : IAvailableDeviceListener(parent)
    , d(std::make_unique<Private>(this))
{
    d->nextTurn.setSingleShot(true);
    connect(&d->nextTurn, &QTimer::timeout, this, [this] { d->readSome(); });
    connect(&d->socket, &QUdpSocket::readyRead, this, [this] { d->readSome(); });
    if (!d->socket.bind(QHostAddress::Any, port, QUdpSocket::ShareAddress | QUdpSocket::ReuseAddressHint)) {
        traceWarning(QStringLiteral("ZelkoUDPListener: port %1: %2").arg(port).arg(d->socket.errorString()), __LINE__);
    }
}

ZelkoUDPListener::~ZelkoUDPListener() = default;

bool ZelkoUDPListener::listening() const
{
    return d->socket.state() == QAbstractSocket::BoundState;
}

unsigned short ZelkoUDPListener::port() const
{
    return listening() ? d->socket.localPort() : 0;
}

// A slot may hear of further devices by an event loop of its own.
void ZelkoUDPListener::refresh()
{
    const std::vector<ZELKO_AvailableDevice> known = d->devices;
    for (const ZELKO_AvailableDevice& device : known) {
        Q_EMIT si_deviceUpdate(device);
    }
}

} // namespace ZelkoCommon
