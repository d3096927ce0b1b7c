#pragma once

#include <observerbase/errorhandler.h>

#include <QStringList>

/// The messages to the user for as long as it exists.
class ShownMessages
{
public:
    ShownMessages()
        : m_before(ErrorHandler::Instance()->SetMessageSink([this](const QString& text) { m_texts.append(text); }))
    {}
    ~ShownMessages() { ErrorHandler::Instance()->SetMessageSink(m_before); }
    ShownMessages(const ShownMessages&) = delete;
    ShownMessages& operator=(const ShownMessages&) = delete;

    QStringList texts() const { return m_texts; }

private:
    QStringList m_texts;
    ErrorHandler::MessageSink m_before;
};
