#pragma once

#include <recorder/service/samplevalues.h>

#include <QFile>

#include <complex>
#include <stop_token>
#include <vector>

namespace ZelkoRecorder {

/// Reads the samples of a record from its file, in large blocks whatever is asked for. Needs memory for one block, and
/// for the values of one block more than are asked for at once. For one thread at a time; blocks for as long as the
/// disk takes.
class SampleFile
{
public:
    static constexpr std::size_t blockSize = 128 * 1024; ///< bytes at once, or one frame where that is more

    SampleFile(const QString& path, const SampleValues& format);

    /// False if there is no such file.
    bool open();

    /// In bytes.
    quint64 size() const { return static_cast<quint64>(m_file.size()); }

    /// `count` values from the frame on that stands at `offset` in bytes; quick for one behind that of the last call,
    /// as long as they overlap or follow each other. Null where the file does not have them or the disk fails, and
    /// before the next block once `stop` is wanted. Valid until the next call.
    const std::complex<float>* values(quint64 offset, std::size_t count, const std::stop_token& stop = {});

private:
    void goTo(quint64 offset);
    bool appendBlock();
    void makeRoom(std::size_t values);
    std::size_t held() const { return m_end - m_first; }

    const SampleValues m_format;
    QFile m_file;
    std::vector<char> m_block;
    std::vector<std::complex<float>> m_values;
    std::size_t m_first = 0; // of m_values, from here to m_end are held
    std::size_t m_end = 0;
    quint64 m_offset = 0; // in the file, of the first one held
};

} // namespace ZelkoRecorder
