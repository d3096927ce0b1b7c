#include <overviewdisplay/frequencyruler_p.h>

#include <overviewdisplay/frequencytext_p.h>

#include <QPainter>

namespace SPECTRUM_OVERVIEW {
namespace {

constexpr int unitLeft = 4; ///< as the date above it, where no text of a tick comes

} // namespace

FrequencyRuler::FrequencyRuler(QWidget* parent)
    : XRulerTop(parent)
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
    SetAxisZoomEnable(false, false);
}

FrequencyRuler::~FrequencyRuler() = default;

void FrequencyRuler::setHasCentre(bool hasCentre)
{
    if (hasCentre != m_hasCentre) {
        m_hasCentre = hasCentre;
        update();
    }
}

QString FrequencyRuler::tickText(double value, double distance) const
{
    const QString number = FrequencyText(visibleStart(), visibleStop()).number(value, distance);
    return m_hasCentre || value <= 0 ? number : QLatin1Char('+') + number;
}

QString FrequencyRuler::longestTickText(double distance) const
{
    const QString start = tickText(visibleStart(), distance);
    const QString stop = tickText(visibleStop(), distance);
    return start.size() > stop.size() ? start : stop;
}

void FrequencyRuler::paintUnit(QPainter& painter) const
{
    const QString unit = FrequencyText(visibleStart(), visibleStop()).unit();
    const QRectF room(unitLeft, rulerTop(), placeAt(visibleStart()) - unitLeft, fontMetrics().height());
    painter.setPen(palette().color(QPalette::WindowText));
    painter.drawText(room, Qt::AlignLeft | Qt::AlignVCenter, m_hasCentre ? unit : QStringLiteral("± ") + unit);
}

void FrequencyRuler::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    paintRuler(painter);
    paintUnit(painter);
}

} // namespace SPECTRUM_OVERVIEW
