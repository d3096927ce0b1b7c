#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

#include <vector>

namespace ZelkoRecorder {

/// What a datagram of an overview spectrum says of itself. A line has one datagram for each `mostBins` of its levels.
/// All numbers are little-endian:
///
/// | offset | type | content                                                                      |
/// |--------|------|------------------------------------------------------------------------------|
/// | 0      | char 4 | "ZOVL"                                                                     |
/// | 4      | u16  | version, 1                                                                   |
/// | 6      | u16  | flags: 1, the last datagram of the overview                                  |
/// | 8      | u64  | which overview it is: `overviewCookie` of device and record                  |
/// | 16     | u32  | number of the line, from 0 on                                                |
/// | 20     | u32  | lines in all                                                                 |
/// | 24     | u32  | bin of the first level in this datagram, 0 for the lowest frequency          |
/// | 28     | u32  | bins of a line                                                               |
/// | 32     | u64  | time of the line's first sample, in microseconds since the epoch             |
/// | 40     | u64  | centre frequency in Hz, 0 if not known                                       |
/// | 48     | u64  | span from the first to behind the last bin in Hz, 0 if not known             |
/// | 56     | u16  | levels that follow                                                           |
/// | 58     | u16  | 0                                                                            |
/// | 60     | i16 each | levels in hundredths of a dB of full scale                               |
struct OverviewLine
{
    static constexpr std::size_t headSize = 60;
    static constexpr std::size_t mostBins = 512; ///< so that no datagram is cut on its way

    quint64 cookie = 0;
    quint32 line = 0;
    quint32 lineCount = 0;
    quint64 time = 0;
    quint64 centreFrequency = 0;
    quint64 span = 0;

    /// The datagrams of a line with these levels in dB.
    QList<QByteArray> datagrams(const std::vector<float>& levels) const;
};

/// A number that tells the overviews of different records apart: FNV-1a with 64 bits over device, "/" and record in
/// UTF-8.
quint64 overviewCookie(const QString& device, const QString& record);

} // namespace ZelkoRecorder
