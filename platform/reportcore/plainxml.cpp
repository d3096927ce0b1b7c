#include <reportcore/plainxml_p.h>

#include <QUtf8StringView>

#include <algorithm>
#include <array>
#include <cstdint>
#include <span>

namespace REPORTGENERATOR {

namespace {

enum ByteClass : std::uint8_t {
    TextByte = 1,
    BlankByte = 2,
    FirstNameByte = 4,
    NameByte = 8,
};

constexpr bool isBlank(unsigned c)
{
    return c == ' ' || c == '\t' || c == '\n';
}

constexpr bool isLetter(unsigned c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
}

// ">" may be the end of "]]>".
constexpr bool isTextByte(unsigned c)
{
    return (c >= ' ' && c != '<' && c != '&' && c != '>') || isBlank(c);
}

constexpr std::uint8_t classOf(unsigned c)
{
    const bool first = isLetter(c);
    const bool further = first || (c >= '0' && c <= '9') || c == '-' || c == '.';
    return static_cast<std::uint8_t>((isTextByte(c) ? TextByte : 0) | (isBlank(c) ? BlankByte : 0) |
                                     (first ? FirstNameByte : 0) | (further ? NameByte : 0));
}

constexpr std::array<std::uint8_t, 256> byteClasses = [] {
    std::array<std::uint8_t, 256> classes{};
    for (unsigned c = 0; c < classes.size(); ++c) {
        classes[c] = classOf(c);
    }
    return classes;
}();

constexpr std::string_view declarations[] = {R"(<?xml version="1.0" encoding="UTF-8"?>)", R"(<?xml version="1.0"?>)"};
constexpr std::string_view entities[] = {"&lt;", "&gt;", "&amp;", "&quot;", "&apos;"};

class PlainScan
{
public:
    explicit PlainScan(std::string_view document)
        : m_rest(document)
    {}

    bool passes()
    {
        takeOneOf(declarations);
        skip(BlankByte);
        do {
            if (!passTag() || (m_depth > 0 && !passText())) {
                return false;
            }
        } while (m_depth > 0);
        skip(BlankByte);
        return m_rest.empty();
    }

private:
    bool take(std::string_view what)
    {
        const bool stands = m_rest.starts_with(what);
        m_rest.remove_prefix(stands ? what.size() : 0);
        return stands;
    }

    bool takeOneOf(std::span<const std::string_view> choices)
    {
        return std::any_of(choices.begin(), choices.end(), [this](std::string_view choice) { return take(choice); });
    }

    /// False if there was no byte of that class.
    bool skip(ByteClass what)
    {
        const auto isOther = [what](char c) { return (byteClasses[static_cast<unsigned char>(c)] & what) == 0; };
        const auto end = std::find_if(m_rest.begin(), m_rest.end(), isOther);
        const auto count = static_cast<std::size_t>(end - m_rest.begin());
        m_rest.remove_prefix(count);
        return count > 0;
    }

    bool passName()
    {
        return !m_rest.empty() && (byteClasses[static_cast<unsigned char>(m_rest.front())] & FirstNameByte) != 0 &&
               skip(NameByte);
    }

    bool passTag()
    {
        if (take("</")) {
            return --m_depth >= 0 && passName() && take(">");
        }
        if (!take("<") || !passName()) {
            return false;
        }
        if (take("/>")) {
            return m_depth < deepestElement;
        }
        return ++m_depth <= deepestElement && take(">");
    }

    /// Up to the next tag.
    bool passText()
    {
        skip(TextByte);
        while (m_rest.starts_with('&')) {
            if (!takeOneOf(entities)) {
                return false;
            }
            skip(TextByte);
        }
        return m_rest.starts_with('<');
    }

    std::string_view m_rest;
    int m_depth = 0;
};

// Those from the space on that are in UTF-8 and not in XML.
bool holdsNonCharacters(std::string_view document)
{
    return document.find("\xEF\xBF\xBE") != document.npos || document.find("\xEF\xBF\xBF") != document.npos;
}

} // namespace

bool isPlainXml(std::string_view document)
{
    return PlainScan(document).passes() && !holdsNonCharacters(document) &&
           QUtf8StringView(document.data(), static_cast<qsizetype>(document.size())).isValidUtf8();
}

} // namespace REPORTGENERATOR
