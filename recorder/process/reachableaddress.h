#pragma once

#include <QString>

struct ifaddrs;

namespace ZelkoRecorder {

/// The address by which clients reach a recorder that listens at `listenAddress`: that one, which may be a name, or for
/// all interfaces the first address of this machine that others can reach, and the loopback address if there is none.
/// "::" stands for both kinds of addresses, nothing and "0.0.0.0" for the older one.
QString reachableAddress(const QString& listenAddress);

/// The first of a list of addresses that others can reach: of the older kind, or else, if `anyKind`, of the newer one.
/// Empty if there is none.
QString firstReachable(const ifaddrs* addresses, bool anyKind);

} // namespace ZelkoRecorder
