#include <recorder/service/channelframe.h>

#include <zelkobase/data/indexentry.h>

#include <QByteArray>
#include <QtEndian>

#include <algorithm>
#include <cstring>

namespace ZelkoRecorder {

namespace {

constexpr char magic[] = {'Z', 'C', 'D', 'F'};
constexpr quint16 version = 1;
constexpr quint16 lastFlag = 1;

template <typename T>
T read(std::string_view bytes, std::size_t offset)
{
    return qFromLittleEndian<T>(bytes.data() + offset);
}

bool isSane(const ChannelFrame& frame, quint16 flags)
{
    return (flags & ~lastFlag) == 0 && frame.sampleBytes <= ChannelFrame::mostSamples &&
           frame.time <= ChannelFrame::latestTime && frame.centreFrequency <= ChannelFrame::mostHertz &&
           frame.sampleRate <= ChannelFrame::mostHertz && frame.bandwidth <= ChannelFrame::mostHertz;
}

} // namespace

std::optional<ChannelFrame> ChannelFrame::readHead(std::string_view bytes)
{
    if (bytes.size() < headSize || std::memcmp(bytes.data(), magic, sizeof magic) != 0 ||
        read<quint16>(bytes, 4) != version) {
        return std::nullopt;
    }
    const auto flags = read<quint16>(bytes, 6);
    ChannelFrame frame;
    frame.number = read<quint32>(bytes, 8);
    frame.sampleBytes = read<quint32>(bytes, 12);
    frame.stream = read<quint64>(bytes, 16);
    frame.time = read<quint64>(bytes, 24);
    frame.centreFrequency = read<quint64>(bytes, 32);
    frame.sampleRate = read<quint64>(bytes, 40);
    frame.bandwidth = read<quint64>(bytes, 48);
    frame.isLast = flags & lastFlag;
    return isSane(frame, flags) ? std::optional(frame) : std::nullopt;
}

void ChannelFrame::writeHead(char* bytes) const
{
    std::memcpy(bytes, magic, sizeof magic);
    qToLittleEndian(version, bytes + 4);
    qToLittleEndian(quint16{isLast ? lastFlag : quint16{0}}, bytes + 6);
    qToLittleEndian(number, bytes + 8);
    qToLittleEndian(sampleBytes, bytes + 12);
    qToLittleEndian(stream, bytes + 16);
    qToLittleEndian(time, bytes + 24);
    qToLittleEndian(centreFrequency, bytes + 32);
    qToLittleEndian(sampleRate, bytes + 40);
    qToLittleEndian(bandwidth, bytes + 48);
}

ChannelFrame ChannelFrame::at(const ZELKO_XML::IndexEntry& entry)
{
    ChannelFrame frame;
    frame.time = std::min(entry.GetTimestamp(), latestTime);
    frame.centreFrequency = std::min(entry.GetTunerFrequency(), mostHertz);
    frame.sampleRate = std::min(entry.GetSampleRate(), mostHertz);
    frame.bandwidth = std::min(entry.GetBandwidth(), mostHertz);
    return frame;
}

void ChannelFrame::appendTo(QByteArray* bytes, std::string_view samples) const
{
    ChannelFrame head = *this;
    head.sampleBytes = static_cast<quint32>(samples.size());
    const qsizetype begin = bytes->size();
    bytes->resize(begin + static_cast<qsizetype>(headSize));
    head.writeHead(bytes->data() + begin);
    bytes->append(samples.data(), static_cast<qsizetype>(samples.size()));
}

} // namespace ZelkoRecorder
