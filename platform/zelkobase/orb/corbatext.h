#pragma once

#include <zelkobase/orb/zelkobaseorb_export.h>

#include <QString>

#include <omniORB4/CORBA.h>

namespace ZelkoCommon {

/// Texts on their way to and from the ORB: `string` in UTF-8, `wstring` with one element per unit of UTF-16, as the ORB
/// wants it however wide its elements are. A zero in a text, which would end it on the wire, and half of a surrogate
/// pair become U+FFFD, so that nothing is cut off and no call fails for its text but for its length: a text of more
/// than `longestText` units, which would be too large a request, throws CORBA::MARSHAL, not completed. All functions
/// may be called on any thread.
inline constexpr qsizetype longestText = 1024 * 1024;
ZELKOBASEORB_EXPORT CORBA::String_var toCorba(const QString& text);
ZELKOBASEORB_EXPORT CORBA::WString_var toWideCorba(const QString& text);

/// Null gives an empty text. What is no text in UTF-8 or no character becomes U+FFFD.
ZELKOBASEORB_EXPORT QString fromCorba(const char* text);
ZELKOBASEORB_EXPORT QString fromCorba(const CORBA::WChar* text);

} // namespace ZelkoCommon
