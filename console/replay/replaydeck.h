#pragma once

#include <console/channel/workchannel.h>
#include <console/replay/bookmarkdelivery.h>
#include <console/replay/replaybegin.h>
#include <console/soon.h>

#include <QHash>
#include <QPointer>
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
///
/// Bookmarks that were changed and not sent are not lost by what a recorder does. Where it takes from the user the
/// right to send them, they stay on show, to be looked at, until he discards them or has the right again; where its
/// connection goes, they are there again with their record.
class ReplayDeck : public QWidget
{
    Q_OBJECT

public:
    /// Where the bookmarks of the record are mirrored on the client's tree, for whatever else runs on the workstation.
    static QString bookmarkMapPath();

    /// `records` outlives this object, or goes while nothing is asked of it any more.
    ReplayDeck(const WorkChannel::Connection& connection, RecordPane* records, QWidget* parent = nullptr);
    ~ReplayDeck() override;

    /// What goes when bookmarks are to be settled.
    enum class Leaving {
        Record, ///< that is shown; where only the selection changes, that is settled without being asked for
        User,   ///< who may send them; what he may not send any more waits for one who may
        Console
    };

    /// Where bookmarks were changed and not sent, asks whether they are to be, and waits for the recorder to take them;
    /// blocks as long as the user and the recorder take, with an event loop. What is being typed counts as changed.
    /// False: all is to stay as it is, because the user wants that, the recorder has not taken them, or he is being
    /// asked already.
    bool settleBookmarks(Leaving leaving = Leaving::Record);

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
        friend size_t qHash(const Shown& shown, size_t seed = 0)
        {
            return qHashMulti(seed, shown.record, shown.device, shown.subSystem);
        }
    };

    enum class Answer { Send, Discard, Stay };

    void arrange();
    void connectParts();
    void followRecords();
    void look();
    bool isUnsent() const;
    bool mayEdit() const;
    bool settleUnsent();
    bool settleLost();
    Answer ask(const QString& text, const QString& more, bool canSend);
    bool send();
    void updateBar();
    void hold();
    void followState(ZelkoGUI::BookmarkModel::enSynchState state);
    bool hasLost(const Shown& shown) const;
    void restoreLost();
    void forgetGone();
    void makeBookmarks();
    void makeBar(WorkChannel* beside);
    void tabThroughBar();
    void followChannel(WorkChannel& channel);
    Shown selected() const;
    bool isInList(const Shown& shown) const;
    void showSelected();
    void showChannel();
    void takeUpPosition();
    void bringPositionIntoRecord();
    void noteCursor();
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
    bool m_isHeld = false; // what is unsent is to be looked at
    ZelkoGUI::BookmarkModel::enSynchState m_state = ZelkoGUI::BookmarkModel::SynchNoRecord;
    QHash<Shown, ZelkoGUI::BookmarkModel::Entries> m_lost; // were unsent, and went with their connection
    std::chrono::milliseconds m_sendLimit = BookmarkDelivery::DefaultLimit;
    Soon m_soon{[this] { look(); }};
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
