#pragma once

#include <zelkoguibase/filter/abstractfiltercondition.h>

namespace ZelkoGUI::Filter {

/// Passes the cells of one of the two flags.
class ZELKOGUIBASE_EXPORT BooleanFilterCondition : public AbstractFilterCondition
{
    Q_OBJECT

public:
    /// Starts with true.
    BooleanFilterCondition(int column, int role, QObject* parent);
    ~BooleanFilterCondition() override;

    bool passes(const QVariant& value) const override;

    using AbstractFilterCondition::readFromXml;
    using AbstractFilterCondition::writeToXml;

    /// The flag that passes.
    bool value() const { return m_value; }
    void setValue(bool value);

protected:
    bool readFromXml(const ZELKO_XML::FilterCondition& source, bool& changed) override;
    void writeToXml(ZELKO_XML::FilterCondition& target) const override;

private:
    bool m_value = true;
};

} // namespace ZelkoGUI::Filter
