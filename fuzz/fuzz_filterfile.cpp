// Foreign bytes as a filter file: what is refused leaves the list as it was, what is taken comes back equal, and the
// conditions of a record list take it over so that what they write can be read again.
#include "require.h"

#include <zelkoguibase/filter/booleanfiltercondition.h>
#include <zelkoguibase/filter/enumerationfiltercondition.h>
#include <zelkoguibase/filter/numberfiltercondition.h>
#include <zelkoguibase/filter/stringfiltercondition.h>

#include <zelkobase/data/filterconditionlist.h>

#include <reportcore/rgexception.h>

#include <cstdint>
#include <memory>
#include <vector>

using namespace ZelkoGUI::Filter;
using ZELKO_XML::FilterConditionList;
using ZELKO_XML::ZELKO_RecordData;

namespace {

FilterConditionList untouchedList()
{
    FilterConditionList list;
    list.SetID(QStringLiteral("untouched"));
    return list;
}

bool readOrUntouched(FilterConditionList& list, const QString& text)
{
    bool taken = false;
    try {
        taken = list.SetXmlString(text, true);
    } catch (const RGException&) {
    }
    require(taken || list == untouchedList());
    return taken;
}

/// A condition of each kind that is meant by that entry.
std::vector<std::unique_ptr<AbstractFilterCondition>> conditionsFor(const ZELKO_XML::FilterCondition& entry)
{
    const int column = entry.GetColumn();
    const int role = entry.GetRole();
    std::vector<std::unique_ptr<AbstractFilterCondition>> all;
    all.push_back(std::make_unique<StringFilterCondition>(column, role, nullptr));
    all.push_back(std::make_unique<BooleanFilterCondition>(column, role, nullptr));
    all.push_back(std::make_unique<NumberFilterCondition<double>>(0, column, role, nullptr));
    all.push_back(std::make_unique<NumberFilterCondition<QTime>>(QTime(), column, role, nullptr));
    all.push_back(std::make_unique<NumberFilterCondition<QDateTime>>(QDateTime(), column, role, nullptr));
    all.push_back(
        std::make_unique<EnumerationFilterCondition<ZELKO_RecordData::RecordStatus>>(9, column, role, nullptr));
    for (const auto& condition : all) {
        condition->setObjectName(entry.GetName());
    }
    return all;
}

void checkEntry(const ZELKO_XML::FilterCondition& entry)
{
    FilterConditionList list;
    list.AppendFilterCondition(entry);
    int taken = 0;
    for (const auto& condition : conditionsFor(entry)) {
        if (!condition->readFromXml(list)) {
            continue;
        }
        ++taken;
        require(condition->enabled() == (entry.IsEnabledSet() && entry.GetEnabled()));
        FilterConditionList written;
        condition->writeToXml(written);
        written.Check();
        require(condition->readFromXml(written));
    }
    // A number filter fits all three kinds of limits, any other filter one condition.
    require(taken == (entry.IsNumberFilterSet() ? 3 : 1));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const QString text = QString::fromUtf8(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    FilterConditionList list = untouchedList();
    if (!readOrUntouched(list, text)) {
        return 0;
    }
    list.Check();
    FilterConditionList back;
    require(back.SetXmlString(list.GetXmlString(), true) && back == list);
    for (const ZELKO_XML::FilterCondition& entry : std::as_const(list).GetFilterCondition()) {
        checkEntry(entry);
    }
    return 0;
}
