#pragma once

#include <reportcore/reportcore_export.h>

#include <QString>

#include <exception>

namespace REPORTGENERATOR {

/// Failure of a data class: where it arose and what is wrong. The data classes translate neither text.
class REPORTCORE_EXPORT ReportException : public std::exception
{
public:
    ReportException(const QString& origin, const QString& message);
    ReportException(const ReportException&);
    ReportException& operator=(const ReportException&);
    ~ReportException() override;

    /// The class or the operation that failed; empty if whoever threw did not say.
    virtual QString GetOrigin() const;

    /// What is wrong, fit for a trace or a warning box.
    virtual QString GetMessage() const;

    /// Origin and message in UTF-8, joined by ": ", or the message alone.
    const char* what() const noexcept override;

private:
    QString m_origin;
    QString m_message;
    QByteArray m_what;
};

/// Invalid content: thrown by the checking, reading and writing operations of IRGObject and by code that works with
/// them.
class REPORTCORE_EXPORT RGException : public ReportException
{
public:
    explicit RGException(const QString& message);
    RGException(const QString& origin, const QString& message);
    RGException(const RGException&);
    RGException& operator=(const RGException&);
    ~RGException() override;
};

} // namespace REPORTGENERATOR

using REPORTGENERATOR::RGException;
