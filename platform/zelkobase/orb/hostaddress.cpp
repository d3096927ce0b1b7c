#include <zelkobase/orb/hostaddress.h>

#include <netdb.h>
#include <sys/socket.h>

namespace ZelkoCommon {

std::string plainAddress(const std::string& text)
{
    const bool isBracketed = text.size() > 2 && text.front() == '[' && text.back() == ']';
    const std::string bare = isBracketed ? text.substr(1, text.size() - 2) : text;
    addrinfo hints{};
    hints.ai_flags = AI_NUMERICHOST;
    addrinfo* found = nullptr;
    if (bare.empty() || ::getaddrinfo(bare.c_str(), nullptr, &hints, &found) != 0) {
        return {};
    }
    std::string plain = plainAddress(found->ai_addr, found->ai_addrlen);
    ::freeaddrinfo(found);
    return plain;
}

std::string plainAddress(const sockaddr* address, unsigned int length)
{
    char host[NI_MAXHOST] = "";
    if (::getnameinfo(address, length, host, sizeof host, nullptr, 0, NI_NUMERICHOST) != 0) {
        return {};
    }
    const std::string text = host;
    constexpr char mapped[] = "::ffff:";
    const bool isMapped = text.rfind(mapped, 0) == 0 && text.find('.') != std::string::npos;
    return isMapped ? text.substr(sizeof mapped - 1) : text;
}

void FreeAddress::operator()(addrinfo* address) const
{
    ::freeaddrinfo(address);
}

// An empty text would be taken for this host.
SocketAddress datagramAddress(const std::string& address, std::uint16_t port)
{
    addrinfo hints{};
    hints.ai_socktype = SOCK_DGRAM;
    hints.ai_flags = AI_NUMERICHOST | AI_NUMERICSERV;
    addrinfo* found = nullptr;
    const bool isFound =
        !address.empty() && ::getaddrinfo(address.c_str(), std::to_string(port).c_str(), &hints, &found) == 0;
    return SocketAddress(isFound ? found : nullptr);
}

} // namespace ZelkoCommon
