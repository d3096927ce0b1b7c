#include <observerbase/errorhandler.h>

#include <QLoggingCategory>

#include <atomic>
#include <utility>

namespace {
Q_LOGGING_CATEGORY(lcMessage, "zelko.message")
}

struct ErrorHandler::Private
{
    std::atomic<unsigned int> mask{TraceError | TraceWarning};
    MessageSink sink;
};

ErrorHandler::ErrorHandler()
    : d(std::make_unique<Private>())
{}

ErrorHandler::~ErrorHandler() = default;

ErrorHandler* ErrorHandler::Instance()
{
    static ErrorHandler handler;
    return &handler;
}

unsigned int ErrorHandler::GetTraceMask() const
{
    return d->mask.load(std::memory_order_relaxed);
}

void ErrorHandler::SetTraceMask(unsigned int mask)
{
    d->mask.store(mask, std::memory_order_relaxed);
}

void ErrorHandler::ShowMessage(const QString& text)
{
    if (const MessageSink sink = d->sink) { // a copy: the sink may set another one while it runs
        sink(text);
    } else {
        qCWarning(lcMessage).noquote() << text;
    }
}

ErrorHandler::MessageSink ErrorHandler::SetMessageSink(MessageSink sink)
{
    return std::exchange(d->sink, std::move(sink));
}
