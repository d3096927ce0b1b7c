#include <console/replay/replaydeck.h>

#include <console/channel/workchannelpanel.h>
#include <console/devices/workdevice.h>
#include <console/records/recordpane.h>
#include <console/records/recordsituation.h>
#include <console/replay/bookmarktableview.h>
#include <console/replay/replaycontrols.h>
#include <console/widgets/toolbutton.h>

#include <chartcontrols/vcreplaybar.h>
#include <host/userrights.h>
#include <observerbase/errorhandler.h>
#include <zelkobase/connection/abstractserverconnectiondata.h>
#include <zelkobase/data/recordextent.h>
#include <zelkobase/names/valuenames.h>
#include <zelkobase/state/channelvalues.h>
#include <zelkoguibase/bookmarks/bookmarkmodel.h>
#include <zelkoguibase/controller/zelkoserverguicontroller.h>
#include <zelkoguibase/recordlist/recordlistwidget.h>
#include <zelkoguibase/replaybar/replaybarwidget.h>
#include <zelkoguibase/state/zelkochannelmodel.h>

#include <QHBoxLayout>
#include <QMessageBox>
#include <QPushButton>
#include <QScopedValueRollback>
#include <QSettings>
#include <QToolButton>

#include <utility>

namespace ZelkoConsole {

using ZelkoGUI::BookmarkModel;
using ZelkoGUI::ReplayBarWidget;
using ZelkoGUI::ZelkoChannelModel;

namespace {

constexpr QLatin1String bookmarksKey("window/bookmarks");

QToolButton* makeFoldButton()
{
    auto* const button = makeToolButton("showBookmarks", QIcon(QStringLiteral(":/Zelko/RecordList/Bookmarks.svg")));
    button->setCheckable(true);
    nameToolButton(button, ReplayDeck::tr("Show the bookmarks"));
    button->setStatusTip(ReplayDeck::tr("Shows the bookmarks of the record as a list, or hides it."));
    return button;
}

QString notSentText(BookmarkDelivery::Outcome outcome)
{
    return outcome == BookmarkDelivery::Outcome::NoConnection
               ? ReplayDeck::tr("The bookmarks could not be sent: there is no connection to the recorder any more.")
               : ReplayDeck::tr("The recorder has not taken the bookmarks. They are still there, and not sent.");
}

// Where a replay is about to begin, unless that is in the record already.
bool isIn(const ZELKO_XML::RecordExtent& extent, double position)
{
    return position >= static_cast<double>(extent.start) && position <= static_cast<double>(extent.stop);
}

} // namespace

QString ReplayDeck::bookmarkMapPath()
{
    return zelko::names::join(zelko::names::zelkoLocal, QLatin1String("RecordBookmarks"));
}

ReplayDeck::ReplayDeck(const WorkChannel::Connection& connection, RecordPane* records, QWidget* parent)
    : QWidget(parent)
    , m_connection(connection)
    , m_records(*records)
    , m_controller(records->controller())
    , m_controls(new ReplayControls)
    , m_fold(makeFoldButton())
    , m_panel(new WorkChannelPanel)
    , m_table(new BookmarkTableView)
    , m_barRow(new QHBoxLayout)
{
    arrange();
    connectParts();
    followRecords();
    look();
}

ReplayDeck::~ReplayDeck()
{
    m_table->setBookmarks(nullptr);
    m_bar.reset();
}

void ReplayDeck::arrange()
{
    m_barRow->setSpacing(6);
    m_barRow->addWidget(m_controls);
    m_barRow->addWidget(m_fold);
    auto* const below = new QHBoxLayout;
    below->setSpacing(12);
    below->addWidget(m_panel, 3);
    below->addWidget(m_table, 2);
    auto* const rows = new QVBoxLayout(this);
    rows->setContentsMargins(0, 0, 0, 0);
    rows->setSpacing(6);
    rows->addLayout(m_barRow);
    rows->addLayout(below);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed); // what is to spare is the list's
    m_table->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    m_table->hide();
}

