#pragma once

#include <overviewdisplay/overviewdisplay_export.h>
#include <overviewdisplay/overviewwish.h>

#include <zelkobase/service/overviewline.h>

#include <bitset>
#include <map>
#include <optional>
#include <vector>

namespace SPECTRUM_OVERVIEW {

/// Lines one after the other, both ends included.
struct LineRange
{
    int first = 0;
    int last = 0;

    int count() const { return last - first + 1; }
    bool operator==(const LineRange&) const = default;
};

/// The lines of the answer to one wish, as they arrive: in any order, twice, or not at all. What comes from the network
/// is measured by what was asked for, and takes no more memory than that. For one thread at a time.
class OVERVIEWDISPLAY_EXPORT OverviewLevels
{
public:
    static constexpr qint64 mostLevels = 128 * 1024 * 1024; ///< of all lines; two bytes each
    static constexpr int mostLines = ZelkoCommon::OverviewLine::mostLines;

    /// Empties it. A wish for more than there may be has no answer.
    void begin(const OverviewWish& wish);

    /// From here on these lines are answered, which `partWish` asks for, and which have the numbers from 0 on in that
    /// answer. What is known of all stays. Nothing for a range that is not one of its lines.
    void beginPart(const LineRange& lines);

    /// False, and nothing has changed, if the piece is not of the answer: another shape than was asked for or than the
    /// first piece had, a time outside of the wish, or one that does not fit to the lines before and behind it. A piece
    /// that has come before is one of the answer, and changes nothing.
    bool take(const ZelkoCommon::OverviewPiece& piece);

    const OverviewWish& wish() const { return m_wish; }

    /// 0 before the first piece.
    int lineCount() const { return static_cast<int>(m_lines.size()); }
    int binCount() const { return m_binCount; }

    /// False outside of the lines.
    bool isComplete(int line) const;
    int completeLines() const { return m_completeLines; }

    /// Whether all lines are complete; not before the first piece.
    bool isWhole() const { return lineCount() > 0 && m_completeLines == lineCount(); }

    /// `binCount()` values, the lowest frequency first, in hundredths of a dB of full scale. Where the receiver was
    /// tuned in another way than for the first piece, the levels stand at their own frequencies among those of that
    /// one, and what has none there is `noLevel`. Null for a line that is not complete. Stays valid until `begin`.
    const qint16* levels(int line) const;
    static constexpr qint16 noLevel = -32768;

    /// When a line begins, in microseconds since the epoch: estimated for one that has not come, from those around it.
    /// For the line behind the last it is the end of the wish.
    quint64 time(int line) const;

    /// In which line a moment falls; -1 outside of the wish, and without lines.
    int lineAt(quint64 time) const;

    /// In hertz; 0 before the first piece. Where the centre is not known, frequencies count from it.
    double lowestFrequency() const;

    /// In hertz; 0: not known.
    double span() const { return m_band.span; }

    /// Whether the frequency of the centre is known, so that frequencies are those of the air.
    bool hasCentre() const { return m_band.centre > 0; }

    /// The lines that are not complete, as at most so many ranges: those that lie closest together are one, with the
    /// lines between them. Empty if all have come, and before the first piece.
    std::vector<LineRange> missing(int mostRanges) const;

    /// The lines that have to be asked for to get these: the one before them too, as where the times of these begin is
    /// known from that. Lines are evenly spread over samples, not over time.
    LineRange partAround(const LineRange& lines) const;

    /// Asks for these lines alone.
    OverviewWish partWish(const LineRange& part) const;

private:
    static constexpr int mostPieces = 128;

    struct Band
    {
        double centre = 0;
        double span = 0;
        bool operator==(const Band&) const = default;
    };
    struct Line
    {
        std::vector<qint16> levels;
        std::bitset<mostPieces> pieces;
        Band band;
        bool isComplete = false;
    };

    bool hasShape(const ZelkoCommon::OverviewPiece& piece) const;
    bool isOfLine(const Line& line, const ZelkoCommon::OverviewPiece& piece) const;
    std::optional<quint64> fittingTime(int line, const ZelkoCommon::OverviewPiece& piece) const;
    quint64 cutDifference(const ZelkoCommon::OverviewPiece& piece) const;
    void takeShape(const ZelkoCommon::OverviewPiece& piece);
    void fill(Line& line, const ZelkoCommon::OverviewPiece& piece);
    void layInBand(Line& line) const;
    int pieceCount() const;
    std::vector<LineRange> gaps() const;

    OverviewWish m_wish;
    LineRange m_part{0, -1};
    int m_binCount = 0;
    int m_completeLines = 0;
    Band m_band;
    std::vector<Line> m_lines;
    std::map<int, quint64> m_times; // of the lines of which something has come
};

} // namespace SPECTRUM_OVERVIEW
