#pragma once

#include <overviewdisplay/levelcolours.h>
#include <overviewdisplay/overviewlevels.h>
#include <overviewdisplay/timerows_p.h>

#include <QImage>

#include <chrono>
#include <vector>

class QPainter;

namespace SPECTRUM_OVERVIEW {

/// A part of the frequencies, as shares of all of them: from 0 for the lowest to 1 for the highest.
struct BandPart
{
    double low = 0;
    double high = 1;

    bool operator==(const BandPart&) const = default;
};

/// The pixels of a waterfall: of each the strongest level that falls on it, and its colour. What changes is noted, and
/// done in slices by `work`; until then, and where nothing has arrived, each pixel shows what was known of its place
/// before.
class WaterfallPicture
{
public:
    /// Rows, both included.
    struct Rows
    {
        int first = 0;
        int last = 0;

        bool operator==(const Rows&) const = default;
    };

    WaterfallPicture();

    /// Null: none. What was known of the old ones stays until `forget`.
    void setLevels(const OverviewLevels* levels);

    /// The picture as if there had never been levels.
    void forget();

    /// Where all of this is as it was nothing is done. An empty size or range is a picture without pixels.
    void setPart(const QSize& size, const TimeRange& time, const BandPart& band);
    void setColours(double lowest, double highest, QRgb missing);

    void linesArrived(int first, int last);

    bool hasWork() const { return m_waiting > 0; }

    /// Works until nothing is left to do or the time is over, at least one row. Which rows are other ones now.
    std::vector<Rows> work(std::chrono::microseconds time);
    void finish();

    const LevelColours& colours() const { return m_colours; }
    const TimeRows& timeRows() const { return m_now.times; }
    QSize size() const { return m_now.size(); }

    /// In hundredths of a dB; `OverviewLevels::noLevel` where nothing is known, and outside.
    qint16 level(int column, int row) const;

    /// Whether anything is known anywhere.
    bool hasLevels() const;

    /// Paints with the top left pixel at the origin, a pixel of the picture on each of the painter's units.
    void paint(QPainter& painter) const;

private:
    enum class Row : quint8 {
        Done,
        Uncoloured, ///< its levels are right
        Old,        ///< shows what was there before, in colours that are right
        New,        ///< shows nothing of its own
    };

    /// Pixels and what they stand for.
    struct Pixels
    {
        QSize size() const { return {columns, times.rows}; }
        qint16* row(int number) { return levels.data() + static_cast<std::ptrdiff_t>(number) * columns; }
        const qint16* row(int number) const { return levels.data() + static_cast<std::ptrdiff_t>(number) * columns; }

        TimeRows times;
        BandPart band;
        int columns = 0;
        std::vector<qint16> levels;
        QImage image;
    };

    void mark(int row, Row state);
    void markAll(Row state);
    void startAgain();
    bool knowsAnything() const;
    void workOn(int row);
    void findLevels(int row);
    void takeOld(int row);
    void fold(const qint16* line);
    void spread(qint16* row) const;
    const qint16* strongest(int row);
    void findBins();
    void findOldColumns();
    QRectF oldArea() const;

    const OverviewLevels* m_given = nullptr;
    LevelColours m_colours;
    Pixels m_now;
    Pixels m_old; ///< what is shown where nothing else is known
    std::vector<Row> m_rows;
    int m_waiting = 0; ///< rows that are not done
    int m_next = 0;    ///< where the work goes on
    int m_binCount = 0;
    std::vector<int> m_bins;       ///< of each column the first bin, and the one behind the last column
    std::vector<int> m_oldColumns; ///< of each column the one in the old pixels; -1: none
    std::vector<qint16> m_folded;  ///< bins of one row
};

} // namespace SPECTRUM_OVERVIEW
