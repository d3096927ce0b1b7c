#include <zelkoguibase/filter/patternmatcher_p.h>

namespace ZelkoGUI::Filter {

PatternMatcher::PatternMatcher(const QRegExp& expression)
    : m_expression(expression)
{}

bool PatternMatcher::isFoundIn(const QString& text) const
{
    return m_expression.isEmpty() || m_expression.containedIn(text);
}

} // namespace ZelkoGUI::Filter
