#pragma once

#include <zelkoguibase/controller/izelkoguicontroller.h>

#include <QString>

namespace ZelkoConsole {

/// What is known of a record list when somebody wants to know why he cannot do something with it.
struct RecordSituation
{
    bool isDeviceChosen = false;
    bool isConnected = false; ///< to the device
    int selected = 0;         ///< records
    int known = 0;            ///< of these: in the list
    int deletable = 0;        ///< of these
    int finished = 0;         ///< of these: with the status "finished"
    int inWork = 0;           ///< of these: not counting as finished, whatever the status
    int recording = 0;        ///< of these: being recorded
    int replaying = 0;        ///< of these
    int transferring = 0;     ///< of these
    int damaged = 0;          ///< of these
    int rawStream = 0;        ///< of these: cannot be copied or edited
    int withSpectrum = 0;     ///< of these: with samples from which spectra are made

    bool operator==(const RecordSituation&) const = default;
};

/// The situation of the selection of a controller.
RecordSituation situationOf(const ZelkoGUI::IZelkoGUIController& controller, bool isConnected);

/// Why an action is not available, as far as the console knows; a sentence with a full stop. The rights are those of
/// the present user.
QString whyUnavailable(ZelkoGUI::IZelkoGUIController::enUserAction action, const RecordSituation& situation);

/// What an action does or, while it is not enabled or the recorder would refuse it, why not; a sentence with a full
/// stop.
QString tipOf(ZelkoGUI::IZelkoGUIController::enUserAction action, bool isEnabled, const RecordSituation& situation);

/// @name Reasons that hold for other things too
/// @{
/// Why there is no device to do anything with; empty where there is one.
QString whyNoDevice(const RecordSituation& situation);
/// Whether recorders take any change at all from the present user.
bool mayChangeAnything();
/// The present user may not.
QString forbiddenText();
/// `selected` records are too few or too many where it takes one.
QString notOneText(int selected);
/// @}

/// What an action does, as a sentence with a full stop.
QString whatItDoes(ZelkoGUI::IZelkoGUIController::enUserAction action);

} // namespace ZelkoConsole
