#include <console/records/emptystate.h>

#include <console/translation.h>
#include <console/widgets/scaledfont.h>

#include <QPainter>

#include <algorithm>

namespace ZelkoConsole {
namespace {

constexpr int textFlags = Qt::AlignHCenter | Qt::AlignTop | Qt::TextWordWrap;

} // namespace

EmptyState emptyState(const QString& subSystem, const SubSystemStatus& status, const QString& device, bool recordsFound,
                      bool loading)
{
    if (subSystem.isEmpty()) {
        return {Glyph::Empty, tr("Select a device")};
    }
    if (!status.isConnected()) {
        return {glyphOf(status), longText(subSystem, status)};
    }
    if (device.isEmpty()) {
        return {Glyph::Empty, tr("Select a device of %1").arg(subSystem)};
    }
    if (!recordsFound || loading) {
        return {Glyph::Busy, tr("Waiting for the records of %1…").arg(device)};
    }
    return {Glyph::Empty, tr("No records on this device")};
}

void paintEmptyState(QPainter& painter, const QRect& area, const EmptyState& state, const QPalette& palette)
{
    painter.setFont(scaledFont(painter.font(), 1.15));
    const int line = painter.fontMetrics().height();
    const QRect room = area.adjusted(2 * line, line, -2 * line, -line);
    const int textHeight = painter.boundingRect(room, textFlags, state.text).height();
    QRect sign(0, 0, 2 * line, 2 * line);
    const int signAndGap = sign.height() + line / 2;
    const int top = room.top() + std::max(0, (room.height() - signAndGap - textHeight) / 2);
    sign.moveTopLeft(QPoint(room.center().x() - line, top));

    paintGlyph(painter, sign, state.glyph, glyphColor(state.glyph, palette), palette.color(QPalette::Base));
    painter.setPen(palette.color(QPalette::Text));
    painter.drawText(QRect(room.left(), top + signAndGap, room.width(), textHeight), textFlags, state.text);
}

} // namespace ZelkoConsole
