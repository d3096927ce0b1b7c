#pragma once

#include "checkedsequence.h"

#include <zelkoidl/recorderservice.hh>

/// How a list of records is read. The ORB's own way takes memory for as many elements as the message has bytes left,
/// which is many times the message: an element is larger in memory than on the wire, where it cannot be smaller than
/// this says. Included in front of the code that reads such a list, as `checkedsequence.h` is.
template <>
inline void _CORBA_Unbounded_Sequence<QD_ZLK::RecordInfo>::operator<<=(cdrStream& stream)
{
    constexpr _CORBA_ULong leastSize = 80; // numbers, lengths and the zero of the ID
    readCheckedSequence(*this, stream, leastSize);
}
