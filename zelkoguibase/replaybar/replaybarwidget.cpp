#include <zelkoguibase/replaybar/replaybarwidget.h>

#include <zelkoguibase/recordlist/followrecords_p.h>
#include <zelkoguibase/state/zelkochannelmodel.h>

#include <chartcontrols/vcreplaybar.h>
#include <controlwidgets/guicentral.h>
#include <valuecore/valueptr.h>
#include <valuecore/valuetypes.h>
#include <zelkobase/data/recordextent.h>
#include <zelkobase/state/channelvalues.h>
#include <zelkobase/state/localzelkovalues.h>

#include <QHBoxLayout>
#include <QPointer>
#include <QToolButton>

#include <algorithm>
#include <limits>

namespace ZelkoGUI {

using ZELKO_XML::RecordExtent;
using ZelkoCommon::AbstractRecordListModel;
using FloatPtr = ValuePtr<Value<double>>;

namespace {

constexpr quint64 latest = std::numeric_limits<quint64>::max();

// A double has no room for the last digits of the largest numbers, and the next one behind them fits no integer.
quint64 toTime(double moment)
{
    constexpr double beyond = 18446744073709551616.0;
    if (!(moment > 0)) {
        return 0;
    }
    return moment >= beyond ? latest : static_cast<quint64>(moment);
}

long long onBar(quint64 time)
{
    return static_cast<long long>(std::min<quint64>(time, std::numeric_limits<long long>::max()));
}

// The sum may be larger than any number there is.
quint64 heldWithin(const RecordExtent& extent, quint64 offset)
{
    return extent.stop > extent.start ? extent.start + std::min(offset, extent.stop - extent.start) : extent.start;
}

/// Float values of a widget, on the tree for as long as the widget lives.
class OwnValues
{
public:
    OwnValues() = default;
    ~OwnValues()
    {
        for (const QString& path : m_paths) {
            GuiCentral::Instance().RemoveValue(path);
        }
    }
    OwnValues(const OwnValues&) = delete;
    OwnValues& operator=(const OwnValues&) = delete;

    const QString& create()
    {
        m_paths.append(GuiCentral::Instance().CreateUniqueValueFloat(0.0, 0.0, static_cast<double>(latest), 1.0));
        return m_paths.constLast();
    }

private:
    QStringList m_paths;
};

template <typename Pointer>
QString pathOf(const Pointer& value)
{
    return value ? value->GetPathName() : QString();
}

QToolButton* createButton(const char* name, QWidget* parent)
{
    auto* const button = new QToolButton(parent);
    button->setObjectName(QLatin1String(name));
    button->setAutoRaise(true);
    return button;
}

// A button with nothing but an icon has no name for those who cannot see it.
void describe(QToolButton* button, const QString& text)
{
    button->setToolTip(text);
    button->setAccessibleName(text);
}

} // namespace

struct ReplayBarWidget::Private
{
    Private(IObserver* widget, BookmarkModel* bookmarkModel)
        : position(widget)
        , bookmarks(bookmarkModel)
    {}

    OwnValues own; // outlives the pointers to them
    QPointer<VCReplayBar> bar;
    FloatPtr start;
    FloatPtr stop;
    ValueObservingPtr<Value<double>> position;
    FloatPtr replayPosition;
    FloatPtr waterfallTimestamp;

    QPointer<BookmarkModel> bookmarks;
    QPointer<ZelkoChannelModel> channel;
    QToolButton* apply = nullptr;
    QToolButton* reset = nullptr;

