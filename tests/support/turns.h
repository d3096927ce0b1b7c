#pragma once

#include "patience.h"

#include <QSignalSpy>
#include <QTimer>

/// Lets everything happen that was put off to the next turn of the event loop, and what that puts off in turn.
inline void letTurnsPass()
{
    for (int turn = 0; turn < 3; ++turn) {
        QTimer timer;
        timer.setSingleShot(true);
        QSignalSpy due(&timer, &QTimer::timeout);
        timer.start(0); // behind those of no delay that were started before
        due.wait(patience);
    }
}
