#pragma once

#include <zelkoguibase/filter/abstractfiltercondition.h>

#include <QRegExp>

#include <memory>

namespace ZelkoGUI::Filter {

/// Searches cells, read as texts, for a pattern. The pattern may stand anywhere in the cell, whatever its syntax: a
/// fixed string `ab` passes `xaby`. An empty pattern passes everything, and is not active.
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

    QString pattern() const;
    Qt::CaseSensitivity caseSensitive() const;
    QRegExp::PatternSyntax patternSyntax() const;

    /// Replaces all three at once, with one signal at most. A pattern that is no correct expression passes nothing.
    void setRegExp(const QString& pattern, Qt::CaseSensitivity cs, QRegExp::PatternSyntax syntax);

    void setPattern(const QString& pattern);
    void setCaseSensitivity(const Qt::CaseSensitivity& cs);
    void setPatternSyntax(const QRegExp::PatternSyntax& syntax);

protected:
    /// A syntax that is not known counts as a fixed string.
    bool readFromXml(const ZELKO_XML::FilterCondition& source, bool& changed) override;

    /// A pattern that cannot be kept in a document is written as an empty one, a syntax that the document does not know
    /// not at all.
    void writeToXml(ZELKO_XML::FilterCondition& target) const override;

private:
    class Private;

    const std::unique_ptr<Private> d;
};

} // namespace ZelkoGUI::Filter
