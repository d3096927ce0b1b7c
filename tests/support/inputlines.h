#pragma once

#include <QCoreApplication>
#include <QSocketNotifier>
#include <QStringList>

#include <functional>
#include <iostream>
#include <utility>

#include <unistd.h>

namespace ZelkoTest {

/// Answers each line of the standard input by one line of the standard output, in the event loop of the thread that
/// makes it. The end of the input ends the application.
class InputLines
{
public:
    using Answer = std::function<QString(const QStringList& words)>;

    explicit InputLines(Answer answer)
        : m_answer(std::move(answer))
    {
        QObject::connect(&m_notifier, &QSocketNotifier::activated, &m_notifier, [this] { readByte(); });
    }

private:
    // More than one might be of the next line, for which the notifier would be activated no more.
    void readByte()
    {
        char byte = 0;
        if (read(STDIN_FILENO, &byte, 1) != 1) {
            QCoreApplication::quit();
        } else if (byte != '\n') {
            m_line.append(byte);
        } else {
            const QString words = QString::fromUtf8(std::exchange(m_line, {}));
            std::cout << m_answer(words.split(QLatin1Char(' '))).toStdString() << std::endl;
        }
    }

    const Answer m_answer;
    QByteArray m_line;
    QSocketNotifier m_notifier{STDIN_FILENO, QSocketNotifier::Read};
};

} // namespace ZelkoTest
