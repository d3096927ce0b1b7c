#pragma once

#include <observerbase/iobserver.h>
#include <zelkoguibase/bookmarks/bookmarkmodel.h>
#include <zelkoguibase/zelkoguibase_export.h>

#include <QObject>

#include <memory>

namespace ZelkoGUI {

/// Keeps a BookmarkModel and a BookmarkItemMap of the client's tree equal, in both directions, so that whoever sees the
/// tree sees the bookmarks and can change them. The model is the master: what it refuses is taken back out of the map.
/// The map is open for changes while the list can be edited, and locked otherwise.
///
/// A bookmark keeps its key for as long as the model changes row by row; a model reset gives the rows their numbers as
/// keys. What comes from one side is written to the other once, and never back. What somebody does to the map in answer
/// to a change that he hears of is taken back in the next turn of the event loop, once: the model follows who insists.
///
/// GUI thread only.
class ZELKOGUIBASE_EXPORT BookmarkModelConnector : public QObject, public IObserver
{
    Q_OBJECT

public:
    /// As `bind`. The model becomes the parent.
    BookmarkModelConnector(const QString& path, BookmarkModel* model);

    /// Takes the map out of the tree, unless it was told to leave it.
    ~BookmarkModelConnector() override;

    /// Turns to the map at `path`, which is emptied and gets the bookmarks of the model. Where nothing stands one is
    /// made; where something else stands, and for what is no path, there is no map then. The map before stays as it is.
    void bind(const QString& path);

    /// Of the map; empty without one.
    QString path() const;

    /// Whether the map goes with the connector; so it does at first.
    bool removesMapOnDestruction() const;
    void setRemoveMapOnDestruction(bool remove);

    /// Brings what has changed in the map to the model.
    void Update(Observable* source, TChangeCode code) override;

private Q_SLOTS:
    void sl_syncStateChanged(ZelkoGUI::BookmarkModel::enSynchState state);
    void sl_dataChanged(QModelIndex topLeft, QModelIndex bottomRight);
    void sl_modelReset();
    void sl_rowsInserted(QModelIndex parent, int first, int last);
    void sl_rowsRemoved(QModelIndex parent, int first, int last);
    void sl_rowsMoved(QModelIndex parent, int start, int end, QModelIndex destinationParent, int destinationRow);

private:
    struct Private;
    const std::unique_ptr<Private> d;
};

} // namespace ZelkoGUI
