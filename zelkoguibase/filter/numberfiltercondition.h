#pragma once

#include <zelkoguibase/filter/abstractfiltercondition.h>
#include <zelkoguibase/filter/numbercomparison.h>

#include <QDateTime>

namespace ZelkoGUI::Filter {

/// Compares cells with one limit of type T: `double`, `QTime` or `QDateTime`. A range is two conditions. `int` is there
/// for the sake of files, which know it: no window makes such a condition.
///
/// Durations are compared as times of day, as the record model hands them out. A saved `double` keeps six significant
/// digits.
///
/// A saved limit names the type of its value. It is written for whoever reads the file; a condition that reads it goes
/// by its own T alone, so a whole number serves as a `double`. A text that says nothing for T becomes 0, the epoch or
/// an invalid time.
template <typename T>
class NumberFilterCondition : public AbstractFilterCondition, public NumberComparison
{
public:
    /// Starts with `Equal`.
    NumberFilterCondition(const T& value, int column, int role, QObject* parent);
    ~NumberFilterCondition() override;

    /// False for a number that is no comparator, too.
    bool passes(const QVariant& value) const override;

    using AbstractFilterCondition::readFromXml;
    using AbstractFilterCondition::writeToXml;

    /// The limit. Setting one that is not a number always counts as a change.
    T value() const { return m_value; }
    void setValue(const T& value);

    Comparator comparator() const { return m_comparator; }
    void setComparator(const Comparator& comparator);

protected:
    /// A comparator that is not known counts as `NotEqual`. The value is read as a T, whatever type the entry names.
    bool readFromXml(const ZELKO_XML::FilterCondition& source, bool& changed) override;
    void writeToXml(ZELKO_XML::FilterCondition& target) const override;

private:
    T m_value;
    Comparator m_comparator = Equal;
};

extern template class ZELKOGUIBASE_EXPORT NumberFilterCondition<double>;
extern template class ZELKOGUIBASE_EXPORT NumberFilterCondition<int>;
extern template class ZELKOGUIBASE_EXPORT NumberFilterCondition<QTime>;
extern template class ZELKOGUIBASE_EXPORT NumberFilterCondition<QDateTime>;

} // namespace ZelkoGUI::Filter
