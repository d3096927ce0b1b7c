#pragma once

#include <QFont>

namespace ZelkoConsole {

/// The same font in another size, be that given in points or in pixels.
QFont scaledFont(QFont font, double factor);

} // namespace ZelkoConsole
