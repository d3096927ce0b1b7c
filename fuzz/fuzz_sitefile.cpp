// Bytes as a site file: what is accepted can be given in code as well and holds what a site must hold; the rest is
// refused with a text.
#include "require.h"

#include <zelkobase/connection/zelkoconfiguration.h>

#include <algorithm>
#include <cstdint>

using ZelkoCommon::ZelkoConfiguration;

namespace {

void checkAccepted(const ZelkoConfiguration& site)
{
    require(!site.SubSystems().empty());
    ZelkoConfiguration byHand;
    for (const ZelkoConfiguration::SubSystem& subSystem : site.SubSystems()) {
        require(byHand.Find(subSystem.name) == nullptr);
        require(byHand.AddSubSystem(subSystem));
        require(ZelkoConfiguration::MakeRootPath(subSystem.name).count(u'/') == 2);
    }
    require(byHand.SetCurrentSubSystem(site.GetCurrentSubSystem()));
    require(byHand.SubSystems() == site.SubSystems());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    QString error;
    const std::optional<ZelkoConfiguration> site = ZelkoConfiguration::fromJson(bytes, &error);
    require(site.has_value() == error.isEmpty());
    if (site) {
        checkAccepted(*site);
    }
    return 0;
}
