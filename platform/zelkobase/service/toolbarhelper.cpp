#include <zelkobase/service/toolbarhelper.h>

#include <zelkobase/service/servicestatus.h>

#include <QCoreApplication>

namespace ZelkoCommon {

ToolbarHelper* ToolbarHelper::Instance()
{
    static ToolbarHelper helper;
    return &helper;
}

QString ToolbarHelper::ErrorId2Text(unsigned long code, int context) const
{
    if (context == ServiceContext || code == 0) {
        return serviceStatusText(code);
    }
    return QCoreApplication::translate("ZelkoCommon::ToolbarHelper",
                                       "Error %1 of an unknown kind (%2) was reported. The "
                                       "log may say more.")
        .arg(code)
        .arg(context);
}

} // namespace ZelkoCommon
