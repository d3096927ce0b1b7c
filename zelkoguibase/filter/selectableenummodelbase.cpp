#include <zelkoguibase/filter/selectableenummodelbase.h>

#include <QApplication>
#include <QFont>

namespace ZelkoGUI::Filter {
namespace {

enum CommandRow { SelectAll, SelectNone, CommandCount };

bool isCommand(int row)
{
    return row < CommandCount;
}

const QFont& commandFont()
{
    static const QFont font(QApplication::font().family(), -1, QFont::Bold, true);
    return font;
}

} // namespace

SelectableEnumModelBase::SelectableEnumModelBase(QObject* parent)
    : QAbstractListModel(parent)
{}

SelectableEnumModelBase::~SelectableEnumModelBase() = default;

int SelectableEnumModelBase::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : valueCount() + CommandCount;
}

bool SelectableEnumModelBase::allAre(bool selected) const
{
    for (int value = 0; value < valueCount(); ++value) {
        if (isSelected(value) != selected) {
            return false;
        }
    }
    return true;
}

bool SelectableEnumModelBase::isChecked(int row) const
{
    return isCommand(row) ? allAre(row == SelectAll) : isSelected(row - CommandCount);
}

QString SelectableEnumModelBase::text(int row) const
{
    if (row == SelectAll) {
        return isChecked(row) ? tr("All") : tr("Select All");
    }
    if (row == SelectNone) {
        return isChecked(row) ? tr("Nothing") : tr("Clear All");
    }
    return valueName(row - CommandCount);
}

QVariant SelectableEnumModelBase::data(const QModelIndex& index, int role) const
{
    if (!index.isValid()) {
        return {};
    }
    switch (role) {
    case Qt::DisplayRole:
        return text(index.row());
    case Qt::FontRole:
        return isCommand(index.row()) ? QVariant(commandFont()) : QVariant();
    case Qt::CheckStateRole:
        return static_cast<int>(isChecked(index.row()) ? Qt::Checked : Qt::Unchecked);
    default:
        return {};
    }
}

bool SelectableEnumModelBase::setData(const QModelIndex& index, const QVariant& value, int role)
{
    if (!index.isValid() || role != Qt::CheckStateRole) {
        return false;
    }
    if (isCommand(index.row())) {
        setAll(index.row() == SelectAll);
    } else {
        setSelected(index.row() - CommandCount, value.toInt() == Qt::Checked);
        Q_EMIT dataChanged(index, index);
    }
    return true;
}

QVariant SelectableEnumModelBase::headerData(int, Qt::Orientation, int) const
{
    return {};
}

Qt::ItemFlags SelectableEnumModelBase::flags(const QModelIndex& index) const
{
    if (!index.isValid() || (isCommand(index.row()) && isChecked(index.row()))) {
        return Qt::NoItemFlags;
    }
    return Qt::ItemIsUserCheckable | Qt::ItemIsEnabled;
}

void SelectableEnumModelBase::setAll(bool selected)
{
    for (int value = 0; value < valueCount(); ++value) {
        setSelected(value, selected);
    }
    Q_EMIT dataChanged(index(0), index(rowCount() - 1));
}

QStringList SelectableEnumModelBase::selectedNames() const
{
    QStringList names;
    for (int value = 0; value < valueCount(); ++value) {
        if (isSelected(value)) {
            names << valueName(value);
        }
    }
    return names;
}

} // namespace ZelkoGUI::Filter
