#pragma once

#include <vornappstartup/vornappstartup_export.h>

#include <QString>

#include <memory>

/// A configuration: texts, numbers and flags by key, in named groups. What is written can be read back at once; it is
/// on disk after Flush(), and at the latest when the process ends in order. GUI thread only.
class VORNAPPSTARTUP_EXPORT ICfg
{
public:
    /// Whose configuration it is.
    enum View : int {
        UserView = 1,       ///< what this user has chosen, read and written by the windows of the application
        ApplicationView = 2 ///< what holds whatever the user chooses, in the file that the host application sets for it
    };

    enum class Access {
        Read, ///< a group that is not there cannot be opened
        Write ///< a group that is not there is made; none can be opened where nothing can be written
    };

    virtual ~ICfg();

    /// The value of a key; `defaultValue` where the key is missing or its text is no value of that type.
    virtual QString GetString(const QString& key, const QString& defaultValue) const = 0;
    virtual int GetInteger(const QString& key, int defaultValue) const = 0;
    virtual bool GetBool(const QString& key, bool defaultValue) const = 0;

    virtual void SetString(const QString& key, const QString& value) = 0;
    virtual void SetInteger(const QString& key, int value) = 0;
    virtual void SetBool(const QString& key, bool value) = 0;

    /// A group of this configuration, with keys of its own. Null for an empty name, and as `access` says. The group
    /// must not outlive the configuration. To see whether it can be written, each opening for writing makes the folder
    /// of the file if it is missing, and a temporary file there for a moment.
    virtual std::unique_ptr<ICfg> OpenGroup(const QString& name, Access access) = 0;

    /// Writes what has changed, all groups of it, to disk. False if that fails; the file is the old one then. Blocks
    /// until the disk has it, and before that for up to two seconds while another process writes the same file.
    virtual bool Flush() = 0;

protected:
    ICfg() = default;
    ICfg(const ICfg&) = default;
    ICfg& operator=(const ICfg&) = default;
};
