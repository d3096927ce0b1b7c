#pragma once

#include <QRegExp>
#include <QString>

namespace ZelkoGUI::Filter {

/// Tells quickly whether texts hold what a QRegExp matches, with the answers of `QRegExp::containedIn()`; those for an
/// empty pattern are all yes.
class PatternMatcher
{
public:
    explicit PatternMatcher(const QRegExp& expression);

    bool isFoundIn(const QString& text) const;

private:
    QRegExp m_expression;
};

} // namespace ZelkoGUI::Filter
