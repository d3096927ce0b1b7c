#pragma once

#include <zelkobase/data/filtercondition.h>

#define ZELKO_FILTERCONDITIONLIST_FIELDS(FIELD)                                                                        \
    FIELD(Optional, QString, ID)                                                                                       \
    FIELD(List, FilterCondition, FilterCondition)

namespace ZELKO_XML {

/// The content of a filter file: the state of all filters of a window. The ID says of which one; whoever reads a file
/// compares it, where it is set. Elements that are not known are refused, since a filter that is read in part would
/// show other records than the one that was saved. The files obey the schema filterconditionlist.xsd.
class ZELKOBASEDATA_EXPORT FilterConditionList : public REPORTGENERATOR::RGObject
{
    RG_OBJECT(FilterConditionList, ZELKO_FILTERCONDITIONLIST_FIELDS)
};

} // namespace ZELKO_XML
