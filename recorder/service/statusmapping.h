#pragma once

#include <recorder/store/storestatus.h>

#include <zelkobase/service/servicestatus.h>

namespace ZelkoRecorder {

/// The status by which the service says how an operation on a store ended.
ZelkoCommon::ServiceStatus serviceStatus(StoreStatus status);

/// The same as a text for people.
QString statusText(StoreStatus status);

} // namespace ZelkoRecorder
