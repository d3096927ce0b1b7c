#include <zelkobase/discovery/zelkoudplistener.h>

#include <zelkobase/discovery/announcement.h>

#include <observerbase/errorhandler.h>
#include <observerbase/trace.h>

#include <QDateTime>
#include <QNetworkDatagram>
#include <QPointer>
#include <QTimer>
#include <QUdpSocket>

#include <algorithm>
#include <vector>

namespace ZelkoCommon {

using ZELKO_XML::ZELKO_AvailableDevice;

namespace {

constexpr int datagramsPerTurn = 64;

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

struct KnownDevice
{
    ZELKO_AvailableDevice device;
    quint64 heard; // number of its last announcement
};

} // namespace

struct ZelkoUDPListener::Private
{
    explicit Private(ZelkoUDPListener* owner)
        : q(owner)
    {}

    void readSome();
    void hear(const QNetworkDatagram& datagram);
    void remember(const ZELKO_AvailableDevice& device);
    void forgetTheOldest();

    ZelkoUDPListener* const q;
    QUdpSocket socket;
    QTimer nextTurn;
    std::vector<KnownDevice> devices; // in the order of their first announcements
    quint64 announcements = 0;
};

void ZelkoUDPListener::Private::readSome()
{
    const QPointer<ZelkoUDPListener> alive(q);
    for (int i = 0; i < datagramsPerTurn && socket.hasPendingDatagrams(); ++i) {
        hear(socket.receiveDatagram(Announcement::MaximumSize + 1));
        if (!alive) {
            return;
        }
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
    remember(*device);
    Q_EMIT q->si_deviceUpdate(*device);
}

// A device is known by its addresses. One that has those of several takes the place of the first of them.
void ZelkoUDPListener::Private::remember(const ZELKO_AvailableDevice& device)
{
    const auto isSame = [&device](const KnownDevice& entry) { return haveAddressInCommon(device, entry.device); };
    const KnownDevice heardNow{device, ++announcements};
    const auto known = std::find_if(devices.begin(), devices.end(), isSame);
    if (known != devices.end()) {
        *known = heardNow;
        devices.erase(std::remove_if(known + 1, devices.end(), isSame), devices.end());
        return;
    }
    if (devices.size() == MaximumDevices) {
        forgetTheOldest();
    }
    devices.push_back(heardNow);
}

// A network has some dozens of recorder devices; who announces more is making them up, and must not keep true ones out.
void ZelkoUDPListener::Private::forgetTheOldest()
{
    devices.erase(std::min_element(devices.begin(), devices.end(),
                                   [](const KnownDevice& a, const KnownDevice& b) { return a.heard < b.heard; }));
}

ZelkoUDPListener::ZelkoUDPListener(QObject* parent, unsigned short port)
    : IAvailableDeviceListener(parent)
    , d(std::make_unique<Private>(this))
{
    d->nextTurn.setSingleShot(true);
    connect(&d->nextTurn, &QTimer::timeout, this, [this] { d->readSome(); });
    // Not read at once: a slot that deletes the listener would delete the socket amid its own signal.
    connect(&d->socket, &QUdpSocket::readyRead, this, [this] { d->nextTurn.start(); });
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
    const QPointer<ZelkoUDPListener> alive(this);
    const std::vector<KnownDevice> known = d->devices;
    for (const KnownDevice& entry : known) {
        if (alive) {
            Q_EMIT si_deviceUpdate(entry.device);
        }
    }
}

} // namespace ZelkoCommon
