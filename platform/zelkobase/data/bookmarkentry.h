#pragma once

#include <zelkobase/data/zelkobasedata_export.h>

#include <reportcore/fielddeclaration.h>

#define ZELKO_BOOKMARKENTRY_FIELDS(FIELD)                                                                              \
    FIELD(Required, quint64, Timestamp)                                                                                \
    FIELD(Required, QString, Bookmark)

namespace ZELKO_XML {

/// A moment of a recording, in microseconds since the epoch, and the text that marks it. The text may be empty.
class ZELKOBASEDATA_EXPORT BookmarkEntry : public REPORTGENERATOR::RGObject
{
    RG_OBJECT(BookmarkEntry, ZELKO_BOOKMARKENTRY_FIELDS)
};

} // namespace ZELKO_XML

Q_DECLARE_TYPEINFO(ZELKO_XML::BookmarkEntry, Q_RELOCATABLE_TYPE);