void ReplayDeck::connectParts()
{
    connect(m_fold, &QToolButton::toggled, m_table, &QWidget::setVisible);
    connect(m_controls, &ReplayControls::startWanted, this, &ReplayDeck::startReplay);
    connect(this, &ReplayDeck::answered, this, [this] { m_soon.ask(); });
    connect(UserRights::Instance(), &UserRights::UpdateUserRights, this, [this] { m_soon.ask(); });
}

// A record that went with its connection is selected still when it comes back.
void ReplayDeck::followRecords()
{
    const auto soon = [this] { m_soon.ask(); };
    connect(m_controller, &ZelkoGUI::IZelkoGUIController::si_selectedRecordsChanged, this, soon);
    connect(m_controller, &ZelkoGUI::IZelkoGUIController::si_activeDeviceChanged, this, soon);
    const ZelkoCommon::AbstractRecordListModel* const records = m_controller->recordListModel();
    connect(records, &QAbstractItemModel::rowsInserted, this, soon);
    connect(records, &QAbstractItemModel::modelReset, this, soon);
}

void ReplayDeck::setSubSystem(const QString& subSystem)
{
    if (subSystem == m_subSystem) {
        return;
    }
    m_subSystem = subSystem;
    m_bar.reset(); // it knows the channel
    m_panel->setChannel(nullptr);
    m_controls->setChannel(nullptr);
    m_channel = subSystem.isEmpty() ? nullptr : std::make_unique<WorkChannel>(subSystem, m_connection);
    if (m_channel) {
        followChannel(*m_channel);
    }
    updateBar();
    look();
}

void ReplayDeck::followChannel(WorkChannel& channel)
{
    m_panel->setChannel(&channel);
    m_controls->setChannel(&channel);
    connect(&channel, &WorkChannel::changed, this, [this] {
        updateBar();
        showChannel();
    });
    connect(channel.model(), &ZelkoChannelModel::si_replayStopped, this, &ReplayDeck::replayStopped);
}

void ReplayDeck::look()
{
    if (m_isAsking) {
        return; // whoever asks looks then
    }
    forgetGone();
    if (selected() != m_shown && !settleBookmarks()) {
        m_records.list()->select(m_shown.record, true);
        return;
    }
    updateBar();
    showSelected();
    showChannel();
}

bool ReplayDeck::isUnsent() const
{
    return m_bookmarks && m_bookmarks->getSynchState() == BookmarkModel::SynchLocalChange;
}

bool ReplayDeck::settleBookmarks(Leaving leaving)
{
    if (m_isAsking) {
        return false;
    }
    m_table->commitEdit();
    const bool asksUnsent = isUnsent() && !(m_isHeld && leaving == Leaving::User);
    const bool asksLost = !m_lost.isEmpty() && leaving == Leaving::Console;
    if (!asksUnsent && !asksLost) {
        return true;
    }
    const QScopedValueRollback asking(m_isAsking, true);
    const bool isSettled = (!asksUnsent || settleUnsent()) && (!asksLost || settleLost());
    QMetaObject::invokeMethod(this, &ReplayDeck::answered, Qt::QueuedConnection); // the asking has ended by then
    return isSettled;
}

bool ReplayDeck::settleUnsent()
{
    const QString question = mayChangeAnything() ? tr("Send them to the recorder?") : forbiddenText();
    switch (ask(tr("The bookmarks of the record were changed and are not sent yet."), question, mayChangeAnything())) {
    case Answer::Send:
        return send();
    case Answer::Discard:
        m_bookmarks->sl_reset();
        return true;
    case Answer::Stay:
        break;
    }
    return false;
}

bool ReplayDeck::settleLost()
{
    const Answer answer = ask(tr("Bookmarks were changed and are not sent yet."),
                              tr("Their record has gone with its connection. They wait for it to come back."), false);
    if (answer == Answer::Discard) {
        m_lost.clear();
    }
    return answer == Answer::Discard;
}

