#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace ZelkoRecorder {

/// Reads a password: a line without its end from a descriptor. On a terminal it prints `question`
/// first, and what is typed does not show. Nothing when the line is longer than any password, or there is none. Blocks.
std::optional<QByteArray> readPassword(int descriptor, const QString& question);

} // namespace ZelkoRecorder
