#pragma once

#include <zelkobase/data/zelkobasedata_export.h>

#include <reportcore/fielddeclaration.h>

#define ZELKO_BOOLEANFILTER_FIELDS(FIELD) FIELD(Required, bool, TestValue)

namespace ZELKO_XML {

/// The flag that passes.
class ZELKOBASEDATA_EXPORT BooleanFilter : public REPORTGENERATOR::RGObject
{
    RG_OBJECT(BooleanFilter, ZELKO_BOOLEANFILTER_FIELDS)
};

} // namespace ZELKO_XML
