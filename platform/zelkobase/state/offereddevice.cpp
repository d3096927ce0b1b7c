#include <zelkobase/state/offereddevice.h>

#include <valuecore/tree.h>
#include <valuecore/valueselection.h>
#include <zelkobase/data/zelko_availabledevice.h>
#include <zelkobase/names/valuenames.h>

namespace ZelkoCommon {

// Devices of this type hold no records of their own.
bool isOfferedDevice(const QString& devicePath)
{
    using Type = ZELKO_XML::ZELKO_AvailableDevice::DeviceType;
    const auto* const type =
        Tree::Instance()->Find<ValueSelection>(zelko::names::adminPath(devicePath, zelko::names::deviceType));
    return !type || type->GetCurrentKey() != static_cast<int>(Type::QX310);
}

} // namespace ZelkoCommon
