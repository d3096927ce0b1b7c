#include <recorder/service/samplefile.h>

#include <fcntl.h>

#include <algorithm>

namespace ZelkoRecorder {

SampleFile::SampleFile(const QString& path, const SampleValues& format)
    : m_format(format)
    , m_file(path)
    , m_block(std::max<std::size_t>(blockSize / format.bytesPerFrame(), 1) * format.bytesPerFrame())
{}

bool SampleFile::open()
{
    if (!m_file.open(QIODevice::ReadOnly | QIODevice::Unbuffered)) {
        return false;
    }
    ::posix_fadvise(m_file.handle(), 0, 0, POSIX_FADV_SEQUENTIAL); // so that the disk reads ahead while others count
    return true;
}

const std::complex<float>* SampleFile::values(quint64 offset, std::size_t count, const std::stop_token& stop)
{
    goTo(offset);
    while (held() < count) {
        if (stop.stop_requested() || !appendBlock()) {
            return nullptr;
        }
    }
    return m_values.data() + m_first;
}

// What is held from there on stays.
void SampleFile::goTo(quint64 offset)
{
    const quint64 distance = offset - m_offset; // a huge one where it lies before
    const quint64 frames = distance / m_format.bytesPerFrame();
    const bool isHeld = frames <= held() && distance % m_format.bytesPerFrame() == 0;
    m_first = isHeld ? m_first + static_cast<std::size_t>(frames) : m_end;
    m_offset = offset;
}

bool SampleFile::appendBlock()
{
    const quint64 offset = m_offset + held() * m_format.bytesPerFrame();
    const bool isThere = m_file.seek(static_cast<qint64>(offset));
    const qint64 bytes = isThere ? m_file.read(m_block.data(), static_cast<qint64>(m_block.size())) : 0;
    const std::size_t frames = bytes > 0 ? static_cast<std::size_t>(bytes) / m_format.bytesPerFrame() : 0;
    makeRoom(frames);
    m_format.read(m_block.data(), frames, m_values.data() + m_end);
    m_end += frames;
    return frames > 0;
}

// Behind the values that are held.
void SampleFile::makeRoom(std::size_t values)
{
    std::copy(m_values.data() + m_first, m_values.data() + m_end, m_values.data());
    m_end = held();
    m_first = 0;
    m_values.resize(std::max(m_values.size(), m_end + values));
}

} // namespace ZelkoRecorder
