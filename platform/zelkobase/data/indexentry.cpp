#include <zelkobase/data/indexentry.h>

#include <reportcore/fieldtable.h>

namespace ZELKO_XML {

RG_DEFINE_OBJECT(IndexEntry, ZELKO_INDEXENTRY_FIELDS, Skip)

} // namespace ZELKO_XML
