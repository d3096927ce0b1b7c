#pragma once

#include <console/session/embeddedrecorder.h>

#include <QString>
#include <QStringList>

#include <optional>

namespace ZelkoConsole {

/// What the command line of the console can say.
struct ConsoleOptions
{
    QString siteFile;    ///< empty: the console starts a recorder of its own
    QString storeFolder; ///< of that recorder; empty: one of the user's application data that no other console uses
    QStringList sources; ///< what that recorder records; empty: `defaultSources()`
    bool traces = false; ///< warnings for developers, not errors alone

    /// Reads a command line without the program's name. Nothing, and a text for people in `error`, when it is wrong.
    static std::optional<ConsoleOptions> parse(const QStringList& arguments, QString* error);

    /// What ErrorHandler is to trace.
    unsigned int traceMask() const;

    /// The text for --help.
    static QString helpText();

    /// Some short recordings of generated signals on each of `defaultDevices()`, so that a first start has something to
    /// show.
    static QStringList defaultSources();
    static QStringList defaultDevices();

    /// A channel with a generated signal that never ends, so that there is something to record from at any time.
    static QStringList defaultChannels();

    /// How the recorder is to be started; the program is expected in `programFolder`. Another console may use the store
    /// where the command line names none.
    EmbeddedRecorderOptions recorderOptions(const QString& programFolder) const;
};

} // namespace ZelkoConsole
