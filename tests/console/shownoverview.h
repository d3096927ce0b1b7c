#pragma once

#include <overviewdisplay/spectrumoverviewwidget.h>

#include <QApplication>

/// The spectrum overview that is to be seen; null if there is none.
inline SPECTRUM_OVERVIEW::SpectrumOverviewWidget* shownOverview()
{
    for (QWidget* const top : QApplication::topLevelWidgets()) {
        auto* const found = qobject_cast<SPECTRUM_OVERVIEW::SpectrumOverviewWidget*>(top);
        if (found && found->isVisible()) {
            return found;
        }
    }
    return nullptr;
}
