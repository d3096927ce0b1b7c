#include <recorder/process/stderrlog.h>

#include <QDateTime>
#include <QString>

#include <cstdio>

namespace ZelkoRecorder {

namespace {

const char* word(QtMsgType type)
{
    switch (type) {
    case QtDebugMsg:
        return "debug";
    case QtInfoMsg:
        return "info";
    case QtWarningMsg:
        return "warning";
    case QtCriticalMsg:
        return "critical";
    case QtFatalMsg:
        break;
    }
    return "fatal";
}

// One call per line, so that lines of several threads do not mix.
void writeLine(QtMsgType type, const QMessageLogContext&, const QString& text)
{
    const QByteArray time = QDateTime::currentDateTimeUtc().toString(Qt::ISODateWithMs).toLatin1();
    std::fprintf(stderr, "%s %s %s\n", time.constData(), word(type), text.toUtf8().constData());
}

} // namespace

void logToStderr()
{
    qInstallMessageHandler(writeLine);
}

} // namespace ZelkoRecorder
