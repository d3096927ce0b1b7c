#pragma once

#include <zelkobase/service/zelkobaseservice_export.h>

#include <QString>

/// How serious a response is.
enum class ErrorClassifier : int {
    Information = 0, ///< for the log
    Warning = 1,     ///< for the user: it was done, but
    Error = 2        ///< for the user: it was not done
};

/// Where the responses to commands of a sub system go. The branch of a sub system is the recorder's, and comes and goes
/// with the connection, so nothing is written there: warnings and errors become messages to the user through the error
/// handler, which outlive the connection, and everything is traced. GUI thread only.
class ZELKOBASESERVICE_EXPORT ErrorDescriptor
{
public:
    /// `path` is the place on the tree that the responses are about: "/SubSystems/" and the name of the sub system.
    explicit ErrorDescriptor(const QString& path);

    const QString& path() const { return m_path; }

    /// Says that a command ended with `text`, and in `description` more about it; either may be empty, and if both are
    /// nothing is said. A classifier that is not listed counts as an error.
    void WriteCommandResponse(ErrorClassifier classifier, const QString& text, const QString& description);

private:
    QString m_path;
};
