#pragma once

#include "patience.h"
#include "recorderstart.h"
#include "storedrecord.h"

#include <console/demo/shownrecords.h>
#include <console/hands/operatorhands.h>
#include <console/records/recordpane.h>
#include <console/session/consolesession.h>
#include <console/session/consoleuser.h>
#include <console/window/consolewindow.h>

#include <zelkobase/models/abstractrecordlistmodel.h>
#include <zelkobase/orb/orb.h>
#include <zelkoguibase/controller/zelkoserverguicontroller.h>

#include <QSettings>
#include <QTableView>
#include <QTest>

/// The folder of a recorder in which it finds one record, with as many bytes as it says.
struct OneRecordStore
{
    explicit OneRecordStore(const ZELKO_XML::ZELKO_RecordData& record)
    {
        if (!ZelkoTest::storeRecord(deviceFolder(), record, static_cast<qsizetype>(record.GetSize()))) {
            qWarning("the record for the test cannot be stored");
        }
    }
    QString deviceFolder() const { return folder.filePath(QStringLiteral("store/Recorder1")); }

    /// What stands on the disk of a record.
    ZELKO_XML::ZELKO_RecordData stored(const QString& id) const
    {
        ZELKO_XML::ZELKO_RecordData data;
        data.LoadXml(deviceFolder() + QLatin1Char('/') + id + QLatin1Char('/') + ZELKO_XML::metaDataFileName);
        return data;
    }

    const QTemporaryDir folder;
};

/// A console with a recorder of its own, as it is built, which has such a store; an operator works there.
struct OwnRecorderConsole : protected OneRecordStore
{
    OwnRecorderConsole(ZelkoCommon::Orb& orb, const ZELKO_XML::ZELKO_RecordData& record,
                       const QStringList& channels = {})
        : OneRecordStore(record)
        , session(orb, start(folder, channels))
        , settings(folder.filePath(QStringLiteral("s.ini")), QSettings::IniFormat)
        , user(session)
        , window(&session, &user, &settings)
    {
        window.show();
        window.activateWindow();
    }

    QTableView& table() const { return *window.records()->table(); }
    ZelkoGUI::ZelkoServerGUIController& controller() const { return *window.records()->controller(); }
    const ZelkoCommon::AbstractRecordListModel& records() const { return *controller().recordListModel(); }
    int rowOf(const QString& id) const
    {
        return static_cast<int>(ZelkoConsole::shownrecords::ids(*table().model()).indexOf(id));
    }
    quint16 port() const { return session.recorder()->port(); }
    const ZelkoCommon::LinkCredentials& operatorOfRecorder() const { return session.knownUsers()[1].credentials; }

    ZelkoConsole::ConsoleSession session;
    QSettings settings;
    ZelkoConsole::ConsoleUser user;
    ZelkoConsole::ConsoleWindow window;

private:
    static ZelkoConsole::EmbeddedRecorderOptions start(const QTemporaryDir& folder, const QStringList& channels)
    {
        ZelkoConsole::EmbeddedRecorderOptions options = recorderStart(folder);
        options.channels = channels;
        return options;
    }
};
