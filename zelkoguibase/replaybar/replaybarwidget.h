#pragma once

#include <observerbase/iobserver.h>
#include <zelkobase/state/channelavailablestate.h>
#include <zelkoguibase/bookmarks/bookmarkmodel.h>
#include <zelkoguibase/zelkoguibase_export.h>

#include <QWidget>

#include <memory>

class VCReplayBar;

namespace ZelkoCommon {
class AbstractRecordListModel;
class LocalZelkoValues;
} // namespace ZelkoCommon

namespace ZelkoGUI {

class ZelkoChannelModel;

/// One record on an axis of time: from its start to its stop, with a position, a highlighted range, and the bookmarks
/// of a bookmark model. With a model that can be edited there are two buttons more, which send the bookmarks or take
/// them back.
///
/// By itself the position is a value of this widget that the user drags. Beside a channel it is that of the channel:
/// while it replays the moment that the waterfall shows, otherwise the moment at which the next replay begins.
///
/// Times are microseconds since the epoch. The models are not owned and may go first. GUI thread.
class ZELKOGUIBASE_EXPORT ReplayBarWidget : public QWidget, public IObserver
{
    Q_OBJECT

public:
    /// By itself; `bookmarks` may be null.
    explicit ReplayBarWidget(BookmarkModel* bookmarks, QWidget* parent = nullptr);

    /// Beside the channel of `channel`, which is not null; `bookmarks` may be.
    ReplayBarWidget(const ZelkoCommon::LocalZelkoValues& localValues, ZelkoChannelModel* channel,
                    BookmarkModel* bookmarks, QWidget* parent = nullptr);
    ~ReplayBarWidget() override;

    /// Shows a record, and has the bookmark model show its bookmarks; nothing with an empty ID, a null model, or one
    /// without that record. The position goes to the start of the record unless it reaches as far as the one before;
    /// so it does when the record grows.
    void setRecord(const QString& recordID, ZelkoCommon::AbstractRecordListModel* model, const QString& deviceID);
    void resetRecord();

    /// Takes the channel to be ready: takes up its position, and follows its replay. Nothing happens without a channel,
    /// nor where that was done already.
    void connectSignals();

    /// Highlights a range that is given from the start of the record, in microseconds, as far as the record has it;
    /// nothing where `to` is below `from`.
    void setRelativeRange(const quint64& from, const quint64& to);

    /// Whether the marker of the position is shown, and whether the user may move it; both at first.
    void showCurrentPosition(bool show);
    void setPositionMovable(bool movable);

    void Update(Observable* source, TChangeCode code) override;

public Q_SLOTS:
    /// Highlights a range, one of a single moment as well; nothing where `stop` is below `start`.
    void sl_setRange(quint64 start, quint64 stop);

    /// Highlights nothing.
    void sl_resetRange();

Q_SIGNALS:
    /// The position is another, whoever moved it; once for a record that was set.
    void si_currentPosChanged(quint64 position);

protected:
    bool event(QEvent* event) override;

private Q_SLOTS:
    void sl_bookmarkSynchStateChanged(ZelkoGUI::BookmarkModel::enSynchState state);
    void sl_recordChanged(const QString& recordID);
    void sl_recordDeleted(const QString& recordID);
    void sl_allRecordsChanged();
    void sl_modelDeleted();
    void updateRecordPositions();
    void sl_replayStarted();
    void sl_replayStopped();
    void sl_channelStateChanged(ZelkoGlobal::ChannelAvailableState state);

private:
    void createWidget();
    void createBar();
    void createButtons();
    void connectChannel();
    void takeUpPosition();
    void disconnectChannel();
    void resetReplayBarValues();
    void showPositionOnBar();
    void writeExtent();
    void tellPosition();

    struct Private;
    const std::unique_ptr<Private> d;
};

} // namespace ZelkoGUI
