#include <zelkobase/orb/tlspeer_p.h>

#include <zelkobase/orb/tlsrefusal_p.h>

#include <QLoggingCategory>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <openssl/x509_vfy.h>
#include <openssl/x509v3.h>
#include <sys/socket.h>

#include <array>
#include <atomic>
#include <chrono>
#include <string>

namespace ZelkoCommon {
namespace {

Q_LOGGING_CATEGORY(lcTls, "zelko.tls")

using namespace std::chrono_literals;

constexpr auto quietTime = 5s; // so that who comes again and again does not fill the log

// The bytes of an internet address, in the order of the network.
struct Address
{
    std::array<unsigned char, sizeof(in6_addr)> bytes{};
    std::size_t size = 0; // 0: none
    int family = AF_UNSPEC;
};

template <typename Bytes>
Address addressOf(const Bytes& bytes, int family)
{
    Address address;
    const auto* const first = reinterpret_cast<const unsigned char*>(&bytes);
    std::copy(first, first + sizeof(bytes), address.bytes.begin());
    address.size = sizeof(bytes);
    address.family = family;
    return address;
}

Address peerOf(const SSL* ssl)
{
    sockaddr_storage socket{};
    socklen_t size = sizeof(socket);
    if (getpeername(SSL_get_fd(ssl), reinterpret_cast<sockaddr*>(&socket), &size) != 0) {
        return {};
    }
    if (socket.ss_family == AF_INET) {
        return addressOf(reinterpret_cast<const sockaddr_in&>(socket).sin_addr, AF_INET);
    }
    if (socket.ss_family == AF_INET6) {
        return addressOf(reinterpret_cast<const sockaddr_in6&>(socket).sin6_addr, AF_INET6);
    }
    return {};
}

std::string textOf(const Address& address)
{
    std::array<char, INET6_ADDRSTRLEN> text{};
    const bool worked = inet_ntop(address.family, address.bytes.data(), text.data(), text.size());
    return worked ? text.data() : "an unknown address";
}

// The ORB tells a server the name under which it calls it, if it calls it by a name.
bool isMadeOutToWhoIsCalled(X509* certificate, const SSL* ssl)
{
    if (const char* const name = SSL_get_servername(ssl, TLSEXT_NAMETYPE_host_name)) {
        return X509_check_host(certificate, name, 0, X509_CHECK_FLAG_NO_PARTIAL_WILDCARDS, nullptr) == 1;
    }
    const Address address = peerOf(ssl);
    return address.size > 0 && X509_check_ip(certificate, address.bytes.data(), address.size, 0) == 1;
}

bool checksHost(const SSL* ssl)
{
    return !SSL_is_server(ssl) && SSL_CTX_get_app_data(SSL_get_SSL_CTX(ssl));
}

bool isTimeToTell()
{
    static std::atomic<std::chrono::steady_clock::time_point> last{};
    const auto now = std::chrono::steady_clock::now();
    auto before = last.load();
    const bool isFirst = before == std::chrono::steady_clock::time_point();
    return (isFirst || now - before >= quietTime) && last.compare_exchange_strong(before, now);
}

void tellRefused(const SSL* ssl, int error)
{
    if (isTimeToTell()) {
        qCWarning(lcTls, "TLS: %s %s is refused: %s", SSL_is_server(ssl) ? "a client at" : "who serves at",
                  textOf(peerOf(ssl)).c_str(), X509_verify_cert_error_string(error));
    }
}

// Whoever calls asks for it. Of those who call nobody does.
void noteRefused(const SSL* ssl, int error)
{
    if (!SSL_is_server(ssl)) {
        noteTlsRefusal(
            QStringLiteral("its certificate is refused: %1").arg(QLatin1String(X509_verify_cert_error_string(error))));
    }
}

} // namespace

int verifyPeer(int isAccepted, X509_STORE_CTX* store)
{
    const auto* const ssl =
        static_cast<const SSL*>(X509_STORE_CTX_get_ex_data(store, SSL_get_ex_data_X509_STORE_CTX_idx()));
    const bool isOwnOfPeer = X509_STORE_CTX_get_error_depth(store) == 0;
    if (isAccepted && isOwnOfPeer && checksHost(ssl) &&
        !isMadeOutToWhoIsCalled(X509_STORE_CTX_get_current_cert(store), ssl)) {
        X509_STORE_CTX_set_error(store, X509_V_ERR_HOSTNAME_MISMATCH);
        isAccepted = 0;
    }
    if (!isAccepted) {
        tellRefused(ssl, X509_STORE_CTX_get_error(store));
        noteRefused(ssl, X509_STORE_CTX_get_error(store));
    }
    return isAccepted;
}

void setChecksHosts(SSL_CTX* context, bool checksHosts)
{
    SSL_CTX_set_app_data(context, checksHosts ? context : nullptr);
}

} // namespace ZelkoCommon
