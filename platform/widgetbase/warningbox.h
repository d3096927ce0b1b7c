#pragma once

#include <widgetbase/widgetbase_export.h>

#include <QMessageBox>

namespace guiHelper {

/// QMessageBox::warning(), but for two things. Its texts are shown as they are: what comes from a file or a peer cannot
/// bring markup into them. And its box may go while it is open, with the window that it stands in front of.
///
/// `explanation` stands below `text`, less prominent; there is none where it is empty. Blocks until the user has
/// answered. The button that he pressed; `NoButton` if the box went before. GUI thread.
WIDGETBASE_EXPORT QMessageBox::StandardButton warn(QWidget* parent, const QString& title, const QString& text,
                                                   QMessageBox::StandardButtons buttons,
                                                   const QString& explanation = QString());

/// The same for QMessageBox::question(), without an explanation and without a default of its own.
WIDGETBASE_EXPORT QMessageBox::StandardButton ask(QWidget* parent, const QString& title, const QString& text,
                                                  QMessageBox::StandardButtons buttons);

} // namespace guiHelper
