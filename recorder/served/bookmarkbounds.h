#pragma once

#include <observerbase/iobserver.h>
#include <valuecore/valueptr.h>
#include <zelkobase/maps/bookmarkitemmap.h>

#include <QObject>

#include <set>
#include <vector>

namespace ZelkoRecorder {

/// Keeps a bookmark map that clients write within what a record can have: no more than `mostBookmarks`, each with a
/// text of no more than `longestRecordText`, and each under its own key. What goes beyond that is erased again in the
/// next turn of the event loop, for every client, whoever wrote it; where there are too many it is what was added last.
///
/// Lives on the thread of the tree.
class BookmarkBounds : public QObject, private IObserver
{
    Q_OBJECT

public:
    /// Takes what stands in the map now as it is. The map may go first.
    explicit BookmarkBounds(zelko::bookmarkmap::BookmarkItemMap* map, QObject* parent = nullptr);
    ~BookmarkBounds() override;

private:
    using Keys = std::vector<unsigned int>;

    void Update(Observable* source, TChangeCode code) override;
    void tidy();
    void eraseTooMany(const Keys& written);
    Keys writtenKeys();
    void noteKeys();
    bool isSound(unsigned int key) const;

    ValueObservingPtr<zelko::bookmarkmap::BookmarkItemMap> m_map{this};
    std::uint64_t m_position;       ///< in the log of the map
    std::set<unsigned int> m_known; ///< the keys that were there when it was tidied last
    bool m_isTidying = false;       ///< soon
};

} // namespace ZelkoRecorder
