#pragma once

#include <openssl/ssl.h>

namespace ZelkoCommon {

/// The verify callback of connections. Beyond what the library checks, the certificate of a peer who is called must be
/// made out to the host as it was called, name or address, if the context checks hosts. Tells in the log, not too
/// often, who was refused and why.
int verifyPeer(int isAccepted, X509_STORE_CTX* store);

/// Whether the connections of `context` check hosts. They do not unless it is said.
void setChecksHosts(SSL_CTX* context, bool checksHosts);

} // namespace ZelkoCommon
