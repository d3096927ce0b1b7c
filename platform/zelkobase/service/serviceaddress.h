#pragma once

#include <zelkobase/service/zelkobaseservice_export.h>

#include <QString>
#include <QStringList>

namespace ZelkoCommon {

/// Under which key a recorder publishes the entry point of its service.
inline constexpr const char* recorderServiceKey = "RecorderService";

/// Where a recorder's service is found.
struct ServiceAddress
{
    QString reference; ///< corbaloc, corbaname or IOR; empty: by host and port
    QString host;      ///< name or address
    quint16 port = 0;

    bool operator==(const ServiceAddress&) const = default;

    /// True if there is anything to try.
    bool isValid() const { return !reference.isEmpty() || (!host.isEmpty() && port != 0); }
};

/// The reference of the service of a recorder that is reached by one of some addresses. They are tried in order.
ZELKOBASESERVICE_EXPORT QString serviceReference(const QStringList& addresses, quint16 port);

/// The same through TLS. There is one host, name or address, because the ORB takes no more in such a reference; it
/// tries all addresses of a name.
ZELKOBASESERVICE_EXPORT QString tlsServiceReference(const QString& host, quint16 port);

} // namespace ZelkoCommon
