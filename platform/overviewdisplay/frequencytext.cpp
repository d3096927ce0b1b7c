#include <overviewdisplay/frequencytext_p.h>

#include <algorithm>
#include <array>
#include <cmath>

namespace SPECTRUM_OVERVIEW {
namespace {

constexpr std::array units{"Hz", "kHz", "MHz", "GHz", "THz"};

// Of a thousandth of a hertz no receiver knows anything.
constexpr int mostDigitsBelowHertz = 3;

} // namespace

FrequencyText::FrequencyText(double low, double high)
{
    double farthest = std::max(std::abs(low), std::abs(high));
    while (farthest >= 1000 && m_thousands + 1 < static_cast<int>(units.size())) {
        farthest /= 1000;
        ++m_thousands;
    }
}

QString FrequencyText::unit() const
{
    return QLatin1String(units[static_cast<std::size_t>(m_thousands)]);
}

// A power of ten that comes out a little too large must not cost another digit.
QString FrequencyText::number(double hertz, double distance) const
{
    if (!std::isfinite(hertz)) {
        return {};
    }
    const double scale = std::pow(1000.0, m_thousands);
    const double fine = distance > 0 ? std::ceil(std::log10(scale / distance) - 1e-9) : 0;
    const auto digits = static_cast<int>(std::clamp(fine, 0.0, m_thousands * 3.0 + mostDigitsBelowHertz));
    const QString number = QString::number(hertz / scale, 'f', digits);
    return number.toDouble() == 0 ? QString::number(0.0, 'f', digits) : number;
}

QString FrequencyText::text(double hertz, double distance) const
{
    const QString digits = number(hertz, distance);
    return digits.isEmpty() ? digits : digits + QLatin1Char(' ') + unit();
}

} // namespace SPECTRUM_OVERVIEW
