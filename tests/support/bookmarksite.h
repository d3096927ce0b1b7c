#pragma once

#include "bookmarksignallog.h"
#include "handtimer.h"
#include "testrecords.h"

#include <valuecore/tree.h>
#include <zelkobase/maps/recorditemmap.h>
#include <zelkoguibase/bookmarks/bookmarkmodel.h>
#include <zelkoguibase/recordlist/recorditemmapmodel.h>

#include <QAbstractItemModelTester>

#include <memory>

/// A bookmark model, and the record list of a device on the tree from which it takes its bookmarks.
class BookmarkSite
{
    /// Removed last: what stands there may be in use until then.
    struct Branch
    {
        ~Branch() { Tree::Instance()->Remove(QStringLiteral("/SubSystems")); }
    };
    Branch m_branch;

public:
    using Record = ZELKO_XML::ZELKO_RecordData;
    using RecordPtr = std::shared_ptr<Record>;
    using Entries = ZelkoGUI::BookmarkModel::Entries;

    explicit BookmarkSite(bool readOnly = false)
        : model(readOnly)
        , log(&model)
        , m_tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest)
    {
        records->connect(QStringLiteral("/SubSystems/north/ZELKO/Device/D/Records/Map"));
        model.setSingleShot(timer.singleShot());
    }
    BookmarkSite(const BookmarkSite&) = delete;
    BookmarkSite& operator=(const BookmarkSite&) = delete;

    /// A record at rest of 90 seconds with bookmarks.
    static RecordPtr record(const Entries& bookmarks, const QString& id = QStringLiteral("R"))
    {
        RecordPtr record = makeRecord(id);
        record->SetBookmarkEntry(bookmarks);
        return record;
    }

    /// The recorder has, from now on, the record like this.
    void store(const RecordPtr& record) { map->Add(zelko::recordmap::RecordMapData(record), nullptr); }
    void store(const Entries& bookmarks) { store(record(bookmarks)); }

    /// Has the model show the record R of the device D, which is stored with these bookmarks, and forgets the signals.
    void show(const Entries& bookmarks)
    {
        store(bookmarks);
        show();
    }
    void show(const RecordPtr& record)
    {
        store(record);
        show();
    }

    /// Leaves the model, which shows the record R, in the state SynchLocalChange.
    void edit(int row, const ZELKO_XML::BookmarkEntry& bookmark)
    {
        model.changeEntry(row, bookmark);
        log.take();
    }

    QStringList bookmarks() const { return bookmarkTexts(model.entries()); }

    zelko::recordmap::RecordItemMap* const map = Tree::Instance()->Emplace(
        QStringLiteral("/SubSystems/north/ZELKO/Device/D/Records"),
        std::make_unique<zelko::recordmap::RecordItemMap>(QStringLiteral("Map"), TValueState::Open));
    std::unique_ptr<ZelkoGUI::RecordItemMapModel> records = std::make_unique<ZelkoGUI::RecordItemMapModel>(nullptr);
    HandTimer timer;
    ZelkoGUI::BookmarkModel model;
    BookmarkSignalLog log;

private:
    void show()
    {
        model.setRecord(QStringLiteral("R"), records.get(), false, QStringLiteral("D"));
        log.take();
    }

    QAbstractItemModelTester m_tester;
};
