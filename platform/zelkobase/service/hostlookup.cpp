#include <zelkobase/service/hostlookup.h>

#include <netdb.h>

#include <condition_variable>
#include <memory>
#include <mutex>
#include <string>
#include <thread>

namespace ZelkoCommon {
namespace {

constexpr int maxAddresses = 8;

QString numeric(const addrinfo& entry)
{
    char text[NI_MAXHOST];
    const int failed =
        getnameinfo(entry.ai_addr, entry.ai_addrlen, text, sizeof text, nullptr, 0, NI_NUMERICHOST | NI_NUMERICSERV);
    return failed ? QString() : QString::fromLatin1(text);
}

QStringList lookUp(const std::string& host, int flags)
{
    addrinfo wanted{};
    wanted.ai_socktype = SOCK_STREAM;
    wanted.ai_flags = flags;
    addrinfo* found = nullptr;
    if (getaddrinfo(host.c_str(), nullptr, &wanted, &found) != 0) {
        return {};
    }
    const std::unique_ptr<addrinfo, decltype(&freeaddrinfo)> owner(found, freeaddrinfo);
    QStringList addresses;
    for (const addrinfo* entry = found; entry && addresses.size() < maxAddresses; entry = entry->ai_next) {
        addresses << numeric(*entry);
    }
    addresses.removeAll(QString());
    return addresses;
}

// Shared with a thread that may still wait for the name server when nobody waits for it any more.
struct Lookup
{
    std::mutex mutex;
    std::condition_variable done;
    std::optional<QStringList> result;
};

} // namespace

std::optional<QStringList> addressesOf(const QString& host, std::chrono::milliseconds limit)
{
    return addressesOf(host, limit, [](const std::string& name) { return lookUp(name, 0); });
}

std::optional<QStringList> addressesOf(const QString& host, std::chrono::milliseconds limit, const HostQuery& query)
{
    const std::string name = host.toStdString();
    if (const QStringList itself = lookUp(name, AI_NUMERICHOST); !itself.isEmpty()) {
        return itself;
    }
    const auto lookup = std::make_shared<Lookup>();
    std::thread([lookup, name, query] {
        const QStringList result = query(name);
        const std::lock_guard lock(lookup->mutex);
        lookup->result = result;
        lookup->done.notify_one();
    }).detach();
    std::unique_lock lock(lookup->mutex);
    lookup->done.wait_for(lock, limit, [&] { return lookup->result.has_value(); });
    return lookup->result;
}

} // namespace ZelkoCommon
