#pragma once

namespace ZelkoRecorder {

/// From here on the system sends this process SIGTERM when the one that started it ends. False if it has ended already.
bool endWithParent();

} // namespace ZelkoRecorder
