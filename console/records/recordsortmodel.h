#pragma once

#include <QSortFilterProxyModel>

namespace ZelkoConsole {

/// A record list in the order of its sort keys, kept in order while records change. Texts are compared without regard
/// to case, and the headers of quantities stand above them, on the right.
class RecordSortModel : public QSortFilterProxyModel
{
    Q_OBJECT

public:
    explicit RecordSortModel(QObject* parent = nullptr);

    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;
};

} // namespace ZelkoConsole
