// Bytes as a users file: what is accepted has users that can be told apart and are the same when their lines are read
// again, none of whom costs more than the bounds; the rest is refused with a text.
#include "require.h"

#include <recorder/users/userfile.h>

#include <cstdint>

using ZelkoCommon::PasswordHash;
using ZelkoCommon::UserEntry;
using ZelkoRecorder::UserFile;

namespace {

bool isSame(const UserEntry& one, const UserEntry& other)
{
    return one.name == other.name && one.role == other.role && one.hash.text() == other.hash.text();
}

void checkAccepted(const UserFile& file)
{
    require(!file.users().empty() && file.users().size() <= UserFile::maximumUsers);
    QByteArray written;
    for (const UserEntry& user : file.users()) {
        require(file.find(user.name) == &user);
        require(UserEntry::canBeName(user.name));
        require(user.hash.cost().passes >= 1 && user.hash.cost().passes <= PasswordHash::maximumPasses);
        require(user.hash.cost().memoryBytes <= PasswordHash::maximumMemory);
        written += user.toLine() + '\n';
    }
    QString error;
    const auto again = UserFile::fromBytes(written, &error);
    require(again && again->users().size() == file.users().size());
    for (std::size_t i = 0; i < file.users().size(); ++i) {
        require(isSame(file.users()[i], again->users()[i]));
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    QString error;
    const auto file = UserFile::fromBytes(bytes, &error);
    require(file.has_value() == error.isEmpty());
    if (file) {
        checkAccepted(*file);
    }
    return 0;
}
