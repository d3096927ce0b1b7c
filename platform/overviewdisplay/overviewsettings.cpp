#include "overviewsettings_p.h"

#include <vornappstartup/cfgcenter.h>

#include <algorithm>

namespace SPECTRUM_OVERVIEW {

using ZelkoDataTypes::eFFT_Window;

namespace {

constexpr QLatin1String groupName("SpectrumOverview");
constexpr QLatin1String fftLengthKey("FftLength");
constexpr QLatin1String windowKey("Window");
constexpr QLatin1String lineCountKey("Lines");
constexpr QLatin1String automaticLevelsKey("AutomaticLevels");
constexpr QLatin1String lowestLevelKey("LowestLevel");
constexpr QLatin1String highestLevelKey("HighestLevel");
constexpr QLatin1String pictureFolderKey("PictureFolder");
constexpr QLatin1String geometryKey("Geometry");

// Null where nothing is kept under the path, or nothing can be.
std::unique_ptr<ICfg> openGroup(const QString& cfgPath, ICfg::Access access)
{
    ICfg* const user = CfgCenter::GetAppCfg(ICfg::UserView);
    if (cfgPath.isEmpty()) {
        return user->OpenGroup(groupName, access);
    }
    const std::unique_ptr<ICfg> group = user->OpenGroup(cfgPath, access);
    return group ? group->OpenGroup(groupName, access) : nullptr;
}

template <typename T>
T chosen(const QList<T>& choices, int number, T otherwise)
{
    const auto choice = static_cast<T>(number);
    return choices.contains(choice) ? choice : otherwise;
}

void readLevels(const ICfg& group, OverviewSettings& settings)
{
    const int lowest = group.GetInteger(lowestLevelKey, settings.lowestLevel);
    const int highest = group.GetInteger(highestLevelKey, settings.highestLevel);
    if (lowest >= OverviewSettings::LowestLevel && lowest < highest && highest <= OverviewSettings::HighestLevel) {
        settings.lowestLevel = lowest;
        settings.highestLevel = highest;
    }
}

} // namespace

QList<quint32> OverviewSettings::fftLengths()
{
    QList<quint32> lengths;
    for (quint32 length = ShortestFft; length <= LongestFft; length *= 2) {
        lengths.append(length);
    }
    return lengths;
}

QList<eFFT_Window> OverviewSettings::windows()
{
    return {eFFT_Window::Rectangular, eFFT_Window::Hann, eFFT_Window::Hamming, eFFT_Window::Blackman,
            eFFT_Window::FlatTop};
}

QList<int> OverviewSettings::lineCounts()
{
    return {0, 256, 512, 1'024, 2'048, 4'096, 10'000};
}

OverviewSettings OverviewSettings::read(const QString& cfgPath)
{
    OverviewSettings settings;
    const auto group = openGroup(cfgPath, ICfg::Access::Read);
    if (!group) {
        return settings;
    }
    settings.fftLength = chosen(fftLengths(), group->GetInteger(fftLengthKey, 0), settings.fftLength);
    settings.window = chosen(windows(), group->GetInteger(windowKey, -1), settings.window);
    settings.lineCount = chosen(lineCounts(), group->GetInteger(lineCountKey, -1), settings.lineCount);
    settings.hasAutomaticLevels = group->GetBool(automaticLevelsKey, settings.hasAutomaticLevels);
    readLevels(*group, settings);
    settings.pictureFolder = group->GetString(pictureFolderKey, QString());
    settings.geometry = QByteArray::fromBase64(group->GetString(geometryKey, QString()).toLatin1());
    return settings;
}

bool OverviewSettings::write(const QString& cfgPath) const
{
    const auto group = openGroup(cfgPath, ICfg::Access::Write);
    if (!group) {
        return false;
    }
    group->SetInteger(fftLengthKey, static_cast<int>(fftLength));
    group->SetInteger(windowKey, static_cast<int>(window));
    group->SetInteger(lineCountKey, lineCount);
    group->SetBool(automaticLevelsKey, hasAutomaticLevels);
    group->SetInteger(lowestLevelKey, lowestLevel);
    group->SetInteger(highestLevelKey, highestLevel);
    group->SetString(pictureFolderKey, pictureFolder);
    group->SetString(geometryKey, QString::fromLatin1(geometry.toBase64()));
    return group->Flush();
}

} // namespace SPECTRUM_OVERVIEW
