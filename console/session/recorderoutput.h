#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace ZelkoConsole {

/// What a recorder process tells on its two streams. It is a process of its own and may write anything: what is kept of
/// it is bounded.
class RecorderOutput
{
public:
    /// Longest line that is looked at, in bytes; the rest of a longer one is dropped.
    static constexpr qsizetype maximumLine = 4096;

    /// The port that a line "READY port=NNNN" names, 1 to 65535; nothing for any other line.
    static std::optional<quint16> portOf(const QByteArray& line);

    /// Takes what came on the standard output. The port, once, when the line that names it is complete.
    std::optional<quint16> takeOutput(const QByteArray& bytes);

    /// Takes what came on the standard error stream.
    void takeError(const QByteArray& bytes);

    /// The last line with text of the error stream, also one without an end yet; empty when there was none.
    QString lastError() const;

    /// Before a new start.
    void clear();

private:
    QByteArray m_output;
    QByteArray m_error;
    QByteArray m_lastErrorLine;
    bool m_ready = false;
};

} // namespace ZelkoConsole
