#include <observerbase/trace.h>

#include <QLoggingCategory>
#include <QMessageLogger>

#include <mutex>
#include <utility>

namespace {

Q_LOGGING_CATEGORY(lcTrace, "zelko.trace")

// Recursive, and called through a copy, so that a sink may trace and may set another sink.
struct Sink
{
    std::recursive_mutex mutex;
    TraceSink receive;
};

Sink& sink()
{
    static Sink instance;
    return instance;
}

} // namespace

void _Q_Trace(const QString& text, const char* file, int line)
{
    const std::lock_guard lock(sink().mutex);
    if (const TraceSink receive = sink().receive) {
        receive(text, file, line);
    } else if (lcTrace().isWarningEnabled()) {
        QMessageLogger(file, line, nullptr, lcTrace().categoryName()).warning().noquote() << text;
    }
}

TraceSink SetTraceSink(TraceSink receive)
{
    const std::lock_guard lock(sink().mutex);
    return std::exchange(sink().receive, std::move(receive));
}
