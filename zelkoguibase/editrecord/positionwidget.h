#pragma once

#include <zelkoguibase/editrecord/copyrecordwidget.h>

#include <QDateTime>
#include <QList>

#include <utility>

class QComboBox;
class QDateTimeEdit;
class QHBoxLayout;
class QToolButton;

namespace ZelkoGUI {

/// One end of a range of a record: an editor of its time, a button that takes it to the end of the record, one that
/// takes it to the position of a replay bar, and the bookmarks to choose it from. Times are microseconds since the
/// epoch; an end that was edited has whole milliseconds.
class ZELKOGUIBASE_EXPORT CopyRecordWidget::PositionWidget : public QWidget
{
    Q_OBJECT

public:
    using Bookmark = std::pair<quint64, QString>;

    /// Where the range begins, or where it ends. The bar may be null; there is no button for its position then.
    /// Disabled at first, without bookmarks, from 0 to 0.
    PositionWidget(QWidget* parent, bool isStart, ReplayBarWidget* replayBar);
    ~PositionWidget() override;

    /// Takes the end to that of the range. si_valueChanged comes once, whether it is another one or not.
    void setRange(quint64 minimum, quint64 maximum, bool enabled);

    /// What there is to choose from, in this order.
    void setBookmarks(const QList<Bookmark>& bookmarks);

    quint64 value() const { return m_value; }

    /// Without si_valueChanged. Held within the range.
    void setValueSilently(quint64 value);

Q_SIGNALS:
    /// After each change by the user, and by setRange.
    void si_valueChanged(quint64 value);

private Q_SLOTS:
    void sl_currentPosChanged(quint64 position);
    void sl_dateTimeChanged(QDateTime dateTime);
    void sl_resetPosition();
    void sl_setToCurrentPosition();
    void sl_bookmarkSelectionChanged(int index);

private:
    void createEdit(QHBoxLayout& row);
    void createButtons(QHBoxLayout& row, ReplayBarWidget* replayBar);
    void createCombo(QHBoxLayout& row);
    QToolButton* createButton(QHBoxLayout& row, const char* name, const char* icon, const QString& text);
    quint64 farEnd() const { return m_isStart ? m_minimum : m_maximum; }
    void setEdited(quint64 time);
    void take(const QDateTime& time);
    void matchCombo();
    void updateButtons();

    const bool m_isStart;
    QToolButton* m_resetButton = nullptr;
    QToolButton* m_setCurrentButton = nullptr; // null without a replay bar
    QDateTimeEdit* m_dateTimeEdit = nullptr;
    QComboBox* m_bookmarkCombo = nullptr;
    quint64 m_minimum = 0;
    quint64 m_maximum = 0;
    quint64 m_value = 0;
    quint64 m_currentPosition = 0;
};

} // namespace ZelkoGUI
