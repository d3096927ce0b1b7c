#pragma once

#include <zelkobase/maps/zelkobasemaps_export.h>

namespace zelko {

/// Makes RecordItemMap and BookmarkItemMap known to the value factory, for whoever builds a tree from what a peer
/// tells. May be called any number of times, on any thread.
ZELKOBASEMAPS_EXPORT void registerItemMapTypes();

} // namespace zelko
