#include "bookmarkbars_p.h"

#include <chartcontrols/vcreplaybar.h>

#include <QSignalBlocker>

namespace ZelkoGUI {

namespace {

std::vector<BookmarkType> toBookmarks(const BookmarkBars::Entries& entries)
{
    std::vector<BookmarkType> bookmarks;
    bookmarks.reserve(static_cast<std::size_t>(entries.size()));
    for (const ZELKO_XML::BookmarkEntry& entry : entries) {
        bookmarks.emplace_back(static_cast<long long>(entry.GetTimestamp()), entry.GetBookmark());
    }
    return bookmarks;
}

void enableMarkers(VCReplayBar& bar, std::size_t bookmarks, bool enable)
{
    for (std::size_t i = 0; i < bookmarks; ++i) {
        bar.SetEnableMarker(VCReplayBar::FirstBookmarkMarker + static_cast<int>(i), enable);
    }
}

void showOnly(VCReplayBar& bar, const std::vector<BookmarkType>& bookmarks)
{
    bar.AllowCreationOfBookMarks(false);
    bar.SetBookmarks(bookmarks, false);
    enableMarkers(bar, bookmarks.size(), false);
}

} // namespace

void BookmarkBars::setMain(VCReplayBar* bar)
{
    m_main = bar;
    m_others.removeAll(bar);
}

void BookmarkBars::add(VCReplayBar* bar, const Entries& entries)
{
    if (bar == nullptr || bar == m_main || m_others.contains(bar)) {
        return;
    }
    m_others.append(bar);
    showOnly(*bar, toBookmarks(entries));
}

void BookmarkBars::remove(VCReplayBar* bar)
{
    if (bar == nullptr) {
        removeAll();
    } else {
        m_others.removeAll(bar);
    }
}

void BookmarkBars::show(const Entries& entries, bool isEditable)
{
    if (m_main.isNull() && m_others.isEmpty()) {
        return;
    }
    const std::vector<BookmarkType> bookmarks = toBookmarks(entries);
    if (m_main) {
        const QSignalBlocker blocker(m_main);
        m_main->SetBookmarks(bookmarks, false);
        setEditable(isEditable);
    }
    showOnOthers(bookmarks);
}

void BookmarkBars::copyToOthers()
{
    if (m_main && !m_others.isEmpty()) {
        showOnOthers(m_main->GetBookmarks());
    }
}

void BookmarkBars::setEditable(bool isEditable)
{
    if (m_main) {
        m_main->AllowCreationOfBookMarks(isEditable);
        enableMarkers(*m_main, m_main->GetBookmarks().size(), isEditable);
    }
}

BookmarkBars::Entries BookmarkBars::onMain() const
{
    Entries entries;
    for (const BookmarkType& bookmark : m_main ? m_main->GetBookmarks() : std::vector<BookmarkType>()) {
        ZELKO_XML::BookmarkEntry& entry = entries.emplaceBack();
        entry.SetTimestamp(static_cast<quint64>(bookmark.time));
        entry.SetBookmark(bookmark.text);
    }
    return entries;
}

void BookmarkBars::showOnOthers(const std::vector<BookmarkType>& bookmarks)
{
    for (const QPointer<VCReplayBar>& bar : std::as_const(m_others)) {
        if (bar) {
            showOnly(*bar, bookmarks);
        }
    }
}

} // namespace ZelkoGUI
