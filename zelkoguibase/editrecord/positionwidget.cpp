#include <zelkoguibase/editrecord/positionwidget.h>

#include "../bookmarks/bookmarktimes_p.h"

#include <zelkoguibase/bookmarks/bookmarkmodel.h>
#include <zelkoguibase/replaybar/replaybarwidget.h>

#include <QComboBox>
#include <QDateTimeEdit>
#include <QHBoxLayout>
#include <QLabel>
#include <QSignalBlocker>
#include <QToolButton>

#include <algorithm>

namespace ZelkoGUI {

using PositionWidget = CopyRecordWidget::PositionWidget;

CopyRecordWidget::PositionWidget::PositionWidget(QWidget* parent, bool isStart, ReplayBarWidget* replayBar)
    : QWidget(parent)
    , m_isStart(isStart)
{
    auto* const row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    createEdit(*row);
    createButtons(*row, replayBar);
    createCombo(*row);
    setBookmarks({});
    setRange(0, 0, false);
}

CopyRecordWidget::PositionWidget::~PositionWidget() = default;

// As wide for one end as for the other, so that what follows stands in columns.
void PositionWidget::createEdit(QHBoxLayout& row)
{
    const QString start = tr("Start:");
    const QString stop = tr("Stop:");
    auto* const label = new QLabel(m_isStart ? start : stop, this);
    label->setMinimumWidth(std::max(fontMetrics().horizontalAdvance(start), fontMetrics().horizontalAdvance(stop)));
    m_dateTimeEdit = new QDateTimeEdit(this);
    m_dateTimeEdit->setObjectName(QStringLiteral("DateTimeEdit"));
    label->setBuddy(m_dateTimeEdit);
    row.addWidget(label);
    row.addWidget(m_dateTimeEdit);
    connect(m_dateTimeEdit, &QDateTimeEdit::dateTimeChanged, this, &PositionWidget::sl_dateTimeChanged);
}

// Style sheets know the first button by its misspelt name, and resources the icons of the ends without an extension.
void PositionWidget::createButtons(QHBoxLayout& row, ReplayBarWidget* replayBar)
{
    if (replayBar) {
        m_setCurrentButton = createButton(row, "SetCurrentPostionButton", ":/Zelko/CopyRecord/SetCurrentPos.svg",
                                          tr("set to current record position"));
        connect(m_setCurrentButton, &QToolButton::clicked, this, &PositionWidget::sl_setToCurrentPosition);
        connect(replayBar, &ReplayBarWidget::si_currentPosChanged, this, &PositionWidget::sl_currentPosChanged);
    }
    m_resetButton = m_isStart ? createButton(row, "ResetToStartButton", ":/Zelko/CopyRecord/ResetToStart",
                                             tr("reset to record start position"))
                              : createButton(row, "ResetToEndButton", ":/Zelko/CopyRecord/ResetToEnd",
                                             tr("reset to record stop position"));
    connect(m_resetButton, &QToolButton::clicked, this, &PositionWidget::sl_resetPosition);
}

QToolButton* PositionWidget::createButton(QHBoxLayout& row, const char* name, const char* icon, const QString& text)
{
    auto* const button = new QToolButton(this);
    button->setObjectName(QLatin1String(name));
    button->setIcon(QIcon(QLatin1String(icon)));
    button->setToolTip(text);
    button->setAccessibleName(text);
    row.addWidget(button);
    return button;
}

// A bookmark may have a text of any length, for which the window need not have room.
void PositionWidget::createCombo(QHBoxLayout& row)
{
    const QString text = tr("select a bookmark position");
    m_bookmarkCombo = new QComboBox(this);
    m_bookmarkCombo->setObjectName(QStringLiteral("SelectBookmarkCombobox"));
    m_bookmarkCombo->setToolTip(text);
    m_bookmarkCombo->setAccessibleName(text);
    m_bookmarkCombo->setSizeAdjustPolicy(QComboBox::AdjustToContents);
    m_bookmarkCombo->setMinimumWidth(16 * fontMetrics().averageCharWidth());
    row.addWidget(m_bookmarkCombo, 1);
    connect(m_bookmarkCombo, &QComboBox::currentIndexChanged, this, &PositionWidget::sl_bookmarkSelectionChanged);
}

// The editor's own signals would come for each step of it, and none where the time stays.
void PositionWidget::setRange(quint64 minimum, quint64 maximum, bool enabled)
{
    m_minimum = minimum;
    m_maximum = maximum;
    const QDateTime first = BookmarkModel::datetimeFromEntry(minimum);
    const QDateTime last = BookmarkModel::datetimeFromEntry(maximum);
    {
        const QSignalBlocker blocker(m_dateTimeEdit);
        m_dateTimeEdit->setDisplayFormat(BookmarkTimes::timeFormat(first, last));
        m_dateTimeEdit->setDateTimeRange(first, last);
    }
    setEnabled(enabled);
    setEdited(farEnd());
    sl_dateTimeChanged(m_dateTimeEdit->dateTime());
}

void PositionWidget::setBookmarks(const QList<Bookmark>& bookmarks)
{
    const QSignalBlocker blocker(m_bookmarkCombo);
    m_bookmarkCombo->clear();
    int number = 0;
    for (const auto& [time, text] : bookmarks) {
        m_bookmarkCombo->addItem(QStringLiteral("%1: %2").arg(QString::number(++number), text),
                                 BookmarkModel::datetimeFromEntry(time));
    }
    m_bookmarkCombo->setVisible(!bookmarks.isEmpty());
    matchCombo();
}

void PositionWidget::setValueSilently(quint64 value)
{
    setEdited(value);
    take(m_dateTimeEdit->dateTime());
    updateButtons();
}

void PositionWidget::setEdited(quint64 time)
{
    const QSignalBlocker blocker(m_dateTimeEdit);
    m_dateTimeEdit->setDateTime(BookmarkModel::datetimeFromEntry(time));
}

void PositionWidget::take(const QDateTime& time)
{
    m_value = BookmarkModel::toBookmarkEntry(time);
    matchCombo();
}

// Of several bookmarks at a time the first one, unless the user has chosen another.
void PositionWidget::matchCombo()
{
    const QDateTime time = m_dateTimeEdit->dateTime();
    if (m_bookmarkCombo->currentData().toDateTime() == time) {
        return;
    }
    int index = 0;
    while (index < m_bookmarkCombo->count() && m_bookmarkCombo->itemData(index).toDateTime() != time) {
        ++index;
    }
    const QSignalBlocker blocker(m_bookmarkCombo);
    m_bookmarkCombo->setCurrentIndex(index < m_bookmarkCombo->count() ? index : -1);
}

void PositionWidget::updateButtons()
{
    const quint64 current = m_currentPosition / 1000;
    const quint64 value = m_value / 1000;
    if (m_setCurrentButton) {
        const bool isWithin = current >= m_minimum / 1000 && current <= m_maximum / 1000;
        m_setCurrentButton->setEnabled(isWithin && current != value);
    }
    m_resetButton->setEnabled(value != farEnd() / 1000);
}

void PositionWidget::sl_currentPosChanged(quint64 position)
{
    m_currentPosition = position;
    updateButtons();
}

// NOLINTNEXTLINE(performance-unnecessary-value-param): the slot has the type of its declaration in the class's
// contract.
void PositionWidget::sl_dateTimeChanged(QDateTime dateTime)
{
    take(dateTime);
    Q_EMIT si_valueChanged(m_value);
    updateButtons();
}

void PositionWidget::sl_resetPosition()
{
    m_dateTimeEdit->setDateTime(BookmarkModel::datetimeFromEntry(farEnd()));
}

void PositionWidget::sl_setToCurrentPosition()
{
    m_dateTimeEdit->setDateTime(BookmarkModel::datetimeFromEntry(m_currentPosition));
}

// A bookmark outside of the record moves the end as far as it may go, which need not be at all.
void PositionWidget::sl_bookmarkSelectionChanged(int index)
{
    if (index >= 0) {
        m_dateTimeEdit->setDateTime(m_bookmarkCombo->itemData(index).toDateTime());
        matchCombo();
    }
}

} // namespace ZelkoGUI
