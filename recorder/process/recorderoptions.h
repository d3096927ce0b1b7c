#pragma once

#include <recorder/served/recordchurn.h>
#include <recorder/served/recordingthread.h>
#include <recorder/service/ownchannels.h>
#include <recorder/store/recording.h>

#include <credentials/role.h>
#include <zelkobase/orb/tlsoptions.h>

#include <QHash>
#include <QString>
#include <QStringList>

#include <chrono>
#include <optional>

namespace ZelkoRecorder {

/// What the command line of the recorder says.
struct RecorderOptions
{
    /// What a command line leads to, other than options.
    struct Ending
    {
        /// To be printed: on the error output if `exitCode` is not 0.
        QString text;
        int exitCode = 0;
    };

    /// Whom a line for a users file is to be made for.
    struct NewUser
    {
        QString name;
        ZelkoCommon::Role role = ZelkoCommon::Role::Viewer;

        bool operator==(const NewUser&) const = default;
    };

    QString store;
    QString subSystem = QStringLiteral("local");
    QStringList devices;
    QString listenAddress = QStringLiteral("127.0.0.1");
    quint16 port = 8004;
    /// By device, in the order given.
    QHash<QString, QStringList> sources;
    /// Channels of the recorder's own.
    QList<OwnChannels::Plan> channels;
    /// As Channel::Options has it.
    std::chrono::milliseconds dataPatience{60000};
    /// For each device.
    int preparedRecords = 0;
    ChurnPlan churn;
    RecordingThread::Repeat repeat = RecordingThread::Repeat::Everything;
    RecordingPace pace;
    /// Records may be exported below these folders, which exist.
    QStringList exportFolders;
    bool exitWithParent = false;
    /// Empty: there are none, and every client is a viewer.
    QString usersFile;
    /// Nothing: not through TLS.
    std::optional<ZelkoCommon::TlsOptions> tls;
    /// Not to serve, but to print a line for a users file.
    std::optional<NewUser> newUser;

    /// Reads a command line, program name first. Nothing, and in `ending` what to print and the exit code, when it asks
    /// for help or the version, or is wrong: the code is 2 then.
    static std::optional<RecorderOptions> parse(const QStringList& arguments, Ending* ending);
};

} // namespace ZelkoRecorder
