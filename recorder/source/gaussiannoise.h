#pragma once

#include <QtGlobal>

namespace ZelkoRecorder {

/// Numbers of mean 0 and variance 1, close to a normal distribution and never beyond 3.5. The same seed gives the same
/// numbers on every machine, which the standard distributions do not promise.
class GaussianNoise
{
public:
    explicit GaussianNoise(quint64 seed);

    float next();

private:
    quint64 m_state;
};

} // namespace ZelkoRecorder
