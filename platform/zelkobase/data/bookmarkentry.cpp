#include <zelkobase/data/bookmarkentry.h>

#include <reportcore/fieldtable.h>

namespace ZELKO_XML {

RG_DEFINE_OBJECT(BookmarkEntry, ZELKO_BOOKMARKENTRY_FIELDS, Skip)

} // namespace ZELKO_XML
