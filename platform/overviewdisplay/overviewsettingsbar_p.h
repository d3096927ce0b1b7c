#pragma once

#include "automaticlevels_p.h"
#include "overviewsettings_p.h"

#include <QToolBar>

class QCheckBox;
class QComboBox;
class QLabel;
class QSpinBox;

namespace SPECTRUM_OVERVIEW {

/// Where the user chooses how an overview is made and coloured.
class OverviewSettingsBar : public QToolBar
{
    Q_OBJECT

public:
    explicit OverviewSettingsBar(QWidget* parent = nullptr);
    ~OverviewSettingsBar() override;

    /// What has no place in it, it keeps.
    void setSettings(const OverviewSettings& settings);
    const OverviewSettings& settings() const { return m_settings; }

    /// Shows the levels that were found, while they are found automatically.
    void showLevels(const AutomaticLevels::Range& levels);

Q_SIGNALS:
    /// By the user.
    void si_settingsChanged();

private:
    QLabel* addLabel(const QString& text);
    QComboBox* addBox(const char* name, const QString& label, const QString& help);
    QCheckBox* addSwitch(const char* name, const QString& label, const QString& help);
    QSpinBox* addLevel(const char* name, const QString& label);
    void fillBoxes();
    void connectParts();
    void takeChoice();
    void takeLowest(int level);
    void takeHighest(int level);
    void showLevels();

    OverviewSettings m_settings;
    QComboBox* m_fftLength;
    QComboBox* m_window;
    QComboBox* m_lineCount;
    QCheckBox* m_automatic;
    QSpinBox* m_lowest;
    QSpinBox* m_highest;
};

} // namespace SPECTRUM_OVERVIEW
