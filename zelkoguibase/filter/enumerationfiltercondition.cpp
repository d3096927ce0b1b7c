#include <zelkoguibase/filter/enumerationfiltercondition.h>

#include <zelkobase/data/filtercondition.h>

namespace ZelkoGUI::Filter {

template <typename E>
EnumerationFilterCondition<E>::EnumerationFilterCondition(int valueCount, int column, int role, QObject* parent)
    : AbstractFilterCondition(column, role, QStringLiteral("EnumerationFilter"), parent)
    , m_valueCount(valueCount)
{
    qRegisterMetaType<E>();
}

template <typename E>
EnumerationFilterCondition<E>::~EnumerationFilterCondition() = default;

// QVariant would turn any whole number into an enumerator, and a number is a cell of the wrong type.
template <typename E>
bool EnumerationFilterCondition<E>::passes(const QVariant& value) const
{
    return !enabled() || (value.metaType() == QMetaType::fromType<E>() &&
                          m_values.contains(*static_cast<const E*>(value.constData())));
}

template <typename E>
bool EnumerationFilterCondition<E>::filterActive() const
{
    return enabled() && m_values.size() != m_valueCount;
}

template <typename E>
QList<E> EnumerationFilterCondition<E>::values() const
{
    return m_values.values();
}

template <typename E>
void EnumerationFilterCondition<E>::setValues(const QList<E>& values)
{
    replaceContent(m_values, QSet<E>(values.begin(), values.end()));
}

template <typename E>
bool EnumerationFilterCondition<E>::readFromXml(const ZELKO_XML::FilterCondition& source, bool& changed)
{
    if (!source.IsEnumFilterSet()) {
        return false;
    }
    QSet<E> values;
    for (const int number : source.GetEnumFilter().GetEnumValue()) {
        values.insert(static_cast<E>(number));
    }
    changed = values != m_values;
    m_values = std::move(values);
    return true;
}

template <typename E>
void EnumerationFilterCondition<E>::writeToXml(ZELKO_XML::FilterCondition& target) const
{
    ZELKO_XML::EnumFilter filter;
    for (const E value : m_values) {
        filter.AppendEnumValue(static_cast<int>(value));
    }
    target.SetEnumFilter(std::move(filter));
}

template class EnumerationFilterCondition<ZELKO_XML::ZELKO_RecordData::DataFormat>;
template class EnumerationFilterCondition<ZELKO_XML::ZELKO_RecordData::DataRate>;
template class EnumerationFilterCondition<ZELKO_XML::ZELKO_RecordData::Interface>;
template class EnumerationFilterCondition<ZELKO_XML::ZELKO_RecordData::RecordStatus>;

} // namespace ZelkoGUI::Filter
