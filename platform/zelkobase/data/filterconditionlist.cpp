#include <zelkobase/data/filterconditionlist.h>

#include <reportcore/fieldtable.h>

namespace ZELKO_XML {

RG_DEFINE_OBJECT(FilterConditionList, ZELKO_FILTERCONDITIONLIST_FIELDS, Refuse)

} // namespace ZELKO_XML
