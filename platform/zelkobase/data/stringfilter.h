#pragma once

#include <zelkobase/data/zelkobasedata_export.h>

#include <reportcore/fielddeclaration.h>

#define ZELKO_PATTERN_SYNTAXES(ENUMERATOR)                                                                             \
    ENUMERATOR(FixedString, "Fixed String")                                                                            \
    ENUMERATOR(Wildcard, "Wildcard")                                                                                   \
    ENUMERATOR(RegularExpression, "Regular Expression")

#define ZELKO_STRINGFILTER_FIELDS(FIELD)                                                                               \
    FIELD(Required, QString, Pattern)                                                                                  \
    FIELD(Required, bool, CaseSensitive)                                                                               \
    FIELD(Defaulted, PatternSyntax, PatternSyntax)

namespace ZELKO_XML {

/// What a text is searched for. An empty pattern is found in every text. Check() fails for a pattern that is not valid.
class ZELKOBASEDATA_EXPORT StringFilter : public REPORTGENERATOR::RGObject
{
public:
    /// How the pattern is read. The numbers run against those of QRegExp.
    RG_ENUM(PatternSyntax, ZELKO_PATTERN_SYNTAXES)

    RG_OBJECT(StringFilter, ZELKO_STRINGFILTER_FIELDS)

public:
    /// The longest pattern in UTF-16 code units: what a line edit holds at most.
    static constexpr qsizetype longestPattern = 32767;

    /// Whether a pattern can be kept in a document, where any program that reads XML finds it as it was typed: it is
    /// not longer than `longestPattern`, and consists of whole characters that XML knows, without a carriage return.
    /// Whether it is a correct expression is not asked.
    static bool IsValidPattern(const QString& pattern);

protected:
    QString contentProblem() const override;
};

} // namespace ZELKO_XML
