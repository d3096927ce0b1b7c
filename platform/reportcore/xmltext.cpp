#include <reportcore/xmltext_p.h>

#include <reportcore/rgexception.h>

#include <QStringDecoder>

#include <algorithm>
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
    if (u >= u'0' && u <= u'9') {
        return u - u'0';
    }
    if ((u >= u'a' && u <= u'f') || (u >= u'A' && u <= u'F')) {
        return (u | 0x20) - u'a' + 10;
    }
    return -1;
}

// Code unit of the group that starts at `at`, -1 if none does.
int groupAt(QStringView text, qsizetype at)
{
    if (text.size() - at < groupLength || text[at] != u'\\' || text[at + 1] != u'u') {
        return -1;
    }
    int unit = 0;
    for (qsizetype i = at + 2; i < at + groupLength; ++i) {
        const int digit = hexDigit(text[i]);
        if (digit < 0) {
            return -1;
        }
        unit = unit * 16 + digit;
    }
    return unit;
}

bool isLoneSurrogate(QStringView text, qsizetype at)
{
    const QChar c = text[at];
    if (c.isHighSurrogate()) {
        return at + 1 == text.size() || !text[at + 1].isLowSurrogate();
    }
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
    for (const char c : utf8) {
        plain = plain && c >= ' ' && c != '\\';
    }
    return plain;
}

void appendText(std::string& out, const pugi::xml_node& child)
{
    if (child.type() == pugi::node_element) {
        throw RGException(QString::fromUtf8(child.parent().name()),
                          QStringLiteral("holds elements where a value is due"));
    }
    out += child.value();
}

} // namespace

QString escaped(const QString& text)
{
    QString out;
    qsizetype done = 0;
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (!needsGroup(text, i)) {
            continue;
        }
        out.append(QStringView(text).mid(done, i - done));
        out.append(QStringLiteral("\\u%1").arg(text[i].unicode(), 4, 16, QLatin1Char('0')));
        done = i + 1;
    }
    return done == 0 ? text : out.append(QStringView(text).mid(done));
}

QString unescaped(std::string_view utf8)
{
    const QByteArrayView bytes(utf8.data(), static_cast<qsizetype>(utf8.size()));
    if (isPlain(utf8)) {
        return QString::fromLatin1(bytes);
    }
    QStringDecoder decoder(QStringDecoder::Utf8,
                           QStringDecoder::Flag::Stateless | QStringDecoder::Flag::ConvertInitialBom);
    const QString decoded = decoder(bytes);
    return decoded.contains(u'\\') ? resolveGroups(decoded) : decoded;
}

std::string_view elementText(const pugi::xml_node& element, std::string& buffer)
{
    const pugi::xml_node first = element.first_child();
    if (!first) {
        return {};
    }
    if (first.type() != pugi::node_element && !first.next_sibling()) {
        return first.value();
    }
    for (const pugi::xml_node child : element.children()) {
        appendText(buffer, child);
    }
    return buffer;
}

std::string_view trimmed(std::string_view text)
{
    while (!text.empty() && isBlank(text.front())) {
        text.remove_prefix(1);
    }
    while (!text.empty() && isBlank(text.back())) {
        text.remove_suffix(1);
    }
    return text;
}

QString shortened(std::string_view utf8)
{
    constexpr std::size_t enough = 80;
    return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(std::min(utf8.size(), enough)));
}

bool isWritable(const QDateTime& time)
{
    return time.isValid() && time.date().year() >= 1 && time.date().year() <= 9999;
}

} // namespace REPORTGENERATOR
