#pragma once

#include <array>
#include <cstddef>

namespace ZelkoCommon {

/// Follows the messages of GIOP in what one peer sends and adds up those that belong together, so that a message is
/// known for too large by its heads, before any of it is kept. One thread at a time.
class MessageMeter
{
public:
    /// `mostBytes`: of a message, without its head. Fragments count as one message with what they continue, and so does
    /// whatever else comes while one is not complete.
    explicit MessageMeter(std::size_t mostBytes);

    /// False from the moment on in which a message is too large. Bytes that are no message it leaves to the ORB, which
    /// refuses them.
    bool take(const char* bytes, std::size_t count);

private:
    void takeHead(const char*& bytes, std::size_t& count);
    void takeBody(const char*& bytes, std::size_t& count);
    void begin();
    std::size_t bodyBytes() const;

    const std::size_t m_mostBytes;
    std::array<unsigned char, 12> m_head{};
    std::size_t m_headBytes = 0;  // of the head that is read
    std::size_t m_bodyBytes = 0;  // of the message that are still to come
    std::size_t m_incomplete = 0; // messages of which more fragments come
    std::size_t m_sum = 0;
    bool m_isForeign = false;
};

} // namespace ZelkoCommon
