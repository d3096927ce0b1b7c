#include <zelkobase/data/filtercondition.h>

#include <reportcore/fieldtable.h>

namespace ZELKO_XML {

RG_DEFINE_OBJECT(FilterCondition, ZELKO_FILTERCONDITION_FIELDS, Refuse)

QString FilterCondition::contentProblem() const
{
    const int count = IsStringFilterSet() + IsNumberFilterSet() + IsBooleanFilterSet() + IsEnumFilterSet();
    return count == 1 ? QString() : QStringLiteral("there are %1 filters instead of one").arg(count);
}

} // namespace ZELKO_XML
