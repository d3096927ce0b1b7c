#pragma once

#include <zelkobase/orb/tlsoptions.h>

#include <QTemporaryDir>

#include <memory>

/// An authority that signs certificates for a test. Its files go with it.
class TestAuthority
{
public:
    /// For whom, or for what, a certificate is.
    struct Wish
    {
        QString hosts = QStringLiteral("IP:127.0.0.1,DNS:localhost"); ///< as in a configuration of OpenSSL
        int validFrom = -3600;                                        ///< seconds from now
        int validUntil = 3600;                                        ///< seconds from now
        QString password = {};                                        ///< of the key; empty: it is not encrypted
    };

    TestAuthority();
    ~TestAuthority();

    /// Its own certificate.
    QString file() const;

    /// A file with a new certificate and its private key; empty when it could not be made.
    QString makeKey(const Wish& wish);

    /// What it takes to believe this authority, and a new key.
    ZelkoCommon::TlsOptions options(const Wish& wish);
    ZelkoCommon::TlsOptions options() { return options(Wish()); }

private:
    struct Private;
    const std::unique_ptr<Private> d;
};
