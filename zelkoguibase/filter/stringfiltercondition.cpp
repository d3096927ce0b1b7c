#include <zelkoguibase/filter/stringfiltercondition.h>

#include "patterncomplexity_p.h"
#include "patternmatcher_p.h"

#include <zelkobase/data/filtercondition.h>

#include <optional>

namespace ZelkoGUI::Filter {

using Syntax = ZELKO_XML::StringFilter::PatternSyntax;

namespace {

QRegExp::PatternSyntax syntaxOfFile(Syntax syntax)
{
    switch (syntax) {
    case Syntax::RegularExpression:
        return QRegExp::RegExp;
    case Syntax::Wildcard:
        return QRegExp::Wildcard;
    default:
        return QRegExp::FixedString;
    }
}

std::optional<Syntax> syntaxForFile(QRegExp::PatternSyntax syntax)
{
    switch (syntax) {
    case QRegExp::RegExp:
        return Syntax::RegularExpression;
    case QRegExp::Wildcard:
        return Syntax::Wildcard;
    case QRegExp::FixedString:
        return Syntax::FixedString;
    default:
        return std::nullopt;
    }
}

} // namespace

class StringFilterCondition::Private
{
public:
    /// False if that is the present expression.
    bool replace(const QString& pattern, Qt::CaseSensitivity cs, QRegExp::PatternSyntax syntax);

    bool isFoundIn(const QString& text) const { return matcher && matcher->isFoundIn(text); }

    QRegExp regExp;
    std::optional<PatternMatcher> matcher = PatternMatcher(regExp); // none where the pattern is too complex
};

// Setters, unlike constructors and copies, leave an expression a text until something is matched.
bool StringFilterCondition::Private::replace(const QString& pattern, Qt::CaseSensitivity cs,
                                             QRegExp::PatternSyntax syntax)
{
    QRegExp expression;
    expression.setPattern(pattern);
    expression.setCaseSensitivity(cs);
    expression.setPatternSyntax(syntax);
    if (expression == regExp) {
        return false;
    }
    regExp.swap(expression);
    matcher.reset();
    if (!Filter::isTooComplex(pattern, syntax)) {
        matcher.emplace(regExp);
    }
    return true;
}

StringFilterCondition::StringFilterCondition(int column, int role, QObject* parent)
    : AbstractFilterCondition(column, role, QStringLiteral("StringFilter"), parent)
    , d(std::make_unique<Private>())
{}

StringFilterCondition::~StringFilterCondition() = default;

bool StringFilterCondition::passes(const QVariant& value) const
{
    if (!enabled()) {
        return true;
    }
    // Most cells are texts, which need not be copied.
    if (value.metaType() == QMetaType::fromType<QString>()) {
        return d->isFoundIn(*static_cast<const QString*>(value.constData()));
    }
    return d->isFoundIn(value.toString());
}

bool StringFilterCondition::filterActive() const
{
    return enabled() && !d->regExp.isEmpty();
}

bool StringFilterCondition::isTooComplex(const ZELKO_XML::StringFilter& filter)
{
    return Filter::isTooComplex(filter.GetPattern(), syntaxOfFile(filter.GetPatternSyntax()));
}

QString StringFilterCondition::pattern() const
{
    return d->regExp.pattern();
}

Qt::CaseSensitivity StringFilterCondition::caseSensitive() const
{
    return d->regExp.caseSensitivity();
}

QRegExp::PatternSyntax StringFilterCondition::patternSyntax() const
{
    return d->regExp.patternSyntax();
}

void StringFilterCondition::setRegExp(const QString& pattern, Qt::CaseSensitivity cs, QRegExp::PatternSyntax syntax)
{
    if (d->replace(pattern, cs, syntax)) {
        contentChanged();
    }
}

void StringFilterCondition::setPattern(const QString& pattern)
{
    setRegExp(pattern, caseSensitive(), patternSyntax());
}

void StringFilterCondition::setCaseSensitivity(const Qt::CaseSensitivity& cs)
{
    setRegExp(pattern(), cs, patternSyntax());
}

void StringFilterCondition::setPatternSyntax(const QRegExp::PatternSyntax& syntax)
{
    setRegExp(pattern(), caseSensitive(), syntax);
}

bool StringFilterCondition::readFromXml(const ZELKO_XML::FilterCondition& source, bool& changed)
{
    if (!source.IsStringFilterSet()) {
        return false;
    }
    const ZELKO_XML::StringFilter& filter = source.GetStringFilter();
    changed = d->replace(filter.GetPattern(), filter.GetCaseSensitive() ? Qt::CaseSensitive : Qt::CaseInsensitive,
                         syntaxOfFile(filter.GetPatternSyntax()));
    return true;
}

void StringFilterCondition::writeToXml(ZELKO_XML::FilterCondition& target) const
{
    ZELKO_XML::StringFilter filter;
    const bool canBeKept = d->matcher && ZELKO_XML::StringFilter::IsValidPattern(pattern());
    filter.SetPattern(canBeKept ? pattern() : QString());
    filter.SetCaseSensitive(caseSensitive() == Qt::CaseSensitive);
    if (const std::optional<Syntax> syntax = syntaxForFile(patternSyntax())) {
        filter.SetPatternSyntax(*syntax);
    }
    target.SetStringFilter(std::move(filter));
}

} // namespace ZelkoGUI::Filter
