#pragma once

#include <zelkobase/data/booleanfilter.h>
#include <zelkobase/data/enumfilter.h>
#include <zelkobase/data/numberfilter.h>
#include <zelkobase/data/stringfilter.h>

#define ZELKO_FILTERCONDITION_FIELDS(FIELD)                                                                            \
    FIELD(Optional, QString, Name)                                                                                     \
    FIELD(Required, int, Column)                                                                                       \
    FIELD(Required, int, Role)                                                                                         \
    FIELD(Optional, bool, Enabled)                                                                                     \
    FIELD(Part, StringFilter, StringFilter)                                                                            \
    FIELD(Part, NumberFilter, NumberFilter)                                                                            \
    FIELD(Part, BooleanFilter, BooleanFilter)                                                                          \
    FIELD(Part, EnumFilter, EnumFilter)

namespace ZELKO_XML {

/// The state of one filter: which cells it reads, whether it is switched on, and what it compares them with. Check()
/// fails unless there is exactly one of the four kinds of filters.
class ZELKOBASEDATA_EXPORT FilterCondition : public REPORTGENERATOR::RGObject
{
    RG_OBJECT(FilterCondition, ZELKO_FILTERCONDITION_FIELDS)

protected:
    QString contentProblem() const override;
};

} // namespace ZELKO_XML
