#pragma once

#include <cstddef>

/// One choice of a selection: its key and the text for it.
struct SelItemDesc
{
    int key;
    const char* name;
};

/// Static description of a value: its name on the tree and, for a selection, its choices.
struct ValueDescriptor
{
    const char* name;
    const SelItemDesc* choices = nullptr;
    std::size_t choiceCount = 0;
};
