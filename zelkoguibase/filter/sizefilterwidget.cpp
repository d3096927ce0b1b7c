#include <zelkoguibase/filter/sizefilterwidget.h>

#include "rangelimits_p.h"
#include "wholenumbervalidator_p.h"

#include <QComboBox>
#include <QLineEdit>

#include <algorithm>
#include <cmath>
#include <limits>

namespace ZelkoGUI::Filter {
namespace {

constexpr int largestNumber = std::numeric_limits<int>::max();
constexpr double startOfRange = 1;
constexpr double endOfRange = 100;

/// `number` without its fraction; the nearest one that there is for a number beyond all whole ones, and 0 for none.
qint64 cutToWhole(double number)
{
    constexpr double beyond = 9223372036854775808.0; // 2 to the 63rd
    if (std::isnan(number)) {
        return 0;
    }
    if (std::abs(number) >= beyond) {
        return number < 0 ? std::numeric_limits<qint64>::min() : std::numeric_limits<qint64>::max();
    }
    return static_cast<qint64>(number);
}

} // namespace

class SizeFilterWidget::Private
{
public:
    using Condition = NumberFilterCondition<double>;

    void setLimit(Condition* condition, const QString& text) const;
    bool fits(double candidate) const;
    void chooseUnit();
    QString shownNumber(const Condition& condition) const;
    void allowUnits() const;
    void loadEditors();

    RangeLimits<Condition, QLineEdit> limits;
    QList<QPair<QString, double>> units;
    double factor = 1.0;
    QComboBox* unitCombo = nullptr; // without units there is none
};

void SizeFilterWidget::Private::setLimit(Condition* condition, const QString& text) const
{
    if (condition) {
        condition->setValue(static_cast<double>(text.toInt()) * factor);
    }
}

bool SizeFilterWidget::Private::fits(double candidate) const
{
    const auto isNumber = [candidate](const Condition& condition) {
        const double number = condition.value() / candidate;
        return number >= 0 && number <= largestNumber;
    };
    return isNumber(*limits.lower.condition) && isNumber(*limits.upper.condition);
}

// Where no unit fits, the present one is as good as any.
void SizeFilterWidget::Private::chooseUnit()
{
    if (fits(factor)) {
        return;
    }
    const auto unit = std::find_if(units.begin(), units.end(), [this](const auto& each) { return fits(each.second); });
    if (unit != units.end()) {
        factor = unit->second;
        unitCombo->setCurrentIndex(static_cast<int>(unit - units.begin()));
    }
}

QString SizeFilterWidget::Private::shownNumber(const Condition& condition) const
{
    return QString::number(cutToWhole(condition.value() / factor), 10);
}

void SizeFilterWidget::Private::allowUnits() const
{
    if (unitCombo) {
        unitCombo->setEnabled(limits.lower.isSwitchedOn() || limits.upper.isSwitchedOn());
    }
}

void SizeFilterWidget::Private::loadEditors()
{
    const QSignalBlocker unitBlocked(unitCombo);
    allowUnits(); // the check boxes are blocked, so nobody else would
    chooseUnit();
    limits.lower.editor->setText(shownNumber(*limits.lower.condition));
    limits.upper.editor->setText(shownNumber(*limits.upper.condition));
}

SizeFilterWidget::SizeFilterWidget(const QList<NumberFilterCondition<double>*>& conditions,
                                   const QList<QPair<QString, double>>& units, QWidget* parent)
    : QWidget(parent)
    , d(std::make_unique<Private>())
{
    setObjectName(QStringLiteral("SizeFilterWidget"));
    if (conditions.size() != 2) {
        return;
    }
    d->units = units;
    addChildren(conditions);
    startRange(conditions, startOfRange * d->factor, endOfRange * d->factor);
    connectChildren();
    sl_validateFilter();
}

SizeFilterWidget::~SizeFilterWidget() = default;

void SizeFilterWidget::addChildren(const QList<NumberFilterCondition<double>*>& conditions)
{
    auto* const validator = new WholeNumberValidator(this);
    const auto makeEdit = [&](double number, const QString& name, const QString& spokenName) {
        auto* const edit = new QLineEdit(QString::number(number), this);
        edit->setObjectName(name);
        edit->setAccessibleName(spokenName);
        edit->setValidator(validator);
        return edit;
    };
    d->limits.lower = {conditions[0], makeLimitCheck(tr("from"), QStringLiteral("LowerLimitCheckbox"), this),
                       makeEdit(startOfRange, QStringLiteral("LowerLimitEdit"), tr("Lower limit"))};
    d->limits.upper = {conditions[1], makeLimitCheck(tr("to"), QStringLiteral("UpperLimitCheckbox"), this),
                       makeEdit(endOfRange, QStringLiteral("UpperLimitEdit"), tr("Upper limit"))};
    auto* const row = new QHBoxLayout(this);
    d->limits.addTo(row);
    if (!d->units.isEmpty()) {
        addUnits(row);
    }
}

void SizeFilterWidget::addUnits(QHBoxLayout* row)
{
    d->unitCombo = new QComboBox(this);
    d->unitCombo->setObjectName(QStringLiteral("UnitCombobox"));
    d->unitCombo->setAccessibleName(tr("Unit"));
    for (const QPair<QString, double>& unit : std::as_const(d->units)) {
        d->unitCombo->addItem(unit.first);
    }
    d->factor = d->units.constFirst().second;
    row->addWidget(d->unitCombo);
}

void SizeFilterWidget::connectChildren()
{
    d->limits.connectTo(this, &SizeFilterWidget::sl_validateFilter, &SizeFilterWidget::sl_filterContentChanged);
    connect(d->limits.lower.editor, &QLineEdit::textChanged, this, &SizeFilterWidget::sl_bottomChanged);
    connect(d->limits.upper.editor, &QLineEdit::textChanged, this, &SizeFilterWidget::sl_topChanged);
    if (d->unitCombo) {
        connect(d->unitCombo, &QComboBox::currentIndexChanged, this, &SizeFilterWidget::sl_unitChanged);
    }
}

void SizeFilterWidget::sl_unitChanged(int index)
{
    if (index < 0 || index >= d->units.size()) {
        return;
    }
    d->factor = d->units[index].second;
    sl_bottomChanged(d->limits.lower.editor->text());
    sl_topChanged(d->limits.upper.editor->text());
}

void SizeFilterWidget::sl_bottomChanged(const QString& text)
{
    d->setLimit(d->limits.lower.condition, text);
}

void SizeFilterWidget::sl_topChanged(const QString& text)
{
    d->setLimit(d->limits.upper.condition, text);
}

void SizeFilterWidget::sl_validateFilter()
{
    if (d->limits.validateIn(this)) {
        d->allowUnits();
    }
}

void SizeFilterWidget::sl_filterContentChanged()
{
    d->limits.loadIn(this, [this] { d->loadEditors(); });
}

void SizeFilterWidget::resetFilter()
{
    d->limits.switchOff();
}

} // namespace ZelkoGUI::Filter
