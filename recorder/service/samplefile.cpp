#include <recorder/service/samplefile.h>

#include <fcntl.h>

#include <algorithm>

namespace ZelkoRecorder {

SampleFile::SampleFile(const QString& path, std::size_t bytesPerFrame, std::size_t bytesPerSample)
    : m_bytesPerFrame(bytesPerFrame)
    , m_bytesPerSample(bytesPerSample)
    , m_framesPerBlock(std::max<std::size_t>(blockSize / bytesPerFrame, 1))
    , m_file(path)
    , m_block(bytesPerFrame == bytesPerSample ? 0 : m_framesPerBlock * bytesPerFrame)
{}

bool SampleFile::open()
{
    if (!m_file.open(QIODevice::ReadOnly | QIODevice::Unbuffered)) {
        return false;
    }
    ::posix_fadvise(m_file.handle(), 0, 0, POSIX_FADV_SEQUENTIAL); // so that the disk reads ahead while others count
    return true;
}

const char* SampleFile::samples(quint64 offset, std::size_t count, const std::stop_token& stop)
{
    goTo(offset);
    while (held() < count) {
        if (stop.stop_requested() || !appendBlock()) {
            return nullptr;
        }
    }
    return m_samples.data() + m_first;
}

// What is held from there on stays.
void SampleFile::goTo(quint64 offset)
{
    const quint64 distance = offset - m_offset; // a huge one where it lies before
    const quint64 frames = distance / m_bytesPerFrame;
    const bool isHeld = frames <= held() && distance % m_bytesPerFrame == 0;
    m_first = isHeld ? m_first + static_cast<std::size_t>(frames) * m_bytesPerSample : m_end;
    m_offset = offset;
}

bool SampleFile::appendBlock()
{
    const quint64 offset = m_offset + held() * m_bytesPerFrame;
    makeRoom();
    char* const end = m_samples.data() + m_end;
    const std::size_t frames = m_block.empty() ? read(offset, end) : readFirstChannel(offset, end);
    m_end += frames * m_bytesPerSample;
    return frames > 0;
}

// For a block behind the samples that are held.
void SampleFile::makeRoom()
{
    std::copy(m_samples.data() + m_first, m_samples.data() + m_end, m_samples.data());
    m_end -= m_first;
    m_first = 0;
    m_samples.resize(std::max(m_samples.size(), m_end + m_framesPerBlock * m_bytesPerSample));
}

// Gives how many frames there were.
std::size_t SampleFile::read(quint64 offset, char* bytes)
{
    const bool isThere = m_file.seek(static_cast<qint64>(offset));
    const std::size_t most = m_framesPerBlock * m_bytesPerFrame;
    const qint64 size = isThere ? m_file.read(bytes, static_cast<qint64>(most)) : 0;
    return size > 0 ? static_cast<std::size_t>(size) / m_bytesPerFrame : 0;
}

std::size_t SampleFile::readFirstChannel(quint64 offset, char* bytes)
{
    const std::size_t frames = read(offset, m_block.data());
    for (std::size_t i = 0; i < frames; ++i) {
        std::copy_n(m_block.data() + i * m_bytesPerFrame, m_bytesPerSample, bytes + i * m_bytesPerSample);
    }
    return frames;
}

} // namespace ZelkoRecorder
