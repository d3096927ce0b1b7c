#pragma once

#include <reportcore/reportcore_export.h>

#include <QByteArray>
#include <QString>

namespace REPORTGENERATOR {

/// Replaces a file atomically. When it returns true the bytes and the folder entry have reached the disk. After false
/// the file is the old one; only if making the folder entry durable was what failed it is the new one. Blocks for as
/// long as the disk takes. Any thread.
REPORTCORE_EXPORT bool writeDurably(const QString& fileName, const QByteArray& bytes);

/// Makes new, renamed and removed entries of a folder durable; false if the system refuses.
REPORTCORE_EXPORT bool syncFolder(const QString& folder);

} // namespace REPORTGENERATOR
