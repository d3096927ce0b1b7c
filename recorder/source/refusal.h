#pragma once

#include <QString>

namespace ZelkoRecorder {

/// Thrown where foreign bytes turn out wrong and caught in the public function that began to read them: it never leaves
/// this room.
struct Refusal
{
    /// What is wrong, for people.
    QString text;
};

} // namespace ZelkoRecorder
