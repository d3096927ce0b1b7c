#pragma once

#include <zelkobase/service/zelkobaseservice_export.h>

#include <QString>
#include <QStringView>

namespace ZelkoCommon {

/// How a request to a recorder's service ended. The numbers are part of the contract between recorder and client: they
/// travel as the results of the operations and are never given another meaning. 5, 8 and 17 have none.
///
/// Numbers below 1000 come from the recorder. Those from 1000 on never travel: with them a client says why it has no
/// answer.
enum class ServiceStatus : quint32 {
    None = 0, ///< done

    InternalError = 1,
    NoSuchDevice = 2,
    NoSuchRecord = 3,
    NoSuchEntry = 4,       ///< the record has no such history entry or bookmark
    NoSuchExport = 6,      ///< no export has this ID, or no longer
    NotAllowed = 7,        ///< the user that this client acts for has not the right
    RecordBusy = 9,        ///< it is being recorded, replayed, copied, exported or deleted
    NotSupported = 10,     ///< the device cannot do this, or not with such a record
    BadArgument = 11,      ///< an argument is malformed or out of its range
    NoSamples = 12,        ///< the record holds nothing in the time that was asked for
    DiskFull = 13,         ///< nothing was changed
    DiskFailed = 14,       ///< nothing was changed
    LimitReached = 15,     ///< of entries, channels, jobs
    NameInUse = 16,        ///< a channel of this name is registered
    ShuttingDown = 18,     ///< the recorder is about to end
    DamagedRecord = 19,    ///< the end of the record was not written, or samples are missing
    TargetNotAllowed = 20, ///< an export to there is not allowed
    TargetExists = 21,     ///< what was to be made is there already, and stays
    NotReplaying = 22,     ///< the record is not being replayed
    SpeedNotOffered = 23,  ///< the recorder replays at other speeds only
    NotOffered = 24,       ///< the recorder does this with no record and no device
    AnswerTooLarge = 25,   ///< more than one answer can hold
    NotDurable = 26,       ///< it was done, and the disk could neither make it last nor take it back

    Timeout = 1000,            ///< no answer in time; whether it was done is not known
    NotReachable = 1001,       ///< nobody answers at the recorder's address; nothing was done
    RecorderGone = 1002,       ///< the connection broke in the middle; whether it was done is not known
    RecorderRestarted = 1003,  ///< what was asked is not there any more since a restart; nothing was done
    ServiceNotOffered = 1004,  ///< who answers is no recorder, or has not this part of the service
    NotConfigured = 1005,      ///< the site file names no such recorder, or no address that can be used
    NotStarted = 1006,         ///< this program has not started its part of the connection, or ended it
    BadAnswer = 1007,          ///< an answer that does not parse
    CallRefused = 1008,        ///< the recorder did not let this program in
    NotUnderstood = 1009,      ///< the recorder does not know the request
    NotTransmittable = 1010,   ///< a text or a number that the connection cannot carry; nothing was done
    RecorderFailed = 1011,     ///< the request ended in the recorder with a fault that it does not name
    RecorderOverloaded = 1012, ///< the recorder has no room for the request now; nothing was done
    ClientFailed = 1013        ///< a fault in this program
};

constexpr quint32 firstClientStatus = 1000;

constexpr unsigned long statusCode(ServiceStatus status)
{
    return static_cast<unsigned long>(status);
}

/// What happened and what to do about it: sentences for people. Of a number that is not listed the text says so and
/// names it. Empty for 0.
ZELKOBASESERVICE_EXPORT QString serviceStatusText(unsigned long code);

/// True for the numbers of the list.
ZELKOBASESERVICE_EXPORT bool isServiceStatus(unsigned long code);

/// A text of a peer as it may be shown: in one line, without control characters, at most 300 characters.
ZELKOBASESERVICE_EXPORT QString presentable(QStringView foreignText);

} // namespace ZelkoCommon
