#include <reportcore/xmltext_p.h>

#include <reportcore/rgexception.h>

#include <QStringDecoder>

#include <algorithm>
#include <charconv>
#include <pugixml.hpp>

namespace REPORTGENERATOR {

namespace {

constexpr qsizetype groupLength = 6; // \uXXXX

bool isBlank(char c)
{
    return c == ' ' || c == '\t' || c == '\n' || c == '\r';
}

int hexDigit(QChar c)
{
    const char16_t u = c.unicode();
    if (u >= u'0' && u <= u'9')
        return u - u'0';
    if ((u >= u'a' && u <= u'f') || (u >= u'A' && u <= u'F'))
        return (u | 0x20) - u'a' + 10;
    return -1;
}

// Code unit of the group that starts at `at`, -1 if none does.
int groupAt(QStringView text, qsizetype at)
{
    if (text.size() - at < groupLength || text[at] != u'\\' || text[at + 1] != u'u')
        return -1;
    int unit = 0;
    for (qsizetype i = at + 2; i < at + groupLength; ++i) {
        const int digit = hexDigit(text[i]);
        if (digit < 0)
            return -1;
        unit = unit * 16 + digit;
    }
    return unit;
}

bool isLoneSurrogate(QStringView text, qsizetype at)
{
    const QChar c = text[at];
    if (c.isHighSurrogate())
        return at + 1 == text.size() || !text[at + 1].isLowSurrogate();
    return c.isLowSurrogate() && (at == 0 || !text[at - 1].isHighSurrogate());
}

bool isForbidden(char16_t c)
{
    return (c < 0x20 && c != u'\t' && c != u'\n' && c != u'\r') || c >= 0xFFFE;
}

bool needsGroup(QStringView text, qsizetype at)
{
    const QChar c = text[at];
    return isForbidden(c.unicode()) || c == u'\r' || (c == u'\\' && groupAt(text, at) >= 0) ||
           isLoneSurrogate(text, at);
}

QString resolveGroups(const QString& text)
{
    QString resolved;
    resolved.reserve(text.size());
    for (qsizetype i = 0; i < text.size(); ++i) {
        const int unit = groupAt(text, i);
        resolved.append(unit < 0 ? text[i] : QChar(static_cast<char16_t>(unit)));
        i += unit < 0 ? 0 : groupLength - 1;
    }
    return resolved;
}

// Plain texts, by far the most, need no look at single characters beyond this one.
bool isPlain(std::string_view utf8)
{
    bool plain = true;
    for (const char c : utf8)
        plain = plain && c >= ' ' && c != '\\';
    return plain;
}

void appendUtf8(std::string& out, char32_t c)
{
    out += QString::fromUcs4(&c, 1).toStdString();
}

bool isXmlCharacter(char32_t c)
{
    const bool surrogate = c >= 0xD800 && c <= 0xDFFF;
    return c <= 0x10FFFF && !surrogate && !(c <= 0xFFFF && isForbidden(static_cast<char16_t>(c)));
}

// "#65" or "#x41"; 0, which is no character of XML, if it is neither.
char32_t referredCharacter(std::string_view reference)
{
    const bool hexadecimal = reference.size() > 1 && reference[1] == 'x';
    reference.remove_prefix(hexadecimal ? 2 : 1);
    quint32 code = 0;
    const auto [end, error] =
        std::from_chars(reference.data(), reference.data() + reference.size(), code, hexadecimal ? 16 : 10);
    return error == std::errc() && end == reference.data() + reference.size() ? code : 0;
}

char32_t entityCharacter(std::string_view name)
{
    constexpr std::pair<std::string_view, char32_t> known[] = {
        {"lt", U'<'}, {"gt", U'>'}, {"amp", U'&'}, {"quot", U'"'}, {"apos", U'\''}};
    for (const auto& [entity, character] : known) {
        if (entity == name)
            return character;
    }
    return name.starts_with('#') ? referredCharacter(name) : 0;
}

// Entities are resolved here and not by the parser, which would leave an unknown one in the text as if it were meant.
void appendResolved(std::string& out, std::string_view raw)
{
    while (!raw.empty()) {
        const std::size_t start = std::min(raw.find('&'), raw.size());
        out.append(raw.substr(0, start));
        raw.remove_prefix(start);
        if (raw.empty())
            return;
        const std::size_t end = raw.find(';');
        const char32_t character = end == raw.npos ? 0 : entityCharacter(raw.substr(1, end - 1));
        if (!isXmlCharacter(character))
            throw RGException(QStringLiteral("the entity %1 is not known").arg(shortened(raw.substr(0, 12))));
        appendUtf8(out, character);
        raw.remove_prefix(end + 1);
    }
}

void appendText(std::string& out, const pugi::xml_node& child)
{
    switch (child.type()) {
    case pugi::node_pcdata:
        return appendResolved(out, child.value());
    case pugi::node_cdata:
        out += child.value();
        return;
    default:
        throw RGException(QString::fromUtf8(child.parent().name()),
                          QStringLiteral("holds elements where a value is due"));
    }
}

} // namespace

QString escaped(const QString& text)
{
    QString out;
    qsizetype done = 0;
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (!needsGroup(text, i))
            continue;
        out.append(QStringView(text).mid(done, i - done));
        out.append(QStringLiteral("\\u%1").arg(text[i].unicode(), 4, 16, QLatin1Char('0')));
        done = i + 1;
    }
    return done == 0 ? text : out.append(QStringView(text).mid(done));
}

bool unescape(std::string_view utf8, QString& text)
{
    const QByteArrayView bytes(utf8.data(), static_cast<qsizetype>(utf8.size()));
    if (isPlain(utf8)) {
        text = QString::fromLatin1(bytes);
        return true;
    }
    QStringDecoder decoder(QStringDecoder::Utf8,
                           QStringDecoder::Flag::Stateless | QStringDecoder::Flag::ConvertInitialBom);
    const QString decoded = decoder(bytes);
    if (decoder.hasError() ||
        std::any_of(decoded.begin(), decoded.end(), [](QChar c) { return isForbidden(c.unicode()); }))
        return false;
    text = decoded.contains(u'\\') ? resolveGroups(decoded) : decoded;
    return true;
}

std::string_view elementText(const pugi::xml_node& element, std::string& buffer)
{
    const pugi::xml_node first = element.first_child();
    if (!first)
        return {};
    const std::string_view raw = first.value();
    if (first.type() == pugi::node_pcdata && !first.next_sibling() && raw.find('&') == raw.npos)
        return raw;
    for (const pugi::xml_node child : element.children())
        appendText(buffer, child);
    return buffer;
}

std::string_view trimmed(std::string_view text)
{
    while (!text.empty() && isBlank(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && isBlank(text.back()))
        text.remove_suffix(1);
    return text;
}

QString shortened(std::string_view utf8)
{
    constexpr std::size_t enough = 80;
    return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(std::min(utf8.size(), enough)));
}

} // namespace REPORTGENERATOR
