#pragma once

#include <zelkobase/data/zelkobasedata_export.h>

#include <reportcore/fielddeclaration.h>

#define ZELKO_HISTORYENTRY_FIELDS(FIELD)                                                                               \
    FIELD(Required, quint64, Timestamp)                                                                                \
    FIELD(Required, QString, HistoryEntry)

namespace ZELKO_XML {

/// A comment on a record and when it was made, in microseconds since the epoch in UTC. The comment may be empty.
class ZELKOBASEDATA_EXPORT HistoryEntry : public REPORTGENERATOR::RGObject
{
    RG_OBJECT(HistoryEntry, ZELKO_HISTORYENTRY_FIELDS)
};

} // namespace ZELKO_XML

Q_DECLARE_TYPEINFO(ZELKO_XML::HistoryEntry, Q_RELOCATABLE_TYPE);
