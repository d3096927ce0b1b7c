#include <vornappstartup/cfgcenter.h>

#include <observerbase/errorhandler.h>
#include <vornappstartup/settingscfg_p.h>

#include <QStandardPaths>

#include <map>

namespace {

struct Configuration
{
    QString fileName; ///< empty: the default
    std::unique_ptr<ICfg> cfg;
};

using Configurations = std::map<ICfg::View, Configuration>;

Configurations& configurations()
{
    static Configurations all = [] {
        ErrorHandler::Instance(); // made before the configurations it goes after them, which may have something to say
        Configurations none;
        none[ICfg::UserView];
        none[ICfg::ApplicationView];
        return none;
    }();
    return all;
}

QString defaultFileName(ICfg::View view)
{
    return QStandardPaths::writableLocation(QStandardPaths::AppConfigLocation) +
           (view == ICfg::UserView ? QLatin1String("/user.ini") : QLatin1String("/application.ini"));
}

} // namespace

ICfg* CfgCenter::GetAppCfg(ICfg::View view)
{
    const auto found = configurations().find(view);
    if (found == configurations().end()) {
        return nullptr;
    }
    Configuration& configuration = found->second;
    if (configuration.cfg == nullptr) {
        const QString& fileName = configuration.fileName;
        configuration.cfg = std::make_unique<SettingsCfg>(fileName.isEmpty() ? defaultFileName(view) : fileName);
    }
    return configuration.cfg.get();
}

void CfgCenter::SetFile(ICfg::View view, const QString& fileName)
{
    const auto found = configurations().find(view);
    if (found != configurations().end()) {
        found->second = {fileName, nullptr};
    }
}
