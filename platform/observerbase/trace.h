#pragma once

#include <observerbase/observerbase_export.h>

#include <QString>

#include <functional>

/// Receives one trace: its text, the source file and the line that wrote it.
using TraceSink = std::function<void(const QString& text, const char* file, int line)>;

/// Writes a trace for developers, never shown to users. It goes to the trace sink if there is one and otherwise to the
/// logging category "zelko.trace". Ask the mask of ErrorHandler before building the text. Any thread.
OBSERVERBASE_EXPORT void _Q_Trace(const QString& text, const char* file, int line);

/// Sets who receives traces, and returns who did so far; an empty function restores the logging category. The sink is
/// called on the threads that trace, on several at once too, and no lock is held meanwhile: it may wait for a thread
/// that traces, trace, and set another sink. From the return on no other thread is in the former sink.
OBSERVERBASE_EXPORT TraceSink SetTraceSink(TraceSink sink);
