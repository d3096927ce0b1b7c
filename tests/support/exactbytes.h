#pragma once

#include <algorithm>
#include <memory>
#include <string_view>

/// A copy of some bytes on the heap, in a block of exactly their size, so that the address sanitizer sees each byte
/// that is read behind them.
class ExactBytes
{
public:
    explicit ExactBytes(std::string_view bytes)
        : m_bytes(new char[bytes.size()])
        , m_size(bytes.size())
    {
        std::copy(bytes.begin(), bytes.end(), m_bytes.get());
    }

    const char* begin() const { return m_bytes.get(); }
    const char* end() const { return m_bytes.get() + m_size; }
    std::string_view view() const { return {m_bytes.get(), m_size}; }

private:
    std::unique_ptr<char[]> m_bytes;
    std::size_t m_size;
};
