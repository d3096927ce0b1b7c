#include <zelkoguibase/archive/file_dialog.h>

#include <vornappstartup/cfgcenter.h>

namespace ZelkoGUI::file_dialog {

static QFileDialog::Options adjusted(QFileDialog::Options options)
{
    static const bool native =
        CfgCenter::GetAppCfg(ICfg::ApplicationView)->GetBool(QStringLiteral("UseNativeDialogs"), true);
    return options.setFlag(QFileDialog::DontUseNativeDialog, !native);
}

QString getExistingDirectory(QWidget* parent, const QString& caption, const QString& dir, QFileDialog::Options options)
{
    return QFileDialog::getExistingDirectory(parent, caption, dir, adjusted(options));
}

QString getOpenFileName(QWidget* parent, const QString& caption, const QString& dir, const QString& filter,
                        QString* selectedFilter, QFileDialog::Options options)
{
    return QFileDialog::getOpenFileName(parent, caption, dir, filter, selectedFilter, adjusted(options));
}

QStringList getOpenFileNames(QWidget* parent, const QString& caption, const QString& dir, const QString& filter,
                             QString* selectedFilter, QFileDialog::Options options)
{
    return QFileDialog::getOpenFileNames(parent, caption, dir, filter, selectedFilter, adjusted(options));
}

QString getSaveFileName(QWidget* parent, const QString& caption, const QString& dir, const QString& filter,
                        QString* selectedFilter, QFileDialog::Options options)
{
    return QFileDialog::getSaveFileName(parent, caption, dir, filter, selectedFilter, adjusted(options));
}

} // namespace ZelkoGUI::file_dialog
