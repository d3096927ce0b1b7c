#pragma once

#include <observerbase/observerbase_export.h>

#include <QString>

#include <functional>
#include <memory>

/// Where failures go: traces for developers, messages for users. One per process.
///
/// The mask says which traces are wanted. A text is built and passed to `_Q_Trace` only if its bit is set:
///
///     if (ErrorHandler::Instance()->traces(ErrorHandler::TraceWarning)) {
///         _Q_Trace(QStringLiteral("..."), __FILE__, __LINE__);
///     }
///
/// The mask may be read on any thread; everything else belongs to the GUI thread.
class OBSERVERBASE_EXPORT ErrorHandler
{
public:
    enum TraceBit : unsigned int { TraceError = 32, TraceWarning = 64 };

    /// Receives one message for the user.
    using MessageSink = std::function<void(const QString& text)>;

    static ErrorHandler* Instance();

    /// The bits of the traces that are wanted; TraceError and TraceWarning from the start.
    unsigned int GetTraceMask() const;
    void SetTraceMask(unsigned int mask);

    /// True if `bit` is in the mask.
    bool traces(TraceBit bit) const { return (GetTraceMask() & bit) != 0; }

    /// Says a text to the user. It goes to the message sink; without one it becomes a warning in the log, so that no
    /// message is lost in a program without windows.
    void ShowMessage(const QString& text);

    /// Sets who shows messages, and returns who did so far; an empty function takes the sink away.
    MessageSink SetMessageSink(MessageSink sink);

private:
    ErrorHandler();
    ~ErrorHandler();

    struct Private;
    const std::unique_ptr<Private> d;
};
