// Bytes as a settings file: what is accepted is the same when it has been written and is read again.
#include "require.h"

#include <vornappstartup/initext_p.h>

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    const auto values = parseIni(bytes);
    if (values) {
        require(parseIni(iniText(*values)) == values);
    }
    return 0;
}
