#pragma once

#include <zelkobase/data/zelkobasedata_export.h>

#include <reportcore/fielddeclaration.h>

#define ZELKO_INDEXENTRY_FIELDS(FIELD)                                                                                 \
    FIELD(Required, quint64, Timestamp)                                                                                \
    FIELD(Required, quint64, RecordOffset)                                                                             \
    FIELD(Defaulted, quint64, TunerFrequency)                                                                          \
    FIELD(Defaulted, quint64, SampleRate)                                                                              \
    FIELD(Defaulted, quint64, Bandwidth)

namespace ZELKO_XML {

/// Which moment, in microseconds since the epoch, stands at which position of a recording, and how the receiver was set
/// from there on: frequency, sample rate and bandwidth in hertz, 0 where not known.
class ZELKOBASEDATA_EXPORT IndexEntry : public REPORTGENERATOR::RGObject
{
    RG_OBJECT(IndexEntry, ZELKO_INDEXENTRY_FIELDS)
};

} // namespace ZELKO_XML

Q_DECLARE_TYPEINFO(ZELKO_XML::IndexEntry, Q_RELOCATABLE_TYPE);
