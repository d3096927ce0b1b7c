#pragma once

#include <zelkobase/discovery/iavailabledevicelistener.h>

#include <cstddef>
#include <memory>

namespace ZelkoCommon {

/// Hears the announcements that devices send by UDP. Several listeners of one machine may share a port.
///
/// The moment of an announcement is that of its arrival here, whatever the clock of the device says. What is no
/// announcement is traced and passed over. Datagrams beyond what a turn of the event loop may take wait for the next
/// one, so that a flood of them does not hold the windows up. A slot may delete the listener.
class ZELKOBASEDISCOVERY_EXPORT ZelkoUDPListener final : public IAvailableDeviceListener
{
    Q_OBJECT

public:
    /// Devices that are remembered. Beyond them the one that was heard longest ago is forgotten.
    static constexpr std::size_t MaximumDevices = 1'000;

    /// Listens from here on, if the port can be had; with port 0 on one that the system chooses.
    ZelkoUDPListener(QObject* parent, unsigned short port);
    ~ZelkoUDPListener() override;

    bool listening() const override;

    /// Announces the devices again that were heard so far, each as it was heard last, in the order of their first
    /// announcements.
    void refresh() override;

    /// The port that is listened on; 0 when it is not listening.
    unsigned short port() const;

private:
    struct Private;
    const std::unique_ptr<Private> d;
};

} // namespace ZelkoCommon
