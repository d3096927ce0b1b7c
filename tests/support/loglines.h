#pragma once

#include <QStringList>

namespace ZelkoTest {

/// Takes the log's lines of this thread while it lives.
class LogLines
{
public:
    LogLines()
        : m_before(qInstallMessageHandler(take))
    {
        taken.clear();
    }
    ~LogLines() { qInstallMessageHandler(m_before); }
    LogLines(const LogLines&) = delete;
    LogLines& operator=(const LogLines&) = delete;

    QStringList lines() const { return taken; }

private:
    static void take(QtMsgType, const QMessageLogContext&, const QString& text) { taken.append(text); }

    static inline thread_local QStringList taken;
    const QtMessageHandler m_before;
};

} // namespace ZelkoTest
