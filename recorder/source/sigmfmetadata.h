#pragma once

#include <recorder/source/sourcedescription.h>

#include <QByteArray>

#include <optional>

namespace ZelkoRecorder {

/// What the metadata of a SigMF recording says, checked, without a look at its samples.
///
/// Read are the data types "ci8", "ci16_le", "ri16_le" and "cf32_le", the sample rate (fractions of a Hz are rounded),
/// the number of channels, the sample offset, the hash, the name of the data file, captures with frequency and time,
/// and annotations with label and comment. Other fields may hold anything. Not supported, and refused: other data
/// types, recordings without samples, bytes before or after the samples, and frequencies below 0.
struct SigmfMetadata
{
    /// Largest metadata, in bytes.
    static constexpr qsizetype maximumSize = qsizetype{8} * 1024 * 1024;
    /// Deepest nesting of objects and arrays.
    static constexpr int maximumDepth = 64;
    static constexpr int maximumChannels = 256;

    /// Without name and number of frames, which the metadata does not hold. Frames count from the first of the data
    /// file.
    SourceDescription description;
    /// Name of the data file, in the folder of the metadata; empty for the usual one. Never a path.
    QString dataset;
    /// The 64 bytes of the data file's SHA-512; empty if not given.
    QByteArray sha512;

    /// Reads the bytes of a metadata file. Nothing, and in `error` what is wrong and where, if any part that is read is
    /// missing, of the wrong type or out of its range. `error` may be null. May be called on any thread.
    static std::optional<SigmfMetadata> parse(const QByteArray& bytes, QString* error);
};

} // namespace ZelkoRecorder
