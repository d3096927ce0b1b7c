#include <console/demo/scenes.h>

#include <console/demo/scenepainter.h>

#include <algorithm>
#include <array>

namespace ZelkoConsole {
namespace {

struct Capability
{
    const char* name;
    void (*paint)(ScenePainter& painter);
};

constexpr std::array capabilities{
    Capability{"spine", paintSpineScenes},       Capability{"actions", paintActionScenes},
    Capability{"platform", paintPlatformScenes}, Capability{"list", paintListScenes},
    Capability{"replay", paintReplayScenes},     Capability{"windows", paintRecordWindowScenes}};

} // namespace

QStringList paintedCapabilities()
{
    QStringList names;
    for (const Capability& capability : capabilities) {
        names << QLatin1String(capability.name);
    }
    return names;
}

QStringList paintScenes(const QString& capability, const QString& folder, const QString& variant)
{
    const auto found = std::find_if(capabilities.begin(), capabilities.end(),
                                    [&](const Capability& other) { return capability == QLatin1String(other.name); });
    if (found == capabilities.end()) {
        return {};
    }
    ScenePainter painter(folder, variant);
    found->paint(painter);
    return painter.files();
}

} // namespace ZelkoConsole
