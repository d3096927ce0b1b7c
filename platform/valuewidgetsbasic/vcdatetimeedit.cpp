#include <valuewidgetsbasic/vcdatetimeedit.h>

#include <observerbase/datetime.h>

#include <QScopedValueRollback>

#include <algorithm>

VCDateTimeEdit::VCDateTimeEdit(QWidget* parent)
    : QDateTimeEdit(parent)
{
    connect(this, &QDateTimeEdit::dateTimeChanged, this, &VCDateTimeEdit::writeValue);
}

VCDateTimeEdit::~VCDateTimeEdit() = default;

void VCDateTimeEdit::SetDateTime_ValuePath(const QString& path)
{
    m_value.GetFromTree(path);
    showValue();
}

QString VCDateTimeEdit::GetDateTime_ValuePath() const
{
    return m_value ? m_value->GetPathName() : QString();
}

void VCDateTimeEdit::Update(Observable*, TChangeCode code)
{
    if (code == TChangeCode::ValueChanged || code == TChangeCode::ValueRefreshed) {
        showValue();
    }
}

// What the limits of the editor hold back is not written to the value: it is shown otherwise, not entered otherwise.
void VCDateTimeEdit::showValue()
{
    if (m_value) {
        const QScopedValueRollback showing(m_isShowing, true);
        setDateTime(momentOfValue());
    }
}

QDateTime VCDateTimeEdit::momentOfValue() const
{
    const double moment = std::max(m_value->GetValue(), 0.0);
    return Vorn::DateTime::fromMicroseconds(static_cast<quint64>(std::min(moment, 1.8e19)));
}

// Limits that are set hold the editor's time back, and the Enter key tells of a time that is as it was: who sees in the
// editor what there was to be seen has entered nothing.
bool VCDateTimeEdit::isShown(const QDateTime& time) const
{
    return time == std::clamp(momentOfValue(), minimumDateTime(), std::max(minimumDateTime(), maximumDateTime()));
}

void VCDateTimeEdit::writeValue(const QDateTime& time)
{
    if (!m_value || m_isShowing || isShown(time)) {
        return;
    }
    const auto moment = static_cast<double>(Vorn::DateTime::toMicroseconds(time));
    if (m_value->GetState() == TValueState::Locked || !m_value->SetValue(moment, this)) {
        showValue();
    }
}
