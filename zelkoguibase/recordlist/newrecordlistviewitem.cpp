#include <zelkoguibase/recordlist/newrecordlistviewitem.h>

#include <zelkoguibase/recordlist/newrecordlistview.h>

#include <observerbase/datetime.h>

#include <algorithm>
#include <array>

namespace {

constexpr quint64 microsecondsPerSecond = 1'000'000;
constexpr quint64 longestDuration = 359'999; // 99:59:59

using Units = std::array<const char*, 4>;

QString withDecimals(double value)
{
    return QStringLiteral("%1").arg(value, 1, 'f', 3);
}

// In the largest unit of which there is at least one; a value below 0 stays in the smallest.
QString withUnit(double value, double step, const Units& units)
{
    std::size_t unit = 0;
    while (unit + 1 < units.size() && value >= step) {
        value /= step;
        ++unit;
    }
    return withDecimals(value) + QLatin1Char(' ') + QLatin1String(units[unit]);
}

QString twoDigits(quint64 number)
{
    return QStringLiteral("%1").arg(number, 2, 10, QLatin1Char('0'));
}

} // namespace

NewRecordListViewItem::NewRecordListViewItem(SortListView* list, bool)
    : SortListViewItem(list)
{
    if (list != nullptr) {
        SetColumnCount(list->columnCount());
    }
}

NewRecordListViewItem::~NewRecordListViewItem() = default;

// Each time loses its own fraction: two times a microsecond apart, with the turn of a second between them, read as a
// second, as the columns of start and stop beside the duration do.
QString NewRecordListViewItem::calculateDurationString(const quint64& start, const quint64& stop)
{
    const quint64 seconds = std::min(stop / microsecondsPerSecond - start / microsecondsPerSecond, longestDuration);
    return QStringLiteral("%1:%2:%3")
        .arg(twoDigits(seconds / 3600), twoDigits(seconds / 60 % 60), twoDigits(seconds % 60));
}

void NewRecordListViewItem::SetStringValue(const QString& value, int column)
{
    if (isShown(column)) {
        RemoveSortKey(column);
        setText(column, value);
    }
}

void NewRecordListViewItem::SetFloatValue(double value, int column)
{
    SetStringValue(withDecimals(value), column);
}

void NewRecordListViewItem::SetRecordSize(qint64 size, int column)
{
    static constexpr Units units{"B", "kB", "MB", "GB"};
    setQuantity(column, withUnit(static_cast<double>(size), 1024, units), QString::number(size));
}

void NewRecordListViewItem::SetFrequencyOrBandwidthValue(quint64 value, int column)
{
    static constexpr Units units{"Hz", "kHz", "MHz", "GHz"};
    const QString text = value == 0 ? QString() : withUnit(static_cast<double>(value), 1000, units);
    setQuantity(column, text, QString::number(value));
}

void NewRecordListViewItem::setQuantity(int column, const QString& text, const QString& sortKey)
{
    if (isShown(column)) {
        SetSortKey(column, sortKey);
        setText(column, text);
    }
}

void NewRecordListViewItem::SetTime(const quint64& time, int column, bool signalTime, bool isPlain)
{
    SetStringValue(time == 0 ? QStringLiteral("--:--:--") : Vorn::DateTime::UTCtoLocalString(time), column);
    updateTimeInfo(column, signalTime, isPlain);
}

void NewRecordListViewItem::SetDuration(const quint64& start, const quint64& stop, int column, bool signalTime,
                                        bool isPlain)
{
    SetStringValue(calculateDurationString(start, stop), column);
    updateTimeInfo(column, signalTime, isPlain);
}

// Where a time comes from: a plain one says nothing about it, one of the signal says so, and one that the recorder had
// to take from its own clock stands out in blue.
void NewRecordListViewItem::updateTimeInfo(int column, bool signalTime, bool isPlain)
{
    if (!isShown(column)) {
        return;
    }
    const bool isOfRecorder = !signalTime && !isPlain;
    setForeground(column, isOfRecorder ? QBrush(Qt::blue) : QBrush());
    setToolTip(column, isPlain        ? QString()
                       : isOfRecorder ? tr("derived from ZELKO system time")
                                      : tr("derived from signal time"));
}

void NewRecordListViewItem::SetStartStopPosition(qint64 position, int column)
{
    const NewRecordListView* const list = recordListView();
    if (list == nullptr) {
        return;
    }
    if (column == list->getColumnNumber(NewRecordListView::ColumnStartPosition)) {
        m_startPosition = position;
    } else if (column == list->getColumnNumber(NewRecordListView::ColumnStopPosition)) {
        m_stopPosition = position;
    }
}

NewRecordListView* NewRecordListViewItem::recordListView()
{
    return qobject_cast<NewRecordListView*>(sortListView());
}

const NewRecordListView* NewRecordListViewItem::recordListView() const
{
    return qobject_cast<const NewRecordListView*>(sortListView());
}

bool NewRecordListViewItem::isShown(int column) const
{
    const NewRecordListView* const list = recordListView();
    return list != nullptr && list->isColumnAvailable(column);
}
