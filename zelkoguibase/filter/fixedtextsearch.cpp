#include "fixedtextsearch_p.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <unordered_map>

namespace ZelkoGUI::Filter {

namespace {

constexpr QChar dottedCapitalI = u'\u0130';

/// The code units that fold to another one, by that one.
using FoldedUnits = std::unordered_map<char16_t, std::vector<char16_t>>;

FoldedUnits readFoldedUnits()
{
    FoldedUnits units;
    for (unsigned int unit = 0; unit <= 0xFFFF; ++unit) {
        const QChar c(unit);
        if (c.toCaseFolded() != c) {
            units[c.toCaseFolded().unicode()].push_back(c.unicode());
        }
    }
    return units;
}

std::vector<char16_t> unitsThatFoldTo(char16_t folded)
{
    static const FoldedUnits all = readFoldedUnits();
    std::vector<char16_t> units{folded};
    if (const auto found = all.find(folded); found != all.end()) {
        units.insert(units.end(), found->second.begin(), found->second.end());
    }
    return units;
}

template <typename Block>
Block blockAt(const char16_t* place)
{
    Block block;
    std::memcpy(&block, place, sizeof block);
    return block;
}

template <typename Choice, typename Block>
auto isOneOf(const Choice& choice, Block units)
{
    return (units == choice[0]) | (units == choice[1]) | (units == choice[2]) | (units == choice[3]);
}

} // namespace

FixedTextSearch::FixedTextSearch(std::vector<Choice> wanted)
    : m_wanted(std::move(wanted))
    , m_first(spread(m_wanted.front()))
    , m_last(spread(m_wanted.back()))
{}

std::optional<FixedTextSearch> FixedTextSearch::prepare(const QString& wanted, Qt::CaseSensitivity cs)
{
    std::vector<Choice> choices;
    for (const QChar c : wanted) {
        const std::optional<Choice> choice = choiceFor(c, cs);
        if (!choice) {
            return std::nullopt;
        }
        choices.push_back(*choice);
    }
    return choices.empty() ? std::nullopt : std::optional(FixedTextSearch(std::move(choices)));
}

std::optional<FixedTextSearch::Choice> FixedTextSearch::choiceFor(QChar c, Qt::CaseSensitivity cs)
{
    Choice choice;
    choice.fill(c.unicode());
    if (cs == Qt::CaseSensitive) {
        return choice;
    }
    const std::vector<char16_t> units = unitsThatFoldTo(c.toCaseFolded().unicode());
    if (c.isSurrogate() || c == dottedCapitalI || units.size() > choice.size()) {
        return std::nullopt;
    }
    std::copy(units.begin(), units.end(), choice.begin());
    return choice;
}

FixedTextSearch::BlockChoice FixedTextSearch::spread(const Choice& choice)
{
    BlockChoice blocks;
    for (std::size_t i = 0; i < choice.size(); ++i) {
        blocks[i] = Block{} + static_cast<quint16>(choice[i]);
    }
    return blocks;
}

bool FixedTextSearch::isOneOf(const Choice& choice, char16_t unit)
{
    return std::find(choice.begin(), choice.end(), unit) != choice.end();
}

bool FixedTextSearch::isIn(QStringView text) const
{
    const char16_t* place = text.utf16();
    const qsizetype places = text.size() - static_cast<qsizetype>(m_wanted.size()) + 1;
    if (places < blockSize) {
        return standsAtOneOf(place, places);
    }
    // The last block overlaps the one before it, so that no place is left over.
    const char16_t* const lastBlock = place + (places - blockSize);
    while (place < lastBlock) {
        if (standsInBlock(place)) {
            return true;
        }
        place += blockSize;
    }
    return standsInBlock(lastBlock);
}

// The first and the last unit together rule out almost every place where the text is not.
bool FixedTextSearch::canStandInBlock(const char16_t* place) const
{
    const auto first = Filter::isOneOf(m_first, blockAt<Block>(place));
    const auto last = Filter::isOneOf(m_last, blockAt<Block>(place + m_wanted.size() - 1));
    const auto halves = std::bit_cast<std::array<quint64, 2>>(first & last);
    return (halves[0] | halves[1]) != 0;
}

bool FixedTextSearch::standsInBlock(const char16_t* place) const
{
    return canStandInBlock(place) && standsAtOneOf(place, blockSize);
}

bool FixedTextSearch::standsAtOneOf(const char16_t* place, qsizetype places) const
{
    for (qsizetype i = 0; i < places; ++i) {
        if (standsAt(place + i)) {
            return true;
        }
    }
    return false;
}

bool FixedTextSearch::standsAt(const char16_t* place) const
{
    return std::equal(m_wanted.begin(), m_wanted.end(), place,
                      [](const Choice& choice, char16_t unit) { return isOneOf(choice, unit); });
}

} // namespace ZelkoGUI::Filter
