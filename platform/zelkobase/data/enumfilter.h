#pragma once

#include <zelkobase/data/zelkobasedata_export.h>

#include <reportcore/fielddeclaration.h>

#define ZELKO_ENUMFILTER_FIELDS(FIELD) FIELD(List, int, EnumValue)

namespace ZELKO_XML {

/// The numbers of the enumerators that pass, in no particular order; none passes where there are none. A number need
/// not be one of an enumerator that exists.
class ZELKOBASEDATA_EXPORT EnumFilter : public REPORTGENERATOR::RGObject
{
    RG_OBJECT(EnumFilter, ZELKO_ENUMFILTER_FIELDS)
};

} // namespace ZELKO_XML
