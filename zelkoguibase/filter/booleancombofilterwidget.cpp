#include <zelkoguibase/filter/booleancombofilterwidget.h>

#include "switchededitor_p.h"

#include <zelkoguibase/filter/booleanfiltercondition.h>

#include <QComboBox>

namespace ZelkoGUI::Filter {

class BooleanComboFilterWidget::Private
{
public:
    void display() const { row.editor->setCurrentIndex(row.condition && row.condition->value() ? 1 : 0); }

    SwitchedEditor<BooleanFilterCondition, QComboBox> row;
};

BooleanComboFilterWidget::BooleanComboFilterWidget(BooleanFilterCondition* condition, const QString& falseText,
                                                   const QString& trueText, QWidget* parent)
    : QWidget(parent)
    , d(std::make_unique<Private>())
{
    setObjectName(QStringLiteral("BooleanComboFilterWidget"));
    d->row = {condition, makeEnableCheck(tr("Enable filter"), this), new QComboBox(this)};
    d->row.editor->setObjectName(QStringLiteral("Selection"));
    d->row.editor->setAccessibleName(tr("Value to show"));
    d->row.editor->addItems({falseText, trueText});
    d->row.addTo(this);
    d->display();
    d->row.connectTo(this, &BooleanComboFilterWidget::sl_validateFilter,
                     &BooleanComboFilterWidget::sl_filterContentChanged);
    connect(d->row.editor, &QComboBox::currentIndexChanged, this, &BooleanComboFilterWidget::sl_selectionChanged);
    sl_validateFilter();
}

BooleanComboFilterWidget::~BooleanComboFilterWidget() = default;

void BooleanComboFilterWidget::sl_validateFilter()
{
    d->row.validateIn(this);
}

void BooleanComboFilterWidget::sl_selectionChanged(int index)
{
    if (d->row.condition) {
        d->row.condition->setValue(index >= 1);
    }
}

void BooleanComboFilterWidget::sl_filterContentChanged()
{
    d->row.loadWith([this] { d->display(); });
}

void BooleanComboFilterWidget::resetFilter()
{
    d->row.switchOff();
}

} // namespace ZelkoGUI::Filter
