#include <recorder/process/passwordinput.h>

#include <credentials/passwordhash.h>

#include <termios.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

namespace ZelkoRecorder {

namespace {

// A terminal that does not show what is typed, for as long as this object lives. Nothing for what is no terminal.
class HiddenTyping
{
public:
    HiddenTyping(int descriptor, const QString& question)
        : m_descriptor(descriptor)
        , m_isTerminal(::tcgetattr(descriptor, &m_before) == 0)
    {
        if (m_isTerminal) {
            std::fprintf(stderr, "%s", qPrintable(question));
            termios hidden = m_before;
            hidden.c_lflag &= ~static_cast<tcflag_t>(ECHO);
            ::tcsetattr(descriptor, TCSAFLUSH, &hidden);
        }
    }
    ~HiddenTyping()
    {
        if (m_isTerminal) {
            ::tcsetattr(m_descriptor, TCSAFLUSH, &m_before);
            std::fprintf(stderr, "\n");
        }
    }
    HiddenTyping(const HiddenTyping&) = delete;
    HiddenTyping& operator=(const HiddenTyping&) = delete;

private:
    const int m_descriptor;
    termios m_before = {};
    const bool m_isTerminal;
};

// 1 when there was one, 0 at the end, -1 when it cannot be read.
ssize_t readByte(int descriptor, char* byte)
{
    ssize_t count = 0;
    do {
        count = ::read(descriptor, byte, 1);
    } while (count < 0 && errno == EINTR);
    return count;
}

} // namespace

// Byte by byte, so that nothing behind the line is taken from whoever reads on.
std::optional<QByteArray> readPassword(int descriptor, const QString& question)
{
    const HiddenTyping hidden(descriptor, question);
    QByteArray line;
    char byte = 0;
    while (line.size() <= ZelkoCommon::PasswordHash::maximumPassword) {
        if (readByte(descriptor, &byte) != 1 || byte == '\n') {
            return line.isEmpty() ? std::nullopt : std::optional(line);
        }
        line.append(byte);
    }
    return std::nullopt;
}

} // namespace ZelkoRecorder
