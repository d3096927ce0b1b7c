#include <overviewdisplay/waterfallview.h>

#include <overviewdisplay/waterfallaccessible_p.h>
#include <overviewdisplay/waterfallhands_p.h>

#include <QHelpEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

#include <cmath>

namespace SPECTRUM_OVERVIEW {
namespace {

constexpr QSize wishedPicture(720, 420);
constexpr QSize leastPicture(160, 80);

bool isSame(double one, double other)
{
    return one == other || (std::isnan(one) && std::isnan(other));
}

} // namespace

bool WaterfallCursor::operator==(const WaterfallCursor& other) const
{
    return time == other.time && isSame(frequency, other.frequency) && isSame(level, other.level);
}

WaterfallView::WaterfallView(QWidget* parent)
    : QWidget(parent)
    , m_scene(std::make_unique<WaterfallScene>(*this))
    , m_hands(std::make_unique<WaterfallHands>(*this, *m_scene))
{
    WaterfallAccessible::install(); // before anything is told of this object
    setObjectName(QStringLiteral("WaterfallView"));
    setAccessibleName(tr("Spectrum overview"));
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
}

WaterfallView::~WaterfallView() = default;

void WaterfallView::setLevels(const OverviewLevels* levels)
{
    m_scene->setLevels(levels);
}

void WaterfallView::linesArrived(int first, int last)
{
    m_scene->linesArrived(first, last);
}

void WaterfallView::setTimeRange(quint64 start, quint64 stop)
{
    m_scene->setTimeRange({start, stop});
}

void WaterfallView::clearTimeRange()
{
    m_scene->clearTimeRange();
}

TimeRange WaterfallView::timeRange() const
{
    return m_scene->timeRange();
}

void WaterfallView::setFrequencyRange(double low, double high)
{
    if (std::isfinite(low) && std::isfinite(high) && low < high) {
        m_scene->setFrequencies(std::pair(low, high));
    }
}

void WaterfallView::showAllFrequencies()
{
    m_scene->setFrequencies(std::nullopt);
}

void WaterfallView::setLevelRange(double lowest, double highest)
{
    m_scene->setLevelRange(lowest, highest);
}

void WaterfallView::setBookmarks(const QVector<ZELKO_XML::BookmarkEntry>& bookmarks)
{
    m_scene->setBookmarks(bookmarks);
}

void WaterfallView::setSelection(quint64 start, quint64 stop)
{
    if (start < stop) {
        m_hands->letGo();
        m_scene->changeSelection([=](WaterfallSelection& selection) { selection.set(TimeRange{start, stop}); });
    }
}

void WaterfallView::clearSelection()
{
    m_hands->letGo();
    m_scene->changeSelection([](WaterfallSelection& selection) { selection.set(std::nullopt); });
}

std::optional<TimeRange> WaterfallView::selection() const
{
    return m_scene->selection().range();
}

void WaterfallView::removeCursor()
{
    m_scene->removeCursor();
}

std::optional<WaterfallCursor> WaterfallView::cursor() const
{
    return m_scene->cursor();
}

QString WaterfallView::cursorText() const
{
    return m_scene->cursorText();
}

void WaterfallView::setEmptyText(const QString& text)
{
    m_scene->setEmptyText(text);
}

QRectF WaterfallView::pictureArea() const
{
    return m_scene->layout().plot;
}

QImage WaterfallView::image() const
{
    return m_scene->image();
}

QSize WaterfallView::sizeHint() const
{
    return m_scene->sizeAround(wishedPicture);
}

QSize WaterfallView::minimumSizeHint() const
{
    return m_scene->sizeAround(leastPicture);
}

bool WaterfallView::event(QEvent* event)
{
    if (event->type() == QEvent::ToolTip) {
        m_hands->showToolTip(static_cast<const QHelpEvent&>(*event));
        return true;
    }
    return QWidget::event(event);
}

void WaterfallView::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) {
        m_scene->arrange();
        updateGeometry();
    } else if (event->type() == QEvent::PaletteChange) {
        m_scene->recolour();
    }
    QWidget::changeEvent(event);
}

void WaterfallView::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    m_scene->paint(painter);
}

void WaterfallView::resizeEvent(QResizeEvent* event)
{
    m_scene->arrange();
    QWidget::resizeEvent(event);
}

void WaterfallView::mousePressEvent(QMouseEvent* event)
{
    event->setAccepted(m_hands->press(*event));
}

void WaterfallView::mouseMoveEvent(QMouseEvent* event)
{
    event->setAccepted(m_hands->move(*event));
}

void WaterfallView::mouseReleaseEvent(QMouseEvent* event)
{
    event->setAccepted(m_hands->release(*event));
}

void WaterfallView::mouseDoubleClickEvent(QMouseEvent* event)
{
    event->setAccepted(m_hands->doubleClick(*event));
}

void WaterfallView::wheelEvent(QWheelEvent* event)
{
    event->setAccepted(m_hands->turn(*event));
}

void WaterfallView::keyPressEvent(QKeyEvent* event)
{
    if (!m_hands->key(*event)) {
        QWidget::keyPressEvent(event);
    }
}

void WaterfallView::contextMenuEvent(QContextMenuEvent* event)
{
    event->setAccepted(m_hands->openMenu(*event));
}

} // namespace SPECTRUM_OVERVIEW
