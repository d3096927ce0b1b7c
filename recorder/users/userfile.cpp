#include <recorder/users/userfile.h>

#include <recorder/source/regularfile.h>

#include <QList>

#include <algorithm>

namespace ZelkoRecorder {

namespace {

bool refuse(QString* error, const QString& text)
{
    *error = text;
    return false;
}

// Beside what a line is refused for, so that no comment hides what a terminal would do to somebody who looks at it.
bool hasControlCharacters(const QByteArray& line)
{
    return std::any_of(line.begin(), line.end(), [](char byte) {
        const auto value = static_cast<unsigned char>(byte);
        return value < 0x20 || value == 0x7f;
    });
}

bool countsForNothing(const QByteArray& line)
{
    return line.isEmpty() || line.startsWith('#');
}

void warnOfOpenFile(const QFile& file, const QString& path, QStringList* warnings)
{
    constexpr QFile::Permissions others = QFile::ReadGroup | QFile::WriteGroup | QFile::ReadOther | QFile::WriteOther;
    if ((file.permissions() & others) != 0) {
        warnings->append(QStringLiteral("The users file \"%1\" is open to others: they may try passwords against it. "
                                        "Its mode should be 0600.")
                             .arg(path));
    }
}

} // namespace

std::optional<UserFile> UserFile::load(const QString& path, QString* error, QStringList* warnings)
{
    const auto file = openRegularFile(path, error);
    if (!file) {
        return std::nullopt;
    }
    warnOfOpenFile(*file, path, warnings);
    QString reason;
    auto users = fromBytes(file->read(maximumBytes + 1), &reason);
    if (!users) {
        *error = QStringLiteral("The users file \"%1\" cannot be used: %2").arg(path, reason);
    }
    return users;
}

std::optional<UserFile> UserFile::fromBytes(const QByteArray& bytes, QString* error)
{
    if (bytes.size() > maximumBytes) {
        *error = QStringLiteral("it is larger than %1 bytes").arg(maximumBytes);
        return std::nullopt;
    }
    UserFile result;
    int number = 0;
    for (const QByteArray& line : bytes.split('\n')) {
        ++number;
        QString reason;
        if (!result.add(line, &reason)) {
            *error = QStringLiteral("line %1: %2").arg(number).arg(reason);
            return std::nullopt;
        }
    }
    if (result.m_users.empty()) {
        *error = QStringLiteral("it has no users");
        return std::nullopt;
    }
    return result;
}

bool UserFile::add(const QByteArray& line, QString* error)
{
    if (hasControlCharacters(line)) {
        return refuse(error, QStringLiteral("it has control characters, an end of line of another system perhaps"));
    }
    if (countsForNothing(line)) {
        return true;
    }
    const auto user = UserEntry::fromLine(line, error);
    if (!user) {
        return false;
    }
    if (find(user->name)) {
        return refuse(error, QStringLiteral("the user \"%1\" stands there twice").arg(user->name));
    }
    if (m_users.size() == maximumUsers) {
        return refuse(error, QStringLiteral("there are more than %1 users").arg(maximumUsers));
    }
    m_users.push_back(*user);
    return true;
}

const UserEntry* UserFile::find(const QString& name) const
{
    const auto found =
        std::find_if(m_users.begin(), m_users.end(), [&](const UserEntry& user) { return user.name == name; });
    return found == m_users.end() ? nullptr : &*found;
}

} // namespace ZelkoRecorder
