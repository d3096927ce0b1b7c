#pragma once

#include <zelkobase/orb/tlsoptions.h>

#include <optional>

namespace ZelkoCommon {

/// How the ORB that is initialised next does TLS: 1.2 at least, with a certificate from both ends. Nothing: it does
/// not do it, and must be told to use no address of that kind. Throws OrbError when a file cannot be used.
void prepareTls(const std::optional<TlsOptions>& options);

} // namespace ZelkoCommon
