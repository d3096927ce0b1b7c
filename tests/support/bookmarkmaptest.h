#pragma once

#include "bookmarksite.h"
#include "changelogtext.h"
#include "sentcommands.h"

#include <zelkobase/maps/bookmarkitemmap.h>

#include <QTest>

#include <functional>
#include <map>
#include <optional>

/// The base of tests of a bookmark model and a map on the tree that are kept equal. Every change of the map is counted,
/// and every command that it would send.
class BookmarkMapTest : public QObject
{
protected:
    using BookmarkItemMap = zelko::bookmarkmap::BookmarkItemMap;
    using BookmarkMapData = zelko::bookmarkmap::BookmarkMapData;
    using BookmarkModel = ZelkoGUI::BookmarkModel;
    using Entries = BookmarkModel::Entries;
    using Entry = BookmarkModel::Entry;

    static QString folder() { return QStringLiteral("/SubSystems/north/ZELKO/Local"); }
    static QString path() { return folder() + QStringLiteral("/Bookmarks"); }

    static BookmarkItemMap* mapAt(const QString& path) { return Tree::Instance()->Find<BookmarkItemMap>(path); }

    /// The items by their keys, each as "key: offset text".
    static QStringList itemTexts(const BookmarkItemMap& map)
    {
        const std::map<unsigned int, BookmarkMapData> sorted(map.data().begin(), map.data().end());
        QStringList texts;
        for (const auto& [key, item] : sorted) {
            texts.append(QStringLiteral("%1: ").arg(key) + bookmarkTexts({item.toEntry()}).constFirst());
        }
        return texts;
    }

    /// The same for bookmarks that have their row numbers as keys.
    static QStringList numbered(const QStringList& bookmarks)
    {
        QStringList texts;
        for (const QString& bookmark : bookmarks) {
            texts.append(QStringLiteral("%1: ").arg(texts.size()) + bookmark);
        }
        return texts;
    }

    /// Whether both have the same bookmarks, whatever their order.
    static bool areEqual(const BookmarkModel& model, const BookmarkItemMap& map)
    {
        QStringList ofModel = bookmarkTexts(model.entries());
        QStringList ofMap;
        for (const auto& [key, item] : map.data()) {
            ofMap.append(bookmarkTexts({item.toEntry()}));
        }
        ofModel.sort();
        ofMap.sort();
        return ofModel == ofMap;
    }

    /// Has the model show bookmarks and be kept equal to a map, of which everything is counted from here.
    void connectMap(const Entries& bookmarks)
    {
        m_site->show(bookmarks);
        m_site->model.createItemMap(path());
        m_map = mapAt(path());
        QVERIFY(m_map);
        countAnew();
    }
    void countAnew()
    {
        m_cursor = m_map->GetChangeLog().NextNumber();
        m_sent.emplace();
        m_map->SetTransmitter(&*m_sent);
        m_site->log.take();
    }

    /// Changes the map as somebody else on the tree does.
    void set(unsigned int key, const Entry& entry) { m_map->SetAt(key, BookmarkMapData(key, entry), nullptr); }

    /// What came since the last call: signals of the model, changes of the map.
    QStringList taken() { return m_site->log.take(); }
    QStringList changes() { return readChanges(m_map->GetChangeLog(), m_cursor); }

    /// What came since it was counted anew.
    std::vector<int> commands() const { return m_sent->ids(); }

    QStringList items() const { return itemTexts(*m_map); }
    bool areEqual() const { return areEqual(m_site->model, *m_map); }

    std::optional<SentCommands> m_sent; // outlives the map
    std::optional<BookmarkSite> m_site;
    BookmarkItemMap* m_map = nullptr;

private:
    std::uint64_t m_cursor = 0;
};
