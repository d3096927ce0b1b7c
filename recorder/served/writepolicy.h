#pragma once

#include <recorder/link/treelinkserver.h>

#include <QString>

namespace ZelkoRecorder {

/// Who may write which value. The one place where that is decided: command values only, and by any user as long as the
/// recorder listens on a loopback address, where every client is of this machine. Nobody otherwise.
TreeLinkServer::MayWrite writePolicy(const QString& listenAddress);

/// Whether only this machine reaches an address. False for names but "localhost", and for an empty text, which means
/// every interface.
bool isLoopbackAddress(const QString& address);

} // namespace ZelkoRecorder
