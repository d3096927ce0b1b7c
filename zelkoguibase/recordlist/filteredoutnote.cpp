#include "filteredoutnote_p.h"

#include <QAbstractItemView>
#include <QAbstractProxyModel>
#include <QEvent>

namespace ZelkoGUI {

// Over the viewport and not in it, which would scroll it with the columns.
FilteredOutNote::FilteredOutNote(QAbstractItemView* view, const QAbstractProxyModel* proxy)
    : QLabel(view)
    , m_proxy(proxy)
{
    setObjectName(QStringLiteral("FilteredOutNote"));
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setAlignment(Qt::AlignCenter);
    setMargin(fontMetrics().height());
    setTextFormat(Qt::PlainText);
    setWordWrap(true);
    setForegroundRole(QPalette::Text); // on the base colour of the view
    setGeometry(view->viewport()->geometry());
    view->viewport()->installEventFilter(this);
    followProxy();
    followSource();
}

FilteredOutNote::~FilteredOutNote() = default;

void FilteredOutNote::followProxy()
{
    using Model = QAbstractItemModel;
    const auto onAny = [this](auto... changes) { (connect(m_proxy, changes, this, &FilteredOutNote::look), ...); };
    onAny(&Model::rowsInserted, &Model::rowsRemoved, &Model::layoutChanged, &Model::modelReset);
    connect(m_proxy, &QAbstractProxyModel::sourceModelChanged, this, &FilteredOutNote::followSource);
}

// What comes to a list and is hidden at once changes no row of the proxy.
void FilteredOutNote::followSource()
{
    if (m_source) {
        m_source->disconnect(this);
    }
    m_source = m_proxy->sourceModel();
    if (m_source) {
        using Model = QAbstractItemModel;
        const auto onAny = [this](auto... changes) { (connect(m_source, changes, this, &FilteredOutNote::look), ...); };
        onAny(&Model::rowsInserted, &Model::rowsRemoved, &Model::modelReset);
    }
    look();
}

void FilteredOutNote::look()
{
    const int hidden = m_proxy->rowCount() == 0 && m_source ? m_source->rowCount() : 0;
    setVisible(hidden > 0);
    if (hidden > 0) {
        setText(hidden == 1 ? tr("The filter hides the one recording of this list.")
                            : tr("The filter hides all %1 recordings of this list.").arg(hidden));
    }
}

bool FilteredOutNote::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::Resize || event->type() == QEvent::Move) {
        setGeometry(qobject_cast<QWidget*>(watched)->geometry());
    }
    return QLabel::eventFilter(watched, event);
}

} // namespace ZelkoGUI
