#pragma once

#include <omniORB4/CORBA.h>

#include <limits>

/// Reads a sequence of elements that take `leastSize` bytes of the stream or more. MARSHAL, before memory is taken, for
/// a length that the stream cannot hold.
template <typename Sequence>
inline void readCheckedSequence(Sequence& sequence, cdrStream& stream, _CORBA_ULong leastSize)
{
    _CORBA_ULong count = 0;
    count <<= stream;
    if (count > std::numeric_limits<_CORBA_ULong>::max() / leastSize || !stream.checkInputOverrun(leastSize, count)) {
        _CORBA_marshal_sequence_range_check_error(stream);
    }
    sequence.length(count);
    for (_CORBA_ULong i = 0; i < count; ++i) {
        sequence[i] <<= stream;
    }
}

/// How a sequence<long> is read. The ORB's own way multiplies the length by 4 in 32 bits before it looks whether the
/// stream can hold it: a length of 2^31 passes as nothing, takes 8 GiB of memory and gives elements that nobody sent.
/// Included in front of the generated stubs, and wherever else such a sequence is read from a stream.
template <>
inline void _CORBA_Unbounded_Sequence_w_FixSizeElement<_CORBA_Long, 4, 4>::operator<<=(cdrStream& stream)
{
    readCheckedSequence(*this, stream, 4);
}
