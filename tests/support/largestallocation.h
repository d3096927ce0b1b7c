#pragma once

#include <cstdlib>
#include <new>

/// The largest piece of memory in bytes that this thread asked `new` for since it was set to 0. The header replaces
/// `new` of the whole process, so one source file of a test includes it.
inline thread_local std::size_t largestAllocation = 0;

void* operator new(std::size_t size)
{
    largestAllocation = size > largestAllocation ? size : largestAllocation;
    if (void* const memory = std::malloc(size == 0 ? 1 : size)) {
        return memory;
    }
    throw std::bad_alloc();
}

void operator delete(void* memory) noexcept
{
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept
{
    std::free(memory);
}
