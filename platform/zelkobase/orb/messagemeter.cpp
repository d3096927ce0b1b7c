#include <zelkobase/orb/messagemeter_p.h>

#include <algorithm>
#include <cstring>

namespace ZelkoCommon {
namespace {

// Where what stands in the head of a message.
constexpr std::size_t minorVersion = 5;
constexpr std::size_t flags = 6;
constexpr std::size_t kind = 7;
constexpr std::size_t size = 8;

constexpr unsigned char littleEndFirst = 1;
constexpr unsigned char moreFragments = 2;
constexpr unsigned char fragment = 7;

} // namespace

MessageMeter::MessageMeter(std::size_t mostBytes)
    : m_mostBytes(mostBytes)
{}

bool MessageMeter::take(const char* bytes, std::size_t count)
{
    while (count > 0 && !m_isForeign && m_sum <= m_mostBytes) {
        if (m_bodyBytes > 0) {
            takeBody(bytes, count);
        } else {
            takeHead(bytes, count);
        }
    }
    return m_sum <= m_mostBytes;
}

void MessageMeter::takeHead(const char*& bytes, std::size_t& count)
{
    const std::size_t taken = std::min(count, m_head.size() - m_headBytes);
    std::memcpy(m_head.data() + m_headBytes, bytes, taken);
    bytes += taken;
    count -= taken;
    m_headBytes += taken;
    if (m_headBytes == m_head.size()) {
        m_headBytes = 0;
        begin();
    }
}

void MessageMeter::takeBody(const char*& bytes, std::size_t& count)
{
    const std::size_t taken = std::min(count, m_bodyBytes);
    bytes += taken;
    count -= taken;
    m_bodyBytes -= taken;
}

// The sum starts again only when nothing is incomplete: a peer that begins several messages at once does not get more
// for it. One that cancels what it began only makes this side stricter.
void MessageMeter::begin()
{
    m_isForeign = std::memcmp(m_head.data(), "GIOP", 4) != 0;
    if (m_isForeign) {
        return;
    }
    if (m_incomplete == 0) {
        m_sum = 0;
    }
    m_bodyBytes = bodyBytes();
    m_sum += m_bodyBytes;
    const bool hasMore = m_head[minorVersion] > 0 && (m_head[flags] & moreFragments) != 0;
    if (m_head[kind] != fragment) {
        m_incomplete += hasMore ? 1 : 0;
    } else if (!hasMore && m_incomplete > 0) {
        --m_incomplete;
    }
}

std::size_t MessageMeter::bodyBytes() const
{
    const bool isLittle = (m_head[flags] & littleEndFirst) != 0;
    std::size_t bytes = 0;
    for (std::size_t i = 0; i < 4; ++i) {
        bytes = bytes << 8 | m_head[size + (isLittle ? 3 - i : i)];
    }
    return bytes;
}

} // namespace ZelkoCommon
