#pragma once

#include <zelkobase/orb/zelkobaseorb_export.h>

#include <cstdint>
#include <memory>
#include <string>

struct addrinfo;
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

struct ZELKOBASEORB_EXPORT FreeAddress
{
    void operator()(addrinfo* address) const;
};
using SocketAddress = std::unique_ptr<addrinfo, FreeAddress>;

/// What a socket for datagrams takes for that address in numbers, and the port. Null for a name, and for what is no
/// address. Never asks a name server.
ZELKOBASEORB_EXPORT SocketAddress datagramAddress(const std::string& address, std::uint16_t port);

} // namespace ZelkoCommon
