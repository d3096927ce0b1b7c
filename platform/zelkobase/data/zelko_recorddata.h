#pragma once

#include <zelkobase/data/bookmarkentry.h>
#include <zelkobase/data/historyentry.h>
#include <zelkobase/data/indexentry.h>

#define ZELKO_RECORD_STATUSES(ENUMERATOR)                                                                              \
    ENUMERATOR(Unknown, "unknown")                                                                                     \
    ENUMERATOR(Prepared, "prepared")                                                                                   \
    ENUMERATOR(Recording, "recording")                                                                                 \
    ENUMERATOR(LoopRecording, "recording in a loop")                                                                   \
    ENUMERATOR(Stopping, "stopping")                                                                                   \
    ENUMERATOR(Finished, "finished")                                                                                   \
    ENUMERATOR(Replaying, "replaying")                                                                                 \
    ENUMERATOR(Transferring, "transferring")                                                                           \
    ENUMERATOR(Damaged, "damaged")

#define ZELKO_DATA_RATES(ENUMERATOR)                                                                                   \
    ENUMERATOR(NotSet, "not set")                                                                                      \
    ENUMERATOR(UpTo16kB, "up to 16 kB/s")                                                                              \
    ENUMERATOR(UpTo64kB, "up to 64 kB/s")                                                                              \
    ENUMERATOR(UpTo256kB, "up to 256 kB/s")                                                                            \
    ENUMERATOR(UpTo1MB, "up to 1 MB/s")                                                                                \
    ENUMERATOR(UpTo4MB, "up to 4 MB/s")                                                                                \
    ENUMERATOR(UpTo16MB, "up to 16 MB/s")                                                                              \
    ENUMERATOR(UpTo64MB, "up to 64 MB/s")                                                                              \
    ENUMERATOR(UpTo256MB, "up to 256 MB/s")                                                                            \
    ENUMERATOR(RawStream, "raw stream")                                                                                \
    ENUMERATOR(UpTo512MB, "up to 512 MB/s")                                                                            \
    ENUMERATOR(UpTo1GB, "up to 1 GB/s")                                                                                \
    ENUMERATOR(UpTo2GB, "up to 2 GB/s")                                                                                \
    ENUMERATOR(UpTo4GB, "up to 4 GB/s")                                                                                \
    ENUMERATOR(Bursts, "bursts")                                                                                       \
    ENUMERATOR(Variable, "variable")

#define ZELKO_DATA_FORMATS(ENUMERATOR)                                                                                 \
    ENUMERATOR(Unknown, "unknown")                                                                                     \
    ENUMERATOR(IQ16, "IQ 16 bit")                                                                                      \
    ENUMERATOR(IQ8, "IQ 8 bit")                                                                                        \
    ENUMERATOR(Real16, "real 16 bit")                                                                                  \
    ENUMERATOR(Real8, "real 8 bit")                                                                                    \
    ENUMERATOR(Audio16, "audio 16 bit")                                                                                \
    ENUMERATOR(Symbols, "symbols")                                                                                     \
    ENUMERATOR(Audio8, "audio 8 bit")                                                                                  \
    ENUMERATOR(AudioStereo, "audio stereo")                                                                            \
    ENUMERATOR(AudioCompressed, "audio compressed")                                                                    \
    ENUMERATOR(Bits, "demodulated bits")                                                                               \
    ENUMERATOR(Packets, "packets")                                                                                     \
    ENUMERATOR(Text, "text")                                                                                           \
    ENUMERATOR(Image, "image")                                                                                         \
    ENUMERATOR(Video, "video")                                                                                         \
    ENUMERATOR(Spectrum, "spectrum")                                                                                   \
    ENUMERATOR(Waterfall, "waterfall")                                                                                 \
    ENUMERATOR(Pulses, "pulse descriptors")                                                                            \
    ENUMERATOR(Bearings, "bearings")                                                                                   \
    ENUMERATOR(IQ12, "IQ 12 bit")                                                                                      \
    ENUMERATOR(Real32, "real 32 bit")                                                                                  \
    ENUMERATOR(IQ32, "IQ 32 bit")                                                                                      \
    ENUMERATOR(IQFloat, "IQ floating point")                                                                           \
    ENUMERATOR(Other, "other")

#define ZELKO_INTERFACES(ENUMERATOR)                                                                                   \
    ENUMERATOR(None, "none")                                                                                           \
    ENUMERATOR(Ethernet, "Ethernet")                                                                                   \
    ENUMERATOR(OpticalLink, "optical link")                                                                            \
    ENUMERATOR(SerialPort, "serial port")                                                                              \
    ENUMERATOR(Usb, "USB")                                                                                             \
    ENUMERATOR(PciExpress, "PCI Express")                                                                              \
    ENUMERATOR(AnalogueIF, "analogue IF")                                                                              \
    ENUMERATOR(DigitalAudio, "digital audio")                                                                          \
    ENUMERATOR(FileImport, "file import")

#define ZELKO_RECORDDATA_FIELDS(FIELD)                                                                                 \
    FIELD(Required, QString, RecordID)                                                                                 \
    FIELD(Required, QString, RecordName)                                                                               \
    FIELD(Defaulted, quint64, Size)                                                                                    \
    FIELD(Required, quint64, StartTime)                                                                                \
    FIELD(Defaulted, quint64, StopTime)                                                                                \
    FIELD(Defaulted, quint64, StartPosition)                                                                           \
    FIELD(Defaulted, quint64, StopPosition)                                                                            \
    FIELD(Defaulted, quint64, RecordingLoopSize)                                                                       \
    FIELD(Required, RecordStatus, RecordStatus)                                                                        \
    FIELD(Defaulted, DataRate, DataRate)                                                                               \
    FIELD(Defaulted, DataFormat, DataFormat)                                                                           \
    FIELD(Optional, Interface, Interface)                                                                              \
    FIELD(Defaulted, bool, Deletable)                                                                                  \
    FIELD(Optional, bool, Finished)                                                                                    \
    FIELD(List, BookmarkEntry, BookmarkEntry)                                                                          \
    FIELD(List, HistoryEntry, HistoryEntry)                                                                            \
    FIELD(List, IndexEntry, IndexEntry)

namespace ZELKO_XML {

/// All that is known of a recording, without its samples.
///
/// Times are microseconds since the epoch, sizes and positions bytes. A record passes Check() with a non-empty ID, a
/// name (which may be empty), a start time and a status; everything else counts as zero or absent where it was not set.
/// Elements of a file that are not known are skipped, so that records of a newer recorder can still be listed.
class ZELKOBASEDATA_EXPORT ZELKO_RecordData : public REPORTGENERATOR::RGObject
{
public:
    /// State of the record. Recording and LoopRecording mean that samples are being written; Finished is a record at
    /// rest.
    RG_ENUM(RecordStatus, ZELKO_RECORD_STATUSES)

    /// Data rate class. A RawStream cannot be copied or edited.
    RG_ENUM(DataRate, ZELKO_DATA_RATES)

    /// Format of the samples. IQ16 and IQ32 come with an index file and can be shown as a spectrum.
    RG_ENUM(DataFormat, ZELKO_DATA_FORMATS)

    /// Interface over which the record was made.
    RG_ENUM(Interface, ZELKO_INTERFACES)

    RG_OBJECT(ZELKO_RecordData, ZELKO_RECORDDATA_FIELDS)

protected:
    QString contentProblem() const override;
};

} // namespace ZELKO_XML
