#include <zelkobase/orb/corbatext.h>

#include <QList>

#include <algorithm>
#include <string>

namespace ZelkoCommon {
namespace {

// A character beyond U+FFFF comes as its two halves; from an ORB with wider elements it may come as one.
void append(QString& text, CORBA::WChar element)
{
    const auto character = static_cast<char32_t>(element);
    if (character <= 0xffff) {
        text += QChar(static_cast<char16_t>(character));
    } else {
        text +=
            QChar::fromUcs4(character <= QChar::LastValidCodePoint ? character : char32_t(QChar::ReplacementCharacter));
    }
}

QString fromCharacters(const QList<uint>& characters)
{
    const std::u32string text(characters.begin(), characters.end());
    return QString::fromStdU32String(text);
}

// Nearly every text: it stands as it is. To see that costs less than to make another one.
bool isPlain(const QString& text)
{
    return std::none_of(text.begin(), text.end(), [](QChar unit) { return unit.isNull() || unit.isSurrogate(); });
}

// Without halves of characters: those that have both stay, others are replaced.
QString whole(const QString& text)
{
    return isPlain(text) ? text : fromCharacters(text.toUcs4());
}

QString sendable(const QString& text)
{
    if (text.size() > longestText) {
        throw CORBA::MARSHAL(0, CORBA::COMPLETED_NO);
    }
    return isPlain(text) ? text : whole(text).replace(QChar::Null, QChar::ReplacementCharacter);
}

} // namespace

CORBA::String_var toCorba(const QString& text)
{
    return CORBA::string_dup(sendable(text).toUtf8().constData());
}

CORBA::WString_var toWideCorba(const QString& text)
{
    const QString source = sendable(text);
    CORBA::WString_var result = CORBA::wstring_alloc(static_cast<CORBA::ULong>(source.size()));
    const auto element = [](QChar unit) { return static_cast<CORBA::WChar>(unit.unicode()); };
    CORBA::WChar* const end = std::transform(source.begin(), source.end(), result.inout(), element);
    *end = 0;
    return result;
}

QString fromCorba(const char* text)
{
    return QString::fromUtf8(text ? text : "");
}

QString fromCorba(const CORBA::WChar* text)
{
    QString result;
    for (; text && *text; ++text) {
        append(result, *text);
    }
    return whole(result);
}

} // namespace ZelkoCommon
