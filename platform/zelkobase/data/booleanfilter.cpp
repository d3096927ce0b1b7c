#include <zelkobase/data/booleanfilter.h>

#include <reportcore/fieldtable.h>

namespace ZELKO_XML {

RG_DEFINE_OBJECT(BooleanFilter, ZELKO_BOOLEANFILTER_FIELDS, Refuse)

} // namespace ZELKO_XML
