#pragma once

#include <QFile>
#include <QString>

#include <memory>

namespace ZelkoRecorder {

/// Opens a file for reading. Null, and a text for people in `error`, if it is missing, not readable, or no regular
/// file: a pipe, a device or a folder under its name is refused without waiting for anybody. Any thread.
std::unique_ptr<QFile> openRegularFile(const QString& path, QString* error);

} // namespace ZelkoRecorder
