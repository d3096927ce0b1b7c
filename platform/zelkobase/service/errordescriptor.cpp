#include <zelkobase/service/errordescriptor.h>

#include <observerbase/errorhandler.h>
#include <observerbase/trace.h>

namespace {

QString joined(const QString& text, const QString& description)
{
    return text.isEmpty() || description.isEmpty() ? text + description : text + QLatin1Char('\n') + description;
}

void trace(ErrorHandler::TraceBit bit, const QString& path, const QString& response)
{
    if (ErrorHandler::Instance()->traces(bit)) {
        _Q_Trace(QStringLiteral("ErrorDescriptor: %1: %2").arg(path, response), __FILE__, __LINE__);
    }
}

} // namespace

ErrorDescriptor::ErrorDescriptor(const QString& path)
    : m_path(path)
{}

void ErrorDescriptor::WriteCommandResponse(ErrorClassifier classifier, const QString& text, const QString& description)
{
    const QString response = joined(text, description);
    if (response.isEmpty()) {
        return;
    }
    const bool isMild = classifier == ErrorClassifier::Information || classifier == ErrorClassifier::Warning;
    trace(isMild ? ErrorHandler::TraceWarning : ErrorHandler::TraceError, m_path, response);
    if (classifier != ErrorClassifier::Information) {
        ErrorHandler::Instance()->ShowMessage(response);
    }
}
