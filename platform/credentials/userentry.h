#pragma once

#include <credentials/credentials_export.h>
#include <credentials/passwordhash.h>
#include <credentials/role.h>

#include <QByteArray>
#include <QString>

#include <optional>

namespace ZelkoCommon {

/// A user as a users file has him: one line, "name:role:hash", in UTF-8.
struct CREDENTIALS_EXPORT UserEntry
{
    /// In UTF-8.
    static constexpr qsizetype maximumName = 64;
    static constexpr qsizetype maximumLine = 256;

    QString name;
    Role role = Role::Viewer;
    PasswordHash hash;

    /// Whether a text can be the name of a user: printable, without colons, without blanks at its ends, not beginning
    /// with "#", not empty and not too long.
    static bool canBeName(const QString& name);

    /// Reads a line without its end. Nothing, and a text for people in `error`, for one that is wrong in any way.
    static std::optional<UserEntry> fromLine(const QByteArray& line, QString* error);

    /// The line, without its end.
    QByteArray toLine() const;
};

} // namespace ZelkoCommon
