#include <zelkobase/service/servicestatus.h>

#include <QCoreApplication>

#include <algorithm>
#include <iterator>

namespace ZelkoCommon {
namespace {

constexpr qsizetype maxForeignText = 300;

constexpr const char* context = "ZelkoCommon::ServiceStatus";

struct Entry
{
    ServiceStatus status;
    const char* text;
};

using Status = ServiceStatus;

// What happened, and what to do about it.
constexpr Entry texts[] = {
    {Status::InternalError,
     QT_TRANSLATE_NOOP("ZelkoCommon::ServiceStatus",
                       "The recorder ran into a fault of its own and did not do it. Its log says "
                       "more; try again, and tell whoever looks after it if it comes back.")},
    {Status::NoSuchDevice, QT_TRANSLATE_NOOP("ZelkoCommon::ServiceStatus",
                                             "The recorder has no such device. Choose another device, or check the "
                                             "configuration of the sub system.")},
    {Status::NoSuchRecord, QT_TRANSLATE_NOOP("ZelkoCommon::ServiceStatus",
                                             "The record does not exist any more. Synchronize the list to see which "
                                             "records there are.")},
    {Status::NoSuchEntry, QT_TRANSLATE_NOOP("ZelkoCommon::ServiceStatus",
                                            "The record has no such entry any more. Somebody else may have removed it; "
                                            "synchronize the record.")},
    {Status::NoSuchExport,
     QT_TRANSLATE_NOOP("ZelkoCommon::ServiceStatus",
                       "The export does not exist any more. It has ended; look into its target.")},
    {Status::NotAllowed, QT_TRANSLATE_NOOP("ZelkoCommon::ServiceStatus",
                                           "The recorder does not allow this to the present user. Log in as a user who "
                                           "may do it.")},
    {Status::RecordBusy,
     QT_TRANSLATE_NOOP("ZelkoCommon::ServiceStatus",
                       "The record is being recorded, replayed, copied, exported or deleted now. Stop "
                       "that, or try again when it has ended.")},
    {Status::NotSupported, QT_TRANSLATE_NOOP("ZelkoCommon::ServiceStatus",
                                             "The device cannot do this with such a record. Choose another record or "
                                             "another device.")},
    {Status::BadArgument, QT_TRANSLATE_NOOP("ZelkoCommon::ServiceStatus",
                                            "The recorder does not accept what was entered. Check names, times and "
                                            "numbers.")},
    {Status::NoSamples, QT_TRANSLATE_NOOP("ZelkoCommon::ServiceStatus",
                                          "The record holds no data in this range. Choose a range within the record.")},
    {Status::DiskFull,
     QT_TRANSLATE_NOOP("ZelkoCommon::ServiceStatus",
                       "The device has no room left, and nothing was changed. Delete records, and try "
                       "again.")},
    {Status::DiskFailed, QT_TRANSLATE_NOOP("ZelkoCommon::ServiceStatus",
                                           "The device could not write to its disk, and nothing was changed. Have the "
                                           "disk checked.")},
    {Status::LimitReached, QT_TRANSLATE_NOOP("ZelkoCommon::ServiceStatus",
                                             "The recorder takes no more of these. Remove some, or wait until others "
                                             "have ended.")},
    {Status::NameInUse,
     QT_TRANSLATE_NOOP("ZelkoCommon::ServiceStatus", "The name is in use already. Choose another one.")},
    {Status::ShuttingDown,
     QT_TRANSLATE_NOOP("ZelkoCommon::ServiceStatus", "The recorder is shutting down. Try again when it is back.")},
    {Status::DamagedRecord, QT_TRANSLATE_NOOP("ZelkoCommon::ServiceStatus",
                                              "The record is damaged, and this cannot be done with it. Reset it, and "
                                              "try again; if it is refused even then, samples of it are lost.")},
    {Status::TargetNotAllowed,
     QT_TRANSLATE_NOOP("ZelkoCommon::ServiceStatus",
                       "The recorder does not export to there. Choose one of the folders that "
                       "it has for exports, or one below them.")},
    {Status::TargetExists, QT_TRANSLATE_NOOP("ZelkoCommon::ServiceStatus",
                                             "There is something of that name already, and it was not replaced. Choose "
                                             "another place, or move away what is there.")},
    {Status::NotReplaying, QT_TRANSLATE_NOOP("ZelkoCommon::ServiceStatus",
                                             "The record is not being replayed; it may have come to its end. Start the "
                                             "replay again.")},
    {Status::SpeedNotOffered,
     QT_TRANSLATE_NOOP("ZelkoCommon::ServiceStatus", "The recorder replays in real time only. Choose a speed of 100 "
                                                     "percent.")},
    {Status::NotOffered, QT_TRANSLATE_NOOP("ZelkoCommon::ServiceStatus",
                                           "This recorder does not do that with any record. Use a recorder that does, "
                                           "or do without it.")},
    {Status::AnswerTooLarge, QT_TRANSLATE_NOOP("ZelkoCommon::ServiceStatus",
                                               "That is more than the recorder can send in one answer. The list of "
                                               "records has all of it; look there.")},
    {Status::NotDurable, QT_TRANSLATE_NOOP("ZelkoCommon::ServiceStatus",
                                           "It was done, but the disk failed, and it may be gone when the device goes "
                                           "down. Have the disk checked, and look whether it is still there.")},
    {Status::Timeout,
     QT_TRANSLATE_NOOP("ZelkoCommon::ServiceStatus",
                       "The recorder did not answer in time. Whether it was done will show in the list; "
                       "try again if it does not.")},
    {Status::NotReachable, QT_TRANSLATE_NOOP("ZelkoCommon::ServiceStatus",
                                             "The recorder cannot be reached, and nothing was done. Check that it runs "
                                             "and that the network is up.")},
    {Status::RecorderGone,
     QT_TRANSLATE_NOOP("ZelkoCommon::ServiceStatus",
                       "The connection to the recorder broke. Whether it was done will show in the "
                       "list when the connection is back; try again if it does not.")},
    {Status::RecorderRestarted,
     QT_TRANSLATE_NOOP("ZelkoCommon::ServiceStatus", "The recorder was restarted, and nothing was done. Try again.")},
    {Status::ServiceNotOffered, QT_TRANSLATE_NOOP("ZelkoCommon::ServiceStatus",
                                                  "What answers at the recorder's address does not offer this service. "
                                                  "Check host and port in the site file.")},
    {Status::NotConfigured,
     QT_TRANSLATE_NOOP("ZelkoCommon::ServiceStatus",
                       "There is no usable address of the recorder. Check the sub system's entry "
                       "in the site file, and the naming service if one is used.")},
    {Status::NotStarted, QT_TRANSLATE_NOOP("ZelkoCommon::ServiceStatus",
                                           "This program has no connection to the network of recorders. Start it "
                                           "again.")},
    {Status::BadAnswer,
     QT_TRANSLATE_NOOP("ZelkoCommon::ServiceStatus",
                       "The answer of the recorder cannot be read. Check that recorder and program are "
                       "of versions that fit together.")},
    {Status::CallRefused, QT_TRANSLATE_NOOP("ZelkoCommon::ServiceStatus",
                                            "The recorder does not let this program in. Log in again, or ask whoever "
                                            "looks after the recorder for access.")},
    {Status::NotUnderstood, QT_TRANSLATE_NOOP("ZelkoCommon::ServiceStatus",
                                              "The recorder does not know this request. It may be of an older version; "
                                              "have it updated.")},
    {Status::NotTransmittable,
     QT_TRANSLATE_NOOP("ZelkoCommon::ServiceStatus", "The entry cannot be sent to the recorder: it is too long, or has "
                                                     "characters that the recorder cannot take. Change it.")},
    {Status::RecorderFailed,
     QT_TRANSLATE_NOOP("ZelkoCommon::ServiceStatus",
                       "The recorder failed without saying why. Its log may say more; whether it "
                       "was done will show in the list.")},
    {Status::RecorderOverloaded,
     QT_TRANSLATE_NOOP("ZelkoCommon::ServiceStatus",
                       "The recorder has too much to do now, and nothing was done. Try again "
                       "in a while.")},
    {Status::ClientFailed, QT_TRANSLATE_NOOP("ZelkoCommon::ServiceStatus",
                                             "This program ran into a fault of its own. Start it again if this comes "
                                             "back.")},
};

const Entry* entryOf(unsigned long code)
{
    const auto* const found = std::find_if(std::begin(texts), std::end(texts),
                                           [code](const Entry& entry) { return statusCode(entry.status) == code; });
    return found == std::end(texts) ? nullptr : found;
}

bool isPlain(QChar character)
{
    return character.isPrint() || character.isSurrogate();
}

} // namespace

QString serviceStatusText(unsigned long code)
{
    if (code == statusCode(ServiceStatus::None)) {
        return {};
    }
    if (const Entry* const entry = entryOf(code)) {
        return QCoreApplication::translate(context, entry->text);
    }
    return QCoreApplication::translate(context, "The recorder reports error %1, which this program does not know. The "
                                                "manual or the log of the recorder may name it.")
        .arg(code);
}

bool isServiceStatus(unsigned long code)
{
    return code == statusCode(ServiceStatus::None) || entryOf(code);
}

QString presentable(QStringView foreignText)
{
    QString text = foreignText.left(maxForeignText + 1).toString();
    std::replace_if(
        text.begin(), text.end(), [](QChar character) { return !isPlain(character); }, QLatin1Char(' '));
    text = text.simplified();
    if (text.size() > maxForeignText) {
        text = text.left(maxForeignText - 1) + QChar(0x2026);
    }
    return text;
}

} // namespace ZelkoCommon
