#pragma once

#include <QSortFilterProxyModel>
#include <QTimer>

#include <vector>

namespace ZelkoConsole {

/// A record list in the order of its sort keys, kept in order while records change. Texts are compared without regard
/// to case, and the headers of quantities stand above them, on the right.
///
/// While a list is loaded it shows new rows twice a second only, and puts all of them in order then.
class RecordSortModel : public QSortFilterProxyModel
{
    Q_OBJECT

public:
    explicit RecordSortModel(QObject* parent = nullptr);
    ~RecordSortModel() override;

    /// Whether many rows come one after the other; when that ends all of them are shown in order. Not at first.
    void setLoading(bool loading);
    bool isLoading() const { return !dynamicSortFilter(); }

    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;
    void sort(int column, Qt::SortOrder order = Qt::AscendingOrder) override;

protected:
    bool lessThan(const QModelIndex& left, const QModelIndex& right) const override;
    bool filterAcceptsRow(int sourceRow, const QModelIndex& sourceParent) const override;

private:
    struct Key
    {
        double number = 0;
        QString text;
    };

    int sourceRows() const;
    Key keyOf(int sourceRow, int column) const;
    template <typename Sort>
    void withKeys(int column, Sort sort);

    void pause();
    void renew();
    void showHidden();

    std::vector<Key> m_keys; // of the rows of the source, while all of them are sorted; else empty
    QTimer m_pause;          // runs while new rows are not shown
    int m_shown = 0;         // rows of the source that are shown meanwhile
};

} // namespace ZelkoConsole
