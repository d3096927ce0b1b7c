#pragma once

#include <overviewdisplay/frequencyruler_p.h>
#include <overviewdisplay/waterfallflags_p.h>
#include <overviewdisplay/waterfalllayout_p.h>
#include <overviewdisplay/waterfallpicture_p.h>
#include <overviewdisplay/waterfallreading_p.h>
#include <overviewdisplay/waterfallselection_p.h>
#include <overviewdisplay/waterfallview.h>

#include <QTimer>

#include <functional>

namespace SPECTRUM_OVERVIEW {

/// What a waterfall shows and where, without what users do to it.
class WaterfallScene
{
public:
    /// The frequencies of all bins, in hertz; without a span they are not known.
    struct Band
    {
        double low = 0;
        double span = 0;
        bool hasCentre = false;

        bool operator==(const Band&) const = default;
    };

    /// Where the cursor is: in time, and as a share of the band.
    struct Place
    {
        quint64 time = 0;
        double share = 0;
    };

    explicit WaterfallScene(WaterfallView& view);
    ~WaterfallScene();

    void setLevels(const OverviewLevels* levels);
    void linesArrived(int first, int last);
    void setTimeRange(const TimeRange& range);
    void clearTimeRange();
    const TimeRange& timeRange() const { return m_range; }
    void setLevelRange(double lowest, double highest);
    void setBookmarks(const QVector<ZELKO_XML::BookmarkEntry>& bookmarks);
    void setEmptyText(const QString& text);

    /// All, without a range; one that is not in the band is all, too.
    void setFrequencies(const std::optional<std::pair<double, double>>& frequencies);

    /// Half the frequencies, or double, where the one at this share of the band keeps its place.
    void zoomFrequencies(double share, double factor);

    /// Whether there are places that a cursor can be at.
    bool canPoint() const { return m_range.start < m_range.stop && !layout().pixels.isEmpty(); }
    const WaterfallLayout& layout() const { return m_layout; }
    const TimeRows& rows() const { return m_picture.timeRows(); }
    const WaterfallFlags& flags() const { return m_flags; }
    const OverviewLevels* levels() const { return m_levels; }

    std::optional<WaterfallCursor> cursor() const;
    QString cursorText() const;
    const std::optional<Place>& place() const { return m_place; }
    int columnOf(double share) const;
    double shareOf(int column) const;

    /// How wide a share of the band is shown, in columns.
    double columnsOf(double share) const;

    /// Held within the picture. Tells of it.
    void moveCursorTo(int column, int row);
    void removeCursor();

    /// To be changed by `changeSelection`.
    const WaterfallSelection& selection() const { return m_selection; }

    /// Paints what has become of it, and tells of it.
    void changeSelection(const std::function<void(WaterfallSelection&)>& change);

    /// Of a window with a picture of that size.
    QSize sizeAround(const QSize& picture) const;

    /// Lays out window and picture anew, where that is needed.
    void arrange();

    /// The colours of the palette may be other ones.
    void recolour();

    void paint(QPainter& painter);

    /// The same made to the end, and without the cursor.
    QImage image();

private:
    bool isEmpty() const;
    void changeTimeRange(const TimeRange& range);
    void takeBand();
    BandPart part() const;
    double frequencyOf(double share) const;
    void arrangeRuler();
    void workSoon();
    void work();
    QRect areaOf(int firstRow, int endRow, int beyond) const;
    QRect headline() const;
    void setPlace(const std::optional<Place>& place);
    void tellCursor();
    void updateCross();
    void updateEdges(const std::optional<TimeRange>& before);
    WaterfallReading reading(const WaterfallCursor& cursor) const;
    void paintHeadline(QPainter& painter) const;
    void paintPicture(QPainter& painter) const;
    void paintOver(QPainter& painter) const;

    WaterfallView& m_view;
    FrequencyRuler* const m_ruler;
    QTimer m_slices;
    const OverviewLevels* m_levels = nullptr;
    WaterfallPicture m_picture;
    WaterfallLayout m_layout;
    WaterfallFlags m_flags;
    WaterfallSelection m_selection;
    TimeRange m_range;
    Band m_band;
    std::optional<std::pair<double, double>> m_frequencies; ///< that are shown; otherwise all
    std::optional<Place> m_place;                           ///< of the cursor
    std::optional<WaterfallCursor> m_told;
    QString m_emptyText;
    double m_lowest;
    double m_highest;
    bool m_hidesCursor = false; ///< while it is painted for an image
};

} // namespace SPECTRUM_OVERVIEW
