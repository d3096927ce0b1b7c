#pragma once

#include <QDateTime>
#include <QString>

#include <string>
#include <string_view>

namespace pugi {
class xml_node;
}

namespace REPORTGENERATOR {

/// Text as it stands in XML. What XML cannot carry, or would not give back as it was (control characters other than tab
/// and line feed, lone surrogates, U+FFFE and U+FFFF), is written as a backslash, "u" and four hexadecimal digits, and
/// so is a backslash that would otherwise be read as the start of such a group. Every other text stays as it is.
QString escaped(const QString& text);

/// The reverse of escaped(), from text in UTF-8.
QString unescaped(std::string_view utf8);

/// The text of an element; `buffer` may hold it. Throws RGException if there are child elements.
std::string_view elementText(const pugi::xml_node& element, std::string& buffer);

/// Without the blanks at both ends.
std::string_view trimmed(std::string_view text);

/// The start of a text, for a message.
QString shortened(std::string_view utf8);

/// Whether a time can be written: the text form has four digits for the year.
bool isWritable(const QDateTime& time);

} // namespace REPORTGENERATOR
