#include <valuecore/valuefactory.h>

#include <valuecore/valuetypes.h>

#include <map>
#include <mutex>

namespace valuefactory {
namespace {

template <typename V>
std::unique_ptr<ValueBase> make()
{
    return std::make_unique<V>();
}

template <typename V>
std::pair<const std::string, Maker> entry()
{
    return {V().GetTypeName(), &make<V>};
}

struct Types
{
    std::mutex mutex;
    std::map<std::string, Maker, std::less<>> makers{
        entry<Value<QString>>(), entry<Value<int>>(),           entry<Value<bool>>(),          entry<Value<double>>(),
        entry<Value<qint64>>(),  entry<ValueNumeric<double>>(), entry<ValueNumeric<qint64>>(), entry<ValueSelection>()};
};

Types& types()
{
    static Types instance;
    return instance;
}

// A maker runs without the lock, so that it may register further types.
Maker makerOf(std::string_view typeName)
{
    const std::lock_guard lock(types().mutex);
    const auto found = types().makers.find(typeName);
    return found == types().makers.end() ? nullptr : found->second;
}

} // namespace

void registerType(const std::string& typeName, Maker maker)
{
    const std::lock_guard lock(types().mutex);
    types().makers.emplace(typeName, maker);
}

std::unique_ptr<ValueBase> create(std::string_view typeName)
{
    const Maker maker = makerOf(typeName);
    return maker ? maker() : nullptr;
}

} // namespace valuefactory
