#pragma once

#include <QtGlobal>

namespace ZelkoRecorder {

/// How one value of a sample is stored. Everything is little-endian; a complex value is I, then Q.
enum class SampleType {
    ComplexInt8,
    ComplexInt16,
    RealInt16,
    ComplexFloat32,
};

/// The data format under which a record of such samples is kept. The numbers are those of the record's metadata.
enum class StoredFormat {
    Iq16Bit = 1,
    Iq8Bit = 2,
    Real16Bit = 3,
    Iq32BitFloat = 21,
};

/// Layout of a frame: the values of all channels that belong to one moment, one channel behind the other.
struct SampleFormat
{
    SampleType type = SampleType::ComplexInt16;
    int channels = 1;

    bool isComplex() const;

    /// Bits of one number: an I, a Q, or a real value.
    int bitsPerValue() const;

    /// Bytes of one frame, never 0.
    int bytesPerFrame() const;

    StoredFormat storedFormat() const;

    bool operator==(const SampleFormat&) const = default;
};

} // namespace ZelkoRecorder
