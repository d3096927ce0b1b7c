#pragma once

#include "patience.h"

#include <QDirIterator>
#include <QTest>

namespace ZelkoTest {

/// Of the samples of all records below a folder.
inline qint64 storedBytes(const QString& folder)
{
    qint64 bytes = 0;
    QDirIterator files(folder, {QStringLiteral("*.dat")}, QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        bytes += QFileInfo(files.next()).size();
    }
    return bytes;
}

/// Sends one frame until its samples are stored below `folder`: a datagram may be lost, and a frame that comes twice is
/// left out. False when `send`, which tells whether it could, does not get it there.
template <typename Send>
bool sendUntilStored(const QString& folder, Send send)
{
    const qint64 before = storedBytes(folder);
    return QTest::qWaitFor([&] { return send() && storedBytes(folder) > before; }, patience);
}

} // namespace ZelkoTest
