#pragma once

#include <widgetbase/viewportnote.h>

class QAbstractItemView;
class QAbstractProxyModel;

namespace guiHelper {
class SourceRows;
}

namespace ZelkoGUI {

/// Says in an empty view that the filters hide all there is. It is hidden while there is a row, or nothing to be
/// hidden.
class FilteredOutNote final : public guiHelper::ViewportNote
{
    Q_OBJECT

public:
    /// A child of `view`, which shows `proxy`.
    FilteredOutNote(QAbstractItemView* view, const QAbstractProxyModel* proxy);
    ~FilteredOutNote() override;

private:
    void look();

    const QAbstractProxyModel* const m_proxy;
    const guiHelper::SourceRows* const m_sourceRows;
};

} // namespace ZelkoGUI
