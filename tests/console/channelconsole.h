#pragma once

#include "consolewindowsetting.h"
#include "ownlocalvalues.h"
#include "turns.h"

#include <console/channel/recordingsettings.h>
#include <console/channel/workchannelpanel.h>
#include <console/demo/samplechannel.h>
#include <console/devices/workdevice.h>
#include <console/hands/operatorhands.h>
#include <console/replay/replaydeck.h>

#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>

/// A console as above whose recorder serves no channel so far.
struct DeckConsole : private OwnLocalValues, ConsoleWindowSetting
{
    using ConsoleWindowSetting::ConsoleWindowSetting;

    ZelkoConsole::SampleChannel addChannel(const char* id, const char* name) const
    {
        return {north, QLatin1String(id), QLatin1String(name)};
    }
    ZelkoConsole::ReplayDeck& deck() const { return *window->replay(); }
    ZelkoConsole::WorkChannelPanel& panel() const { return *deck().panel(); }
    QComboBox& choice() const { return *panel().choice(); }
    QPushButton& record() const { return *panel().recordButton(); }
    QPushButton& stop() const { return *panel().stopButton(); }
    QString state() const { return panel().stateText(); }

    /// Where a record begins, see RecordListSetting; it is a second longer than its number.
    static quint64 beginOf(int number) { return (1'700'000'000 + static_cast<quint64>(number)) * 1'000'000; }
};

/// The same with the channel "Antenna" of the ID C1.
struct ChannelConsole : DeckConsole
{
    explicit ChannelConsole(int count = 0)
        : DeckConsole(count)
    {
        waitForChannel();
    }
    void waitForChannel() const { QTRY_VERIFY_WITH_TIMEOUT(record().isEnabled(), patience); }

    ZelkoConsole::SampleChannel channel = addChannel("C1", "Antenna");
};
