#pragma once

#include <valuecore/valuecore_export.h>

#include <QString>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <string>
#include <string_view>
#include <type_traits>

/// Reads the parts of a command from a byte stream that need not be trusted.
///
/// The reader moves the caller's stream pointer forward and never past the bytes it was given. The first part that does
/// not fit or does not parse fails the reader for good: everything read afterwards is empty or zero, so that a
/// sequence of reads needs one test at its end.
class VALUECORE_EXPORT CommandReader
{
public:
    /// Reads at most `available` bytes from `*stream` on; a negative count counts as none.
    CommandReader(const char** stream, std::ptrdiff_t available);

    bool ok() const { return m_ok; }
    void fail() { m_ok = false; }

    /// Bytes that are left.
    std::size_t remaining() const { return static_cast<std::size_t>(m_end - *m_stream); }

    /// `remaining()` in the form that ValueBase::CreateNextCommand takes, cut off at the largest int.
    int remainingAsInt() const;

    /// A number of fixed width in the machine's byte order.
    template <typename T>
    T number()
    {
        static_assert(std::is_arithmetic_v<T>);
        T result{};
        if (const char* bytes = take(sizeof(T))) {
            std::memcpy(&result, bytes, sizeof(T));
        }
        return result;
    }

    /// A byte that must be 0 or 1.
    bool boolean();

    /// An unsigned 32-bit count of UTF-16 code units, then that many code units; no terminator, no escaping.
    QString string();

    /// The code units of such a text, in place: two bytes each, not aligned.
    std::string_view stringBytes()
    {
        const std::size_t size = number<std::uint32_t>() * sizeof(char16_t);
        const char* const bytes = take(size);
        return bytes ? std::string_view(bytes, size) : std::string_view();
    }

    /// A command id: decimal digits, then ";".
    int commandId();

    /// The ";" that ends each part of a command.
    void eatSemicolon()
    {
        const char* const byte = take(1);
        if (byte && *byte != ';') {
            m_ok = false;
        }
    }

    /// The size of an item that announces it in its first four bytes, checked to be there whole. Nothing is consumed:
    /// after a success `itemSize()` bytes may be read from the stream without further checks.
    std::size_t itemSize();

    /// The stream pointer for a function that advances it by itself, not beyond what `itemSize()` promised.
    const char** stream() { return m_stream; }

private:
    const char* take(std::size_t count)
    {
        if (!m_ok || remaining() < count) {
            m_ok = false;
            return nullptr;
        }
        const char* const bytes = *m_stream;
        *m_stream += count;
        return bytes;
    }

    const char** m_stream;
    const char* m_end;
    bool m_ok = true;
};

/// The writing side: appends the same parts to a command string.
namespace commandwriter {

template <typename T>
void number(std::string& out, T value)
{
    static_assert(std::is_arithmetic_v<T>);
    out.append(reinterpret_cast<const char*>(&value), sizeof(T));
}

VALUECORE_EXPORT void string(std::string& out, const QString& text);
VALUECORE_EXPORT void commandId(std::string& out, int id);

} // namespace commandwriter
