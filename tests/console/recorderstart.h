#pragma once

#include "programs.h"

#include <console/session/embeddedrecorder.h>

#include <QTemporaryDir>

/// Options for the recorder that was built with the tests, with short waits and a store of its own.
inline ZelkoConsole::EmbeddedRecorderOptions recorderStart(const QTemporaryDir& store, const QStringList& sources = {})
{
    ZelkoConsole::EmbeddedRecorderOptions options;
    options.program = programPath("zelko-recorder");
    options.storeFolder = store.filePath(QStringLiteral("store"));
    options.subSystem = QStringLiteral("local");
    options.devices = QStringList(QStringLiteral("Recorder1"));
    options.sources = sources;
    options.firstRestart = std::chrono::milliseconds(100);
    options.lastRestart = std::chrono::milliseconds(400);
    return options;
}
