#pragma once

#include <widgetbase/widgetbase_export.h>

#include <QAbstractItemModel>
#include <QPointer>

class QAbstractProxyModel;

namespace guiHelper {

/// How many rows a proxy has below it, whether it shows them or not, and whatever source it is given.
class WIDGETBASE_EXPORT SourceRows final : public QObject
{
    Q_OBJECT

public:
    /// `proxy` outlives this object, and need not have a source.
    explicit SourceRows(const QAbstractProxyModel* proxy, QObject* parent = nullptr);
    ~SourceRows() override;

    /// At the root; 0 without a source.
    int count() const;

Q_SIGNALS:
    /// Rows came, went or were reset, or the source is another. The proxy may not know of it yet.
    void changed();

private:
    void follow();

    const QAbstractProxyModel* const m_proxy;
    QPointer<const QAbstractItemModel> m_source;
};

} // namespace guiHelper
