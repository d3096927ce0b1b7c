#pragma once

#include <observerbase/iobserver.h>

#include <QString>
#include <QStringList>

#include <functional>
#include <utility>

/// Writes each notification as "name code" into a log that several observers may share, and then does what the test
/// wants to happen inside of a notification.
class ChangeLogger final : public IObserver
{
public:
    using Reaction = std::function<void(Observable* source, TChangeCode code)>;

    ChangeLogger(QString name, QStringList& log)
        : m_name(std::move(name))
        , m_log(log)
    {}

    void react(Reaction reaction) { m_reaction = std::move(reaction); }

    void Update(Observable* source, TChangeCode code) override
    {
        m_log << QStringLiteral("%1 %2").arg(m_name).arg(static_cast<int>(code));
        if (m_reaction) {
            m_reaction(source, code);
        }
    }

private:
    QString m_name;
    QStringList& m_log;
    Reaction m_reaction;
};
