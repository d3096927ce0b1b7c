#pragma once

#include <zelkobase/orb/zelkobaseorb_export.h>

#include <string>

struct sockaddr;

namespace ZelkoCommon {

/// From where this process calls itself, as far as others are concerned.
inline constexpr char loopbackAddress[] = "127.0.0.1";

/// The address in numbers that `text` stands for, in the one form in which addresses can be compared: without
/// brackets, as short as can be, IPv4 that is mapped into IPv6 as IPv4. Empty for a name, and for what is no address.
/// Never asks a name server.
ZELKOBASEORB_EXPORT std::string plainAddress(const std::string& text);

/// The same of the address of a socket, without its port.
ZELKOBASEORB_EXPORT std::string plainAddress(const sockaddr* address, unsigned int length);

} // namespace ZelkoCommon
