#include <console/channel/workchannelpanel.h>

#include <console/channel/recordingsettings.h>
#include <console/channel/workchannel.h>
#include <console/widgets/usable.h>

#include <widgetbase/elidedlabel.h>
#include <zelkoguibase/state/zelkochannelmodel.h>

#include <QComboBox>
#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QSignalBlocker>
#include <QStyle>

namespace ZelkoConsole {

namespace {

// Longer names are cut in the box, not in its list.
constexpr int shownCharacters = 12;

QPushButton* makeButton(const char* objectName, const QString& text, Glyph glyph)
{
    auto* const button = new QPushButton(glyphIcon(glyph), text);
    button->setObjectName(QLatin1String(objectName));
    button->setAutoDefault(false);
    return button;
}

} // namespace

WorkChannelPanel::WorkChannelPanel(QWidget* parent)
    : QWidget(parent)
    , m_choice(new QComboBox)
    , m_record(makeButton("startRecording", tr("Re&cord"), Glyph::Recording))
    , m_stop(makeButton("stopRecording", tr("S&top"), Glyph::Stop))
    , m_sign(new QLabel)
    , m_state(new guiHelper::ElidedLabel)
    , m_settings(new RecordingSettings)
{
    setObjectName(QStringLiteral("workChannelPanel"));
    m_choice->setObjectName(QStringLiteral("workChannel"));
    m_choice->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    m_choice->setMinimumContentsLength(shownCharacters);
    m_choice->setPlaceholderText(tr("not there"));
    m_choice->setStatusTip(tr("The channel that this workstation records and replays on."));
    m_state->setObjectName(QStringLiteral("channelState"));
    m_state->setAccessibleName(tr("State of the channel"));
    arrange();
    connectParts();
    update();
}

WorkChannelPanel::~WorkChannelPanel() = default;

void WorkChannelPanel::arrange()
{
    auto* const label = new QLabel(tr("Cha&nnel:"));
    label->setBuddy(m_choice);
    m_settings->alignWith(label);
    auto* const first = new QHBoxLayout;
    first->addWidget(label);
    first->addWidget(m_choice);
    first->addSpacing(6);
    first->addWidget(m_sign);
    first->addWidget(m_state, 1);
    auto* const last = new QHBoxLayout;
    last->addWidget(m_record);
    last->addWidget(m_stop);
    last->addStretch(1);
    auto* const rows = new QVBoxLayout(this);
    rows->setContentsMargins(0, 0, 0, 0);
    rows->setSpacing(6);
    rows->addLayout(first);
    rows->addWidget(m_settings);
    rows->addLayout(last);
    rows->addStretch(1);
}

void WorkChannelPanel::connectParts()
{
    connect(m_choice, &QComboBox::activated, this, [this](int index) {
        if (m_channel) {
            m_channel->choose(m_choice->itemData(index).toString());
        }
    });
    connect(m_record, &QPushButton::clicked, this, &WorkChannelPanel::record);
    connect(m_stop, &QPushButton::clicked, this, &WorkChannelPanel::stop);
}

void WorkChannelPanel::setChannel(WorkChannel* channel)
{
    if (m_channel) {
        m_channel->disconnect(this);
    }
    m_channel = channel;
    if (channel) {
        connect(channel, &WorkChannel::changed, this, &WorkChannelPanel::update);
    }
    m_settings->setChannel(channel);
    update();
}

void WorkChannelPanel::update()
{
    if (m_channel) {
        showChoice();
    }
    showState();
    m_settings->update();
    setVisible(m_channel && m_channel->isOffered());
}

// Filled anew only where it is another list, so that one that is open stays so.
void WorkChannelPanel::showChoice()
{
    ServedChannels::Channels shown;
    for (int index = 0; index < m_choice->count(); ++index) {
        shown.push_back({m_choice->itemData(index).toString(), m_choice->itemText(index)});
    }
    if (shown != m_channel->channels()) {
        m_choice->clear();
        for (const auto& [id, name] : m_channel->channels()) {
            m_choice->addItem(name, id);
        }
    }
    m_choice->setCurrentIndex(m_choice->findData(m_channel->id()));
    m_choice->setEnabled(m_choice->count() > 0);
}

void WorkChannelPanel::showState()
{
    const ChannelSituation situation = m_channel ? m_channel->situation() : ChannelSituation();
    setUsable(
        {{m_record, tr("Begins a recording on the device that this workstation works on."), whyNoRecording(situation)},
         {m_stop, tr("Ends the recording."), whyNoStop(situation)}});
    m_state->setText(ZelkoConsole::stateText(situation));
    paintSign();
}

void WorkChannelPanel::paintSign()
{
    const int side = style()->pixelMetric(QStyle::PM_SmallIconSize);
    const Glyph glyph = stateGlyph(m_channel ? m_channel->situation() : ChannelSituation());
    m_sign->setPixmap(glyphIcon(glyph).pixmap(QSize(side, side), devicePixelRatio()));
}

QString WorkChannelPanel::stateText() const
{
    return m_state->text();
}

void WorkChannelPanel::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange) {
        paintSign();
    }
}

void WorkChannelPanel::record()
{
    if (m_channel) {
        m_settings->commit();
        m_channel->startRecording();
    }
}

void WorkChannelPanel::stop()
{
    if (m_channel) {
        m_channel->model()->stopRecording();
    }
}

} // namespace ZelkoConsole
