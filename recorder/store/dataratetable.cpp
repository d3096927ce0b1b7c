#include <recorder/store/dataratetable.h>

#include <algorithm>
#include <iterator>

namespace ZelkoRecorder {

namespace {

using DataRate = ZELKO_XML::ZELKO_RecordData::DataRate;

struct RateClass
{
    quint64 upTo;
    DataRate rate;
};

constexpr RateClass rateClasses[] = {
    {16'000, DataRate::UpTo16kB},       {64'000, DataRate::UpTo64kB},       {256'000, DataRate::UpTo256kB},
    {1'000'000, DataRate::UpTo1MB},     {4'000'000, DataRate::UpTo4MB},     {16'000'000, DataRate::UpTo16MB},
    {64'000'000, DataRate::UpTo64MB},   {256'000'000, DataRate::UpTo256MB}, {512'000'000, DataRate::UpTo512MB},
    {1'000'000'000, DataRate::UpTo1GB}, {2'000'000'000, DataRate::UpTo2GB}, {4'000'000'000, DataRate::UpTo4GB},
};

} // namespace

DataRate dataRateClass(quint64 bytesPerSecond)
{
    const auto* const found = std::find_if(std::begin(rateClasses), std::end(rateClasses),
                                           [&](const RateClass& c) { return bytesPerSecond <= c.upTo; });
    return found == std::end(rateClasses) ? DataRate::Variable : found->rate;
}

} // namespace ZelkoRecorder
