#pragma once

#include "peerprocess.h"

namespace ZelkoTest {

/// An operator with a replay bar, in a process of his own; see BarClient. ZELKO_BAR_CLIENT is the program, and what it
/// is told are the lines that it knows.
class BarProcess
{
public:
    /// Of a recorder on that port. `port` is where the process listens; 0: anywhere.
    explicit BarProcess(quint16 recorder, const QStringList& more = {}, quint16 port = 0)
        : m_process(QStringList{QStringLiteral("--recorder"), QString::number(recorder)} + more, port,
                    QStringLiteral(ZELKO_BAR_CLIENT))
    {}

    QString tell(const QString& line) { return m_process.ask(line); }
    bool act(const QString& line) { return tell(line) == QLatin1String("done"); }
    bool is(const QString& line) { return tell(line) == QLatin1String("yes"); }

    /// Presses the button that sends the bookmarks, and does not wait for what becomes of it.
    bool beginToApply() { return tell(QStringLiteral("apply")) == QLatin1String("sending"); }
    bool hasApplied() { return m_process.hear() == QLatin1String("done"); }
    bool apply() { return beginToApply() && hasApplied(); }

    QString state() { return tell(QStringLiteral("state")); }
    QString bar() { return tell(QStringLiteral("bar")); }

    /// That the bar and the model behind it show these bookmarks.
    bool shows(const QString& bookmarks) { return bar() == bookmarks && tell(QStringLiteral("list")) == bookmarks; }

    /// Of the position on the bar, in microseconds.
    qint64 position() { return tell(QStringLiteral("position")).toLongLong(); }

private:
    PeerProcess m_process;
};

} // namespace ZelkoTest