ReplayDeck::Answer ReplayDeck::ask(const QString& text, const QString& more, bool canSend)
{
    QMessageBox box(QMessageBox::Question, tr("Bookmarks"), text, QMessageBox::Cancel, window());
    box.setInformativeText(more);
    const QPushButton* const sendButton = canSend ? box.addButton(tr("&Send"), QMessageBox::AcceptRole) : nullptr;
    const QPushButton* const discard = box.addButton(QMessageBox::Discard);
    box.exec();
    if (sendButton && box.clickedButton() == sendButton) {
        return Answer::Send;
    }
    return box.clickedButton() == discard ? Answer::Discard : Answer::Stay;
}

// The connection may have gone while the user was asked, and the record with it; and he may go on editing while the
// recorder is waited for.
bool ReplayDeck::send()
{
    using Outcome = BookmarkDelivery::Outcome;
    const Outcome outcome = BookmarkDelivery(m_bookmarks.get(), m_controller).send(m_sendLimit);
    if (outcome != Outcome::Taken) {
        QMessageBox::warning(window(), tr("Bookmarks"), notSentText(outcome));
    }
    return outcome == Outcome::Taken && !isUnsent();
}

// Not while bookmarks were changed and not sent: another bar has its record set, and that takes those of the recorder.
// Nor while the user is asked about them.
void ReplayDeck::updateBar()
{
    if (m_isAsking && m_bar) {
        return;
    }
    if (!mayChangeAnything()) {
        m_table->commitEdit(); // what was typed while he had the right
    }
    WorkChannel* const beside = m_channel && m_channel->isOffered() ? m_channel.get() : nullptr;
    const bool hasRightModel = m_bookmarks && m_bookmarks->readOnly() != mayEdit();
    if (!hasRightModel || !m_bar || (beside != m_beside && !isUnsent())) {
        m_bar.reset();
        if (!hasRightModel) {
            makeBookmarks();
        }
        makeBar(beside);
        m_shown = {};
        showSelected();
    }
    hold();
}

// What is to be kept as it was changed stands in a list that can be changed.
bool ReplayDeck::mayEdit() const
{
    return mayChangeAnything() || isUnsent() || hasLost(selected());
}

// A recorder that takes a right away asks nobody.
void ReplayDeck::hold()
{
    const bool isHeld = isUnsent() && !mayChangeAnything();
    m_table->setLocked(isHeld);
    axis().setEnabled(!isHeld);
    if (auto* const apply = m_bar->findChild<QToolButton*>(QStringLiteral("ApplyBookmarks"))) {
        apply->setEnabled(isUnsent() && !isHeld);
    }
    const bool wasHeld = std::exchange(m_isHeld, isHeld);
    if (isHeld && !wasHeld && m_connection->isConnected(m_shown.subSystem)) {
        ErrorHandler::Instance()->ShowMessage(
            tr("%1 The bookmarks that were changed and not sent stay on show until they are discarded, or until they "
               "may be sent again.")
                .arg(forbiddenText()));
    }
}

// The model lets its bookmarks go with the record, be that one that was sent and not answered yet. They are still there
// when it says so.
void ReplayDeck::followState(BookmarkModel::enSynchState state)
{
    const auto before = std::exchange(m_state, state);
    const bool isOnItsWay = m_isAsking && before == BookmarkModel::SynchPending;
    if (state == BookmarkModel::SynchNoRecord && (before == BookmarkModel::SynchLocalChange || isOnItsWay)) {
        m_lost.insert(m_shown, m_bookmarks->entries());
    }
    m_soon.ask();
}

bool ReplayDeck::hasLost(const Shown& shown) const
{
    return m_lost.contains(shown) && isInList(shown) && m_connection->isConnected(shown.subSystem);
}

