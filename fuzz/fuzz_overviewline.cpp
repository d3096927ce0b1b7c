// Datagrams as pieces of an overview: what is accepted is what the writer makes of the same levels, the rest is passed
// over.
#include "require.h"

#include <zelkobase/service/overviewline.h>

#include <cstdint>

using namespace ZelkoCommon;

namespace {

// The datagram in which the writer puts this piece, of a line whose other levels are unknown.
QByteArray writtenAgain(const OverviewPiece& piece)
{
    std::vector<float> levels(piece.binCount);
    for (qsizetype i = 0; i < piece.levels.size(); ++i) {
        levels[piece.firstBin + static_cast<std::size_t>(i)] = static_cast<float>(piece.levels.at(i)) / 100;
    }
    OverviewLine line;
    line.cookie = piece.cookie;
    line.line = piece.line;
    line.lineCount = piece.lineCount;
    line.time = piece.time;
    line.centreFrequency = piece.centreFrequency;
    line.span = piece.span;
    return line.datagrams(levels).at(static_cast<qsizetype>(piece.firstBin / OverviewLine::mostBins));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const QByteArrayView datagram(data, static_cast<qsizetype>(size));
    if (const auto piece = overviewPiece(datagram)) {
        require(piece->line < piece->lineCount && piece->lineCount <= OverviewLine::mostLines);
        require(piece->binCount <= OverviewLine::mostLineBins);
        require(writtenAgain(*piece) == datagram);
    }
    return 0;
}
