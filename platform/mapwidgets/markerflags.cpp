#include <mapwidgets/markerflags_p.h>

#include <algorithm>
#include <cmath>

namespace {

constexpr double clothWithoutText = 8;
constexpr double longestCloth = 180;
constexpr double leastRoomForText = 26;

} // namespace

MarkerFlags::MarkerFlags(const Axis& axis)
    : m_axis(axis)
    , m_columns(static_cast<std::size_t>(std::max(std::round((axis.right - axis.left) / axis.pixel), 0.0)) + 1)
{}

void MarkerFlags::add(int number, double place, bool isCurrent)
{
    const double index = std::round((place - m_axis.left) / m_axis.pixel);
    if (!(index >= 0 && index < static_cast<double>(m_columns.size()))) {
        return;
    }
    Column& column = m_columns[static_cast<std::size_t>(index)];
    ++column.count;
    if (!column.hasCurrent) {
        column.number = number;
        column.hasCurrent = isCurrent;
    }
}

QString MarkerFlags::textOf(const MarkerFlag& flag, const QString& name)
{
    return flag.count > 1 ? QStringLiteral("%1 +%2").arg(name, QString::number(flag.count - 1)) : name;
}

std::vector<MarkerFlag> MarkerFlags::poles() const
{
    std::vector<MarkerFlag> flags;
    for (std::size_t index = 0; index < m_columns.size(); ++index) {
        if (m_columns[index].count > 0) {
            const double place = m_axis.left + static_cast<double>(index) * m_axis.pixel;
            flags.push_back({m_columns[index].number, m_columns[index].count, place, place, place, {}, false});
        }
    }
    return flags;
}

// A short cloth tells that there is a flag, also where its neighbour leaves no room for a text.
void MarkerFlags::hang(MarkerFlag& flag, double limit, const Texts& texts, const QString& name) const
{
    const double room = limit - flag.place;
    const QString text = textOf(flag, name);
    flag.isCrowded = room < leastRoomForText;
    if (flag.isCrowded || text.isEmpty()) {
        flag.right = flag.place + std::min(room, clothWithoutText);
        return;
    }
    flag.text = texts.elided(text, std::min(room, longestCloth) - 2 * padding);
    flag.right = flag.place + texts.width(flag.text) + 2 * padding;
}

// Where its text would leave the axis, and there is more room before it than behind it.
void MarkerFlags::flipLast(std::vector<MarkerFlag>& flags, const Texts& texts, const QString& name) const
{
    MarkerFlag& last = flags.back();
    const double behind = m_axis.right + 1 - last.place;
    const double before = (last.place - (flags.size() > 1 ? flags[flags.size() - 2].place : m_axis.left)) / 2;
    const QString text = textOf(last, name);
    const double wanted = std::min(texts.width(text) + 2 * padding, longestCloth);
    if (text.isEmpty() || wanted <= behind || before <= behind || before < leastRoomForText) {
        return;
    }
    last.text = texts.elided(text, std::min(before, wanted) - 2 * padding);
    last.right = last.place + m_axis.pixel;
    last.left = last.right - texts.width(last.text) - 2 * padding;
}

// A pixel stays free between neighbours, so that they can be told apart.
std::vector<MarkerFlag> MarkerFlags::layOut(const Texts& texts, const std::function<QString(int)>& nameOf) const
{
    std::vector<MarkerFlag> flags = poles();
    if (flags.empty()) {
        return flags;
    }
    flipLast(flags, texts, nameOf(flags.back().number));
    double limit = m_axis.right + 1;
    for (std::size_t index = flags.size(); index-- > 0;) {
        MarkerFlag& flag = flags[index];
        if (flag.left == flag.place) {
            const double end = std::max(limit, flag.place + m_axis.pixel);
            hang(flag, end, texts, end - flag.place < leastRoomForText ? QString() : nameOf(flag.number));
        }
        limit = std::min(limit, flag.left - m_axis.pixel);
    }
    return flags;
}
