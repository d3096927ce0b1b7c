#pragma once

#include <QString>

namespace ZelkoRecorder {

/// The address by which clients reach a recorder that listens at `listenAddress`: that one, or for all interfaces the
/// first address of this machine that others can reach, and the loopback address if there is none.
QString reachableAddress(const QString& listenAddress);

} // namespace ZelkoRecorder
