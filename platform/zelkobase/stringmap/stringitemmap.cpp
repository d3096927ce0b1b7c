#include <zelkobase/stringmap/stringitemmap.h>

#include <valuecore/valuefactory.h>

template class ValueItemMapBase<StringItem, StringItemFormat, StringItemAdapter>;
template class ValueItemMap<StringItem, StringItemFormat, StringItemAdapter>;
template class ValueFrequencyItemMap<StringItem, StringItemFormat, StringItemAdapter>;

namespace {

std::unique_ptr<ValueBase> makeMap()
{
    return std::make_unique<StringItemMap>();
}

} // namespace

void registerStringItemMap()
{
    valuefactory::registerType(StringItemFormat::mapTypeName, &makeMap);
}
