#pragma once

#include "patience.h"
#include "recordlistsetting.h"

#include <console/demo/shownrecords.h>
#include <console/hands/operatorhands.h>
#include <console/records/recordactions.h>
#include <console/records/recordpane.h>
#include <console/session/consoleuser.h>

#include <zelkoguibase/controller/zelkoserverguicontroller.h>

#include <QTableView>
#include <QTest>

/// A device view that is shown and connected, with an operator before it.
struct RecordPaneSetting : RecordListSetting
{

    explicit RecordPaneSetting(int count = 0)
        : RecordListSetting(count)
    {
        become(ZelkoCommon::Role::Operator);
        pane.resize(900, 320);
        pane.setDevice(north, device);
        pane.setStatus(site.status(north));
        pane.show();
        pane.activateWindow();
        connect();
    }
    ~RecordPaneSetting() { UserRights::Instance()->SetUser({}, {}); }

    /// Waits until the device can be worked on.
    void connect() const
    {
        QVERIFY(QTest::qWaitForWindowActive(pane.window(), patience));
        QTRY_VERIFY_WITH_TIMEOUT(pane.controller()->isConnected(), patience);
    }

    /// Another user works here, named after what he is.
    static void become(ZelkoCommon::Role role)
    {
        UserRights::Instance()->SetUser(ZelkoCommon::roleName(role), ZelkoConsole::ConsoleUser::rightsOf(role));
    }

    /// Clicks on the row of a record; with a modifier as it would be held.
    void click(int number, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        ZelkoConsole::operatorhands::clickRow(table, rowOf(number), modifiers);
    }

    int rowOf(int number) const
    {
        return static_cast<int>(ZelkoConsole::shownrecords::ids(*table.model()).indexOf(id(number)));
    }

    QAction& action(ZelkoGUI::IZelkoGUIController::enUserAction flag) const
    {
        return *pane.controller()->recordAction(flag);
    }

    ZelkoConsole::RecordPane pane{site.connectionData()};
    QTableView& table = *pane.table();
};
