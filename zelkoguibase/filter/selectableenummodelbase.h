#pragma once

#include <zelkoguibase/zelkoguibase_export.h>

#include <QAbstractListModel>
#include <QStringList>

namespace ZelkoGUI::Filter {

/// Values with check boxes, behind two rows that are commands: select all, select none. A command that would change
/// nothing cannot be given, and says how things are instead. No row is selectable. GUI thread only.
///
/// A value that is checked changes what the commands say as well. That is not reported: a QListView shows all of its
/// rows anew for any of them.
class ZELKOGUIBASE_EXPORT SelectableEnumModelBase : public QAbstractListModel
{
    Q_OBJECT

public:
    explicit SelectableEnumModelBase(QObject* parent);
    ~SelectableEnumModelBase() override;

    /// Without the commands.
    virtual int valueCount() const = 0;

    /// Values are numbered from 0. The name of one that does not exist is empty.
    virtual QString valueName(int value) const = 0;

    /// False for a value that does not exist.
    virtual bool isSelected(int value) const = 0;

    /// Reports nothing. A value that does not exist is ignored.
    virtual void setSelected(int value, bool selected) = 0;

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;

    /// Takes check states only. That of a command, whichever it is, gives the command.
    bool setData(const QModelIndex& index, const QVariant& value, int role = Qt::EditRole) override;

    /// There are no headers.
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

    /// Reports all rows, once.
    void setAll(bool selected);

    /// The names of the selected values, in the order of the list.
    QStringList selectedNames() const;

private:
    bool allAre(bool selected) const;
    bool isChecked(int row) const;
    QString text(int row) const;
};

} // namespace ZelkoGUI::Filter
