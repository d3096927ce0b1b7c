#include <recorder/served/writepolicy.h>

#include <valuecore/valuebase.h>
#include <zelkobase/names/valuenames.h>

#include <arpa/inet.h>

#include <cstring>

namespace ZelkoRecorder {

namespace {

// The values beside the commands tell what is the case, which is not for clients to say.
bool isCommand(const ValueBase& value)
{
    static const QString branch = QString(zelko::names::zelkoCommand) + QLatin1Char('/');
    static const QStringList names{zelko::names::synchronize, zelko::names::syncOneRecord,
                                   zelko::names::deleteRecordingList, zelko::names::setRecordIdle};
    return value.GetPathName().startsWith(branch) && names.contains(value.GetName());
}

} // namespace

TreeLinkServer::MayWrite writePolicy(const QString& listenAddress)
{
    return [local = isLoopbackAddress(listenAddress)](const QString&, const ValueBase& value) {
        return local && isCommand(value);
    };
}

bool isLoopbackAddress(const QString& address)
{
    const QByteArray text = address.toLatin1();
    in_addr v4{};
    if (inet_pton(AF_INET, text.constData(), &v4) == 1) {
        return ntohl(v4.s_addr) >> 24 == 127;
    }
    in6_addr v6{};
    if (inet_pton(AF_INET6, text.constData(), &v6) == 1) {
        return std::memcmp(&v6, &in6addr_loopback, sizeof v6) == 0;
    }
    return address == QLatin1String("localhost");
}

} // namespace ZelkoRecorder
