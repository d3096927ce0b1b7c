#include <recorder/service/statusmapping.h>

namespace ZelkoRecorder {

using ZelkoCommon::ServiceStatus;

ServiceStatus serviceStatus(StoreStatus status)
{
    switch (status) {
    case StoreStatus::Done:
        return ServiceStatus::None;
    case StoreStatus::UnknownRecord:
        return ServiceStatus::NoSuchRecord;
    case StoreStatus::UnknownEntry:
        return ServiceStatus::NoSuchEntry;
    case StoreStatus::InUse:
        return ServiceStatus::RecordBusy;
    case StoreStatus::NotAllowed:
        return ServiceStatus::NotSupported;
    case StoreStatus::Damaged:
        return ServiceStatus::DamagedRecord;
    case StoreStatus::TooMany:
        return ServiceStatus::LimitReached;
    case StoreStatus::TooLong:
    case StoreStatus::BadRange:
        return ServiceStatus::BadArgument;
    case StoreStatus::BadFolder:
        return ServiceStatus::TargetNotAllowed;
    case StoreStatus::Exists:
        return ServiceStatus::TargetExists;
    case StoreStatus::NoSpace:
        return ServiceStatus::DiskFull;
    case StoreStatus::DiskRefused:
        return ServiceStatus::DiskFailed;
    case StoreStatus::Ending:
        return ServiceStatus::ShuttingDown;
    case StoreStatus::Uncertain:
        return ServiceStatus::NotDurable;
    case StoreStatus::Cancelled:
        break;
    }
    return ServiceStatus::InternalError;
}

ServiceStatus serviceStatus(StoreStatus status, ServiceStatus ofUnknownEntry)
{
    return status == StoreStatus::UnknownEntry ? ofUnknownEntry : serviceStatus(status);
}

} // namespace ZelkoRecorder