    QString recordID;
    QPointer<AbstractRecordListModel> records;
    RecordExtent extent{latest, latest}; // of no record, so that the first one is always another
    bool isUpdating = false;
    bool isChannelConnected = false;
};

ReplayBarWidget::ReplayBarWidget(BookmarkModel* bookmarks, QWidget* parent)
    : QWidget(parent)
    , d(std::make_unique<Private>(this, bookmarks))
{
    d->start.GetFromTree(d->own.create());
    d->stop.GetFromTree(d->own.create());
    d->position.GetFromTree(d->own.create());
    createWidget();
}

ReplayBarWidget::ReplayBarWidget(const ZelkoCommon::LocalZelkoValues& localValues, ZelkoChannelModel* channel,
                                 BookmarkModel* bookmarks, QWidget* parent)
    : QWidget(parent)
    , d(std::make_unique<Private>(this, bookmarks))
{
    d->channel = channel;
    d->waterfallTimestamp = localValues.valueWaterfallTimestamp();
    d->start.GetFromTree(d->own.create());
    d->stop.GetFromTree(d->own.create());
    sl_channelStateChanged(channel->channelState());
    createWidget();
    connect(channel, &ZelkoChannelModel::si_availableChannelState, this, &ReplayBarWidget::sl_channelStateChanged);
}

ReplayBarWidget::~ReplayBarWidget() = default;

void ReplayBarWidget::createWidget()
{
    auto* const layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    createBar();
    layout->addWidget(d->bar, 1);
    if (d->bookmarks.isNull()) {
        return;
    }
    d->bookmarks->connectVCReplayBar(d->bar);
    if (!d->bookmarks->readOnly()) {
        createButtons();
        layout->addWidget(d->apply);
        layout->addWidget(d->reset);
        connect(d->bookmarks, &BookmarkModel::si_synchStateChanged, this,
                &ReplayBarWidget::sl_bookmarkSynchStateChanged);
        sl_bookmarkSynchStateChanged(d->bookmarks->getSynchState());
    }
}

void ReplayBarWidget::createBar()
{
    d->bar = new VCReplayBar(this, "ZelkoReplayBar", true);
    d->bar->SetAxisZoomEnable(false, false);
    d->bar->SetPixOffset(10, 10);
    resetReplayBarValues();
    showCurrentPosition(true);
    setPositionMovable(true);
    d->bar->SetMarkerName(VCReplayBar::PositionMarker, tr("record position"));
    for (const int number : {2, 3}) {
        d->bar->GetMarker(number)->SetShowMarker(false);
    }
}

// The focus goes first, so that an editor that is open in a table gives the model what was typed before it is sent.
void ReplayBarWidget::createButtons()
{
    d->apply = createButton("ApplyBookmarks", this);
    d->apply->setIcon(QIcon(QStringLiteral(":/Zelko/Bookmarks/ApplyBookmarks.svg")));
    describe(d->apply, tr("send bookmarks to ZELKO"));
    d->reset = createButton("ResetBookmarks", this);
    connect(d->apply, &QToolButton::clicked, d->apply, qOverload<>(&QToolButton::setFocus));
    connect(d->apply, &QToolButton::clicked, d->bookmarks, &BookmarkModel::sl_synchronize);
    connect(d->reset, &QToolButton::clicked, d->bookmarks, &BookmarkModel::sl_reset);
}

void ReplayBarWidget::resetReplayBarValues()
{
    if (d->start) {
        d->bar->SetRecordingStart_ValuePath(pathOf(d->start));
    }
    if (d->stop) {
        d->bar->SetRecordingStop_ValuePath(pathOf(d->stop));
    }
    if (d->position) {
        d->bar->SetCurrentPosition_ValuePath(pathOf(d->position));
    }
}

void ReplayBarWidget::setRecord(const QString& recordID, AbstractRecordListModel* model, const QString& deviceID)
{
    d->recordID = recordID;
    followRecords(d->records, model, this, &ReplayBarWidget::sl_recordChanged, &ReplayBarWidget::sl_recordDeleted,
                  &ReplayBarWidget::sl_allRecordsChanged, &ReplayBarWidget::sl_modelDeleted);
    if (d->bookmarks) {
        d->bookmarks->setRecord(recordID, model, false, deviceID);
    }
    updateRecordPositions();
}

void ReplayBarWidget::resetRecord()
{
    setRecord(QString(), nullptr, QString());
}

void ReplayBarWidget::updateRecordPositions()
{
    const auto record = d->records ? d->records->getRecordData(d->recordID) : nullptr;
    const RecordExtent extent = record ? ZELKO_XML::recordExtent(*record) : RecordExtent{0, 0};
    if (extent == d->extent) {
        return;
    }
    d->extent = extent;
    writeExtent();
    if (d->position) {
        tellPosition();
    }
}

void ReplayBarWidget::writeExtent()
{
    const auto start = static_cast<double>(d->extent.start);
    d->isUpdating = true;
    if (d->start) {
        d->start->SetValue(start, this);
    }
    if (d->stop) {
        d->stop->SetValue(static_cast<double>(d->extent.stop), this);
    }
    if (d->position) {
        d->position->SetValue(start, this);
    }
    d->isUpdating = false;
}

void ReplayBarWidget::tellPosition()
{
    Q_EMIT si_currentPosChanged(toTime(d->position->GetValue()));
}

void ReplayBarWidget::Update(Observable* source, TChangeCode code)
{
    const bool isContent = code == TChangeCode::ValueChanged || code == TChangeCode::ValueRefreshed;
    if (isContent && !d->isUpdating && d->position && source == d->position.get()) {
        tellPosition();
    }
}

void ReplayBarWidget::setRelativeRange(const quint64& from, const quint64& to)
{
    sl_setRange(heldWithin(d->extent, from), heldWithin(d->extent, to));
}

void ReplayBarWidget::sl_setRange(quint64 start, quint64 stop)
{
    if (stop < start) {
        sl_resetRange();
    } else {
        d->bar->SetRangeVector({{onBar(start), onBar(stop)}});
    }
}

void ReplayBarWidget::sl_resetRange()
{
    d->bar->SetRangeVector({});
}

void ReplayBarWidget::showCurrentPosition(bool show)
{
    d->bar->GetMarker(VCReplayBar::PositionMarker)->SetShowMarker(show);
}

void ReplayBarWidget::setPositionMovable(bool movable)
{
    d->bar->GetMarker(VCReplayBar::PositionMarker)->SetMoveable(movable);
}

bool ReplayBarWidget::event(QEvent* event)
{
    return QWidget::event(event);
}

void ReplayBarWidget::sl_bookmarkSynchStateChanged(BookmarkModel::enSynchState state)
{
    const bool isExternal = state == BookmarkModel::SynchExternalChange;
    d->apply->setEnabled(state == BookmarkModel::SynchLocalChange);
    d->reset->setEnabled(state == BookmarkModel::SynchLocalChange || isExternal);
    d->reset->setIcon(QIcon(isExternal ? QStringLiteral(":/Zelko/Bookmarks/RefreshBookmarks.svg")
                                       : QStringLiteral(":/Zelko/Bookmarks/ResetBookmarks.svg")));
    describe(d->reset, isExternal ? tr("bookmarks changed by an external application - reload from ZELKO")
                                  : tr("reset bookmarks from ZELKO"));
}

void ReplayBarWidget::sl_recordChanged(const QString& recordID)
{
    if (recordID == d->recordID) {
        updateRecordPositions();
    }
}

void ReplayBarWidget::sl_recordDeleted(const QString& recordID)
{
    if (recordID == d->recordID) {
        resetRecord();
    }
}

void ReplayBarWidget::sl_allRecordsChanged()
{
    updateRecordPositions();
}

void ReplayBarWidget::sl_modelDeleted()
{
    resetRecord();
}

void ReplayBarWidget::connectSignals()
{
    sl_channelStateChanged(ZelkoGlobal::ChannelReady);
}

void ReplayBarWidget::sl_channelStateChanged(ZelkoGlobal::ChannelAvailableState state)
{
    switch (state) {
    case ZelkoGlobal::ChannelReady:
        connectChannel();
        break;
    case ZelkoGlobal::ChannelNotSet:
    case ZelkoGlobal::ChannelValuesMissing:
    case ZelkoGlobal::ChannelDisconnected:
        disconnectChannel();
        break;
    case ZelkoGlobal::ChannelRecordFlagOff:
        break;
    }
}

// A flag of the channel that was off for a while is no reason to move the position: a replay that is paused keeps it
// where it ran. Another channel is one, though nothing has told that the one before went.
void ReplayBarWidget::connectChannel()
{
    if (d->channel.isNull()) {
        return;
    }
    const FloatPtr& replayPosition = d->channel->channelValues()->valueCurrentReplayPosition();
    if (d->isChannelConnected && replayPosition.get() == d->replayPosition.get()) {
        return;
    }
    if (!d->isChannelConnected) {
        connect(d->channel, &ZelkoChannelModel::si_replayRunning, this, &ReplayBarWidget::sl_replayStarted);
        connect(d->channel, &ZelkoChannelModel::si_replayStopped, this, &ReplayBarWidget::sl_replayStopped);
    }
    d->isChannelConnected = true;
    d->replayPosition = replayPosition;
    takeUpPosition();
}

void ReplayBarWidget::takeUpPosition()
{
    if (d->channel->isReplaying()) {
        d->position.GetFromTree(pathOf(d->waterfallTimestamp));
    } else if (d->channel->isStopped() || d->channel->isRecording()) {
        d->position.GetFromTree(pathOf(d->replayPosition));
    }
    if (d->bar) {
        resetReplayBarValues();
    }
}

void ReplayBarWidget::disconnectChannel()
{
    if (d->isChannelConnected && d->channel) {
        disconnect(d->channel, &ZelkoChannelModel::si_replayRunning, this, &ReplayBarWidget::sl_replayStarted);
        disconnect(d->channel, &ZelkoChannelModel::si_replayStopped, this, &ReplayBarWidget::sl_replayStopped);
    }
    d->isChannelConnected = false;
}

// While a record is replayed its samples come out of a long chain; what the user sees of them is told by the waterfall.
void ReplayBarWidget::sl_replayStarted()
{
    d->position.GetFromTree(pathOf(d->waterfallTimestamp));
    showPositionOnBar();
}

void ReplayBarWidget::sl_replayStopped()
{
    if (d->replayPosition) {
        d->position.GetFromTree(pathOf(d->replayPosition));
        showPositionOnBar();
    }
}

void ReplayBarWidget::showPositionOnBar()
{
    d->bar->SetCurrentPosition_ValuePath(pathOf(d->position));
}

} // namespace ZelkoGUI
