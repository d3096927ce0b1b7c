#include <console/widgets/glyph.h>

#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPainterPath>

namespace ZelkoConsole {
namespace {

struct ColorPair
{
    QRgb onLight;
    QRgb onDark;
};

ColorPair colorsOf(Glyph glyph)
{
    switch (glyph) {
    case Glyph::Good:
        return {qRgb(26, 127, 55), qRgb(86, 211, 100)};
    case Glyph::Busy:
        return {qRgb(154, 103, 0), qRgb(227, 179, 65)};
    case Glyph::Bad:
    case Glyph::Locked:
    case Glyph::Recording:
        return {qRgb(196, 32, 46), qRgb(255, 123, 114)};
    case Glyph::Idle:
    case Glyph::Person:
    case Glyph::Empty:
        break;
    case Glyph::Play:
    case Glyph::Pause:
    case Glyph::Stop:
        return {qRgb(36, 41, 47), qRgb(226, 230, 235)};
    }
    return {qRgb(101, 109, 118), qRgb(150, 160, 170)};
}

// All shapes are drawn in a square of 16 by 16.
void paintTick(QPainter& painter, const QColor& color)
{
    painter.setPen(QPen(color, 2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(Qt::NoBrush);
    painter.drawPolyline(QPolygonF({{4.8, 8.4}, {7.1, 10.6}, {11.2, 5.8}}));
}

void paintDots(QPainter& painter)
{
    for (const double x : {3.5, 8.0, 12.5}) {
        painter.drawEllipse(QPointF(x, 8), 1.7, 1.7);
    }
}

void paintWarning(QPainter& painter, const QColor& color, const QColor& cut)
{
    painter.setPen(QPen(color, 2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPolygon(QPolygonF({{8, 2.5}, {14, 13}, {2, 13}}));
    painter.setPen(QPen(cut, 1.7, Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(QPointF(8, 6), QPointF(8, 9));
    painter.drawPoint(QPointF(8, 11.6));
}

void paintRing(QPainter& painter, const QColor& color)
{
    painter.setPen(QPen(color, 1.6));
    painter.setBrush(Qt::NoBrush);
    painter.drawEllipse(QPointF(8, 8), 5, 5);
}

void paintPadlock(QPainter& painter, const QColor& color, const QColor& cut)
{
    painter.drawRoundedRect(QRectF(3, 7, 10, 7), 1.2, 1.2);
    painter.setPen(QPen(color, 1.7, Qt::SolidLine, Qt::FlatCap));
    painter.setBrush(Qt::NoBrush);
    painter.drawArc(QRectF(5, 2.5, 6, 7), 0, 180 * 16);
    painter.drawLine(QPointF(5, 6), QPointF(5, 7.5));
    painter.drawLine(QPointF(11, 6), QPointF(11, 7.5));
    painter.setPen(QPen(cut, 1.7, Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(QPointF(8, 9.8), QPointF(8, 11.2));
}

void paintPerson(QPainter& painter)
{
    painter.drawEllipse(QPointF(8, 5.2), 2.9, 2.9);
    QPainterPath shoulders(QPointF(2.5, 14));
    shoulders.cubicTo(2.5, 7.6, 13.5, 7.6, 13.5, 14);
    painter.drawPath(shoulders);
}

void paintPlay(QPainter& painter, const QColor& color)
{
    painter.setPen(QPen(color, 1.4, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPolygon(QPolygonF({{4.6, 3.4}, {12.4, 8}, {4.6, 12.6}}));
}

void paintPause(QPainter& painter)
{
    for (const double left : {3.8, 9.2}) {
        painter.drawRoundedRect(QRectF(left, 3, 3, 10), 0.8, 0.8);
    }
}

void paintSheet(QPainter& painter, const QColor& color)
{
    painter.setPen(QPen(color, 1, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(QRectF(2, 3, 12, 10), 1.2, 1.2);
    painter.drawLine(QPointF(2, 6), QPointF(14, 6));
    painter.drawLine(QPointF(6, 6), QPointF(6, 13));
}

void paintShape(QPainter& painter, Glyph glyph, const QColor& color, const QColor& cut)
{
    switch (glyph) {
    case Glyph::Good:
        painter.drawEllipse(QPointF(8, 8), 6.5, 6.5);
        return paintTick(painter, cut);
    case Glyph::Busy:
        return paintDots(painter);
    case Glyph::Bad:
        return paintWarning(painter, color, cut);
    case Glyph::Idle:
        return paintRing(painter, color);
    case Glyph::Recording:
        painter.drawEllipse(QPointF(8, 8), 5, 5);
        return;
    case Glyph::Locked:
        return paintPadlock(painter, color, cut);
    case Glyph::Person:
        return paintPerson(painter);
    case Glyph::Empty:
        return paintSheet(painter, color);
    case Glyph::Play:
        return paintPlay(painter, color);
    case Glyph::Pause:
        return paintPause(painter);
    case Glyph::Stop:
        painter.drawRoundedRect(QRectF(3.4, 3.4, 9.2, 9.2), 1, 1);
        return;
    }
}

class GlyphEngine final : public QIconEngine
{
public:
    explicit GlyphEngine(Glyph glyph)
        : m_glyph(glyph)
    {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override
    {
        const QPalette palette = QGuiApplication::palette();
        if (mode == QIcon::Selected) {
            paintGlyph(*painter, rect, m_glyph, palette.color(QPalette::HighlightedText),
                       palette.color(QPalette::Highlight));
        } else if (mode == QIcon::Disabled) {
            paintGlyph(*painter, rect, m_glyph, palette.color(QPalette::Disabled, QPalette::ButtonText),
                       palette.color(QPalette::Button));
        } else {
            paintGlyph(*painter, rect, m_glyph, glyphColor(m_glyph, palette), palette.color(QPalette::Base));
        }
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override
    {
        QPixmap pixmap(size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        paint(&painter, QRect(QPoint(), size), mode, state);
        return pixmap;
    }

    QIconEngine* clone() const override { return new GlyphEngine(*this); }

private:
    Glyph m_glyph;
};

} // namespace

Glyph glyphOf(const SubSystemStatus& status)
{
    switch (status.state) {
    case LinkState::Starting:
    case LinkState::Connecting:
        return Glyph::Busy;
    case LinkState::Connected:
        return Glyph::Good;
    case LinkState::Unreachable:
    case LinkState::Unusable:
        return Glyph::Bad;
    case LinkState::Denied:
        return Glyph::Locked;
    }
    return Glyph::Idle;
}

QColor glyphColor(Glyph glyph, const QPalette& palette)
{
    const ColorPair colors = colorsOf(glyph);
    return QColor(palette.color(QPalette::Base).lightness() < 128 ? colors.onDark : colors.onLight);
}

void paintGlyph(QPainter& painter, const QRectF& area, Glyph glyph, const QColor& color, const QColor& cut)
{
    const double side = std::min(area.width(), area.height());
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(area.center() - QPointF(side, side) / 2);
    painter.scale(side / 16, side / 16);
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    paintShape(painter, glyph, color, cut);
    painter.restore();
}

QIcon glyphIcon(Glyph glyph)
{
    return QIcon(new GlyphEngine(glyph));
}

} // namespace ZelkoConsole
