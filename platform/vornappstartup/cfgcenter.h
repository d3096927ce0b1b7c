#pragma once

#include <vornappstartup/icfg.h>

/// Where the parts of an application find its configuration. GUI thread only.
class VORNAPPSTARTUP_EXPORT CfgCenter
{
public:
    CfgCenter() = delete;

    /// The configuration of that view, null for a number that is no view. It lives as long as the process, or until its
    /// file is changed. Unless a file was set these are "user.ini" and "application.ini" in the folder where the system
    /// keeps the configuration of this application for its user, as QStandardPaths::AppConfigLocation tells: a host
    /// whose installation lays one down for all users sets its file. A file that cannot be read is set aside under
    /// another name beside it, the user is told by ErrorHandler::ShowMessage(), and a new one is begun.
    static ICfg* GetAppCfg(ICfg::View view);

    /// Has the host application keep a view in a file of its choice; an empty name means the file above again. What was
    /// written before goes to the old file.
    static void SetFile(ICfg::View view, const QString& fileName);
};
