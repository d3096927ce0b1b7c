#pragma once

#include "channelconsole.h"
#include "replaybarhands.h"

#include <console/hands/operatorhands.h>

#include <zelkobase/models/abstractrecordlistmodel.h>
#include <zelkoguibase/replaybar/replaybarwidget.h>

/// What the operator does with the records of a console and with the bar below them.
namespace deckhands {

inline VCReplayBar& barOf(const DeckConsole& console)
{
    return *console.deck().bar()->findChild<VCReplayBar*>(QStringLiteral("ZelkoReplayBar"));
}

inline void clickRecord(const DeckConsole& console, int number, Qt::KeyboardModifiers modifiers = {})
{
    QTableView& table = *console.window->records()->table();
    const QModelIndexList found =
        table.model()->match(table.model()->index(0, ZelkoCommon::AbstractRecordListModel::RecordIDColumn),
                             Qt::DisplayRole, RecordListSetting::id(number), 1, Qt::MatchExactly);
    QCOMPARE(found.size(), 1);
    ZelkoConsole::operatorhands::clickRow(table, found.constFirst().row(), modifiers);
}

inline bool isShown(const DeckConsole& console, int number)
{
    return QTest::qWaitFor(
        [&] { return barOf(console).GetRecordingStart() == static_cast<double>(DeckConsole::beginOf(number)); },
        patience);
}

inline void choose(const DeckConsole& console, int number)
{
    clickRecord(console, number);
    QVERIFY(isShown(console, number));
}

} // namespace deckhands
