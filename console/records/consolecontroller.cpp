#include <console/records/consolecontroller.h>

#include <console/records/recordsituation.h>

namespace ZelkoConsole {

ConsoleController::~ConsoleController() = default;

bool ConsoleController::isRenameRecordAvailable(const QString& recordID) const
{
    return mayChangeAnything() && ZelkoServerGUIController::isRenameRecordAvailable(recordID);
}

bool ConsoleController::isResynchRecordAvailable(const QString& recordID, const QString& deviceID) const
{
    return mayChangeAnything() && ZelkoServerGUIController::isResynchRecordAvailable(recordID, deviceID);
}

} // namespace ZelkoConsole
