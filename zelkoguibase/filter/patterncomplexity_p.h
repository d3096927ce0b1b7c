#pragma once

#include <QRegExp>

namespace ZelkoGUI::Filter {

/// Whether QRegExp would need too long, too much memory, or too deep a stack to make an automaton of a pattern, before
/// it has looked at any text. A repetition that is counted is a copy of what it repeats, so a short pattern can stand
/// for millions of states: `((a{1,50}){1,50}){1,50}`.
///
/// What can be borne is 100,000 steps, some ten milliseconds, and brackets in brackets 100 deep. A step is a character
/// of the pattern with all repetitions written out, or a way from one of them to one that may follow. Plain texts of
/// any length that can be typed stay below, and so do choices between a few hundred words, however often repeated. No
/// fixed string is too complex.
bool isTooComplex(const QString& pattern, QRegExp::PatternSyntax syntax);

} // namespace ZelkoGUI::Filter
