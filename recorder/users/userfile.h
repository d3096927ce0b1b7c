#pragma once

#include <credentials/userentry.h>

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <optional>
#include <vector>

namespace ZelkoRecorder {

using ZelkoCommon::UserEntry;

/// The users of a recorder, as a file has them: a line for each, "name:role:hash", in UTF-8. Empty lines and lines that
/// begin with "#" count for nothing. It is taken over whole or not at all. Reads are possible on any thread.
class UserFile
{
public:
    static constexpr qsizetype maximumBytes = 64 * 1024;
    static constexpr std::size_t maximumUsers = 200;

    /// Reads a file from disk. Nothing, and a text for people in `error` that names file and line, when it cannot be
    /// read, is larger than the bounds, has a line that is wrong, two users of one name or none at all. What is unwise
    /// and no reason to refuse it is appended to `warnings`, for people too.
    static std::optional<UserFile> load(const QString& path, QString* error, QStringList* warnings);

    /// Takes over the content of a file; the error names the line.
    static std::optional<UserFile> fromBytes(const QByteArray& bytes, QString* error);

    /// In the order of the file; at least one.
    const std::vector<UserEntry>& users() const { return m_users; }

    /// The user of that name, or null.
    const UserEntry* find(const QString& name) const;

private:
    UserFile() = default;
    bool add(const QByteArray& line, QString* error);

    std::vector<UserEntry> m_users;
};

} // namespace ZelkoRecorder
