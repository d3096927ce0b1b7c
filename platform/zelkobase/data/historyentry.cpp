#include <zelkobase/data/historyentry.h>

#include <reportcore/fieldtable.h>

namespace ZELKO_XML {

RG_DEFINE_OBJECT(HistoryEntry, ZELKO_HISTORYENTRY_FIELDS, Skip)

} // namespace ZELKO_XML
