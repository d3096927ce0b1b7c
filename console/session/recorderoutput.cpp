#include <console/session/recorderoutput.h>

#include <QRegularExpression>

namespace ZelkoConsole {
namespace {

// Appends, hands each complete line to `take`, and keeps the beginning of the one that is not complete yet.
template <typename Take>
void splitLines(QByteArray& rest, const QByteArray& bytes, Take take)
{
    for (const char c : bytes) {
        if (c == '\n') {
            take(rest.trimmed());
            rest.clear();
        } else if (rest.size() < RecorderOutput::maximumLine) {
            rest.append(c);
        }
    }
}

} // namespace

std::optional<quint16> RecorderOutput::portOf(const QByteArray& line)
{
    static const QRegularExpression pattern(QStringLiteral("\\AREADY port=([0-9]{1,5})\\z"));
    const auto match = pattern.match(QString::fromLatin1(line));
    bool ok = false;
    const quint16 port = match.captured(1).toUShort(&ok);
    return ok && port != 0 ? std::optional(port) : std::nullopt;
}

std::optional<quint16> RecorderOutput::takeOutput(const QByteArray& bytes)
{
    std::optional<quint16> port;
    splitLines(m_output, bytes, [&](const QByteArray& line) {
        if (!m_ready && (port = portOf(line))) {
            m_ready = true;
        }
    });
    return port;
}

void RecorderOutput::takeError(const QByteArray& bytes)
{
    splitLines(m_error, bytes, [this](const QByteArray& line) {
        if (!line.isEmpty()) {
            m_lastErrorLine = line;
        }
    });
}

QString RecorderOutput::lastError() const
{
    const QByteArray unfinished = m_error.trimmed();
    return QString::fromUtf8(unfinished.isEmpty() ? m_lastErrorLine : unfinished);
}

void RecorderOutput::clear()
{
    *this = RecorderOutput();
}

} // namespace ZelkoConsole
