#pragma once

#include <valuewidgetsbasic/valuewidgetsbasic_export.h>

#include <observerbase/iobserver.h>
#include <valuecore/value.h>
#include <valuecore/valueptr.h>

#include <QDateTimeEdit>

/// An editor for a moment that is a float value of the tree, in microseconds since the epoch. It shows the value in
/// local time, and what a user enters is written to the value, to the millisecond. Where the value is locked or
/// refuses it, the editor shows the value again.
class VALUEWIDGETSBASIC_EXPORT VCDateTimeEdit : public QDateTimeEdit, public IObserver
{
    Q_OBJECT

public:
    explicit VCDateTimeEdit(QWidget* parent = nullptr);
    ~VCDateTimeEdit() override;

    /// Ties the editor to the value at `path` and shows it; to none, and the editor stays as it is, where there is no
    /// float value.
    void SetDateTime_ValuePath(const QString& path);

    /// Of the value that it is tied to; empty without one.
    QString GetDateTime_ValuePath() const;

    void Update(Observable* source, TChangeCode code) override;

private:
    void showValue();
    QDateTime momentOfValue() const;
    bool isShown(const QDateTime& time) const;
    void writeValue(const QDateTime& time);

    ValueObservingPtr<Value<double>> m_value{this};
    bool m_isShowing = false;
};
