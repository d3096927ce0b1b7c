#pragma once

#include <recorder/served/bookmarkbounds.h>
#include <recorder/served/channelbranch.h>
#include <recorder/service/channel.h>

#include <observerbase/iobserver.h>

#include <QObject>
#include <QTimer>

#include <vector>

namespace ZelkoRecorder {

/// What clients see of a channel, and how they work it: its values on the tree.
///
/// A client asks for something by writing the state that he wants, and hears what has become of it by the same value:
/// where the wish is not granted the state goes back to what is the case, and the error code tells why. Of the
/// recording state, "start requested" and "recording" begin a recording, "continuous recording" one in a loop of the
/// size that is asked for, and "stopping" and "stopped" end it; of the replay state, "replay started" and "running"
/// begin or continue a replay, "pausing" and "paused" hold it, as soon as it has begun, "stopping" and "stopped" end
/// it. Wishes are granted in the order in which they came, and never within the notification by which they come. A wish
/// that is refused for the same reason as the one before it has the error code tell it again.
///
/// As long as no client has written another device, the device ID is the one that a recording would take without any.
///
/// Lives on the thread of the tree.
class ChannelPanel : public QObject, private IObserver
{
    Q_OBJECT

public:
    /// Puts the branch of the channel on the tree. Both outlive the panel.
    ChannelPanel(Tree& tree, Channel& channel, QObject* parent = nullptr);

    /// Takes the branch off the tree.
    ~ChannelPanel() override;

private:
    struct Wish
    {
        const ValueSelection* state; // that was written
        int key;
    };

    void Update(Observable* source, TChangeCode code) override;
    void observe(Observable* value);
    void grantWishes();
    void grantRecording(int key);
    void grantReplay(int key);
    void startRecording(bool isLoop);
    void startReplay();
    void note(Channel::Verdict verdict);
    void tellError(const QString& text);
    void tidy();
    void tidyText(TextValue* value);
    void show();
    void showDevice();
    void showRecord(const RecordPointer& record);
    void showPosition();

    template <typename T, typename Content>
    void set(T* value, const Content& content);

    Tree& m_tree;
    Channel& m_channel;
    const ChannelBranch m_branch;
    const BookmarkBounds m_bookmarkBounds;
    std::vector<Observable*> m_observed;
    std::vector<Wish> m_wishes;
    bool m_isGranting = false;     // soon
    bool m_isDeviceChosen = false; // by a client
    QTimer m_positionTimer;
};

} // namespace ZelkoRecorder
