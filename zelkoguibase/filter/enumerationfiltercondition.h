#pragma once

#include <zelkoguibase/filter/abstractfiltercondition.h>

#include <zelkobase/data/zelko_recorddata.h>

#include <QList>
#include <QSet>

namespace ZelkoGUI::Filter {

/// Passes the cells that hold one of a set of enumerators of E, one of the enumerations of a record. A cell of another
/// type fails, also a number.
template <typename E>
class EnumerationFilterCondition : public AbstractFilterCondition
{
public:
    /// Starts with the empty set, which rejects everything. `valueCount` is the number of enumerators that there are: a
    /// set of so many rejects nothing, and is not active.
    EnumerationFilterCondition(int valueCount, int column, int role, QObject* parent);
    ~EnumerationFilterCondition() override;

    bool passes(const QVariant& value) const override;
    bool filterActive() const override;

    using AbstractFilterCondition::readFromXml;
    using AbstractFilterCondition::writeToXml;

    /// The enumerators that pass, in no particular order.
    QList<E> values() const;
    void setValues(const QList<E>& values);

protected:
    /// Any number is taken, whether there is an enumerator of it or not.
    bool readFromXml(const ZELKO_XML::FilterCondition& source, bool& changed) override;
    void writeToXml(ZELKO_XML::FilterCondition& target) const override;

private:
    QSet<E> m_values;
    const int m_valueCount;
};

extern template class ZELKOGUIBASE_EXPORT EnumerationFilterCondition<ZELKO_XML::ZELKO_RecordData::DataFormat>;
extern template class ZELKOGUIBASE_EXPORT EnumerationFilterCondition<ZELKO_XML::ZELKO_RecordData::DataRate>;
extern template class ZELKOGUIBASE_EXPORT EnumerationFilterCondition<ZELKO_XML::ZELKO_RecordData::Interface>;
extern template class ZELKOGUIBASE_EXPORT EnumerationFilterCondition<ZELKO_XML::ZELKO_RecordData::RecordStatus>;

} // namespace ZelkoGUI::Filter
