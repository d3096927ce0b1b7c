#pragma once

#include <QMutex>
#include <QStringList>

namespace ZelkoTest {

/// Takes the log's lines of all threads while it lives; one at a time.
class ProcessLog
{
public:
    ProcessLog()
    {
        {
            const QMutexLocker lock(&mutex);
            taken.clear();
        }
        m_before = qInstallMessageHandler(take);
    }
    ~ProcessLog() { qInstallMessageHandler(m_before); }
    ProcessLog(const ProcessLog&) = delete;
    ProcessLog& operator=(const ProcessLog&) = delete;

    QStringList lines() const
    {
        const QMutexLocker lock(&mutex);
        return taken;
    }

private:
    static void take(QtMsgType, const QMessageLogContext&, const QString& text)
    {
        const QMutexLocker lock(&mutex);
        taken.append(text);
    }

    static inline QMutex mutex;
    static inline QStringList taken;
    QtMessageHandler m_before;
};

} // namespace ZelkoTest
