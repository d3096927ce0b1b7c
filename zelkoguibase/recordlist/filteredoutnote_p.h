#pragma once

#include <QLabel>
#include <QPointer>

class QAbstractItemModel;
class QAbstractItemView;
class QAbstractProxyModel;

namespace ZelkoGUI {

/// Says in an empty view that the filters hide all there is. It lies where the rows would be, lets the mouse through,
/// and is hidden while there is a row, or nothing to be hidden.
class FilteredOutNote final : public QLabel
{
    Q_OBJECT

public:
    /// A child of `view`, which shows `proxy`.
    FilteredOutNote(QAbstractItemView* view, const QAbstractProxyModel* proxy);
    ~FilteredOutNote() override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void followProxy();
    void followSource();
    void look();

    const QAbstractProxyModel* const m_proxy;
    QPointer<const QAbstractItemModel> m_source;
};

} // namespace ZelkoGUI
