#include <widgetbase/legibletextdelegate_p.h>

#include <algorithm>
#include <cmath>

namespace {

constexpr double leastContrast = 4.5; // of normal text, by the accessibility guidelines of the web

double linear(double channel)
{
    return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

double luminance(const QColor& color)
{
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

bool isLegible(const QColor& text, const QColor& background)
{
    const auto [darker, lighter] = std::minmax({luminance(text), luminance(background)});
    return (lighter + 0.05) / (darker + 0.05) >= leastContrast;
}

QColor lightened(QColor text, const QColor& background)
{
    constexpr float step = 0.05F;
    while (!isLegible(text, background) && text.lightnessF() < 1) {
        text.setHslF(text.hslHueF(), text.hslSaturationF(), std::min(text.lightnessF() + step, 1.0F));
    }
    return text;
}

} // namespace

LegibleTextDelegate::LegibleTextDelegate(QObject* parent)
    : QStyledItemDelegate(parent)
{}

LegibleTextDelegate::~LegibleTextDelegate() = default;

QSize LegibleTextDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const
{
    constexpr QSize air(6, 6);
    return QStyledItemDelegate::sizeHint(option, index) + air;
}

void LegibleTextDelegate::initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const
{
    QStyledItemDelegate::initStyleOption(option, index);
    const QColor background = option->palette.color(QPalette::Base);
    if (index.data(Qt::ForegroundRole).isValid() && background.lightnessF() < 0.5F) {
        option->palette.setColor(QPalette::Text, lightened(option->palette.color(QPalette::Text), background));
    }
}
