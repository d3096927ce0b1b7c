#include <widgetbase/sourcerows.h>

#include <QAbstractProxyModel>

namespace guiHelper {

SourceRows::SourceRows(const QAbstractProxyModel* proxy, QObject* parent)
    : QObject(parent)
    , m_proxy(proxy)
{
    connect(proxy, &QAbstractProxyModel::sourceModelChanged, this, &SourceRows::follow);
    follow();
}

SourceRows::~SourceRows() = default;

void SourceRows::follow()
{
    if (m_source) {
        m_source->disconnect(this);
    }
    m_source = m_proxy->sourceModel();
    if (m_source) {
        using Model = QAbstractItemModel;
        const auto onAny = [this](auto... changes) { (connect(m_source, changes, this, &SourceRows::changed), ...); };
        onAny(&Model::rowsInserted, &Model::rowsRemoved, &Model::modelReset, &QObject::destroyed);
    }
    Q_EMIT changed();
}

int SourceRows::count() const
{
    return m_source ? m_source->rowCount() : 0;
}

} // namespace guiHelper
