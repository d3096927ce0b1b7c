#include <valuecore/texthash.h>

#define XXH_INLINE_ALL
#include <xxhash.h>

std::size_t textHash(QStringView text) noexcept
{
    return XXH3_64bits(text.utf16(), static_cast<std::size_t>(text.size()) * sizeof(char16_t));
}
