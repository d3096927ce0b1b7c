#pragma once

#include <overviewdisplay/spectrumoverviewwidget.h>

#include <QApplication>

#include <algorithm>

/// The spectrum overviews that there are, which nobody else knows once they are opened.
inline QList<SPECTRUM_OVERVIEW::SpectrumOverviewWidget*> openedOverviews()
{
    QList<SPECTRUM_OVERVIEW::SpectrumOverviewWidget*> all;
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (QWidget* const window : windows) {
        if (auto* const overview = qobject_cast<SPECTRUM_OVERVIEW::SpectrumOverviewWidget*>(window)) {
            all.append(overview);
        }
    }
    return all;
}

/// The one that is to be seen; null if there is none.
inline SPECTRUM_OVERVIEW::SpectrumOverviewWidget* shownOverview()
{
    const auto all = openedOverviews();
    const auto shown = std::find_if(all.begin(), all.end(), [](const auto* overview) { return overview->isVisible(); });
    return shown == all.end() ? nullptr : *shown;
}
