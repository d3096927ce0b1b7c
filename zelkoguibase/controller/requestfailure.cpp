#include "requestfailure_p.h"

#include <observerbase/errorhandler.h>
#include <zelkobase/service/recorderservice.h>
#include <zelkobase/service/toolbarhelper.h>

namespace ZelkoGUI {

using ZelkoCommon::ToolbarHelper;

// From a number of ours on, what stands behind the text is what the ORB said of a connection, which is for developers.
void showFailure(unsigned long code, const ZelkoCommon::RecorderService& service)
{
    if (code == 0) {
        return;
    }
    const QString text = ToolbarHelper::Instance()->ErrorId2Text(code, ToolbarHelper::ServiceContext);
    const QString withWords = service.lastErrorText();
    const bool hasWords = code < ZelkoCommon::firstClientStatus && withWords.startsWith(text);
    ErrorHandler::Instance()->ShowMessage(hasWords ? withWords : text);
}

} // namespace ZelkoGUI
