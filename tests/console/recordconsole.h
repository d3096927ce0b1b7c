#pragma once

#include "patience.h"
#include "replaybarhands.h"
#include "storedrecord.h"

#include <console/demo/shownrecords.h>
#include <console/hands/operatorhands.h>
#include <console/records/recordpane.h>
#include <console/replay/replaydeck.h>
#include <console/session/consoleuser.h>
#include <console/session/session.h>
#include <console/window/consolewindow.h>

#include <zelkobase/models/abstractrecordlistmodel.h>
#include <zelkoguibase/bookmarks/bookmarkmodel.h>
#include <zelkoguibase/controller/zelkoserverguicontroller.h>
#include <zelkoguibase/replaybar/replaybarwidget.h>

#include <QSettings>
#include <QTableView>
#include <QTemporaryDir>
#include <QTest>

/// A folder with a store of a recorder, whose first device has a record of an hour.
struct HourLongStore
{
    HourLongStore()
    {
        const QString path = folder.filePath(QStringLiteral("store/Recorder1"));
        if (!ZelkoTest::storeRecord(path, ZelkoTest::hourLongRecord(lengthy), 4000)) {
            qWarning("the record for the test cannot be stored");
        }
    }

    const QString lengthy = QStringLiteral("Long");
    const QTemporaryDir folder;
};

/// A console on a session with such a store; the folder is for what it keeps.
struct RecordConsole
{
    RecordConsole(ZelkoConsole::Session& session, const QTemporaryDir& folder)
        : settings(folder.filePath(QStringLiteral("s.ini")), QSettings::IniFormat)
        , user(session)
        , window(&session, &user, &settings)
    {
        window.show();
        window.activateWindow();
    }

    ZelkoConsole::ReplayDeck& deck() const { return *window.replay(); }
    VCReplayBar& bar() const { return *deck().bar()->findChild<VCReplayBar*>(QStringLiteral("ZelkoReplayBar")); }
    double position() const { return bar().GetMarker(VCReplayBar::PositionMarker)->GetPosition(); }
    QTableView& table() const { return *window.records()->table(); }
    ZelkoGUI::BookmarkModel& bookmarks() const { return *deck().bookmarks(); }

    int rowOf(const QString& id) const
    {
        return static_cast<int>(ZelkoConsole::shownrecords::ids(*table().model()).indexOf(id));
    }

    /// Has the record of an hour shown.
    bool choose() const
    {
        ZelkoConsole::operatorhands::clickRow(table(), rowOf(QStringLiteral("Long")));
        return QTest::qWaitFor([this] { return bar().GetRecordingStart() > 0; }, patience);
    }

    /// Sets a bookmark where the position is.
    void bookmark() const
    {
        bar().setFocus();
        QTest::keyClick(&bar(), Qt::Key_Insert);
        QVERIFY(isUnsent());
    }

    /// Whether there is one that was not sent.
    bool isUnsent() const
    {
        return bookmarks().getSynchState() == ZelkoGUI::BookmarkModel::SynchLocalChange &&
               bookmarks().entryCount() == 1;
    }
    qsizetype storedBookmarks() const
    {
        const auto record = window.records()->controller()->recordListModel()->getRecordData(QStringLiteral("Long"));
        return record ? std::as_const(*record).GetBookmarkEntry().size() : 0;
    }

    QSettings settings;
    ZelkoConsole::ConsoleUser user;
    ZelkoConsole::ConsoleWindow window;
};
