#pragma once

#include <console/session/subsystemstatus.h>
#include <console/widgets/glyph.h>

#include <QPalette>

class QPainter;
class QRect;

namespace ZelkoConsole {

/// What a table without rows says instead; nothing, and without the sign, where the text is empty.
struct EmptyState
{
    Glyph glyph = Glyph::Empty;
    QString text;

    bool operator==(const EmptyState&) const = default;
};

/// For the records of `device`, which is empty when only a sub system is chosen. `recordsFound` tells whether they
/// stand on the tree, `loading` whether some are still on their way.
EmptyState emptyState(const QString& subSystem, const SubSystemStatus& status, const QString& device, bool recordsFound,
                      bool loading);

/// Paints it into the middle of `area`, somewhat larger than the painter's font.
void paintEmptyState(QPainter& painter, const QRect& area, const EmptyState& state, const QPalette& palette);

} // namespace ZelkoConsole
