#pragma once

#include <chartcontrols/bookmarktype.h>
#include <chartcontrols/chartcontrols_export.h>
#include <mapwidgets/xmarkertop.h>
#include <mapwidgets/xrulertop.h>

#include <memory>
#include <utility>
#include <vector>

class ReplayBarAnnouncer;
struct ReplayBarTrack;

/// A recording on an axis of time, from its start to its stop, in microseconds since the epoch: with a marker at the
/// current position, marked ranges, and bookmarks. Start, stop and position are float values of the tree.
///
/// Marker 1 is the position, 2 and 3 are free for the window around the bar, and the bookmarks are 6 and up, in the
/// order in which they were set. Where it is allowed, users set a bookmark by a double click or with Insert at the
/// position, drag it, and take it away with Delete, which goes on to its neighbour; Return takes the position to the
/// current bookmark. A context menu offers the same. All other keys are those of XMarkerTop.
///
/// Times are those of the zone of the process, which stands above the ruler with the date, beside the time of the
/// current marker. To programs that read the screen the bar is a slider: its value is the current marker's moment, its
/// description the marker's name. They are told of both when another marker becomes the current one.
class CHARTCONTROLS_EXPORT VCReplayBar : public XRulerTop, public XMarkerTop, public IObserver
{
    Q_OBJECT

public:
    static constexpr int PositionMarker = 1;
    static constexpr int FirstBookmarkMarker = 6;

    /// Without `showRuler` there are no times above the bar.
    VCReplayBar(QWidget* parent, const char* name, bool showRuler);
    ~VCReplayBar() override;

    /// Ties start, stop and position to the values at these paths; to none where there is no float value.
    void SetRecordingStart_ValuePath(const QString& path);
    void SetRecordingStop_ValuePath(const QString& path);
    void SetCurrentPosition_ValuePath(const QString& path);

    /// 0 without a value. The bar is empty unless it has both.
    double GetRecordingStart() const;
    double GetRecordingStop() const;

    /// The ranges that are highlighted, each from its first to its second moment; one of a single moment shows as a
    /// line.
    void SetRangeVector(const std::vector<std::pair<long long, long long>>& ranges);
    const std::vector<std::pair<long long, long long>>& GetRangeVector() const { return m_ranges; }

    /// Replaces the bookmarks. With `notify` it is told as if a user had done it. A bookmark that the mouse holds is
    /// let go of, unless the same one, where it is now or was grabbed, stands in its place. The current bookmark stays
    /// the current one, whatever its number becomes; if it is gone, the position is. In a list as long as before it is
    /// not gone where in its place only the text is another, or only the time, within the recording.
    void SetBookmarks(const std::vector<BookmarkType>& bookmarks, bool notify);

    /// As they stand on the bar, in the order in which they were set.
    std::vector<BookmarkType> GetBookmarks() const;

    /// Whether users may set bookmarks and take them away; not at first. Whether they may move one is a matter of its
    /// marker, which is enabled at first.
    void AllowCreationOfBookMarks(bool allow);

    /// Date, time and zone of the current marker; empty without a value.
    QString positionText() const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
    void Update(Observable* source, TChangeCode code) override;

Q_SIGNALS:
    /// A user has set, moved or taken away a bookmark; of a drag, once it has ended in another place.
    void signalBookmarksChanged();

    /// A user has moved the position, as opposed to whoever else writes its value; of a drag, each time. Microseconds
    /// since the epoch.
    void signalPositionMoved(double position);

protected:
    bool event(QEvent* event) override;
    void changeEvent(QEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

    int rulerTop() const override;
    double tickDistance(double least) const override;
    double firstTick(double value, double distance) const override;
    double nextTick(double tick, double distance) const override;
    QString tickText(double value, double distance) const override;
    QString endText(double value) const override;
    QString longestTickText(double distance) const override;

    int markerTop() const override;
    bool isFlag(int number) const override { return number >= FirstBookmarkMarker; }
    QColor markerColor(int number) const override;
    double keyStep(double least) const override;
    double roundedPosition(double position) const override;
    void markerChanged(int number, bool moved) override;
    void markerMovedByUser(int number, double position) override;
    void markerDropped(int number) override;

    /// What is read of the current marker beside the dates, the longest text first; empty where it is not shown.
    QStringList readings() const;

private:
    friend class ReplayBarMenu; // does what users do

    void tie(ValueObservingPtr<Value<double>>& value, const QString& path);
    void updateRange();
    int bookmarkMarker(std::size_t index) const { return FirstBookmarkMarker + static_cast<int>(index); }
    BookmarkType& bookmarkOf(int number) { return m_bookmarks[static_cast<std::size_t>(number - FirstBookmarkMarker)]; }
    void endDragUnlessKept(const std::vector<BookmarkType>& bookmarks);
    void setBookmarkCount(std::size_t count);
    void showBookmark(std::size_t index, const BookmarkType& bookmark);
    int currentAmong(const std::vector<BookmarkType>& bookmarks) const;
    bool isEdited(std::size_t index, const std::vector<BookmarkType>& bookmarks) const;
    int bookmarkBeside(int number) const;
    void createBookmark(double moment);
    void removeBookmark(int number);
    bool canBeBookmarked(double moment) const;
    bool canBeRemoved(int number) const;
    bool editByKey(const QKeyEvent& event);
    bool hasRecording() const;

    void showToolTip(QPoint place, QPoint screenPlace);

    void paintHeadline(QPainter& painter) const;
    ReplayBarTrack track() const;
    void paintRecording(QPainter& painter) const;

    const bool m_showRuler;
    const std::unique_ptr<ReplayBarAnnouncer> m_announcer;
    ValueObservingPtr<Value<double>> m_start{this};
    ValueObservingPtr<Value<double>> m_stop{this};
    std::vector<std::pair<long long, long long>> m_ranges;
    std::vector<BookmarkType> m_bookmarks;
    std::vector<QString> m_bookmarkPaths; ///< of the values that the markers of the bookmarks are tied to
    BookmarkType m_grabbed;               ///< the bookmark that the mouse holds, as it was when it was grabbed
    bool m_allowCreation = false;
    bool m_isSettingBookmarks = false;
};
