#include <zelkobase/maps/itemmaptypes.h>

#include <valuecore/valuefactory.h>
#include <zelkobase/maps/bookmarkitemmap.h>
#include <zelkobase/maps/recorditemmap.h>

namespace zelko {
namespace {

template <typename Map>
void registerMap()
{
    valuefactory::registerType(Map::TypeName, []() -> std::unique_ptr<ValueBase> { return std::make_unique<Map>(); });
}

} // namespace

void registerItemMapTypes()
{
    registerMap<recordmap::RecordItemMap>();
    registerMap<bookmarkmap::BookmarkItemMap>();
}

} // namespace zelko
