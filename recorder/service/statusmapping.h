#pragma once

#include <recorder/store/storestatus.h>

#include <zelkobase/service/servicestatus.h>

namespace ZelkoRecorder {

/// The status by which the service says how an operation on a store ended.
ZelkoCommon::ServiceStatus serviceStatus(StoreStatus status);

/// The same where the entry that is not there is none of a record's: `ofUnknownEntry` says what it is then.
ZelkoCommon::ServiceStatus serviceStatus(StoreStatus status, ZelkoCommon::ServiceStatus ofUnknownEntry);

} // namespace ZelkoRecorder
