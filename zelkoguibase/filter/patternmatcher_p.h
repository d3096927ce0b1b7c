#pragma once

#include "fixedtextsearch_p.h"

#include <QRegExp>

namespace ZelkoGUI::Filter {

/// Tells whether texts hold what a QRegExp matches, with the answers of `QRegExp::containedIn()`, but sooner where it
/// is a fixed string. The answers for an empty pattern are all yes.
class PatternMatcher
{
public:
    explicit PatternMatcher(const QRegExp& expression);

    bool isFoundIn(const QString& text) const;

private:
    QRegExp m_expression;
    std::optional<FixedTextSearch> m_fixedText;
};

} // namespace ZelkoGUI::Filter
