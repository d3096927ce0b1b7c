#pragma once

#include <QPointer>
#include <QWidget>

class QToolButton;

namespace ZelkoConsole {

class WorkChannel;

/// Starts the replay of a record on the channel of the workstation, holds it, has it go on, and ends it. What cannot be
/// done is disabled, and its status tip says why. Without a channel there is nothing to see of this.
class ReplayControls : public QWidget
{
    Q_OBJECT

public:
    /// Without a channel at first.
    explicit ReplayControls(QWidget* parent = nullptr);

    /// Null for none. Not owned.
    void setChannel(WorkChannel* channel);

    /// How many records are chosen; it takes one to start.
    void setSelected(int count);

    /// Starts, or has a replay that holds go on.
    QToolButton* playButton() const { return m_play; }
    QToolButton* pauseButton() const { return m_pause; }
    QToolButton* stopButton() const { return m_stop; }

Q_SIGNALS:
    /// The record that is chosen is to be replayed from where the channel stands.
    void startWanted();

private:
    void connectParts();
    void update();
    void play();

    QPointer<WorkChannel> m_channel;
    int m_selected = 0;
    QToolButton* m_play;
    QToolButton* m_pause;
    QToolButton* m_stop;
};

} // namespace ZelkoConsole
