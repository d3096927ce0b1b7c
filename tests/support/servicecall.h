#pragma once

#include "rawgiop.h"

#include <zelkobase/orb/corbatext.h>
#include <zelkobase/orb/orb.h>

#include <QString>

#include <functional>

/// Calls of the recorder service against a peer that knows bytes.
namespace servicecall {

/// A call through a proxy, and what it gave, as a text.
using Call = std::function<QString(CORBA::Object_ptr)>;

inline QString text(CORBA::ULong number)
{
    return QString::number(number);
}

inline QString text(CORBA::Long number)
{
    return QString::number(number);
}

inline QString text(CORBA::Boolean value)
{
    return value ? QStringLiteral("true") : QStringLiteral("false");
}

/// Of a result, which it takes.
inline QString text(char* result)
{
    return ZelkoCommon::fromCorba(CORBA::String_var(result).in());
}

inline QString text(QString result)
{
    return result;
}

/// Of a result, which it takes.
inline QString text(CORBA::Object_ptr result)
{
    return CORBA::is_nil(CORBA::Object_var(result).in()) ? QStringLiteral("nil") : QStringLiteral("an object");
}

/// `function` is given the proxy; what it gives becomes a text, nothing an empty one.
template <typename Interface, typename Function>
Call callOn(Function function)
{
    return [function](CORBA::Object_ptr object) -> QString {
        const typename Interface::_var_type proxy = Interface::_unchecked_narrow(object);
        if constexpr (std::is_void_v<decltype(function(proxy.in()))>) {
            function(proxy.in());
            return {};
        } else {
            return text(function(proxy.in()));
        }
    };
}

/// What a call to `server` gave, or the name of the exception with which it ended and the minor code of that.
inline QString outcome(const ZelkoCommon::Orb& orb, const giop::Server& server, const Call& call)
{
    const CORBA::Object_var object = orb.remoteObject("127.0.0.1", server.port(), "Test");
    try {
        return call(object);
    } catch (const CORBA::SystemException& exception) {
        return QStringLiteral("%1 %2").arg(exception._name()).arg(exception.minor(), 0, 16);
    } catch (const CORBA::Exception& exception) {
        return QString::fromLatin1(exception._name());
    }
}

/// The body of a message in hexadecimal digits, with points for padding. In it, $a stands for the string "a" and the
/// padding behind it, $0 for a nil reference. The last parameter has no padding behind it, and the ORB ends the
/// connection over a byte too many.
inline QByteArray body(QByteArray hex)
{
    hex.replace("$0", "01000000 00 ...... 00000000");
    for (qsizetype at = hex.indexOf('$'); at >= 0; at = hex.indexOf('$')) {
        hex.replace(at, 2, "02000000" + hex.mid(at + 1, 1).toHex() + "00 ....");
    }
    while (hex.endsWith('.') || hex.endsWith(' ')) {
        hex.chop(1);
    }
    return hex.replace(' ', "");
}

} // namespace servicecall

Q_DECLARE_METATYPE(servicecall::Call)
