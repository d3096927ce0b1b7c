#include <zelkoguibase/filter/booleanfiltercondition.h>

#include "celltest_p.h"

#include <zelkobase/data/filtercondition.h>

namespace ZelkoGUI::Filter {

BooleanFilterCondition::BooleanFilterCondition(int column, int role, QObject* parent)
    : AbstractFilterCondition(column, role, QStringLiteral("BooleanFilter"), parent)
{}

BooleanFilterCondition::~BooleanFilterCondition() = default;

bool BooleanFilterCondition::passes(const QVariant& value) const
{
    return !enabled() || (value.canConvert<bool>() && !isEnumerator(value) && value.toBool() == m_value);
}

void BooleanFilterCondition::setValue(bool value)
{
    replaceContent(m_value, value);
}

bool BooleanFilterCondition::readFromXml(const ZELKO_XML::FilterCondition& source, bool& changed)
{
    if (!source.IsBooleanFilterSet()) {
        return false;
    }
    const bool value = source.GetBooleanFilter().GetTestValue();
    changed = value != m_value;
    m_value = value;
    return true;
}

void BooleanFilterCondition::writeToXml(ZELKO_XML::FilterCondition& target) const
{
    ZELKO_XML::BooleanFilter filter;
    filter.SetTestValue(m_value);
    target.SetBooleanFilter(std::move(filter));
}

} // namespace ZelkoGUI::Filter
