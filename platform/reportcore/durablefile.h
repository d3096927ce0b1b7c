#pragma once

#include <reportcore/reportcore_export.h>

#include <QByteArray>
#include <QString>

namespace REPORTGENERATOR {

/// Replaces a file atomically. When it returns true the bytes and the folder entry have reached the disk. After false
/// the file is the old one, or none if there was none: where making the folder entry durable was what failed, it is put
/// back. Only if that fails too it is the new one; who must know reads it. Blocks for as long as the disk takes. Any
/// thread.
REPORTCORE_EXPORT bool writeDurably(const QString& fileName, const QByteArray& bytes);

/// Makes a folder and those above it that are missing, durably. True if it is there already.
REPORTCORE_EXPORT bool makeFolderDurably(const QString& folder);

/// Makes new, renamed and removed entries of a folder durable; false if the system refuses.
REPORTCORE_EXPORT bool syncFolder(const QString& folder);

} // namespace REPORTGENERATOR
