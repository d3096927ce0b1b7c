#pragma once

#include <cstdint>
#include <cstring>
#include <string>

namespace zelko {

/// The bytes of an item behind the size that announces them.
struct SizedItem
{
    const char* begin;
    const char* end;

    bool isEmpty() const { return begin == end; }
};

/// Appends an item in the form that the map's commands carry: its size in four bytes, then what `append` appends.
template <typename Append>
void appendSizedItem(std::string& out, Append append)
{
    const std::size_t start = out.size();
    out.append(sizeof(std::uint32_t), '\0');
    append();
    const auto size = static_cast<std::uint32_t>(out.size() - start - sizeof(std::uint32_t));
    std::memcpy(out.data() + start, &size, sizeof size);
}

/// Takes one item from a stream that is known to hold it whole.
inline SizedItem takeSizedItem(const char** stream)
{
    std::uint32_t size = 0;
    std::memcpy(&size, *stream, sizeof size);
    const char* const begin = *stream + sizeof size;
    *stream = begin + size;
    return {begin, *stream};
}

} // namespace zelko
