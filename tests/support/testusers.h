#pragma once

#include <credentials/userentry.h>
#include <zelkobase/connection/linkcredentials.h>

#include <QFile>
#include <QTemporaryDir>

namespace ZelkoTest {

/// A users file with a user for each role, whose name is that of the role. Trying a password costs next to nothing.
class TestUsers
{
public:
    TestUsers()
    {
        QFile file(path());
        if (!file.open(QIODevice::WriteOnly)) {
            return;
        }
        file.setPermissions(QFile::ReadOwner | QFile::WriteOwner);
        for (const auto role : ZelkoCommon::allRoles) {
            const auto who = credentials(role);
            const auto hash = ZelkoCommon::PasswordHash::make(who.password.toUtf8(), ZelkoCommon::HashCost::least());
            file.write(ZelkoCommon::UserEntry{who.user, role, *hash}.toLine() + '\n');
        }
    }

    static ZelkoCommon::LinkCredentials credentials(ZelkoCommon::Role role)
    {
        const QString name = ZelkoCommon::roleName(role);
        return {name, QStringLiteral("the %1's secret").arg(name)};
    }

    QString path() const { return m_folder.filePath(QStringLiteral("users")); }

    /// For the command line of a recorder.
    QStringList arguments() const { return {QStringLiteral("--users"), path()}; }

private:
    const QTemporaryDir m_folder;
};

} // namespace ZelkoTest
