#pragma once

#include <QString>

namespace ZelkoCommon {

/// What a process proves with who it is, and whom it believes, where calls travel through TLS. Files are PEM.
struct TlsOptions
{
    /// Certificates of the authorities of the site. A peer needs a certificate that one of them has signed.
    QString authorityFile;

    /// The certificate of this process, those between it and the authority if there are any, and its private key.
    QString keyFile;

    /// Of the private key; empty: it is not encrypted.
    QString keyPassword = {};

    /// Whether the certificate of who is called must be made out to the name or address under which he is called.
    bool checksHosts = true;

    bool operator==(const TlsOptions&) const = default;
};

} // namespace ZelkoCommon
