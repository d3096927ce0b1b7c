#pragma once

#include <zelkoguibase/filter/ifilterui.h>
#include <zelkoguibase/filter/numberfiltercondition.h>

#include <QWidget>

#include <memory>

class QCheckBox;

namespace ZelkoGUI::Filter {

/// Edits a range of durations to the second, or one of local days. Each limit can be switched on by itself. What is
/// entered counts whole: the last second of a duration, the last day. GUI thread only.
///
/// So an upper limit that is edited ends in .999, of the second that is shown or of the last one of the day, whatever
/// milliseconds it had before. One that was not edited stays what it is: the one that the widget starts with, which
/// is 23:59:59.000 for durations and the first moment of today for days, and one that was restored.
class ZELKOGUIBASE_EXPORT DateTimeFilterWidget : public QWidget, public IFilterUI
{
    Q_OBJECT

public:
    /// Durations, from 0 to 23:59:59. `conditions` are the lower and the upper limit; any other number of them leaves
    /// an empty widget. They are switched off. They stay the caller's, and may die before the widget, which is
    /// disabled then.
    DateTimeFilterWidget(const QList<NumberFilterCondition<QTime>*>& conditions, QWidget* parent);

    /// The same for days, both limits being today.
    DateTimeFilterWidget(const QList<NumberFilterCondition<QDateTime>*>& conditions, QWidget* parent);
    ~DateTimeFilterWidget() override;

    /// Switches both limits off. The times stay. When one limit is gone the other stays as it is, on or off: what is
    /// left of a range is nothing that the editor could show.
    void resetFilter() override;

private Q_SLOTS:
    void sl_bottomTimeChanged(const QTime& time);
    void sl_topTimeChanged(const QTime& time);
    void sl_bottomDateTimeChanged(const QDateTime& dateTime);
    void sl_topDateTimeChanged(const QDateTime& dateTime);
    void sl_validateFilter();
    void sl_filterContentChanged();

private:
    class Private;

    QCheckBox* makeLowerCheck();
    QCheckBox* makeUpperCheck();
    void finish(const QString& editorName);

    const std::unique_ptr<Private> d;
};

} // namespace ZelkoGUI::Filter
