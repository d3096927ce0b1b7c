#pragma once

#include <console/session/consoleoptions.h>

#include <memory>

class QString;

namespace ZelkoConsole {

class ConsoleUser;
class ConsoleWindow;
class Session;

/// Name, icon and version of the application, for its windows, settings and folders. Once, after QApplication was made.
void prepareApplication();

/// A whole console: ORB, session, settings and window. One at a time.
class RunningConsole
{
public:
    /// Connects, or starts a recorder, as the options say; the window is made and not shown yet. Null, and a text for
    /// people in `error`, when the site file cannot be read, or the own recorder not be listened to. A site file that
    /// names an address or keys that cannot be used gives a console with nothing connected, whose window says why.
    static std::unique_ptr<RunningConsole> open(const ConsoleOptions& options, QString* error);

    ~RunningConsole();

    /// Shows the window, which says what is wrong with the site, or asks who works here, as soon as it is shown.
    void show();

    /// Shows the window and runs until it is closed, or the process gets SIGTERM or SIGINT, which closes it too. Gives
    /// the exit code. The process holds both signals since before it had a second thread.
    int run();

    /// A ConsoleSession, unless nothing can be connected.
    Session& session() const;
    ConsoleUser& user() const;
    ConsoleWindow& window() const;

private:
    RunningConsole();

    struct Private;
    const std::unique_ptr<Private> d;
};

} // namespace ZelkoConsole
