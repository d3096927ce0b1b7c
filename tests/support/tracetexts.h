#pragma once

#include <observerbase/trace.h>

#include <QStringList>

#include <algorithm>
#include <mutex>

/// What is traced for as long as it exists, on whatever thread.
class TraceTexts
{
public:
    TraceTexts()
        : m_before(SetTraceSink([this](const QString& text, const char* file, int) { add(text, file); }))
    {}
    ~TraceTexts() { SetTraceSink(m_before); }

    bool contain(const QString& piece) const
    {
        const std::lock_guard lock(m_mutex);
        return std::any_of(m_texts.begin(), m_texts.end(), [&](const QString& text) { return text.contains(piece); });
    }

    /// All of them, each behind the name of its source: "source: text".
    QStringList withSources() const
    {
        const std::lock_guard lock(m_mutex);
        QStringList result;
        for (qsizetype i = 0; i < m_texts.size(); ++i) {
            result << m_sources[i] + QStringLiteral(": ") + m_texts[i];
        }
        return result;
    }

private:
    void add(const QString& text, const char* source)
    {
        const std::lock_guard lock(m_mutex);
        m_texts << text;
        m_sources << QString::fromUtf8(source);
    }

    mutable std::mutex m_mutex;
    QStringList m_texts;
    QStringList m_sources;
    const TraceSink m_before;
};
