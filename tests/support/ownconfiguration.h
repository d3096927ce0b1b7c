#pragma once

#include <vornappstartup/cfgcenter.h>

#include <QTemporaryDir>

/// A user's configuration of a test's own, for as long as it exists.
class OwnConfiguration
{
public:
    OwnConfiguration() { readAgain(); }
    ~OwnConfiguration() { CfgCenter::SetFile(ICfg::UserView, QString()); }
    OwnConfiguration(const OwnConfiguration&) = delete;
    OwnConfiguration& operator=(const OwnConfiguration&) = delete;

    /// As the next run of the program does: what was not written is lost.
    void readAgain() const { CfgCenter::SetFile(ICfg::UserView, m_folder.filePath(QStringLiteral("user.ini"))); }

private:
    const QTemporaryDir m_folder;
};
