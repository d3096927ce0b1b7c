#pragma once

#include <console/session/knownuser.h>

#include <QString>

#include <memory>
#include <vector>

class QTemporaryFile;

namespace ZelkoConsole {

/// The users of a recorder that the console starts for itself: one for each role, named after it. Their passwords are
/// random and nowhere but in the memory of this process; the recorder gets a file with hashes of them. GUI thread.
class RecorderUsers
{
public:
    RecorderUsers();

    /// Removes the file.
    ~RecorderUsers();

    const std::vector<KnownUser>& users() const { return m_users; }

    /// The path of the users file in a folder, which is the same one each time; the file is written when it is not
    /// there. Nobody but the user of this process can read it. Several consoles may have one each in one folder; those
    /// that consoles left there that were killed are removed. Empty when it cannot be written.
    QString file(const QString& folder);

private:
    bool write(const QString& folder);

    const std::vector<KnownUser> m_users;
    std::unique_ptr<QTemporaryFile> m_file;
};

} // namespace ZelkoConsole
