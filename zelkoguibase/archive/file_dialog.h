#pragma once

#include <zelkoguibase/zelkoguibase_export.h>

#include <QFileDialog>

/// The file dialogs of this library: those of QFileDialog, with the same parameters and results, except that a site
/// decides for all of them whether they are the platform's own or Qt's.
///
/// It does so by the flag "UseNativeDialogs" of the application's configuration, true where it is missing. The flag is
/// read with the first dialog and holds until the process ends; what the caller says about
/// `QFileDialog::DontUseNativeDialog` is overruled. GUI thread only; each call returns when its dialog is closed. A
/// dialog of Qt's own is cancelled when its parent is destroyed while it is open.
namespace ZelkoGUI::file_dialog {

ZELKOGUIBASE_EXPORT QString getExistingDirectory(QWidget* parent = nullptr, const QString& caption = QString(),
                                                 const QString& dir = QString(),
                                                 QFileDialog::Options options = QFileDialog::ShowDirsOnly);

ZELKOGUIBASE_EXPORT QString getOpenFileName(QWidget* parent = nullptr, const QString& caption = QString(),
                                            const QString& dir = QString(), const QString& filter = QString(),
                                            QString* selectedFilter = nullptr,
                                            QFileDialog::Options options = QFileDialog::Options());

ZELKOGUIBASE_EXPORT QStringList getOpenFileNames(QWidget* parent = nullptr, const QString& caption = QString(),
                                                 const QString& dir = QString(), const QString& filter = QString(),
                                                 QString* selectedFilter = nullptr,
                                                 QFileDialog::Options options = QFileDialog::Options());

ZELKOGUIBASE_EXPORT QString getSaveFileName(QWidget* parent = nullptr, const QString& caption = QString(),
                                            const QString& dir = QString(), const QString& filter = QString(),
                                            QString* selectedFilter = nullptr,
                                            QFileDialog::Options options = QFileDialog::Options());

} // namespace ZelkoGUI::file_dialog
