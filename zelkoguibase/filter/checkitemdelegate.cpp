#include <zelkoguibase/filter/checkitemdelegate.h>

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

bool isDark(const QColor& color)
{
    return color.lightness() < 128;
}

} // namespace

EnumerationFilterWidgetBase::CheckItemDelegate::CheckItemDelegate(QObject* parent)
    : QStyledItemDelegate(parent)
{}

EnumerationFilterWidgetBase::CheckItemDelegate::~CheckItemDelegate() = default;

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

// Styles frame the box in a darker shade of the window's colour, which nobody sees on a dark list.
void EnumerationFilterWidgetBase::CheckItemDelegate::initStyleOption(QStyleOptionViewItem* option,
                                                                     const QModelIndex& index) const
{
    QStyledItemDelegate::initStyleOption(option, index);
    if (isDark(option->palette.color(QPalette::Base))) {
        option->palette.setColor(QPalette::Window, option->palette.color(QPalette::Text));
    }
}

} // namespace ZelkoGUI::Filter
