#include <zelkoguibase/filter/numberfiltercondition.h>

#include "celltest_p.h"

#include <zelkobase/data/filtercondition.h>
#include <zelkobase/data/filtervalue.h>

#include <optional>

namespace ZelkoGUI::Filter {

using FileComparator = ZELKO_XML::NumberFilter::Comparator;
using FileType = ZELKO_XML::NumberFilter::Type;

namespace {

template <typename T>
constexpr FileType fileType = FileType::Double;
template <>
constexpr FileType fileType<int> = FileType::Int;
template <>
constexpr FileType fileType<QTime> = FileType::Time;
template <>
constexpr FileType fileType<QDateTime> = FileType::DateTime;

// Whether a cell can be read as T depends on what it says, where it is a text.
template <typename T>
std::optional<T> valueOf(const QVariant& cell)
{
    constexpr QMetaType type = QMetaType::fromType<T>();
    if (cell.metaType() == type) {
        return *static_cast<const T*>(cell.constData());
    }
    if (isEnumerator(cell)) {
        return std::nullopt;
    }
    QVariant converted = cell;
    return converted.convert(type) ? std::optional(converted.value<T>()) : std::nullopt;
}

NumberComparison::Comparator comparatorOfFile(FileComparator comparator)
{
    const int number = static_cast<int>(comparator);
    const bool known = number >= NumberComparison::Equal && number <= NumberComparison::GreaterOrEqual;
    return known ? static_cast<NumberComparison::Comparator>(number) : NumberComparison::NotEqual;
}

} // namespace

template <typename T>
NumberFilterCondition<T>::NumberFilterCondition(const T& value, int column, int role, QObject* parent)
    : AbstractFilterCondition(column, role, QStringLiteral("NumberFilter"), parent)
    , m_value(value)
{}

template <typename T>
NumberFilterCondition<T>::~NumberFilterCondition() = default;

template <typename T>
bool NumberFilterCondition<T>::passes(const QVariant& value) const
{
    if (!enabled()) {
        return true;
    }
    const std::optional<T> number = valueOf<T>(value);
    return number && holds(*number, m_comparator, m_value);
}

template <typename T>
void NumberFilterCondition<T>::setValue(const T& value)
{
    replaceContent(m_value, value);
}

template <typename T>
void NumberFilterCondition<T>::setComparator(const Comparator& comparator)
{
    replaceContent(m_comparator, comparator);
}

template <typename T>
bool NumberFilterCondition<T>::readFromXml(const ZELKO_XML::FilterCondition& source, bool& changed)
{
    if (!source.IsNumberFilterSet()) {
        return false;
    }
    const ZELKO_XML::NumberFilter& filter = source.GetNumberFilter();
    const Comparator comparator = comparatorOfFile(filter.GetComparator());
    T value{};
    ZELKO_XML::parseFilterValue(filter.GetFilterValue(), value);
    changed = comparator != m_comparator || !(value == m_value);
    if (changed) { // an equal moment may be told in another time zone
        m_comparator = comparator;
        m_value = value;
    }
    return true;
}

template <typename T>
void NumberFilterCondition<T>::writeToXml(ZELKO_XML::FilterCondition& target) const
{
    ZELKO_XML::NumberFilter filter;
    filter.SetComparator(static_cast<FileComparator>(m_comparator));
    filter.SetFilterValue(ZELKO_XML::filterValueText(m_value));
    filter.SetType(fileType<T>);
    target.SetNumberFilter(std::move(filter));
}

template class NumberFilterCondition<double>;
template class NumberFilterCondition<int>;
template class NumberFilterCondition<QTime>;
template class NumberFilterCondition<QDateTime>;

} // namespace ZelkoGUI::Filter
