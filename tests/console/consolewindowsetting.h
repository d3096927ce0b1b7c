#pragma once

#include "patience.h"
#include "recordlistsetting.h"

#include <console/records/recordpane.h>
#include <console/session/consoleuser.h>
#include <console/window/consolewindow.h>

#include <zelkoguibase/controller/zelkoserverguicontroller.h>

#include <QSettings>
#include <QTableView>
#include <QTemporaryDir>
#include <QTest>

/// A console that is shown over such a site, connected, with an operator before it.
struct ConsoleWindowSetting : RecordListSetting
{
    explicit ConsoleWindowSetting(int count = 0, const QStringList& moreSubSystems = {})
        : RecordListSetting(count, moreSubSystems)
        , settings(folder.filePath(QStringLiteral("s.ini")), QSettings::IniFormat)
    {
        open();
    }

    void open()
    {
        window.reset();
        if (!user) {
            site.knowUsers();
            user = std::make_unique<ZelkoConsole::ConsoleUser>(site);
        }
        window = std::make_unique<ZelkoConsole::ConsoleWindow>(&site, user.get(), &settings);
        window->show();
        window->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(window.get(), patience));
        QTRY_VERIFY_WITH_TIMEOUT(window->records()->controller()->isConnected(), patience);
    }

    int rows() const { return window->records()->table()->model()->rowCount(); }

    QTemporaryDir folder;
    QSettings settings;
    std::unique_ptr<ZelkoConsole::ConsoleUser> user;
    std::unique_ptr<ZelkoConsole::ConsoleWindow> window;
};
