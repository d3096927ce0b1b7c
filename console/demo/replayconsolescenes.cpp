#include <console/demo/samplechannel.h>
#include <console/demo/scenepainter.h>
#include <console/demo/scenes.h>
#include <console/demo/windowscene.h>
#include <console/hands/operatorhands.h>
#include <console/records/recordpane.h>
#include <console/replay/replaydeck.h>
#include <console/window/consolewindow.h>

#include <QApplication>
#include <QTableView>

namespace ZelkoConsole {
namespace {

using Recording = SampleChannel::Recording;
using Replay = SampleChannel::Replay;

constexpr quint64 second = 1'000'000;

void settle()
{
    for (int turn = 0; turn < 5; ++turn) {
        QApplication::processEvents();
    }
}

/// A console with recordings, one of which has bookmarks, and with a channel.
struct ReplayConsole
{
    explicit ReplayConsole(QSize size = {1280, 800})
        : window(scene.open())
    {
        window.resize(size);
        scene.connectNorth();
        scene.fill(WindowScene::north(), WindowScene::recorder1(), 17);
        settle();
    }

    /// Chooses a record of 18 minutes with three bookmarks, and shows them.
    void chooseRecord()
    {
        auto record = sampleRecord(QStringLiteral("R20260504009"), QStringLiteral("Weather satellite pass"),
                                   SampleSite::Record::RecordStatus::Finished, start, 1060 * second, 137'100'000);
        QVector<ZELKO_XML::BookmarkEntry> bookmarks;
        for (const auto& [at, text] :
             {std::pair(95, "Signal acquired"), std::pair(410, "Overhead"), std::pair(770, "Fading, below 5°")}) {
            bookmarks.append(ZELKO_XML::BookmarkEntry());
            bookmarks.back().SetTimestamp(start + static_cast<quint64>(at) * second);
            bookmarks.back().SetBookmark(QString::fromUtf8(text));
        }
        record->SetBookmarkEntry(bookmarks);
        scene.site().setRecord(WindowScene::north(), WindowScene::recorder1(), record);
        settle();
        window.records()->table()->setFocus();
        operatorhands::clickRow(*window.records()->table(), 9);
        window.replay()->showBookmarks(true);
        settle();
    }

    const quint64 start = 1'777'889'352'000'000;
    WindowScene scene;
    ConsoleWindow& window;
};

struct ChannelConsole : ReplayConsole
{
    using ReplayConsole::ReplayConsole;

    const SampleChannel channel{WindowScene::north(), QStringLiteral("C1"), QStringLiteral("Antenna 1")};
    const SampleChannel other{WindowScene::north(), QStringLiteral("C2"), QStringLiteral("Antenna 2")};
};

void paintStopped(ScenePainter& painter)
{
    ChannelConsole console;
    console.chooseRecord();
    console.channel.setPosition(console.start + 410 * second);
    settle();
    painter.paint(console.window, "console-channel");
    console.channel.setMayRecord(false);
    settle();
    painter.paint(console.window, "console-channel-does-not-record");
}

void paintRecording(ScenePainter& painter)
{
    ChannelConsole console;
    console.chooseRecord();
    console.channel.setRecordName(QStringLiteral("Morning watch"));
    console.channel.setRecordTimeout(3600);
    console.channel.setFileSizeInKB(2'000'000);
    console.channel.setRecording(Recording::NormalRecording);
    settle();
    painter.paint(console.window, "console-channel-recording");
}

void paintReplaying(ScenePainter& painter)
{
    ChannelConsole console;
    console.chooseRecord();
    console.channel.setReplay(Replay::Running);
    console.channel.setPosition(console.start + 585 * second);
    settle();
    painter.paint(console.window, "console-channel-replaying");
    console.channel.setReplay(Replay::Paused);
    settle();
    painter.paint(console.window, "console-channel-replay-paused");
}

void paintFailure(ScenePainter& painter)
{
    ChannelConsole console;
    console.chooseRecord();
    console.channel.setError(QStringLiteral("there is no such device for the channel"));
    settle();
    painter.paint(console.window, "console-channel-error");
    console.scene.site().lose(WindowScene::north(), QStringLiteral("connection refused"));
    settle();
    painter.paint(console.window, "console-channel-disconnected");
}

void paintFolded(ScenePainter& painter)
{
    ChannelConsole console({1000, 600});
    settle();
    painter.paint(console.window, "console-channel-folded");
}

void paintWithoutChannel(ScenePainter& painter)
{
    ReplayConsole console;
    settle();
    painter.paint(console.window, "console-no-channel");
    console.chooseRecord();
    painter.paint(console.window, "console-no-channel-bookmarks");
    console.scene.user().switchTo(QStringLiteral("viewer"));
    settle();
    painter.paint(console.window, "console-bookmarks-viewer");
}

} // namespace

void paintReplayConsoleScenes(ScenePainter& painter)
{
    paintStopped(painter);
    paintRecording(painter);
    paintReplaying(painter);
    paintFailure(painter);
    paintFolded(painter);
    paintWithoutChannel(painter);
}

} // namespace ZelkoConsole
