#include <zelkoguibase/filter/checkitemdelegate.h>

#include "framedcheckbox_p.h"

#include <QMouseEvent>

namespace ZelkoGUI::Filter {
namespace {

bool isLeftPress(const QEvent& event)
{
    return event.type() == QEvent::MouseButtonPress &&
           static_cast<const QMouseEvent&>(event).button() == Qt::LeftButton;
}

// An item that could be selected as well would do two things at one press.
bool canBeToggled(Qt::ItemFlags flags)
{
    constexpr Qt::ItemFlags needed = Qt::ItemIsUserCheckable | Qt::ItemIsEnabled;
    return (flags & (needed | Qt::ItemIsSelectable)) == needed;
}

} // namespace

EnumerationFilterWidgetBase::CheckItemDelegate::CheckItemDelegate(QObject* parent)
    : QStyledItemDelegate(parent)
{}

EnumerationFilterWidgetBase::CheckItemDelegate::~CheckItemDelegate() = default;

QSize EnumerationFilterWidgetBase::CheckItemDelegate::sizeHint(const QStyleOptionViewItem& option,
                                                               const QModelIndex& index) const
{
    constexpr int room = 6; // above and below together
    return QStyledItemDelegate::sizeHint(option, index) + QSize(0, room);
}

bool EnumerationFilterWidgetBase::CheckItemDelegate::editorEvent(QEvent* event, QAbstractItemModel* model,
                                                                 const QStyleOptionViewItem& option,
                                                                 const QModelIndex& index)
{
    if (QStyledItemDelegate::editorEvent(event, model, option, index)) {
        return true;
    }
    const QVariant state = index.data(Qt::CheckStateRole);
    if (!isLeftPress(*event) || !canBeToggled(model->flags(index)) || !(option.state & QStyle::State_Enabled) ||
        !state.isValid()) {
        return false;
    }
    return model->setData(index, state.toInt() == Qt::Checked ? Qt::Unchecked : Qt::Checked, Qt::CheckStateRole);
}

void EnumerationFilterWidgetBase::CheckItemDelegate::initStyleOption(QStyleOptionViewItem* option,
                                                                     const QModelIndex& index) const
{
    QStyledItemDelegate::initStyleOption(option, index);
    showFrameOnDark(option->palette);
}

} // namespace ZelkoGUI::Filter
