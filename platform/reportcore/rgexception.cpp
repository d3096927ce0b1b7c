#include <reportcore/rgexception.h>

namespace REPORTGENERATOR {

ReportException::ReportException(const QString& origin, const QString& message)
    : m_origin(origin)
    , m_message(message)
    , m_what((origin.isEmpty() ? message : origin + QStringLiteral(": ") + message).toUtf8())
{}

ReportException::ReportException(const ReportException&) = default;
ReportException& ReportException::operator=(const ReportException&) = default;
ReportException::~ReportException() = default;

QString ReportException::GetOrigin() const
{
    return m_origin;
}

QString ReportException::GetMessage() const
{
    return m_message;
}

const char* ReportException::what() const noexcept
{
    return m_what.constData();
}

RGException::RGException(const QString& message)
    : RGException(QString(), message)
{}

RGException::RGException(const QString& origin, const QString& message)
    : ReportException(origin, message)
{}

RGException::RGException(const RGException&) = default;
RGException& RGException::operator=(const RGException&) = default;
RGException::~RGException() = default;

} // namespace REPORTGENERATOR
