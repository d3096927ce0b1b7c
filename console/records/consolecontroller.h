#pragma once

#include <zelkoguibase/controller/zelkoserverguicontroller.h>

namespace ZelkoConsole {

/// The controller of the library for a host whose users have rights that the library does not know: who may change
/// nothing renames nothing either, and opens no window on a record, since each begins with having the record sent anew.
/// The recorder would refuse it.
class ConsoleController : public ZelkoGUI::ZelkoServerGUIController
{
    Q_OBJECT

public:
    using ZelkoServerGUIController::ZelkoServerGUIController;
    ~ConsoleController() override;

protected:
    bool isRenameRecordAvailable(const QString& recordID) const override;
    bool isResynchRecordAvailable(const QString& recordID, const QString& deviceID) const override;
};

} // namespace ZelkoConsole
