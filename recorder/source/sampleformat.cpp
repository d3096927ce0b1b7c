#include <recorder/source/sampleformat.h>

namespace ZelkoRecorder {

bool SampleFormat::isComplex() const
{
    return type != SampleType::RealInt16;
}

int SampleFormat::bitsPerValue() const
{
    switch (type) {
    case SampleType::ComplexInt8:
        return 8;
    case SampleType::ComplexFloat32:
        return 32;
    case SampleType::ComplexInt16:
    case SampleType::RealInt16:
        break;
    }
    return 16;
}

int SampleFormat::bytesPerFrame() const
{
    const int valuesPerChannel = isComplex() ? 2 : 1;
    return channels * valuesPerChannel * bitsPerValue() / 8;
}

StoredFormat SampleFormat::storedFormat() const
{
    switch (type) {
    case SampleType::ComplexInt8:
        return StoredFormat::Iq8Bit;
    case SampleType::RealInt16:
        return StoredFormat::Real16Bit;
    case SampleType::ComplexFloat32:
        return StoredFormat::Iq32BitFloat;
    case SampleType::ComplexInt16:
        break;
    }
    return StoredFormat::Iq16Bit;
}

} // namespace ZelkoRecorder
