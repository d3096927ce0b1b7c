#pragma once

#include <QCoreApplication>

namespace ZelkoConsole {

/// A text for people where no class with a `tr()` of its own stands behind it.
inline QString tr(const char* text)
{
    return QCoreApplication::translate("ZelkoConsole", text);
}

} // namespace ZelkoConsole
