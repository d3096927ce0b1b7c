// Metadata of SigMF recordings: what is accepted keeps the promises of the description, the rest is refused with a
// text.
#include "require.h"

#include <recorder/source/sigmfmetadata.h>

#include <cstddef>
#include <cstdint>

using namespace ZelkoRecorder;

namespace {

void checkSegments(const SourceDescription& description)
{
    require(!description.segments.isEmpty() && description.segments.constFirst().frame == 0);
    for (qsizetype index = 1; index < description.segments.size(); ++index) {
        require(description.segments[index - 1].frame < description.segments[index].frame);
    }
    require(description.segments.constLast().frame <= SourceDescription::maximumFrame);
}

void checkMarks(const SourceDescription& description)
{
    qint64 before = 0;
    for (const SourceMark& mark : description.marks) {
        require(mark.frame >= before && mark.frame <= SourceDescription::maximumFrame);
        require(mark.frameCount >= -1 && mark.frameCount <= SourceDescription::maximumFrame);
        require(!mark.text.isEmpty() && !mark.text.contains(QChar::Null));
        require(description.microsecondsAt(mark.frame) >= description.microsecondsAt(before));
        before = mark.frame;
    }
}

void checkAccepted(const SigmfMetadata& metadata)
{
    const SourceDescription& description = metadata.description;
    require(description.sampleRate >= 1 && description.sampleRate <= SourceDescription::maximumSampleRate);
    require(description.bandwidth >= 1 && description.bandwidth <= description.sampleRate);
    require(description.format.bytesPerFrame() > 0);
    require(metadata.sha512.isEmpty() || metadata.sha512.size() == 64);
    require(!metadata.dataset.contains(u'/'));
    checkSegments(description);
    checkMarks(description);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    QString error;
    const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    const std::optional<SigmfMetadata> metadata = SigmfMetadata::parse(bytes, &error);
    require(metadata.has_value() == error.isEmpty());
    if (metadata) {
        checkAccepted(*metadata);
    }
    return 0;
}
