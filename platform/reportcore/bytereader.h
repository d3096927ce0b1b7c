#pragma once

#include <QtEndian>

#include <cstddef>
#include <cstring>
#include <string>

namespace REPORTGENERATOR {

/// Reads numbers and runs of bytes from a piece of memory, never past its end. Numbers are little endian.
class ByteReader
{
public:
    ByteReader(const char* begin, const char* end)
        : m_position(begin)
        , m_end(end)
    {}

    const char* position() const { return m_position; }
    std::size_t left() const { return static_cast<std::size_t>(m_end - m_position); }

    /// The next `length` bytes, or null, with nothing consumed, if there are fewer.
    const char* take(std::size_t length)
    {
        if (length > left()) {
            return nullptr;
        }
        const char* const taken = m_position;
        m_position += length;
        return taken;
    }

    /// False, with nothing consumed, if too few bytes are left.
    template <typename Number>
    bool read(Number& number)
    {
        const char* const bytes = take(sizeof(Number));
        if (bytes != nullptr) {
            number = qFromLittleEndian<Number>(bytes);
        }
        return bytes != nullptr;
    }

private:
    const char* m_position;
    const char* m_end;
};

/// Appends a number in little endian.
template <typename Number>
void appendNumber(std::string& out, Number number)
{
    char bytes[sizeof(Number)];
    qToLittleEndian<Number>(number, bytes);
    out.append(bytes, sizeof(Number));
}

} // namespace REPORTGENERATOR
