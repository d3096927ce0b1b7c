#include <zelkobase/data/enumfilter.h>

#include <reportcore/fieldtable.h>

namespace ZELKO_XML {

RG_DEFINE_OBJECT(EnumFilter, ZELKO_ENUMFILTER_FIELDS, Refuse)

} // namespace ZELKO_XML
