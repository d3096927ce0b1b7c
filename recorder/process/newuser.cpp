#include <recorder/process/newuser.h>

#include <recorder/process/passwordinput.h>

#include <credentials/userentry.h>

#include <unistd.h>

namespace ZelkoRecorder {

namespace {

RecorderOptions::Ending fail(const QString& text)
{
    return {QStringLiteral("zelko-recorder: ") + text, 1};
}

// A slip of the finger that nobody sees would keep the user out.
bool isRepeated(const QByteArray& password)
{
    return ::isatty(STDIN_FILENO) == 0 || readPassword(STDIN_FILENO, QStringLiteral("Again: ")) == password;
}

} // namespace

RecorderOptions::Ending makeUser(const RecorderOptions::NewUser& user)
{
    const auto password = readPassword(STDIN_FILENO, QStringLiteral("Password of %1: ").arg(user.name));
    if (!password || QString::fromUtf8(*password).toUtf8() != *password) {
        return fail(QStringLiteral("there is no password, it is too long, or no UTF-8"));
    }
    if (!isRepeated(*password)) {
        return fail(QStringLiteral("the two passwords differ"));
    }
    const auto hash = ZelkoCommon::PasswordHash::make(*password);
    if (!hash) {
        return fail(QStringLiteral("there is not enough memory"));
    }
    return {QString::fromUtf8(ZelkoCommon::UserEntry{user.name, user.role, *hash}.toLine()), 0};
}

} // namespace ZelkoRecorder
