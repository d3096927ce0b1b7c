#pragma once

#include <QString>

namespace ZelkoCommon {

/// Notes what `takeTlsRefusal` answers this thread. The first reason stays: what follows from it says less.
void noteTlsRefusal(const QString& reason);

} // namespace ZelkoCommon
