#include <zelkoguibase/recordlist/selectheaderview.h>

#include <QPainter>
#include <QStyle>

#include <algorithm>

namespace ZelkoGUI {

SelectHeaderView::SelectHeaderView(const QIcon& marker, Qt::Orientation orientation, QWidget* parent)
    : QHeaderView(orientation, parent)
    , m_marker(marker)
{
    setHighlightSections(true);
    setSectionsClickable(true);
}

SelectHeaderView::SelectHeaderView(Qt::Orientation orientation, QWidget* parent)
    : SelectHeaderView(QIcon(QStringLiteral(":/Zelko/RecordList/SelectMarker.svg")), orientation, parent)
{}

SelectHeaderView::~SelectHeaderView() = default;

void SelectHeaderView::paintSection(QPainter* painter, const QRect& rect, int section) const
{
    if (!isMarked(section)) {
        QHeaderView::paintSection(painter, rect, section);
        return;
    }
    painter->save();
    QHeaderView::paintSection(painter, rect, section);
    painter->restore();
    const QSize size(markerSize(), markerSize());
    const QPixmap marker = m_marker.pixmap(size, devicePixelRatioF(), isEnabled() ? QIcon::Normal : QIcon::Disabled);
    style()->drawItemPixmap(painter, rect.adjusted(0, 0, -margin(), 0),
                            Qt::AlignRight | Qt::AlignAbsolute | Qt::AlignVCenter, marker);
}

QSize SelectHeaderView::sectionSizeFromContents(int section) const
{
    const int room = markerSize() + margin();
    const QSize size = QHeaderView::sectionSizeFromContents(section);
    return {size.width() + room, std::max(size.height(), room)};
}

// The ranges of the selection are asked, not its indexes: a list in which all of 100,000 records are selected has a few
// of the one and a million of the other, and this runs for each section that is painted.
bool SelectHeaderView::isMarked(int section) const
{
    const QItemSelectionModel* const selection = selectionModel();
    if (selection == nullptr) {
        return false;
    }
    return orientation() == Qt::Vertical ? selection->rowIntersectsSelection(section, rootIndex())
                                         : selection->columnIntersectsSelection(section, rootIndex());
}

int SelectHeaderView::markerSize() const
{
    return style()->pixelMetric(QStyle::PM_SmallIconSize, nullptr, this);
}

int SelectHeaderView::margin() const
{
    return style()->pixelMetric(QStyle::PM_HeaderMargin, nullptr, this);
}

} // namespace ZelkoGUI
