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
        : m_before(SetTraceSink([this](const QString& text, const char*, int) { add(text); }))
    {}
    ~TraceTexts() { SetTraceSink(m_before); }

    bool contain(const QString& piece) const
    {
        const std::lock_guard lock(m_mutex);
        return std::any_of(m_texts.begin(), m_texts.end(), [&](const QString& text) { return text.contains(piece); });
    }

private:
    void add(const QString& text)
    {
        const std::lock_guard lock(m_mutex);
        m_texts << text;
    }

    mutable std::mutex m_mutex;
    QStringList m_texts;
    const TraceSink m_before;
};
