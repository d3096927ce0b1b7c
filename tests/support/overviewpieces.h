#pragma once

#include <overviewdisplay/overviewwish.h>

#include <zelkobase/service/overviewline.h>

#include <algorithm>
#include <vector>

namespace ZelkoTest {

/// The answer to a wish, as a recorder gives it: the level of a bin says which line and which bin it is.
struct AnswerPieces
{
    SPECTRUM_OVERVIEW::OverviewWish wish;
    quint32 bins = wish.fftLength;
    quint64 cookie = 7;
    quint64 centreFrequency = 100'000'000;
    quint64 span = 1'000'000;

    static qint16 level(int line, int bin) { return static_cast<qint16>(-(line % 100) * 100 - bin % 100); }

    quint64 time(quint32 line) const { return wish.start + (wish.stop - wish.start) * line / wish.lineCount; }
    int piecesOfALine() const { return static_cast<int>((bins + mostBins - 1) / mostBins); }

    ZelkoCommon::OverviewPiece piece(int line, int number = 0) const
    {
        ZelkoCommon::OverviewPiece piece;
        piece.cookie = cookie;
        piece.line = static_cast<quint32>(line);
        piece.lineCount = wish.lineCount;
        piece.firstBin = static_cast<quint32>(number) * mostBins;
        piece.binCount = bins;
        piece.time = time(piece.line);
        piece.centreFrequency = centreFrequency;
        piece.span = span;
        piece.isLast = piece.line + 1 == wish.lineCount && number + 1 == piecesOfALine();
        for (quint32 bin = piece.firstBin; bin < std::min(bins, piece.firstBin + mostBins); ++bin) {
            piece.levels.append(level(line, static_cast<int>(bin)));
        }
        return piece;
    }

private:
    static constexpr quint32 mostBins = ZelkoCommon::OverviewLine::mostBins;
};

/// The same line as datagrams.
inline QList<QByteArray> datagrams(const AnswerPieces& answer, int line)
{
    ZelkoCommon::OverviewLine head;
    head.cookie = answer.cookie;
    head.line = static_cast<quint32>(line);
    head.lineCount = answer.wish.lineCount;
    head.time = answer.time(head.line);
    head.centreFrequency = answer.centreFrequency;
    head.span = answer.span;
    std::vector<float> levels;
    for (int bin = 0; bin < static_cast<int>(answer.bins); ++bin) {
        levels.push_back(static_cast<float>(AnswerPieces::level(line, bin)) / 100);
    }
    return head.datagrams(levels);
}

} // namespace ZelkoTest
