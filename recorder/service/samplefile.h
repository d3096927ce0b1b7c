#pragma once

#include <QFile>

#include <stop_token>
#include <vector>

namespace ZelkoRecorder {

/// Reads the samples of the first channel of a record from its file, in large blocks whatever is asked for. Needs
/// memory for one block, and for the samples of one block more than are asked for at once. For one thread at a time;
/// blocks for as long as the disk takes.
class SampleFile
{
public:
    static constexpr std::size_t blockSize = 128 * 1024; ///< bytes at once, or one frame where that is more

    /// In frames of `bytesPerFrame`, of which the first `bytesPerSample` are those of the first channel.
    SampleFile(const QString& path, std::size_t bytesPerFrame, std::size_t bytesPerSample);

    /// False if there is no such file.
    bool open();

    /// In bytes.
    quint64 size() const { return static_cast<quint64>(m_file.size()); }

    /// `count` samples from the frame on that stands at `offset` in bytes, one behind the other; quick for one behind
    /// that of the last call, as long as they overlap or follow each other. Null where the file does not have them or
    /// the disk fails, and before the next block once `stop` is wanted. Valid until the next call.
    const char* samples(quint64 offset, std::size_t count, const std::stop_token& stop = {});

private:
    void goTo(quint64 offset);
    bool appendBlock();
    void makeRoom();
    std::size_t read(quint64 offset, char* bytes);
    std::size_t readFirstChannel(quint64 offset, char* bytes);
    std::size_t held() const { return (m_end - m_first) / m_bytesPerSample; }

    const std::size_t m_bytesPerFrame;
    const std::size_t m_bytesPerSample;
    const std::size_t m_framesPerBlock;
    QFile m_file;
    std::vector<char> m_block; // where there are other channels
    std::vector<char> m_samples;
    std::size_t m_first = 0; // of m_samples, from here to m_end are held
    std::size_t m_end = 0;
    quint64 m_offset = 0; // in the file, of the first one held
};

} // namespace ZelkoRecorder
