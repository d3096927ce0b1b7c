#pragma once

#include <console/records/emptystate.h>

#include <widgetbase/viewportnote.h>

class QAbstractItemView;

namespace ZelkoConsole {

/// Says in a list without records why there are none.
class EmptyStateNote : public guiHelper::ViewportNote
{
    Q_OBJECT

public:
    /// A child of `view`, hidden at first.
    explicit EmptyStateNote(QAbstractItemView* view);
    ~EmptyStateNote() override;

    void setState(const EmptyState& state);
    const EmptyState& state() const { return m_state; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    EmptyState m_state;
};

} // namespace ZelkoConsole
