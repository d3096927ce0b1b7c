#pragma once

#include <valuecore/tree.h>

/// The local values of a workstation go with this.
struct OwnLocalValues
{
    ~OwnLocalValues() { Tree::Instance()->Remove(QStringLiteral("/ZELKO")); }
};
