#pragma once

#include <zelkobase/data/zelko_availabledevice.h>
#include <zelkobase/discovery/zelkobasediscovery_export.h>

#include <QObject>

namespace ZelkoCommon {

/// A source of announcements of recorder devices. GUI thread.
class ZELKOBASEDISCOVERY_EXPORT IAvailableDeviceListener : public QObject
{
    Q_OBJECT

public:
    explicit IAvailableDeviceListener(QObject* parent);
    ~IAvailableDeviceListener() override;

    /// Whether announcements can come in.
    virtual bool listening() const = 0;

    /// Announces again what is known, for somebody who has just connected.
    virtual void refresh() = 0;

Q_SIGNALS:
    /// A device has announced itself, for the first time or again.
    void si_deviceUpdate(ZELKO_XML::ZELKO_AvailableDevice device);
};

} // namespace ZelkoCommon