// What is not in a list that is complete has gone for good.
void ReplayDeck::forgetGone()
{
    if (m_controller && m_controller->isLoadedCompletely()) {
        m_lost.removeIf([this](const auto& lost) {
            const Shown& shown = lost.key();
            return shown.device == m_controller->activeDevice() && shown.subSystem == m_controller->activeSubsystem() &&
                   !isInList(shown);
        });
    }
}

void ReplayDeck::restoreLost()
{
    if (hasLost(m_shown) && !m_bookmarks->readOnly()) {
        m_bookmarks->setEntries(m_lost.take(m_shown));
    }
}

void ReplayDeck::makeBookmarks()
{
    m_table->setBookmarks(nullptr);
    m_bookmarks.reset(); // with its map, whose place the next one takes
    m_bookmarks = std::make_unique<BookmarkModel>(!mayEdit());
    m_state = BookmarkModel::SynchNoRecord;
    m_bookmarks->createItemMap(bookmarkMapPath());
    m_table->setBookmarks(m_bookmarks.get());
    connect(m_bookmarks.get(), &BookmarkModel::si_updateBookmarks, m_controller,
            &ZelkoGUI::IZelkoGUIController::sl_setBookmarkEntries);
    connect(m_bookmarks.get(), &BookmarkModel::si_synchStateChanged, this, &ReplayDeck::followState);
}

void ReplayDeck::makeBar(WorkChannel* beside)
{
    m_beside = beside;
    if (beside) {
        m_bar = std::make_unique<ReplayBarWidget>(beside->localValues(), beside->model(), m_bookmarks.get());
        connect(beside->model(), &ZelkoChannelModel::si_availableChannelState, m_bar.get(),
                [this] { takeUpPosition(); });
    } else {
        m_bar = std::make_unique<ReplayBarWidget>(m_bookmarks.get());
    }
    m_bar->setObjectName(QStringLiteral("replayBar"));
    connect(m_bar.get(), &ReplayBarWidget::si_currentPosChanged, m_bookmarks.get(),
            &BookmarkModel::sl_setNewBookmarkTime);
    connect(&axis(), &VCReplayBar::signalPositionMoved, this, &ReplayDeck::noteBegin);
    forgetBegin();
    m_barRow->insertWidget(1, m_bar.get(), 1);
    tabThroughBar();
    if (beside) {
        takeUpPosition();
    }
}

// From the left to the right, though the bar is made last.
void ReplayDeck::tabThroughBar()
{
    QWidget* before = m_controls->stopButton();
    QWidgetList parts = m_bar->findChildren<QWidget*>();
    parts.append(m_fold);
    for (QWidget* const part : parts) {
        if (part->focusPolicy() != Qt::NoFocus) {
            setTabOrder(std::exchange(before, part), part);
        }
    }
}

// A channel that only replays has a position as well.
void ReplayDeck::takeUpPosition()
{
    if (m_beside->model()->channelState() == ZelkoGlobal::ChannelRecordFlagOff) {
        m_bar->connectSignals();
    }
    bringPositionIntoRecord();
    noteCursor();
}

// Where the position of the channel is none of the record that is shown, no replay of that could begin there.
void ReplayDeck::bringPositionIntoRecord()
{
    const ZelkoChannelModel& model = *m_beside->model();
    const auto& position = model.channelValues()->valueCurrentReplayPosition();
    const auto record = m_controller ? m_controller->recordListModel()->getRecordData(m_shown.record) : nullptr;
    if (!record || !position || model.isReplaying() || model.isPaused()) {
        return;
    }
    const ZELKO_XML::RecordExtent extent = ZELKO_XML::recordExtent(*record);
    if (!isIn(extent, position->GetValue())) {
        position->SetValue(static_cast<double>(extent.start), nullptr);
    }
}

// The bar tells when its position moves, but not that it is another channel's. What is no time is in no record either.
void ReplayDeck::noteCursor()
{
    const double cursor = axis().GetMarker(VCReplayBar::PositionMarker)->GetPosition();
    const bool isTime = cursor >= 0 && cursor < 0x1p63;
    m_bookmarks->sl_setNewBookmarkTime(isTime ? static_cast<quint64>(cursor) : 0);
}

