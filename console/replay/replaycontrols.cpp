#include <console/replay/replaycontrols.h>

#include <console/channel/workchannel.h>
#include <console/widgets/toolbutton.h>
#include <console/widgets/usable.h>

#include <zelkoguibase/state/zelkochannelmodel.h>

#include <QHBoxLayout>
#include <QToolButton>

namespace ZelkoConsole {

ReplayControls::ReplayControls(QWidget* parent)
    : QWidget(parent)
    , m_play(makeToolButton("startReplay", glyphIcon(Glyph::Play)))
    , m_pause(makeToolButton("pauseReplay", glyphIcon(Glyph::Pause)))
    , m_stop(makeToolButton("stopReplay", glyphIcon(Glyph::Stop)))
{
    setObjectName(QStringLiteral("replayControls"));
    nameToolButton(m_pause, tr("Pause the replay"));
    nameToolButton(m_stop, tr("Stop the replay"));
    auto* const layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(2);
    for (QToolButton* const button : {m_play, m_pause, m_stop}) {
        layout->addWidget(button);
    }
    connectParts();
    update();
}

void ReplayControls::connectParts()
{
    connect(m_play, &QToolButton::clicked, this, &ReplayControls::play);
    connect(m_pause, &QToolButton::clicked, this, [this] {
        if (m_channel) {
            m_channel->model()->setReplayPaused();
        }
    });
    connect(m_stop, &QToolButton::clicked, this, [this] {
        if (m_channel) {
            m_channel->model()->setReplayIdle();
        }
    });
}

void ReplayControls::setChannel(WorkChannel* channel)
{
    if (m_channel) {
        m_channel->disconnect(this);
    }
    m_channel = channel;
    if (channel) {
        connect(channel, &WorkChannel::changed, this, &ReplayControls::update);
    }
    update();
}

void ReplayControls::setSelected(int count)
{
    m_selected = count;
    update();
}

void ReplayControls::update()
{
    const ChannelSituation situation = m_channel ? m_channel->situation() : ChannelSituation();
    const bool goesOn = situation.isReplayHeld();
    nameToolButton(m_play, goesOn ? tr("Continue the replay") : tr("Replay the record"));
    setUsable(
        {{m_pause, tr("Holds the replay where it is."), whyNoPause(situation)},
         {m_play,
          goesOn ? tr("Has the replay go on.") : tr("Replays the record from where you put the position on the bar."),
          whyNoReplay(situation, m_selected)},
         {m_stop, tr("Ends the replay."), whyNoReplayStop(situation)}});
    setVisible(m_channel && m_channel->isOffered());
}

void ReplayControls::play()
{
    if (!m_channel) {
        return;
    }
    if (m_channel->model()->isPaused()) {
        m_channel->model()->setReplayRunning();
    } else {
        Q_EMIT startWanted();
    }
}

} // namespace ZelkoConsole
