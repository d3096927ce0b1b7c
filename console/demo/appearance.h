#pragma once

#include <QPalette>

class QString;
class QWidget;

namespace ZelkoConsole {

/// How the console looks on a dark desktop.
QPalette darkPalette();

/// Lets the event loop go round until nothing is left to lay out and paint, then writes what the widget shows as PNG.
/// False when the file cannot be written.
bool savePicture(QWidget& widget, const QString& fileName);

} // namespace ZelkoConsole
