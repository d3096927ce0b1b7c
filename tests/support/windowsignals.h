#pragma once

#include <zelkoguibase/filter/extendedfilterdialog.h>

#include <QStringList>

/// Every signal of the conditions of a window, as "NameFilter filter" and "NameFilter content".
class WindowSignals
{
public:
    explicit WindowSignals(const ZelkoGUI::Filter::ExtendedFilterDialog& window)
    {
        for (const auto& condition : window.filters()) {
            note(condition, &ZelkoGUI::Filter::AbstractFilterCondition::si_filterChanged, " filter");
            note(condition, &ZelkoGUI::Filter::AbstractFilterCondition::si_filterContentChanged, " content");
        }
    }
    QStringList take() { return std::exchange(m_texts, {}); }

private:
    template <typename Signal>
    void note(ZelkoGUI::Filter::AbstractFilterCondition* condition, Signal signal, const char* what)
    {
        QObject::connect(condition, signal, &m_context,
                         [this, text = condition->objectName() + QLatin1String(what)] { m_texts << text; });
    }

    QObject m_context;
    QStringList m_texts;
};
