#pragma once

#include <cstddef>
#include <string>

/// Gives the object state of a value in pieces. The value may change between two pieces: who receives all pieces, and
/// each change from when the cursor was opened on, in the order in which they came about, ends at the present state.
/// The cursor must not outlive its value.
class IObjectStateCursor
{
public:
    virtual ~IObjectStateCursor() = default;

    /// Appends whole commands until there are `bytes` more or nothing is left. However few they are, each piece goes on
    /// by one item at least. False when this was the last piece.
    virtual bool AppendNext(std::string& out, std::size_t bytes) = 0;
};
