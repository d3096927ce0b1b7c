#pragma once

/// Something whose waiting commands can be asked for before their time.
class IOptimizeTrigger
{
public:
    virtual ~IOptimizeTrigger() = default;

    /// Leaves out the waiting commands that later ones make superfluous, and passes the others on.
    virtual void TriggerOptimization() = 0;
};
