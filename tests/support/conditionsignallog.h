#pragma once

#include <zelkoguibase/filter/abstractfiltercondition.h>

#include <QStringList>

/// Writes down the signals of a filter condition, in order: "filter" for what changes the answers of passes(),
/// "content" for what editors must show anew.
class ConditionSignalLog
{
public:
    explicit ConditionSignalLog(const ZelkoGUI::Filter::AbstractFilterCondition& condition)
    {
        using Condition = ZelkoGUI::Filter::AbstractFilterCondition;
        QObject::connect(&condition, &Condition::si_filterChanged, &m_context,
                         [this] { m_texts << QStringLiteral("filter"); });
        QObject::connect(&condition, &Condition::si_filterContentChanged, &m_context,
                         [this] { m_texts << QStringLiteral("content"); });
    }
    ConditionSignalLog(const ConditionSignalLog&) = delete;
    ConditionSignalLog& operator=(const ConditionSignalLog&) = delete;

    /// What came since the last call, joined by ", ".
    QString take() { return std::exchange(m_texts, {}).join(QStringLiteral(", ")); }

private:
    QObject m_context;
    QStringList m_texts;
};
