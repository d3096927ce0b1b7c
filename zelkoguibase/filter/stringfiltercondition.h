#pragma once

#include <zelkoguibase/filter/abstractfiltercondition.h>

#include <QRegExp>

#include <memory>

namespace ZELKO_XML {
class StringFilter;
} // namespace ZELKO_XML

namespace ZelkoGUI::Filter {

/// Searches cells, read as texts, for a pattern. The pattern may stand anywhere in the cell, whatever its syntax: a
/// fixed string `ab` passes `xaby`. An empty pattern passes everything, and is not active.
///
/// A pattern that is no correct expression passes nothing. Nor does one that is too complex, which counts as incorrect:
/// with its counted repetitions written out it may have a few ten thousand characters, and fewer where most of them may
/// be missing or follow each other in any order; its brackets may be nested a hundred deep. No fixed string is too
/// complex.
class ZELKOGUIBASE_EXPORT StringFilterCondition : public AbstractFilterCondition
{
    Q_OBJECT

public:
    /// Starts with the empty regular expression, case sensitive.
    StringFilterCondition(int column, int role, QObject* parent);
    ~StringFilterCondition() override;

    bool passes(const QVariant& value) const override;
    bool filterActive() const override;

    using AbstractFilterCondition::readFromXml;
    using AbstractFilterCondition::writeToXml;

    /// Whether a condition that took over that filter would pass nothing because the pattern is too complex.
    static bool isTooComplex(const ZELKO_XML::StringFilter& filter);

    QString pattern() const;
    Qt::CaseSensitivity caseSensitive() const;
    QRegExp::PatternSyntax patternSyntax() const;

    /// Replaces all three at once, with one signal at most.
    void setRegExp(const QString& pattern, Qt::CaseSensitivity cs, QRegExp::PatternSyntax syntax);

    void setPattern(const QString& pattern);
    void setCaseSensitivity(const Qt::CaseSensitivity& cs);
    void setPatternSyntax(const QRegExp::PatternSyntax& syntax);

protected:
    /// A syntax that is not known counts as a fixed string.
    bool readFromXml(const ZELKO_XML::FilterCondition& source, bool& changed) override;

    /// A pattern that cannot be kept in a document, or is too complex to be read from one, is written as an empty one;
    /// a syntax that the document does not know not at all.
    void writeToXml(ZELKO_XML::FilterCondition& target) const override;

private:
    class Private;

    const std::unique_ptr<Private> d;
};

} // namespace ZelkoGUI::Filter
