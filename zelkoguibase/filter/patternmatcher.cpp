#include "patternmatcher_p.h"

namespace ZelkoGUI::Filter {

static std::optional<FixedTextSearch> fixedTextOf(const QRegExp& expression)
{
    return expression.patternSyntax() == QRegExp::FixedString
               ? FixedTextSearch::prepare(expression.pattern(), expression.caseSensitivity())
               : std::nullopt;
}

PatternMatcher::PatternMatcher(const QRegExp& expression)
    : m_expression(expression)
    , m_fixedText(fixedTextOf(expression))
{}

bool PatternMatcher::isFoundIn(const QString& text) const
{
    if (m_fixedText) {
        return m_fixedText->isIn(text);
    }
    return m_expression.isEmpty() || m_expression.containedIn(text);
}

} // namespace ZelkoGUI::Filter
