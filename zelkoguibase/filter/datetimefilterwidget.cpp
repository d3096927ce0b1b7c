#include <zelkoguibase/filter/datetimefilterwidget.h>

#include "dayedit_p.h"
#include "rangelimits_p.h"

#include <QTimeEdit>

namespace ZelkoGUI::Filter {
namespace {

constexpr int restOfSecond = 999; // milliseconds

QTime firstSecond()
{
    return QTime(0, 0, 0);
}

QTime lastSecond()
{
    return QTime(23, 59, 59);
}

/// The last moment of the second that an editor shows. What a saved limit had below the second is shown nowhere, so an
/// upper end that is edited loses it first: with it, it would reach into the next second. A lower end keeps it.
QTime endOfSecond(const QTime& time)
{
    return QTime(time.hour(), time.minute(), time.second()).addMSecs(restOfSecond);
}

QDateTime atTime(QDateTime moment, const QTime& time)
{
    moment.setTime(time);
    return moment;
}

} // namespace

class DateTimeFilterWidget::Private
{
public:
    using Limit = SwitchedEditor<AbstractFilterCondition, QDateTimeEdit>;

    explicit Private(bool editsTimes)
        : timeOnly(editsTimes)
    {}

    /// Null when the condition is gone, and for another kind of limit.
    template <typename T>
    static NumberFilterCondition<T>* condition(const Limit& limit)
    {
        return dynamic_cast<NumberFilterCondition<T>*>(limit.condition.data());
    }

    template <typename T>
    static void setValue(const Limit& limit, const T& value)
    {
        if (auto* const edited = condition<T>(limit)) {
            edited->setValue(value);
        }
    }

    void loadEditor(const Limit& limit) const;

    RangeLimits<AbstractFilterCondition, QDateTimeEdit> limits;
    const bool timeOnly;
};

void DateTimeFilterWidget::Private::loadEditor(const Limit& limit) const
{
    if (timeOnly) {
        limit.editor->setTime(condition<QTime>(limit)->value());
    } else {
        limit.editor->setDate(condition<QDateTime>(limit)->value().date());
    }
}

DateTimeFilterWidget::DateTimeFilterWidget(const QList<NumberFilterCondition<QTime>*>& conditions, QWidget* parent)
    : QWidget(parent)
    , d(std::make_unique<Private>(true))
{
    setObjectName(QStringLiteral("TimeFilterWidget"));
    if (conditions.size() != 2) {
        return;
    }
    const auto makeEdit = [this](const QTime& time) {
        auto* const edit = new QTimeEdit(this);
        edit->setDisplayFormat(QStringLiteral("hh:mm:ss"));
        edit->setTime(time);
        return edit;
    };
    d->limits.lower = {conditions[0], makeLowerCheck(), makeEdit(firstSecond())};
    d->limits.upper = {conditions[1], makeUpperCheck(), makeEdit(lastSecond())};
    startRange(conditions, firstSecond(), lastSecond());
    finish(QStringLiteral("TimeEdit"));
    connect(d->limits.lower.editor, &QDateTimeEdit::timeChanged, this, &DateTimeFilterWidget::sl_bottomTimeChanged);
    connect(d->limits.upper.editor, &QDateTimeEdit::timeChanged, this, &DateTimeFilterWidget::sl_topTimeChanged);
}

DateTimeFilterWidget::DateTimeFilterWidget(const QList<NumberFilterCondition<QDateTime>*>& conditions, QWidget* parent)
    : QWidget(parent)
    , d(std::make_unique<Private>(false))
{
    setObjectName(QStringLiteral("DateTimeFilterWidget"));
    if (conditions.size() != 2) {
        return;
    }
    const auto makeEdit = [this, today = QDate::currentDate()] {
        auto* const edit = new DayEdit(this);
        edit->setDisplayFormat(QStringLiteral("dd.MM.yyyy"));
        edit->setDate(today);
        return edit;
    };
    d->limits.lower = {conditions[0], makeLowerCheck(), makeEdit()};
    d->limits.upper = {conditions[1], makeUpperCheck(), makeEdit()};
    startRange(conditions, d->limits.lower.editor->dateTime(), d->limits.upper.editor->dateTime());
    finish(QStringLiteral("DateTimeEdit"));
    connect(d->limits.lower.editor, &QDateTimeEdit::dateTimeChanged, this,
            &DateTimeFilterWidget::sl_bottomDateTimeChanged);
    connect(d->limits.upper.editor, &QDateTimeEdit::dateTimeChanged, this,
            &DateTimeFilterWidget::sl_topDateTimeChanged);
}

DateTimeFilterWidget::~DateTimeFilterWidget() = default;

QCheckBox* DateTimeFilterWidget::makeLowerCheck()
{
    return makeLimitCheck(tr("from"), QStringLiteral("LowerLimitCheckbox"), this);
}

QCheckBox* DateTimeFilterWidget::makeUpperCheck()
{
    return makeLimitCheck(tr("to"), QStringLiteral("UpperLimitCheckbox"), this);
}

void DateTimeFilterWidget::finish(const QString& editorName)
{
    d->limits.lower.editor->setObjectName(QStringLiteral("LowerLimit") + editorName);
    d->limits.lower.editor->setAccessibleName(tr("Lower limit"));
    d->limits.upper.editor->setObjectName(QStringLiteral("UpperLimit") + editorName);
    d->limits.upper.editor->setAccessibleName(tr("Upper limit"));
    d->limits.addTo(new QHBoxLayout(this));
    d->limits.connectTo(this, &DateTimeFilterWidget::sl_validateFilter, &DateTimeFilterWidget::sl_filterContentChanged);
    sl_validateFilter();
}

void DateTimeFilterWidget::sl_bottomTimeChanged(const QTime& time)
{
    d->setValue(d->limits.lower, time);
}

void DateTimeFilterWidget::sl_topTimeChanged(const QTime& time)
{
    d->setValue(d->limits.upper, endOfSecond(time));
}

void DateTimeFilterWidget::sl_bottomDateTimeChanged(const QDateTime& dateTime)
{
    d->setValue(d->limits.lower, atTime(dateTime, firstSecond()));
}

void DateTimeFilterWidget::sl_topDateTimeChanged(const QDateTime& dateTime)
{
    d->setValue(d->limits.upper, atTime(dateTime, endOfSecond(lastSecond())));
}

void DateTimeFilterWidget::sl_validateFilter()
{
    d->limits.validateIn(this);
}

void DateTimeFilterWidget::sl_filterContentChanged()
{
    d->limits.loadIn(this, [this] {
        d->loadEditor(d->limits.lower);
        d->loadEditor(d->limits.upper);
    });
}

void DateTimeFilterWidget::resetFilter()
{
    d->limits.switchOff();
}

} // namespace ZelkoGUI::Filter
