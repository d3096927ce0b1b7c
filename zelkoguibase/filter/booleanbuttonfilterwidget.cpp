#include <zelkoguibase/filter/booleanbuttonfilterwidget.h>

#include "switchededitor_p.h"

#include <zelkoguibase/filter/booleanfiltercondition.h>

#include <QPushButton>

namespace ZelkoGUI::Filter {

class BooleanButtonFilterWidget::Private
{
public:
    bool value() const { return row.condition && row.condition->value(); }
    void display(bool on) const;

    SwitchedEditor<BooleanFilterCondition, QPushButton> row;
    QPair<QString, QIcon> falseLabel{BooleanButtonFilterWidget::tr("false"), QIcon()};
    QPair<QString, QIcon> trueLabel{BooleanButtonFilterWidget::tr("true"), QIcon()};
};

void BooleanButtonFilterWidget::Private::display(bool on) const
{
    const QPair<QString, QIcon>& label = on ? trueLabel : falseLabel;
    row.editor->setChecked(on);
    row.editor->setText(label.first);
    row.editor->setAccessibleDescription(label.first);
    row.editor->setIcon(label.second);
}

BooleanButtonFilterWidget::BooleanButtonFilterWidget(BooleanFilterCondition* condition, QWidget* parent)
    : QWidget(parent)
    , d(std::make_unique<Private>())
{
    setObjectName(QStringLiteral("BooleanButtonFilterWidget"));
    d->row = {condition, makeEnableCheck(tr("Enable filter"), this), new QPushButton(this)};
    d->row.editor->setObjectName(QStringLiteral("PushButton"));
    d->row.editor->setAccessibleName(tr("Value to show"));
    d->row.editor->setCheckable(true);
    d->row.addTo(this);
    d->display(d->value());
    d->row.connectTo(this, &BooleanButtonFilterWidget::sl_validateFilter,
                     &BooleanButtonFilterWidget::sl_filterContentChanged);
    connect(d->row.editor, &QPushButton::toggled, this, &BooleanButtonFilterWidget::sl_toggled);
    sl_validateFilter();
}

BooleanButtonFilterWidget::~BooleanButtonFilterWidget() = default;

void BooleanButtonFilterWidget::setLabels(const QPair<QString, QIcon>& falseLabel,
                                          const QPair<QString, QIcon>& trueLabel)
{
    d->falseLabel = falseLabel;
    d->trueLabel = trueLabel;
    d->display(d->value());
}

void BooleanButtonFilterWidget::sl_validateFilter()
{
    d->row.validateIn(this);
}

void BooleanButtonFilterWidget::sl_toggled(bool on)
{
    if (d->row.condition) {
        d->row.condition->setValue(on);
    }
    d->display(on);
}

void BooleanButtonFilterWidget::sl_filterContentChanged()
{
    d->row.loadWith([this] { d->display(d->value()); });
}

void BooleanButtonFilterWidget::resetFilter()
{
    d->row.switchOff();
}

} // namespace ZelkoGUI::Filter
