#include "patterncomplexity_p.h"

#include <algorithm>
#include <limits>

namespace ZelkoGUI::Filter {
namespace {

constexpr double mostSteps = 100'000;
constexpr int deepestBracket = 100;
constexpr int mostRepetitions = 1024; // for more than these the pattern is no expression
constexpr int endless = std::numeric_limits<int>::max();

// What a piece of a pattern comes to, as QRegExp builds it: the characters with which it can begin and those with which
// it can end are what neighbours are linked with. Counted in floating point, which does not overflow on the way.
struct Piece
{
    double firsts = 0;
    double lasts = 0;
    bool canBeEmpty = true;
    double steps = 0;

    bool isTooLarge() const { return steps > mostSteps; }
};

Piece oneCharacter(qsizetype spelledIn)
{
    return {1, 1, false, static_cast<double>(spelledIn)};
}

Piece assertion(double steps)
{
    return {0, 0, true, steps};
}

Piece inSequence(const Piece& a, const Piece& b)
{
    return {a.firsts + (a.canBeEmpty ? b.firsts : 0), b.lasts + (b.canBeEmpty ? a.lasts : 0),
            a.canBeEmpty && b.canBeEmpty, a.steps + b.steps + a.lasts * b.firsts};
}

Piece eitherOf(const Piece& a, const Piece& b)
{
    return {a.firsts + b.firsts, a.lasts + b.lasts, a.canBeEmpty || b.canBeEmpty, a.steps + b.steps};
}

Piece endlessly(const Piece& a)
{
    return {a.firsts, a.lasts, a.canBeEmpty, a.steps + a.lasts * a.firsts};
}

Piece orNothing(Piece a)
{
    a.canBeEmpty = true;
    return a;
}

// The copies that may be missing are nested, each within the one before, and stand in front.
Piece repeated(const Piece& a, int least, int most)
{
    Piece last = most == endless ? endlessly(a) : a;
    last = least == 0 ? orNothing(last) : last;
    const int needed = std::max(least - 1, 0);
    const int optional = most == endless ? 0 : std::max(most - needed - 1, 0);
    Piece copies;
    for (int i = 0; i < optional && !copies.isTooLarge(); ++i) {
        copies = orNothing(inSequence(a, copies));
    }
    for (int i = 0; i < needed && !copies.isTooLarge(); ++i) {
        copies = inSequence(a, copies);
    }
    return inSequence(copies, last);
}

/// Reads a regular expression as QRegExp does. What is wrong with one is not its business: QRegExp stops there.
class ExpressionReader
{
public:
    explicit ExpressionReader(QStringView text)
        : m_text(text)
    {}

    bool isTooComplex() { return choice().isTooLarge() || m_isTooDeep; }

private:
    Piece choice();
    Piece sequence();
    Piece repetition();
    Piece atom();
    Piece bracket();
    Piece escape();
    Piece characterClass();
    int number(int otherwise);
    void skipDigits(qsizetype most, int base);

    bool atEnd() const { return m_at >= m_text.size() || m_isTooDeep; }
    bool at(char16_t c) const { return !atEnd() && m_text[m_at] == c; }
    bool atAnyOf(QStringView set) const { return !atEnd() && set.contains(m_text[m_at]); }
    bool skip(QStringView text)
    {
        const bool found = m_text.mid(m_at).startsWith(text);
        m_at += found ? text.size() : 0;
        return found;
    }

