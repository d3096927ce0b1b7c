#pragma once

#include <console/channel/workchannel.h>
#include <console/replay/bookmarkdelivery.h>
#include <console/replay/replaybegin.h>

#include <QPointer>
#include <QTimer>
#include <QWidget>

#include <memory>

class QHBoxLayout;
class QSettings;
class QToolButton;
class VCReplayBar;

namespace ZelkoGUI {
class BookmarkModel;
class ReplayBarWidget;
class ZelkoServerGUIController;
} // namespace ZelkoGUI

namespace ZelkoConsole {

class BookmarkTableView;
class WorkChannelPanel;
class RecordPane;
class ReplayControls;

/// What stands under a record list: the record that is selected there on a replay bar, with its bookmarks to edit,
/// beside the channel that the workstation records and replays on. Where the recorder serves no channel the bar stands
/// by itself. Bookmarks go out through the controller of the list; their table can be folded away.
class ReplayDeck : public QWidget
{
    Q_OBJECT

public:
    /// Where the bookmarks of the record are mirrored on the client's tree, for whatever else runs on the workstation.
    static QString bookmarkMapPath();

    /// `records` outlives this object, or goes while nothing is asked of it any more.
    ReplayDeck(const WorkChannel::Connection& connection, RecordPane* records, QWidget* parent = nullptr);
    ~ReplayDeck() override;

    /// Where bookmarks were changed and not sent, asks whether they are to be, and waits for the recorder to take them;
    /// blocks as long as the user and the recorder take, with an event loop. What is being typed counts as changed. To
    /// be called before the records that are shown go, or the user who may send them. Where only the selection changes,
    /// that is asked without it. False: all is to stay as it is, because the user wants that, the recorder has not
    /// taken them, or he is being asked already.
    bool settleBookmarks();

    /// How long the recorder may take for that.
    void setSendLimit(std::chrono::milliseconds limit) { m_sendLimit = limit; }

    /// Whether the user is being asked. What is shown is not to be changed meanwhile.
    bool isAsking() const { return m_isAsking; }

    /// Works with the channels of a sub system; with none for an empty name. There is a bar at once.
    void setSubSystem(const QString& subSystem);

    /// @name Whether the table of the bookmarks is unfolded; not at first
    /// @{
    void showBookmarks(bool show);
    bool areBookmarksShown() const;
    void savePlaces(QSettings& settings) const;
    void restorePlaces(const QSettings& settings);
    /// @}

    /// @name For the keyboard
    /// @{
    void goToBar();
    void goToBookmarks(); ///< unfolds them
    /// @}

    /// Null without a sub system. Another sub system has another one.
    WorkChannel* channel() const { return m_channel.get(); }

    /// @name The parts. Bar and model are others when the user may do other things; the bar, when channels come or go
    /// @{
    ZelkoGUI::ReplayBarWidget* bar() const { return m_bar.get(); }
    ZelkoGUI::BookmarkModel* bookmarks() const { return m_bookmarks.get(); }
    BookmarkTableView* table() const { return m_table; }
    WorkChannelPanel* panel() const { return m_panel; }
    ReplayControls* controls() const { return m_controls; }
    QToolButton* bookmarkButton() const { return m_fold; }
    /// @}

Q_SIGNALS:
    /// The user is asked no more: what was held back meanwhile can be done.
    void answered();

private:
    struct Shown
    {
        QString record; // empty: none
        QString device;
        QString subSystem;

        bool operator==(const Shown&) const = default;
    };

    void arrange();
    void connectParts();
    void followRecords();
    void look();
    bool isUnsent() const;
    bool ask();
    bool send();
    void updateBar();
    void makeBookmarks();
    void makeBar(WorkChannel* beside);
    void tabThroughBar();
    void followChannel(WorkChannel& channel);
    Shown selected() const;
    void showSelected();
    void showChannel();
    void takeUpPosition();
    VCReplayBar& axis() const;
    void forgetBegin();
    void noteExtent();
    void noteBegin(double position);
    void startReplay();
    void replayStopped();

    const WorkChannel::Connection m_connection;
    RecordPane& m_records;
    const QPointer<ZelkoGUI::ZelkoServerGUIController> m_controller;
    QString m_subSystem;
    Shown m_shown;
    ReplayBegin m_begin;
    bool m_isOwnReplay = false; // begun here
    bool m_isAsking = false;
    std::chrono::milliseconds m_sendLimit = BookmarkDelivery::DefaultLimit;
    QTimer m_soon;
    std::unique_ptr<WorkChannel> m_channel;
    WorkChannel* m_beside = nullptr; // the channel that the bar was made for
    std::unique_ptr<ZelkoGUI::BookmarkModel> m_bookmarks;
    std::unique_ptr<ZelkoGUI::ReplayBarWidget> m_bar;
    ReplayControls* m_controls;
    QToolButton* m_fold;
    WorkChannelPanel* m_panel;
    BookmarkTableView* m_table;
    QHBoxLayout* m_barRow;
};

} // namespace ZelkoConsole
