#pragma once

#include <zelkobase/data/bookmarkentry.h>

#include <QList>
#include <QPointer>
#include <QVector>

#include <vector>

class VCReplayBar;
struct BookmarkType;

namespace ZelkoGUI {

/// The replay bars that show the bookmarks of a model: one on which they may be edited, and others that only show them.
/// None is owned; one that went is passed over.
class BookmarkBars
{
public:
    using Entries = QVector<ZELKO_XML::BookmarkEntry>;

    /// The bar on which bookmarks may be edited; null if there is none.
    VCReplayBar* main() const { return m_main; }

    /// Makes a bar the main one, and no longer one of the others; null for none. Nothing is written to it.
    void setMain(VCReplayBar* bar);

    /// Another bar that only shows bookmarks, and shows these. Null and a bar that is there already are passed over.
    void add(VCReplayBar* bar, const Entries& entries);

    /// Writes nothing to the bar; null takes all of them away.
    void remove(VCReplayBar* bar);
    void removeAll() { m_others.clear(); }

    /// Writes bookmarks to all bars. The main one does not tell.
    void show(const Entries& entries, bool isEditable);

    /// Writes to the others what stands on the main bar.
    void copyToOthers();

    /// Whether bookmarks on the main bar may be set, moved and taken away.
    void setEditable(bool isEditable);

    /// What stands on the main bar; nothing without one.
    Entries onMain() const;

private:
    void showOnOthers(const std::vector<BookmarkType>& bookmarks);

    QPointer<VCReplayBar> m_main;
    QList<QPointer<VCReplayBar>> m_others;
};

} // namespace ZelkoGUI
