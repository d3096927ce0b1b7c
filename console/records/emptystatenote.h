#pragma once

#include <console/records/emptystate.h>

#include <QWidget>

class QAbstractItemView;

namespace ZelkoConsole {

/// Says in a list without records why there are none. It lies where the rows would be and lets the mouse through.
class EmptyStateNote : public QWidget
{
    Q_OBJECT

public:
    /// A child of `view`, hidden at first.
    explicit EmptyStateNote(QAbstractItemView* view);
    ~EmptyStateNote() override;

    void setState(const EmptyState& state);
    const EmptyState& state() const { return m_state; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    EmptyState m_state;
};

} // namespace ZelkoConsole
