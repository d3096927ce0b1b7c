#pragma once

#include <recorder/process/recorderoptions.h>

namespace ZelkoRecorder {

/// Makes a line for a users file: asks for the password on the standard input, twice where that is a terminal. Gives
/// the line, or what went wrong and the exit code. Blocks.
RecorderOptions::Ending makeUser(const RecorderOptions::NewUser& user);

} // namespace ZelkoRecorder
