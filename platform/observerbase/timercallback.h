#pragma once

namespace Vorn {

/// Something that a timer of the platform calls back, on the thread that started the timer.
class IHasTimerCallback
{
public:
    virtual ~IHasTimerCallback() = default;

    virtual void OnTimer() = 0;
};

} // namespace Vorn
