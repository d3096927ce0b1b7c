#include "filteredoutnote_p.h"

#include <widgetbase/sourcerows.h>

#include <QAbstractItemView>
#include <QAbstractProxyModel>

namespace ZelkoGUI {

// What comes to a list and is hidden at once changes no row of the proxy.
FilteredOutNote::FilteredOutNote(QAbstractItemView* view, const QAbstractProxyModel* proxy)
    : guiHelper::ViewportNote(view)
    , m_proxy(proxy)
    , m_sourceRows(new guiHelper::SourceRows(proxy, this))
{
    setObjectName(QStringLiteral("FilteredOutNote"));
    using Model = QAbstractItemModel;
    const auto onAny = [this](auto... changes) { (connect(m_proxy, changes, this, &FilteredOutNote::look), ...); };
    onAny(&Model::rowsInserted, &Model::rowsRemoved, &Model::layoutChanged, &Model::modelReset);
    connect(m_sourceRows, &guiHelper::SourceRows::changed, this, &FilteredOutNote::look);
    look();
}

FilteredOutNote::~FilteredOutNote() = default;

void FilteredOutNote::look()
{
    const int hidden = m_proxy->rowCount() == 0 ? m_sourceRows->count() : 0;
    setVisible(hidden > 0);
    if (hidden > 0) {
        setText(hidden == 1 ? tr("The filter hides the one recording of this list.")
                            : tr("The filter hides all %1 recordings of this list.").arg(hidden));
    }
}

} // namespace ZelkoGUI
