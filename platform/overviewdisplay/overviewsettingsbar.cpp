#include "overviewsettingsbar_p.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QSignalBlocker>
#include <QSpinBox>

#include <algorithm>

namespace SPECTRUM_OVERVIEW {

using ZelkoDataTypes::eFFT_Window;

namespace {

QString nameOf(eFFT_Window window)
{
    switch (window) {
    case eFFT_Window::Rectangular:
        return OverviewSettingsBar::tr("Rectangular");
    case eFFT_Window::Hann:
        return OverviewSettingsBar::tr("Hann");
    case eFFT_Window::Hamming:
        return OverviewSettingsBar::tr("Hamming");
    case eFFT_Window::Blackman:
        return OverviewSettingsBar::tr("Blackman");
    case eFFT_Window::FlatTop:
        return OverviewSettingsBar::tr("Flat top");
    }
    return {};
}

void choose(QComboBox& box, int value)
{
    const QSignalBlocker silent(box);
    box.setCurrentIndex(box.findData(value));
}

void setLevel(QSpinBox& box, int level)
{
    const QSignalBlocker silent(box);
    box.setValue(level);
}

} // namespace

OverviewSettingsBar::OverviewSettingsBar(QWidget* parent)
    : QToolBar(parent)
    , m_fftLength(
          addBox("FftLengthBox", tr("&FFT:"), tr("Samples of one spectrum: longer ones tell closer frequencies apart")))
    , m_window(addBox("WindowBox", tr("&Window:"), tr("Window function of the FFT")))
    , m_lineCount(addBox("LineCountBox", tr("L&ines:"), tr("Lines that the recorder sends of what is shown")))
    , m_automatic(addSwitch("AutomaticLevelsBox", tr("A&utomatic levels"),
                            tr("Colours from the noise to the strongest signal")))
    , m_lowest(addLevel("LowestLevelBox", tr("Lowes&t level:")))
    , m_highest(addLevel("HighestLevelBox", tr("Hi&ghest level:")))
{
    setObjectName(QStringLiteral("SettingsBar"));
    setWindowTitle(tr("Settings"));
    fillBoxes();
    setSettings(m_settings);
    connectParts();
}

OverviewSettingsBar::~OverviewSettingsBar() = default;

QLabel* OverviewSettingsBar::addLabel(const QString& text)
{
    auto* const label = new QLabel(text, this);
    label->setTextFormat(Qt::PlainText);
    label->setContentsMargins(fontMetrics().averageCharWidth(), 0, fontMetrics().averageCharWidth() / 2, 0);
    addWidget(label);
    return label;
}

QComboBox* OverviewSettingsBar::addBox(const char* name, const QString& label, const QString& help)
{
    QLabel* const buddy = addLabel(label);
    auto* const box = new QComboBox(this);
    box->setObjectName(QLatin1String(name));
    box->setToolTip(help);
    buddy->setBuddy(box);
    addWidget(box);
    return box;
}

QCheckBox* OverviewSettingsBar::addSwitch(const char* name, const QString& label, const QString& help)
{
    auto* const box = new QCheckBox(label, this);
    box->setObjectName(QLatin1String(name));
    box->setToolTip(help);
    addSeparator();
    addWidget(box);
    return box;
}

QSpinBox* OverviewSettingsBar::addLevel(const char* name, const QString& label)
{
    QLabel* const buddy = addLabel(label);
    auto* const box = new QSpinBox(this);
    box->setObjectName(QLatin1String(name));
    box->setRange(OverviewSettings::LowestLevel, OverviewSettings::HighestLevel);
    box->setSuffix(tr(" dB"));
    box->setSingleStep(5);
    box->setKeyboardTracking(false);
    buddy->setBuddy(box);
    addWidget(box);
    return box;
}

void OverviewSettingsBar::fillBoxes()
{
    for (const quint32 length : OverviewSettings::fftLengths()) {
        m_fftLength->addItem(QString::number(length), static_cast<int>(length));
    }
    for (const eFFT_Window window : OverviewSettings::windows()) {
        m_window->addItem(nameOf(window), static_cast<int>(window));
    }
    for (const int count : OverviewSettings::lineCounts()) {
        m_lineCount->addItem(count == 0 ? tr("Automatic") : QString::number(count), count);
    }
}

void OverviewSettingsBar::connectParts()
{
    for (const QComboBox* const box : {m_fftLength, m_window, m_lineCount}) {
        connect(box, &QComboBox::currentIndexChanged, this, &OverviewSettingsBar::takeChoice);
    }
    connect(m_automatic, &QCheckBox::toggled, this, &OverviewSettingsBar::takeChoice);
    connect(m_lowest, &QSpinBox::valueChanged, this, &OverviewSettingsBar::takeLowest);
    connect(m_highest, &QSpinBox::valueChanged, this, &OverviewSettingsBar::takeHighest);
}

void OverviewSettingsBar::setSettings(const OverviewSettings& settings)
{
    m_settings = settings;
    const QSignalBlocker silent(m_automatic);
    choose(*m_fftLength, static_cast<int>(settings.fftLength));
    choose(*m_window, static_cast<int>(settings.window));
    choose(*m_lineCount, settings.lineCount);
    m_automatic->setChecked(settings.hasAutomaticLevels);
    showLevels();
}

void OverviewSettingsBar::showLevels(const AutomaticLevels::Range& levels)
{
    if (m_settings.hasAutomaticLevels) {
        m_settings.lowestLevel = std::max(levels.lowest, OverviewSettings::LowestLevel);
        m_settings.highestLevel =
            std::max(std::min(levels.highest, OverviewSettings::HighestLevel), m_settings.lowestLevel + 1);
        showLevels();
    }
}

void OverviewSettingsBar::showLevels()
{
    setLevel(*m_lowest, m_settings.lowestLevel);
    setLevel(*m_highest, m_settings.highestLevel);
    m_lowest->setEnabled(!m_settings.hasAutomaticLevels);
    m_highest->setEnabled(!m_settings.hasAutomaticLevels);
}

void OverviewSettingsBar::takeChoice()
{
    m_settings.fftLength = m_fftLength->currentData().toUInt();
    m_settings.window = static_cast<eFFT_Window>(m_window->currentData().toInt());
    m_settings.lineCount = m_lineCount->currentData().toInt();
    m_settings.hasAutomaticLevels = m_automatic->isChecked();
    showLevels();
    Q_EMIT si_settingsChanged();
}

// One end pushes the other, so that whatever is typed is a range.
void OverviewSettingsBar::takeLowest(int level)
{
    m_settings.lowestLevel = std::min(level, OverviewSettings::HighestLevel - 1);
    m_settings.highestLevel = std::max(m_settings.highestLevel, m_settings.lowestLevel + 1);
    showLevels();
    Q_EMIT si_settingsChanged();
}

void OverviewSettingsBar::takeHighest(int level)
{
    m_settings.highestLevel = std::max(level, OverviewSettings::LowestLevel + 1);
    m_settings.lowestLevel = std::min(m_settings.lowestLevel, m_settings.highestLevel - 1);
    showLevels();
    Q_EMIT si_settingsChanged();
}

} // namespace SPECTRUM_OVERVIEW
