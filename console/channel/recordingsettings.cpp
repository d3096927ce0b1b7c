#include <console/channel/recordingsettings.h>

#include <console/channel/workchannel.h>
#include <console/widgets/usable.h>

#include <zelkoguibase/state/zelkochannelmodel.h>

#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QSignalBlocker>
#include <QSpinBox>

#include <algorithm>
#include <limits>

namespace ZelkoConsole {

namespace {

// As many characters as recorders keep.
constexpr int longestName = 1000;

// Room for a number as people use it. Any that there is would take twice as much.
int widthFor(const QSpinBox& number, int shownNumber)
{
    const QFontMetrics metrics = number.fontMetrics();
    const auto widthOf = [&](int value) {
        return metrics.horizontalAdvance(number.locale().toString(value) + number.suffix());
    };
    return number.sizeHint().width() - widthOf(number.maximum()) + widthOf(shownNumber);
}

QSpinBox* makeNumber(const char* objectName, int shownNumber, const QString& unit, const QString& none)
{
    auto* const number = new QSpinBox;
    number->setObjectName(QLatin1String(objectName));
    number->setRange(0, std::numeric_limits<int>::max());
    number->setStepType(QAbstractSpinBox::AdaptiveDecimalStepType);
    number->setGroupSeparatorShown(true);
    number->setKeyboardTracking(false);
    number->setSuffix(unit);
    number->setSpecialValueText(none);
    number->setFixedWidth(widthFor(*number, shownNumber));
    return number;
}

QLabel* makeLabel(const QString& text, QWidget* buddy)
{
    auto* const label = new QLabel(text);
    label->setBuddy(buddy);
    return label;
}

// What is being typed is the user's until he is done with it.
bool isBeingTyped(const QLineEdit& edit)
{
    return edit.hasFocus() && edit.isModified();
}

void showText(QLineEdit& edit, const QString& text)
{
    if (!isBeingTyped(edit) && edit.text() != text) {
        edit.setText(text);
    }
}

void showNumber(QSpinBox& number, int value)
{
    const auto* const edit = number.findChild<QLineEdit*>();
    if (number.value() != value && !(number.hasFocus() && edit->isModified())) {
        const QSignalBlocker blocker(number);
        number.setValue(value);
    }
}

// The user is done with it. Whether that is another number than `value`, as it would be shown.
bool isAnotherThan(QSpinBox& number, int value)
{
    number.interpretText();
    number.findChild<QLineEdit*>()->setModified(false);
    return number.value() != std::max(value, number.minimum());
}

} // namespace

RecordingSettings::RecordingSettings(QWidget* parent)
    : QWidget(parent)
    , m_name(new QLineEdit)
    , m_timeout(makeNumber("recordTimeout", 100'000, tr(" s"), tr("no limit")))
    , m_fileSize(makeNumber("fileSize", 100'000'000, tr(" kB"), tr("no limit")))
{
    m_name->setObjectName(QStringLiteral("recordName"));
    m_name->setAccessibleName(tr("Name of the next recording"));
    m_timeout->setAccessibleName(tr("Seconds after which the next recording ends"));
    m_fileSize->setAccessibleName(tr("Size of the next recording at most, in kB"));
    arrange();
    connectParts();
}

void RecordingSettings::arrange()
{
    m_name->setMaxLength(longestName);
    m_name->setMinimumWidth(fontMetrics().averageCharWidth() * 12);
    auto* const layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    m_label = makeLabel(tr("N&ame:"), m_name);
    layout->addWidget(m_label);
    layout->addWidget(m_name, 1);
    layout->addSpacing(6);
    layout->addWidget(makeLabel(tr("&End after:"), m_timeout));
    layout->addWidget(m_timeout);
    layout->addSpacing(6);
    layout->addWidget(makeLabel(tr("At &most:"), m_fileSize));
    layout->addWidget(m_fileSize);
}

void RecordingSettings::connectParts()
{
    connect(m_timeout, &QSpinBox::editingFinished, this, &RecordingSettings::writeTimeout);
    connect(m_fileSize, &QSpinBox::editingFinished, this, &RecordingSettings::writeFileSize);
    connect(m_name, &QLineEdit::editingFinished, this, &RecordingSettings::writeName);
    connect(m_timeout, &QSpinBox::valueChanged, this, [this](int seconds) {
        if (m_channel) {
            m_channel->model()->setRecordingTimeout(static_cast<unsigned int>(seconds));
        }
    });
    connect(m_fileSize, &QSpinBox::valueChanged, this, [this](int kilobytes) {
        if (m_channel) {
            m_channel->model()->setFileSize(kilobytes);
        }
    });
}

void RecordingSettings::alignWith(QLabel* label)
{
    const int width = std::max(label->sizeHint().width(), m_label->sizeHint().width());
    label->setMinimumWidth(width);
    m_label->setMinimumWidth(width);
}

void RecordingSettings::setChannel(WorkChannel* channel)
{
    m_channel = channel;
    update();
}

void RecordingSettings::update()
{
    const ChannelSituation situation = m_channel ? m_channel->situation() : ChannelSituation();
    const QString whyNot = whyNoSettings(situation);
    setUsable({m_name, tr("What the next recording is called; without a name, as the channel."), whyNot});
    setUsable({m_timeout, tr("After so many seconds a recording ends by itself."), whyNot});
    setUsable({m_fileSize, tr("At this size a recording ends by itself."), whyNot});
    m_name->setPlaceholderText(situation.name);
    showText(*m_name, m_channel ? m_channel->recordName() : QString());
    showNumber(*m_timeout, m_channel ? m_channel->recordTimeout() : 0);
    showNumber(*m_fileSize, m_channel ? m_channel->fileSizeInKB() : 0);
}

void RecordingSettings::commit()
{
    writeName();
    writeTimeout();
    writeFileSize();
}

void RecordingSettings::writeName()
{
    m_name->setModified(false);
    if (m_channel && m_channel->recordName() != m_name->text()) {
        m_channel->model()->setRecordingName(m_name->text());
    }
}

// Somebody else may have written another one while this was typed, so that the number seems to be the same.
void RecordingSettings::writeTimeout()
{
    if (m_channel && isAnotherThan(*m_timeout, m_channel->recordTimeout())) {
        m_channel->model()->setRecordingTimeout(static_cast<unsigned int>(m_timeout->value()));
    }
}

void RecordingSettings::writeFileSize()
{
    if (m_channel && isAnotherThan(*m_fileSize, m_channel->fileSizeInKB())) {
        m_channel->model()->setFileSize(m_fileSize->value());
    }
}

} // namespace ZelkoConsole
