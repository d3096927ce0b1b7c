#pragma once

#include <QHash>
#include <QObject>

class QItemSelection;
class QItemSelectionModel;
class QModelIndex;

namespace ZelkoConsole {

/// What is selected, in one line: the number of records with their size and duration together.
///
/// Follows selection and records. A record that changes costs the same however many are selected, and so does one that
/// is selected or no longer is, where the selection consists of few ranges.
class SelectionSummary : public QObject
{
    Q_OBJECT

public:
    /// `selection` outlives the summary and is one of whole rows, in a record list or a proxy over one; its model stays
    /// the same.
    explicit SelectionSummary(const QItemSelectionModel* selection, QObject* parent = nullptr);

    /// Empty when nothing is selected.
    QString text() const;

Q_SIGNALS:
    /// `text()` may give something else than before.
    void changed();

private:
    struct Amount
    {
        quint64 size = 0;
        quint64 duration = 0;

        bool operator==(const Amount&) const = default;
    };

    static Amount amountOf(const QModelIndex& row);
    void count(Amount& counted, const Amount& amount);
    void take(const QItemSelection& selected);
    void drop(const QItemSelection& deselected);
    void dropUntold(const QItemSelection& selection);
    void update(const QModelIndex& topLeft, const QModelIndex& bottomRight);
    void clear();

    QHash<QString, Amount> m_amounts; // as they are counted in the total, by record ID
    Amount m_total;
};

} // namespace ZelkoConsole
