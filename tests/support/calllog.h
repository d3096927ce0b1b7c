#pragma once

#include <zelkobase/orb/corbatext.h>

#include <QMutex>
#include <QStringList>

/// The host by which a process reaches its own objects over the wire: another spelling of 127.0.0.1, in which the ORB
/// does not see itself. By any other it would call them without a connection.
inline constexpr const char* overTheWire = "127.1";

/// What the servants of a test were called with, one text a call: the operation and its parameters with commas between.
/// Written on threads of the ORB, read on any.
class CallLog
{
public:
    template <typename... Parameters>
    void note(const char* operation, const Parameters&... parameters)
    {
        const QString call = QString::fromLatin1(operation) + '(' + QStringList{text(parameters)...}.join(", ") + ')';
        const QMutexLocker lock(&m_mutex);
        m_calls << call;
    }

    QStringList calls() const
    {
        const QMutexLocker lock(&m_mutex);
        return m_calls;
    }

private:
    static QString text(const char* value) { return ZelkoCommon::fromCorba(value); }
    static QString text(const CORBA::WChar* value) { return ZelkoCommon::fromCorba(value); }
    static QString text(bool value) { return value ? QStringLiteral("true") : QStringLiteral("false"); }
    static QString text(const QStringList& value) { return '[' + value.join(", ") + ']'; }

    template <typename Number>
    static QString text(Number value)
    {
        return QString::number(value);
    }

    mutable QMutex m_mutex;
    QStringList m_calls;
};
