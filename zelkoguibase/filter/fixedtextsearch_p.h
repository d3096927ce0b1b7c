#pragma once

#include <QString>

#include <array>
#include <optional>
#include <vector>

namespace ZelkoGUI::Filter {

/// The search for a fixed text in many short ones, several places at a time. Answers as QRegExp does with FixedString.
class FixedTextSearch
{
public:
    /// Nothing for an empty text, and for one whose characters QRegExp compares in a way of its own: without regard to
    /// case it does not find a dotted capital I, and not all pairs of surrogates.
    static std::optional<FixedTextSearch> prepare(const QString& wanted, Qt::CaseSensitivity cs);

    /// Whether the text stands anywhere in `text`. Allocates nothing.
    bool isIn(QStringView text) const;

private:
    /// The code units that count as the same; where there are fewer of them, some stand there twice.
    using Choice = std::array<char16_t, 4>;

    static constexpr qsizetype blockSize = 8;
    using Block = quint16 __attribute__((vector_size(blockSize * sizeof(quint16))));
    using BlockChoice = std::array<Block, 4>;

    explicit FixedTextSearch(std::vector<Choice> wanted);

    static std::optional<Choice> choiceFor(QChar c, Qt::CaseSensitivity cs);
    static bool isOneOf(const Choice& choice, char16_t unit);
    static BlockChoice spread(const Choice& choice);

    bool standsAt(const char16_t* place) const;
    bool standsAtOneOf(const char16_t* place, qsizetype places) const;
    bool standsInBlock(const char16_t* place) const;
    bool canStandInBlock(const char16_t* place) const;

    std::vector<Choice> m_wanted;
    BlockChoice m_first;
    BlockChoice m_last;
};

} // namespace ZelkoGUI::Filter