    const QStringView m_text;
    qsizetype m_at = 0;
    int m_depth = 0;
    bool m_isTooDeep = false;
};

Piece ExpressionReader::choice()
{
    Piece all = sequence();
    while (skip(u"|")) {
        all = eitherOf(all, sequence());
    }
    return all;
}

Piece ExpressionReader::sequence()
{
    Piece all;
    while (!atEnd() && !atAnyOf(u"|)")) {
        all = inSequence(all, repetition());
    }
    return all;
}

Piece ExpressionReader::repetition()
{
    const Piece repeatedPiece = atom();
    if (skip(u"?")) {
        return orNothing(repeatedPiece);
    }
    if (skip(u"*")) {
        return repeated(repeatedPiece, 0, endless);
    }
    if (skip(u"+")) {
        return repeated(repeatedPiece, 1, endless);
    }
    if (!skip(u"{")) {
        return repeatedPiece;
    }
    const int least = number(0);
    const int most = skip(u",") ? number(endless) : least;
    skip(u"}");
    return repeated(repeatedPiece, least, most);
}

Piece ExpressionReader::atom()
{
    if (at(u'(')) {
        return bracket();
    }
    if (at(u'[')) {
        return characterClass();
    }
    if (at(u'\\')) {
        return escape();
    }
    const bool isAssertion = atAnyOf(u"^$");
    ++m_at;
    return isAssertion ? assertion(1) : oneCharacter(1);
}

Piece ExpressionReader::bracket()
{
    m_isTooDeep = ++m_depth > deepestBracket || m_isTooDeep;
    const qsizetype start = m_at;
    const bool looksAhead = skip(u"(?=") || skip(u"(?!");
    if (!looksAhead && !skip(u"(?:")) {
        skip(u"(");
    }
    const qsizetype opening = m_at - start;
    Piece inner = choice();
    skip(u")");
    --m_depth;
    inner.steps += static_cast<double>(opening) + 1;
    return looksAhead ? assertion(inner.steps) : inner;
}

Piece ExpressionReader::escape()
{
    const qsizetype start = m_at;
    ++m_at;
    const bool isAssertion = atAnyOf(u"bB");
    if (skip(u"x")) {
        skipDigits(4, 16);
    } else if (skip(u"0")) {
        skipDigits(3, 8);
    } else if (atAnyOf(u"123456789")) {
        skipDigits(m_text.size(), 10);
    } else {
        ++m_at;
    }
    const qsizetype length = m_at - start;
    return isAssertion ? assertion(static_cast<double>(length)) : oneCharacter(length);
}

// The first character stands for itself, also where it is a closing bracket.
Piece ExpressionReader::characterClass()
{
    const qsizetype start = m_at;
    if (!skip(u"[^")) {
        skip(u"[");
    }
    do {
        m_at += at(u'\\') ? 2 : 1;
    } while (!atEnd() && !at(u']'));
    skip(u"]");
    return oneCharacter(m_at - start);
}

int ExpressionReader::number(int otherwise)
{
    const qsizetype start = m_at;
    skipDigits(m_text.size(), 10);
    if (m_at == start) {
        return otherwise;
    }
    bool isNumber = false;
    const int value = m_text.sliced(start, m_at - start).toInt(&isNumber);
    return isNumber ? std::min(value, mostRepetitions) : mostRepetitions;
}

void ExpressionReader::skipDigits(qsizetype most, int base)
{
    const qsizetype end = std::min(m_text.size(), m_at + most);
    const auto isDigit = [base](QChar c) {
        bool is = false;
        QString(c).toInt(&is, base);
        return is;
    };
    while (m_at < end && isDigit(m_text[m_at])) {
        ++m_at;
    }
}

// A star is any character, endlessly or not at all; all the rest stands for one character, or helps to spell it.
bool isWildcardTooComplex(QStringView pattern)
{
    const Piece star = repeated(oneCharacter(1), 0, endless);
    Piece all;
    for (const QChar c : pattern) {
        all = inSequence(all, c == u'*' ? star : oneCharacter(1));
    }
    return all.isTooLarge();
}

} // namespace

bool isTooComplex(const QString& pattern, QRegExp::PatternSyntax syntax)
{
    switch (syntax) {
    case QRegExp::FixedString:
        return false;
    case QRegExp::Wildcard:
    case QRegExp::WildcardUnix:
        return isWildcardTooComplex(pattern);
    default:
        return ExpressionReader(pattern).isTooComplex();
    }
}

} // namespace ZelkoGUI::Filter
