#pragma once

#include <QTreeView>

namespace ZelkoConsole {

class DeviceListModel;

/// The list of devices. One entry is chosen at a time; sub systems are open at first. Until the operator chooses
/// something the first sub system is chosen, and the first device as soon as there is one.
class DeviceListView : public QTreeView
{
    Q_OBJECT

public:
    /// `model` outlives the view.
    explicit DeviceListView(DeviceListModel* model, QWidget* parent = nullptr);

    /// Of the chosen entry; empty when there is none.
    QString chosenSubSystem() const;
    /// Empty when a sub system is chosen, or nothing.
    QString chosenDevice() const;

    /// Chooses a device as the operator would; nothing happens when it is not in the list.
    void choose(const QString& subSystem, const QString& device);

Q_SIGNALS:
    /// Another entry was chosen, or the chosen one is gone.
    void chosen();

protected:
    void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
    QSize sizeHint() const override;

private:
    void rowsCame(const QModelIndex& parent);
    void modelCame();
    void chooseForOperator(const QModelIndex& index);

    DeviceListModel* const m_model;
    bool m_operatorChose = false;
    bool m_choosing = false;
};

} // namespace ZelkoConsole
