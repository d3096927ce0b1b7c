#pragma once

#include <zelkoguibase/filter/abstractfiltercondition.h>

#include <functional>

/// A condition whose answers a test gives; switched on from the beginning.
class ScriptedCondition : public ZelkoGUI::Filter::AbstractFilterCondition
{
public:
    using Test = std::function<bool(int)>;

    ScriptedCondition(int column, Test test, QObject* parent = nullptr)
        : AbstractFilterCondition(column, Qt::UserRole + 1, QStringLiteral("ScriptedFilter"), parent)
        , m_test(std::move(test))
    {
        setEnabled(true);
    }

    bool passes(const QVariant& value) const override
    {
        ++m_asked;
        return !enabled() || m_test(value.toInt());
    }

    void setTest(Test test)
    {
        m_test = std::move(test);
        contentChanged();
    }

    /// How often it was asked since the last call.
    int takeAsked() const { return std::exchange(m_asked, 0); }

protected:
    bool readFromXml(const ZELKO_XML::FilterCondition&, bool&) override { return false; }
    void writeToXml(ZELKO_XML::FilterCondition&) const override {}

private:
    Test m_test;
    mutable int m_asked = 0;
};
