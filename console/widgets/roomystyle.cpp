#include <console/widgets/roomystyle.h>

#include <QWidget>

namespace ZelkoConsole {
namespace {

constexpr int sideMargin = 6;
constexpr int rowMargin = 8; // above and below together

} // namespace

void RoomyStyle::apply(QWidget* view)
{
    auto* const style = new RoomyStyle;
    style->setParent(view);
    view->setStyle(style);
}

int RoomyStyle::pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const
{
    return metric == PM_FocusFrameHMargin || metric == PM_HeaderMargin
               ? sideMargin
               : QProxyStyle::pixelMetric(metric, option, widget);
}

QSize RoomyStyle::sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& size,
                                   const QWidget* widget) const
{
    const QSize wanted = QProxyStyle::sizeFromContents(type, option, size, widget);
    return type == CT_ItemViewItem && widget ? wanted.expandedTo(QSize(0, rowHeight(widget))) : wanted;
}

int RoomyStyle::rowHeight(const QWidget* view)
{
    return view->fontMetrics().height() + rowMargin;
}

} // namespace ZelkoConsole
