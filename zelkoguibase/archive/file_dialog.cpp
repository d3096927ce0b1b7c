#include <zelkoguibase/archive/file_dialog.h>

#include <vornappstartup/cfgcenter.h>

namespace ZelkoGUI::file_dialog {

namespace {

QFileDialog::Options adjusted(QFileDialog::Options options)
{
    static const bool native =
        CfgCenter::GetAppCfg(ICfg::ApplicationView)->GetBool(QStringLiteral("UseNativeDialogs"), true);
    return options.setFlag(QFileDialog::DontUseNativeDialog, !native);
}

void cancelDialogsOf(const QObject* parent)
{
    for (QFileDialog* const dialog : parent->findChildren<QFileDialog*>(QString(), Qt::FindDirectChildrenOnly)) {
        dialog->setParent(nullptr);
        dialog->reject();
    }
}

/// QFileDialog has the dialogs of its functions on the stack, where a parent that goes would delete them once more.
/// This one takes them from it before.
class ParentWatch
{
public:
    explicit ParentWatch(const QWidget* parent)
        : m_connection(parent ? QObject::connect(parent, &QObject::destroyed, &cancelDialogsOf)
                              : QMetaObject::Connection())
    {}
    ~ParentWatch() { QObject::disconnect(m_connection); }
    ParentWatch(const ParentWatch&) = delete;
    ParentWatch& operator=(const ParentWatch&) = delete;

private:
    const QMetaObject::Connection m_connection;
};

} // namespace

QString getExistingDirectory(QWidget* parent, const QString& caption, const QString& dir, QFileDialog::Options options)
{
    const ParentWatch watch(parent);
    return QFileDialog::getExistingDirectory(parent, caption, dir, adjusted(options));
}

QString getOpenFileName(QWidget* parent, const QString& caption, const QString& dir, const QString& filter,
                        QString* selectedFilter, QFileDialog::Options options)
{
    const ParentWatch watch(parent);
    return QFileDialog::getOpenFileName(parent, caption, dir, filter, selectedFilter, adjusted(options));
}

QStringList getOpenFileNames(QWidget* parent, const QString& caption, const QString& dir, const QString& filter,
                             QString* selectedFilter, QFileDialog::Options options)
{
    const ParentWatch watch(parent);
    return QFileDialog::getOpenFileNames(parent, caption, dir, filter, selectedFilter, adjusted(options));
}

QString getSaveFileName(QWidget* parent, const QString& caption, const QString& dir, const QString& filter,
                        QString* selectedFilter, QFileDialog::Options options)
{
    const ParentWatch watch(parent);
    return QFileDialog::getSaveFileName(parent, caption, dir, filter, selectedFilter, adjusted(options));
}

} // namespace ZelkoGUI::file_dialog
