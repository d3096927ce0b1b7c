#pragma once

#include <zelkobase/stringmap/stringitem.h>
#include <zelkobase/stringmap/valuefrequencyitemmap.h>

/// Keyed texts that change often, such as the announcements of the devices that a recorder server hears.
using StringItemMap = ValueFrequencyItemMap<StringItem, StringItemFormat, StringItemAdapter>;

extern template class BASESTRINGMAP_EXPORT ValueItemMapBase<StringItem, StringItemFormat, StringItemAdapter>;
extern template class BASESTRINGMAP_EXPORT ValueItemMap<StringItem, StringItemFormat, StringItemAdapter>;
extern template class BASESTRINGMAP_EXPORT ValueFrequencyItemMap<StringItem, StringItemFormat, StringItemAdapter>;

/// Lets valuefactory make a StringItemMap by its type name. Whoever keeps a copy of a tree calls it before; more than
/// once does no harm.
BASESTRINGMAP_EXPORT void registerStringItemMap();
