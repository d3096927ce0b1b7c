#pragma once

#include <QString>

namespace ZelkoCommon {
class RecorderService;
}

namespace ZelkoGUI {

/// Tells the user why a request to a recorder's service failed; nothing for 0. `service` is the one that has just been
/// asked: what the recorder itself said about it stands behind the text, in brackets.
void showFailure(unsigned long code, const ZelkoCommon::RecorderService& service);

} // namespace ZelkoGUI
