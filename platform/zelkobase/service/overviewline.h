#pragma once

#include <zelkobase/service/zelkobaseservice_export.h>

#include <QByteArray>
#include <QByteArrayView>
#include <QList>
#include <QString>

#include <optional>
#include <vector>

namespace ZelkoCommon {

/// What a datagram of an overview spectrum says of itself. A line has one datagram for each `mostBins` of its levels;
/// the last of them may have fewer. All numbers are little-endian:
///
/// | offset | type | content                                                                      |
/// |--------|------|------------------------------------------------------------------------------|
/// | 0      | char 4 | "ZOVL"                                                                     |
/// | 4      | u16  | version, 1                                                                   |
/// | 6      | u16  | flags: 1, the last datagram of the overview                                  |
/// | 8      | u64  | which overview it is: `overviewCookie` of device and record                  |
/// | 16     | u32  | number of the line, from 0 on                                                |
/// | 20     | u32  | lines in all, 1 to `mostLines`                                               |
/// | 24     | u32  | bin of the first level in this datagram, 0 for the lowest frequency          |
/// | 28     | u32  | bins of a line, 1 to `mostLineBins`                                          |
/// | 32     | u64  | time of the line's first sample, in microseconds since the epoch             |
/// | 40     | u64  | centre frequency in Hz, 0 if not known                                       |
/// | 48     | u64  | span from the first to behind the last bin in Hz, 0 if not known             |
/// | 56     | u16  | levels that follow                                                           |
/// | 58     | u16  | 0                                                                            |
/// | 60     | i16 each | levels in hundredths of a dB of full scale, -32767 to 32767              |
///
/// A line stands for the time from its own to that of the next one, the last for the time to the end of the overview.
/// Where more samples lie there than a spectrum takes, each level is the strongest that the spectra of that time have
/// in its bin. All functions may be called on any thread.
struct ZELKOBASESERVICE_EXPORT OverviewLine
{
    static constexpr std::size_t headSize = 60;
    static constexpr std::size_t mostBins = 512; ///< so that no datagram is cut on its way
    static constexpr quint32 mostLines = 100'000;
    static constexpr quint32 mostLineBins = 65'536;

    quint64 cookie = 0;
    quint32 line = 0;
    quint32 lineCount = 0;
    quint64 time = 0;
    quint64 centreFrequency = 0;
    quint64 span = 0;

    bool operator==(const OverviewLine&) const = default;

    /// The datagrams of a line with these levels in dB, `mostLineBins` at most; none without levels.
    QList<QByteArray> datagrams(const std::vector<float>& levels) const;
};

/// What one datagram brings: a piece of a line.
struct OverviewPiece
{
    quint64 cookie = 0;
    quint32 line = 0;
    quint32 lineCount = 0;
    quint32 firstBin = 0; ///< a multiple of OverviewLine::mostBins
    quint32 binCount = 0; ///< of the whole line
    quint64 time = 0;     ///< microseconds since the epoch
    quint64 centreFrequency = 0;
    quint64 span = 0;
    bool isLast = false;
    QList<qint16>
        levels; ///< hundredths of a dB of full scale: OverviewLine::mostBins, or those that the line still has

    bool operator==(const OverviewPiece&) const = default;
};

/// The piece in a datagram. Nothing for what `OverviewLine::datagrams` never makes: another size than it says, a
/// number out of its bounds, levels cut otherwise, a mark of the last one elsewhere. Times and frequencies may be any.
ZELKOBASESERVICE_EXPORT std::optional<OverviewPiece> overviewPiece(QByteArrayView datagram);

/// A number that tells the overviews of different records apart: FNV-1a with 64 bits over device, "/" and record in
/// UTF-8.
ZELKOBASESERVICE_EXPORT quint64 overviewCookie(const QString& device, const QString& record);

} // namespace ZelkoCommon
