#include <overviewdisplay/levelcolours.h>

#include <mapwidgets/axiscolours.h>
#include <overviewdisplay/overviewlevels.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

namespace SPECTRUM_OVERVIEW {
namespace {

constexpr std::size_t steps = 256;

// A colour in a space in which distances are those that people see: lightness, and two axes of hue.
struct Seen
{
    double light = 0;
    double a = 0;
    double b = 0;
};

Seen seen(double light, double chroma, double degrees)
{
    const double angle = degrees * std::numbers::pi / 180;
    return {light, chroma * std::cos(angle), chroma * std::sin(angle)};
}

// From a night sky over sea and leaves to light sand: hues that bookmarks, selections and cross-hairs do not have.
const std::array controlPoints{seen(0.13, 0.05, 275),  seen(0.29, 0.115, 264), seen(0.45, 0.088, 235),
                               seen(0.60, 0.095, 193), seen(0.74, 0.13, 155),  seen(0.87, 0.155, 118),
                               seen(0.975, 0.07, 104)};

Seen between(const Seen& from, const Seen& to, double share)
{
    return {std::lerp(from.light, to.light, share), std::lerp(from.a, to.a, share), std::lerp(from.b, to.b, share)};
}

double distance(const Seen& one, const Seen& other)
{
    return std::hypot(one.light - other.light, one.a - other.a, one.b - other.b);
}

int channel(double linear)
{
    const double part = std::clamp(linear, 0.0, 1.0);
    const double shown = part <= 0.0031308 ? part * 12.92 : 1.055 * std::pow(part, 1 / 2.4) - 0.055;
    return static_cast<int>(std::lround(shown * 255));
}

// The matrices of the colour space Oklab.
QRgb shown(const Seen& color)
{
    const double l = std::pow(color.light + 0.3963377774 * color.a + 0.2158037573 * color.b, 3);
    const double m = std::pow(color.light - 0.1055613458 * color.a - 0.0638541728 * color.b, 3);
    const double s = std::pow(color.light - 0.0894841775 * color.a - 1.2914855480 * color.b, 3);
    return qRgb(channel(4.0767416621 * l - 3.3077115913 * m + 0.2309699292 * s),
                channel(-1.2684380046 * l + 2.6097574011 * m - 0.3413193965 * s),
                channel(-0.0041960863 * l - 0.7034186147 * m + 1.7076147010 * s));
}

// How far each control point is from the first one, along the way over those between.
std::array<double, controlPoints.size()> waysToPoints()
{
    std::array<double, controlPoints.size()> ways{};
    for (std::size_t i = 1; i < ways.size(); ++i) {
        ways[i] = ways[i - 1] + distance(controlPoints[i - 1], controlPoints[i]);
    }
    return ways;
}

std::array<QRgb, steps> allColours()
{
    const auto ways = waysToPoints();
    std::array<QRgb, steps> colours{};
    for (std::size_t step = 0; step < steps; ++step) {
        const double way = ways.back() * static_cast<double>(step) / (steps - 1);
        std::size_t i = 1;
        while (i + 1 < ways.size() && ways[i] < way) {
            ++i;
        }
        const double share = (way - ways[i - 1]) / (ways[i] - ways[i - 1]);
        colours[step] = shown(between(controlPoints[i - 1], controlPoints[i], share));
    }
    return colours;
}

} // namespace

LevelColours::LevelColours(double lowest, double highest, QRgb missing)
    : m_lowest(lowest)
    , m_highest(highest)
    , m_missing(missing)
    , m_colours(65'536)
{
    for (int level = lowestNumber; level < -lowestNumber; ++level) {
        const double share = (level / 100.0 - lowest) / (highest - lowest);
        m_colours[static_cast<std::size_t>(level - lowestNumber)] = at(share);
    }
    m_colours[static_cast<std::size_t>(OverviewLevels::noLevel - lowestNumber)] = missing;
}

QRgb LevelColours::at(double share)
{
    static const std::array<QRgb, steps> colours = allColours();
    const double held = share > 0 ? std::min(share, 1.0) : 0;
    return colours[static_cast<std::size_t>(std::lround(held * (steps - 1)))];
}

QColor LevelColours::missingIn(const QPalette& palette)
{
    return axiscolours::isDark(palette) ? QColor(0x5A, 0x5C, 0x60) : QColor(0xC6, 0xC8, 0xCC);
}

} // namespace SPECTRUM_OVERVIEW
