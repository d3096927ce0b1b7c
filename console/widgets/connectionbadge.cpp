#include <console/widgets/connectionbadge.h>

#include <console/widgets/glyph.h>

#include <widgetbase/elidedlabel.h>
#include <widgetbase/plaintooltip.h>

#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QStyle>

namespace ZelkoConsole {
namespace {

constexpr int mostCharacters = 50;

} // namespace

ConnectionBadge::ConnectionBadge(QWidget* parent)
    : QWidget(parent)
    , m_sign(new QLabel)
    , m_text(new guiHelper::ElidedLabel)
{
    auto* const layout = new QHBoxLayout(this);
    layout->setContentsMargins(6, 0, 6, 0);
    layout->setSpacing(6);
    layout->addWidget(m_sign);
    layout->addWidget(m_text);
    m_text->setElideMode(Qt::ElideMiddle); // the name gives way, not the state
    m_text->setMaximumWidth(mostCharacters * fontMetrics().averageCharWidth());
    setObjectName(QStringLiteral("connectionBadge"));
    setAccessibleName(tr("Connection"));
}

void ConnectionBadge::show(const QString& subSystem, const SubSystemStatus& status)
{
    m_empty = subSystem.isEmpty();
    m_status = status;
    m_text->setText(m_empty ? QString() : tr("%1: %2").arg(subSystem, shortText(status)));
    setToolTip(m_empty ? QString() : guiHelper::plainToolTip(longText(subSystem, status)));
    setAccessibleDescription(m_text->text());
    paintSign();
}

QString ConnectionBadge::text() const
{
    return m_text->text();
}

void ConnectionBadge::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange) {
        paintSign();
    }
}

void ConnectionBadge::paintSign()
{
    const int side = style()->pixelMetric(QStyle::PM_SmallIconSize);
    m_sign->setPixmap(m_empty ? QPixmap() : glyphIcon(glyphOf(m_status)).pixmap(QSize(side, side), devicePixelRatio()));
}

} // namespace ZelkoConsole
