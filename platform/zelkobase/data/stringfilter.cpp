#include <zelkobase/data/stringfilter.h>

#include <reportcore/fieldtable.h>

#include <algorithm>

namespace ZELKO_XML {

RG_DEFINE_ENUM(StringFilter, PatternSyntax, ZELKO_PATTERN_SYNTAXES)
RG_DEFINE_OBJECT(StringFilter, ZELKO_STRINGFILTER_FIELDS, Refuse)

// A carriage return is left out because readers of XML turn it into a line feed.
static bool isPlain(QChar c)
{
    return (c >= u' ' && c < u'\uFFFE') || c == u'\t' || c == u'\n';
}

bool StringFilter::IsValidPattern(const QString& pattern)
{
    return pattern.size() <= longestPattern && pattern.isValidUtf16() &&
           std::all_of(pattern.begin(), pattern.end(), isPlain);
}

QString StringFilter::contentProblem() const
{
    return IsValidPattern(m_Pattern) ? QString() : QStringLiteral("Pattern is too long or no text");
}

} // namespace ZELKO_XML
