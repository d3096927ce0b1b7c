#pragma once

#include <console/session/subsystemstatus.h>

#include <QIcon>
#include <QPalette>

class QPainter;
class QRectF;

namespace ZelkoConsole {

/// The small signs for states. Each has a shape of its own, so that nobody depends on colours.
enum class Glyph {
    Good,      ///< disc with a tick
    Busy,      ///< three dots
    Bad,       ///< triangle with an exclamation mark
    Idle,      ///< ring
    Recording, ///< plain disc
    Locked,    ///< padlock
    Person,    ///< head and shoulders
    Empty,     ///< a sheet without lines
    Play,      ///< triangle to the right
    Pause,     ///< two bars
    Stop       ///< square
};

/// The sign for the state of a sub system.
Glyph glyphOf(const SubSystemStatus& status);

/// A colour that stands out from the base colour of `palette`, be that light or dark.
QColor glyphColor(Glyph glyph, const QPalette& palette);

/// Paints the sign into the largest square in the middle of `area`; `cut` is for what is cut out of a filled shape.
void paintGlyph(QPainter& painter, const QRectF& area, Glyph glyph, const QColor& color, const QColor& cut);

/// An icon that is painted anew in each size, in the colours of the application's palette at that moment, and in the
/// text colour of the selection where it is selected.
QIcon glyphIcon(Glyph glyph);

} // namespace ZelkoConsole
