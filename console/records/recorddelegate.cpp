#include <console/records/recorddelegate.h>

#include <widgetbase/plaintooltip.h>

#include <QAbstractItemView>
#include <QHelpEvent>

namespace ZelkoConsole {

bool RecordDelegate::helpEvent(QHelpEvent* event, QAbstractItemView* view, const QStyleOptionViewItem& option,
                               const QModelIndex& index)
{
    if (event->type() != QEvent::ToolTip || sizeHint(option, index).width() <= option.rect.width()) {
        return QStyledItemDelegate::helpEvent(event, view, option, index);
    }
    guiHelper::showPlainToolTip(event->globalPos(), index.data().toString(), view, option.rect);
    return true;
}

} // namespace ZelkoConsole
