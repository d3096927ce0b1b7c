#pragma once

#include <QCoreApplication>
#include <QTranslator>

namespace ZelkoTest {

/// While it lives the texts of one class, by the name of that with its namespaces, are shown as "<text>". GUI thread.
class MarkingTranslator final : public QTranslator
{
public:
    explicit MarkingTranslator(const char* context)
        : m_context(context)
    {
        QCoreApplication::installTranslator(this);
    }
    ~MarkingTranslator() override { QCoreApplication::removeTranslator(this); }

    bool isEmpty() const override { return false; }
    QString translate(const char* context, const char* sourceText, const char* /*disambiguation*/,
                      int /*n*/) const override
    {
        return m_context == context ? QLatin1Char('<') + QString::fromUtf8(sourceText) + QLatin1Char('>') : QString();
    }

private:
    const QByteArray m_context;
};

} // namespace ZelkoTest
