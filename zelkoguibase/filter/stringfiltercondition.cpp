#include <zelkoguibase/filter/stringfiltercondition.h>

#include <zelkoguibase/filter/patternmatcher_p.h>

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

QRegExp storedExpression(const ZELKO_XML::StringFilter& filter)
{
    return QRegExp(filter.GetPattern(), filter.GetCaseSensitive() ? Qt::CaseSensitive : Qt::CaseInsensitive,
                   syntaxOfFile(filter.GetPatternSyntax()));
}

} // namespace

class StringFilterCondition::Private
{
public:
    /// False if that is the present expression.
    bool replace(const QRegExp& expression);

    QRegExp regExp;
    PatternMatcher matcher{regExp};
};

bool StringFilterCondition::Private::replace(const QRegExp& expression)
{
    if (expression == regExp) {
        return false;
    }
    regExp = expression;
    matcher = PatternMatcher(regExp);
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
        return d->matcher.isFoundIn(*static_cast<const QString*>(value.constData()));
    }
    return d->matcher.isFoundIn(value.toString());
}

bool StringFilterCondition::filterActive() const
{
    return enabled() && !d->regExp.isEmpty();
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
    if (d->replace(QRegExp(pattern, cs, syntax))) {
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
    changed = d->replace(storedExpression(source.GetStringFilter()));
    return true;
}

void StringFilterCondition::writeToXml(ZELKO_XML::FilterCondition& target) const
{
    ZELKO_XML::StringFilter filter;
    filter.SetPattern(ZELKO_XML::StringFilter::IsValidPattern(pattern()) ? pattern() : QString());
    filter.SetCaseSensitive(caseSensitive() == Qt::CaseSensitive);
    if (const std::optional<Syntax> syntax = syntaxForFile(patternSyntax())) {
        filter.SetPatternSyntax(*syntax);
    }
    target.SetStringFilter(std::move(filter));
}

} // namespace ZelkoGUI::Filter
