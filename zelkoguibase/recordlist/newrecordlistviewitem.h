#pragma once

#include <zelkoguibase/zelkoguibase_export.h>

#include <widgetbase/sortlistviewitem.h>

#include <QObject>

class NewRecordListView;

/// The base of the items of a NewRecordListView: it writes the values of a record into cells as texts, with the keys
/// that they are sorted by. Times are microseconds since the epoch, sizes bytes, frequencies hertz. The decimal point
/// is a point in every locale. GUI thread only.
class ZELKOGUIBASE_EXPORT NewRecordListViewItem : public QObject, public SortListViewItem
{
    Q_OBJECT

public:
    /// An item of `list`, null for none, with an empty cell for each of its columns. The flag is part of the signature
    /// that applications derive from and has no effect.
    NewRecordListViewItem(SortListView* list, bool);
    ~NewRecordListViewItem() override;

    // Of the item in its list; a QObject has a parent too.
    using SortListViewItem::parent;

    /// Where the record begins and ends on its medium; 0 at first.
    qint64 StartPosition() const { return m_startPosition; }
    qint64 StopPosition() const { return m_stopPosition; }

    /// "hh:mm:ss" between the whole seconds of two times; never more than "99:59:59", which stands for a stop before
    /// the start as well.
    static QString calculateDurationString(const quint64& start, const quint64& stop);

protected:
    /// The setters for cells do nothing for a column that the list does not show, and in a list that is no
    /// NewRecordListView. A cell is sorted by its text unless its setter says otherwise; what an earlier setter had it
    /// sorted by is forgotten.
    void SetStringValue(const QString& value, int column);

    /// With three decimals.
    void SetFloatValue(double value, int column);

    /// As B, kB, MB or GB in steps of 1024; sorted by bytes.
    void SetRecordSize(qint64 size, int column);

    /// Local time, "--:--:--" for 0. What `signalTime` and `isPlain` do is said at updateTimeInfo().
    void SetTime(const quint64& time, int column, bool signalTime, bool isPlain);

    /// As calculateDurationString() has it.
    void SetDuration(const quint64& start, const quint64& stop, int column, bool signalTime, bool isPlain);

    /// As Hz, kHz, MHz or GHz in steps of 1000, empty for 0; sorted by hertz.
    void SetFrequencyOrBandwidthValue(quint64 value, int column);

    /// Keeps a position under the number that the list has for start or stop position; nothing for any other.
    void SetStartStopPosition(qint64 position, int column);

    /// The list, null if it is another kind of list or none.
    NewRecordListView* recordListView();
    const NewRecordListView* recordListView() const;

private:
    bool isShown(int column) const;
    void setQuantity(int column, const QString& text, const QString& sortKey);
    void updateTimeInfo(int column, bool signalTime, bool isPlain);

    qint64 m_startPosition = 0;
    qint64 m_stopPosition = 0;
};
