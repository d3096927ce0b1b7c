// Bytes as the command stream of a value. Whatever is accepted must leave a value that its own state, its own recording
// and its optimised recording each rebuild; whatever is refused must leave the value as it was.
#include "require.h"
#include "smallitemmap.h"

#include <valuecore/commandoptimizer.h>
#include <valuecore/valuefactory.h>
#include <valuecore/valuetypes.h>
#include <zelkobase/maps/bookmarkitemmap.h>
#include <zelkobase/maps/recorditemmap.h>
#include <zelkobase/stringmap/stringitemmap.h>

using zelko::bookmarkmap::BookmarkItemMap;
using zelko::recordmap::RecordItemMap;

namespace {

template <typename V>
std::unique_ptr<ValueBase> make()
{
    return std::make_unique<V>();
}

constexpr valuefactory::Maker makers[] = {
    &make<Value<QString>>, &make<Value<int>>,           &make<Value<bool>>,          &make<Value<double>>,
    &make<Value<qint64>>,  &make<ValueNumeric<double>>, &make<ValueNumeric<qint64>>, &make<ValueSelection>,
    &make<TextItemMap>,    &make<NumberItemMap>,        &make<StringItemMap>,        &make<RecordItemMap>,
    &make<BookmarkItemMap>};

// The recording as commands on `target`, the superfluous ones left out.
CommandList optimised(ValueBase& target, const std::string& recording)
{
    const char* position = recording.data();
    CommandReader reader(&position, static_cast<std::ptrdiff_t>(recording.size()));
    CommandList commands;
    while (reader.remaining() > 0) {
        commands.push_back(target.ReadCommand(reader, nullptr));
        require(commands.back() != nullptr);
    }
    target.OptimizeCommandList(commands);
    return commands;
}

void requireRebuildable(ValueBase& value, valuefactory::Maker maker)
{
    std::string state;
    value.AddObjectStateStringForTransmission(state, 0);
    const auto fromState = maker();
    require(fromState->SetCommandString(state, nullptr) && fromState->Compare(&value));

    const std::string recording = value.GetCommandStringForRecording();
    const auto fromRecording = maker();
    require(fromRecording->SetCommandString(recording, nullptr) && fromRecording->Compare(&value));

    const auto fromOptimised = maker();
    fromOptimised->SetCommandString(optimised(*fromOptimised, recording));
    require(fromOptimised->Compare(&value));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size == 0) {
        return 0;
    }
    const valuefactory::Maker maker = makers[data[0] % std::size(makers)];
    const auto value = maker();
    value->SetRecording(true);
    if (value->SetCommandString(std::string_view(reinterpret_cast<const char*>(data + 1), size - 1), nullptr)) {
        requireRebuildable(*value, maker);
    } else {
        require(value->Compare(maker().get()) && value->GetCommandStringForRecording().empty());
    }
    return 0;
}