ReplayDeck::Shown ReplayDeck::selected() const
{
    const QStringList records = m_controller ? m_controller->selectedRecords() : QStringList();
    return records.size() == 1
               ? Shown{records.constFirst(), m_controller->activeDevice(), m_controller->activeSubsystem()}
               : Shown();
}

bool ReplayDeck::isInList(const Shown& shown) const
{
    return m_controller && !shown.record.isEmpty() && m_controller->recordListModel()->hasRecord(shown.record);
}

void ReplayDeck::showSelected()
{
    const Shown wanted = selected();
    m_controls->setSelected(m_controller ? static_cast<int>(m_controller->selectedRecords().size()) : 0);
    const bool isBack = m_bookmarks->getSynchState() == BookmarkModel::SynchNoRecord && isInList(wanted);
    if (wanted == m_shown && !isBack) {
        return;
    }
    m_shown = wanted;
    if (wanted.record.isEmpty()) {
        m_bar->resetRecord();
    } else {
        m_bar->setRecord(wanted.record, m_controller->recordListModel(), wanted.device);
    }
    if (isBack) {
        forgetBegin();
    }
    noteExtent();
    restoreLost();
}

void ReplayDeck::showChannel()
{
    const ChannelSituation situation = m_channel ? m_channel->situation() : ChannelSituation();
    m_records.workDevice()->setBusy(situation.hasRecording(), situation.hasReplay());
    m_bar->setPositionMovable(!situation.hasReplay());
}

// The bar begins at the start of the record as well.
void ReplayDeck::forgetBegin()
{
    m_begin = {};
    m_isOwnReplay = false;
}

void ReplayDeck::noteExtent()
{
    const auto record = m_controller ? m_controller->recordListModel()->getRecordData(m_shown.record) : nullptr;
    m_begin.setExtent(record ? ZELKO_XML::recordExtent(*record) : ZELKO_XML::RecordExtent{0, 0});
}

void ReplayDeck::noteBegin(double position)
{
    noteExtent(); // the record may have grown
    m_begin.put(position);
}

// The device is the one that has the record, whichever the workstation records on. Somebody else may have moved the
// position of the channel since this operator has put it somewhere.
void ReplayDeck::startReplay()
{
    const auto record = m_controller ? m_controller->recordListModel()->getRecordData(m_shown.record) : nullptr;
    if (!record || !m_channel) {
        return;
    }
    ZelkoChannelModel& model = *m_channel->model();
    model.setDeviceID(m_shown.device);
    model.setRecordData(*record);
    noteExtent();
    if (const auto& position = model.channelValues()->valueCurrentReplayPosition()) {
        position->SetValue(m_begin.position(), nullptr);
    }
    model.setReplayRunning();
    m_isOwnReplay = true;
}

// Where the last one stopped the next one begins; somebody else's is none of this operator's business.
void ReplayDeck::replayStopped()
{
    const auto& position = m_channel->model()->channelValues()->valueCurrentReplayPosition();
    if (std::exchange(m_isOwnReplay, false) && position) {
        noteBegin(position->GetValue());
    }
}

VCReplayBar& ReplayDeck::axis() const
{
    return *m_bar->findChild<VCReplayBar*>();
}

void ReplayDeck::goToBar()
{
    axis().setFocus();
}

void ReplayDeck::goToBookmarks()
{
    showBookmarks(true);
    m_table->setFocus();
}

void ReplayDeck::showBookmarks(bool show)
{
    m_fold->setChecked(show);
}

bool ReplayDeck::areBookmarksShown() const
{
    return m_fold->isChecked();
}

void ReplayDeck::savePlaces(QSettings& settings) const
{
    settings.setValue(bookmarksKey, areBookmarksShown());
}

void ReplayDeck::restorePlaces(const QSettings& settings)
{
    showBookmarks(settings.value(bookmarksKey).toBool());
}

} // namespace ZelkoConsole
