#pragma once

#include <zelkobase/service/servicestatus.h>

#include <QString>

namespace ZelkoCommon {

/// Why a question to a recorder has no answer, or one that says no. Thrown and caught inside this room only.
struct ServiceFailure
{
    ServiceStatus status = ServiceStatus::None;
    QString detail; ///< what the recorder or the ORB says about it

    bool isReferenceLost = false; ///< what was known of the way to the service does not hold any more
    bool isConnectionCut = false; ///< a connection broke that had stood
    bool isNotExecuted = false;   ///< the call was certainly not executed
    bool isGarbled = false;       ///< one side did not make sense of what the other one sent
};

/// What the exception means that is being handled. Only within a handler.
ServiceFailure failureInFlight();

} // namespace ZelkoCommon
