#pragma once

#include <QtGlobal>

namespace ZelkoRecorder {

/// A phase as a fraction of a turn in 64 bits: adding wraps by itself, and no error builds up however long a signal is.
using Phase = quint64;

/// The phase that `frequency` Hz advances per frame at `sampleRate` Hz. `frequency` may be negative; its magnitude is
/// at most the sample rate.
Phase phaseStep(double frequency, double sampleRate);

/// Sine of `phase` by table and linear interpolation; the error is below 1e-6.
float sineOf(Phase phase);

/// Cosine of `phase`, as `sineOf`.
float cosineOf(Phase phase);

} // namespace ZelkoRecorder
