#include <valuecore/commandreader.h>

#include <algorithm>
#include <charconv>

CommandReader::CommandReader(const char** stream, std::ptrdiff_t available)
    : m_stream(stream)
    , m_end(*stream + std::max<std::ptrdiff_t>(available, 0))
{}

int CommandReader::remainingAsInt() const
{
    return static_cast<int>(std::min<std::size_t>(remaining(), std::numeric_limits<int>::max()));
}

bool CommandReader::boolean()
{
    const auto byte = number<std::uint8_t>();
    if (byte > 1) {
        m_ok = false;
    }
    return m_ok && byte == 1;
}

// What is too long fails before anything is allocated.
QString CommandReader::string()
{
    const std::string_view bytes = stringBytes();
    if (bytes.empty()) {
        return {};
    }
    QString text(static_cast<qsizetype>(bytes.size() / sizeof(char16_t)), Qt::Uninitialized);
    std::memcpy(text.data(), bytes.data(), bytes.size());
    return text;
}

int CommandReader::commandId()
{
    int id = 0;
    const auto [end, error] = std::from_chars(*m_stream, m_end, id);
    if (!m_ok || error != std::errc() || id < 0) {
        m_ok = false;
        return 0;
    }
    *m_stream = end;
    eatSemicolon();
    return m_ok ? id : 0;
}

std::size_t CommandReader::itemSize()
{
    const char* const start = *m_stream;
    const std::size_t size = number<std::uint32_t>();
    if (!m_ok || remaining() < size) {
        m_ok = false;
        return 0;
    }
    *m_stream = start;
    return sizeof(std::uint32_t) + size;
}

namespace commandwriter {

void string(std::string& out, const QString& text)
{
    number(out, static_cast<std::uint32_t>(text.size()));
    out.append(reinterpret_cast<const char*>(text.utf16()), static_cast<std::size_t>(text.size()) * sizeof(char16_t));
}

void commandId(std::string& out, int id)
{
    char digits[std::numeric_limits<int>::digits10 + 2];
    const auto [end, error] = std::to_chars(std::begin(digits), std::end(digits), id);
    out.append(digits, end);
    out.push_back(';');
}

} // namespace commandwriter
