#pragma once

#include <zelkoguibase/controller/izelkoguicontroller.h>

#include <QString>

namespace ZelkoConsole {

/// What is known of a record list when somebody wants to know why he cannot do something with it.
struct RecordSituation
{
    bool isConnected = false; ///< to the device
    int selected = 0;         ///< records
    int deletable = 0;        ///< of these
    int finished = 0;         ///< of these: with the status "finished"
    int inWork = 0;           ///< of these: not counting as finished, as when they are being recorded

    bool operator==(const RecordSituation&) const = default;
};

/// The situation of the selection of a controller.
RecordSituation situationOf(const ZelkoGUI::IZelkoGUIController& controller, bool isConnected);

/// Why an action is not available, as far as the console knows; a sentence with a full stop. The rights are those of
/// the present user.
QString whyUnavailable(ZelkoGUI::IZelkoGUIController::enUserAction action, const RecordSituation& situation);

/// @name Reasons that hold for other things too
/// @{
QString noConnectionText();
/// The present user may not.
QString forbiddenText();
/// `selected` records are too few or too many where it takes one.
QString notOneText(int selected);
/// @}

/// What an action does, as a sentence with a full stop.
QString whatItDoes(ZelkoGUI::IZelkoGUIController::enUserAction action);

} // namespace ZelkoConsole
