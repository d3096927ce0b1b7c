#pragma once

#include <overviewdisplay/overviewdisplay_export.h>

#include <zelkobase/data/bookmarkentry.h>

#include <QVector>
#include <QWidget>

#include <memory>
#include <optional>

class QMenu;

namespace SPECTRUM_OVERVIEW {

class OverviewLevels;
class WaterfallHands;
class WaterfallScene;

/// What a waterfall shows at its cursor.
struct OVERVIEWDISPLAY_EXPORT WaterfallCursor
{
    quint64 time = 0;     ///< microseconds since the epoch
    double frequency = 0; ///< hertz; NaN: not known
    double level = 0;     ///< dB of full scale, the strongest of what lies on this pixel; NaN: has not arrived

    /// Two without a frequency, or without a level, are equal in that.
    bool operator==(const WaterfallCursor& other) const;
};

/// A range of time in microseconds since the epoch; `stop` is behind it.
struct TimeRange
{
    quint64 start = 0;
    quint64 stop = 0;

    bool operator==(const TimeRange&) const = default;
};

/// The spectra of a record as a picture: frequency from left to right, time downwards, levels as colours, with the
/// scales that belong to it. Over it lie the bookmarks, a selected range of time, and a cursor.
///
/// Each pixel has the strongest level of what falls on it, so that no burst is lost. The picture is made in slices of
/// some milliseconds: what has arrived is seen a moment later, and meanwhile the old picture is there in the new place.
///
/// The cursor follows the mouse and the arrow keys (with Ctrl ten times as far, with Page Up and Down a tenth of the
/// view) and stays where it was left. With the left button a range is selected, whose edges can be dragged afterwards;
/// with Shift and a key that moves the cursor up or down it grows from where the cursor was. A click beside it, or
/// Escape, lets it go. The view shows a range of time and does not choose it: the wheel, + and -, a double click,
/// Return (to the selection), Shift with the wheel, Ctrl with Page Up and Down (earlier and later) and Home (the whole)
/// only ask for another one. With Ctrl, the wheel, + and - zoom into the frequencies, which takes no other levels and
/// so happens at once; Home shows all of them again. Insert asks for a bookmark at the cursor.
///
/// Where the text of a time is shown it is local. To programs that read the screen the view is a chart whose value is
/// the text of the cursor. For the GUI thread.
class OVERVIEWDISPLAY_EXPORT WaterfallView : public QWidget
{
    Q_OBJECT

public:
    static constexpr double LowestLevel = -327.0; ///< dB; the scale shows nothing beyond these
    static constexpr double HighestLevel = 327.0;

    explicit WaterfallView(QWidget* parent = nullptr);
    ~WaterfallView() override;

    /// What is shown; null: nothing. Not owned: outlives the view or is taken away before. To be called as well when
    /// all of it has become other levels (`OverviewLevels::begin`): from then on nothing that was there is read. What
    /// was painted of the old ones stays behind the new ones until these arrive.
    void setLevels(const OverviewLevels* levels);

    /// These lines, both included, have changed. Only they are painted anew. To be called once for a batch, not for
    /// each.
    void linesArrived(int first, int last);

    /// What the axis of time shows. Nothing changes unless `start` is before `stop`.
    void setTimeRange(quint64 start, quint64 stop);

    /// Shows no time, and so no axis of it and no levels, until there is another range. The cursor is gone.
    void clearTimeRange();

    /// 0 to 0: none.
    TimeRange timeRange() const;

    /// What the axis of frequency shows, in hertz. Nothing changes unless `low` is below `high` and both are numbers;
    /// what lies outside of the levels is cut off.
    void setFrequencyRange(double low, double high);
    void showAllFrequencies();

    /// The levels of the darkest and the brightest colour, in dB of full scale; -120 and 0 at first. Nothing changes
    /// unless `lowest` is below `highest` and both are numbers; nothing is painted anew where they are as they were.
    void setLevelRange(double lowest, double highest);

    /// In any order; the texts may be any.
    void setBookmarks(const QVector<ZELKO_XML::BookmarkEntry>& bookmarks);

    /// Selects a range, which may lie anywhere. Nothing changes unless `start` is before `stop`. Like `clearSelection`
    /// it ends a drag of the mouse.
    void setSelection(quint64 start, quint64 stop);
    void clearSelection();
    std::optional<TimeRange> selection() const;

    /// Until the mouse or a key brings it back.
    void removeCursor();
    std::optional<WaterfallCursor> cursor() const;

    /// Date, time, frequency and level of the cursor; empty without one.
    QString cursorText() const;

    /// What stands in place of the picture while there are no levels; plain text.
    void setEmptyText(const QString& text);

    /// Where the levels are painted, in pixels of the window; empty where there is no room for them.
    QRectF pictureArea() const;

    /// The picture with its scales, bookmarks and selection and without the cursor, in the pixels of the screen. Made
    /// to the end, so that it may take some tenths of a second.
    QImage image() const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

Q_SIGNALS:
    /// The cursor is in another place, its level is another one, or it is gone: see `cursor()`.
    void si_cursorMoved();

    /// By the user or by the program; during a drag with each step of the mouse.
    void si_selectionChanged();

    /// The user wants to see another range of time, a part or more than what is shown; it may reach beyond the record.
    /// `start` is before `stop`.
    void si_zoomAsked(quint64 start, quint64 stop);

    /// The user wants to see the whole record.
    void si_zoomOutAsked();

    /// The user wants a bookmark there.
    void si_bookmarkAsked(quint64 time);

    /// A context menu is about to open, with the entries of the view in it; more may be added. It deletes itself.
    void si_menuAboutToShow(QMenu* menu);

protected:
    bool event(QEvent* event) override;
    void changeEvent(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

private:
    const std::unique_ptr<WaterfallScene> m_scene;
    const std::unique_ptr<WaterfallHands> m_hands;
};

} // namespace SPECTRUM_OVERVIEW
