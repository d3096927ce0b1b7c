#include <zelkobase/discovery/iavailabledevicelistener.h>

namespace ZelkoCommon {

IAvailableDeviceListener::IAvailableDeviceListener(QObject* parent)
    : QObject(parent)
{}

IAvailableDeviceListener::~IAvailableDeviceListener() = default;

} // namespace ZelkoCommon
