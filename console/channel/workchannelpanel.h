#pragma once

#include <QPointer>
#include <QWidget>

class QComboBox;
class QLabel;
class QPushButton;

namespace guiHelper {
class ElidedLabel;
}

namespace ZelkoConsole {

class RecordingSettings;
class WorkChannel;

/// The channel that the workstation works on: which one it is, a recording started and stopped, what the next one is
/// to be, and what the channel does in one line. What cannot be done is disabled, and its status tip says why. Without
/// a channel to work with there is nothing to see of this.
class WorkChannelPanel : public QWidget
{
    Q_OBJECT

public:
    /// Without a channel at first.
    explicit WorkChannelPanel(QWidget* parent = nullptr);
    ~WorkChannelPanel() override;

    /// Null for none. Not owned.
    void setChannel(WorkChannel* channel);

    QComboBox* choice() const { return m_choice; }
    QPushButton* recordButton() const { return m_record; }
    QPushButton* stopButton() const { return m_stop; }
    RecordingSettings* settings() const { return m_settings; }

    /// The line that says what the channel does.
    QString stateText() const;

protected:
    void changeEvent(QEvent* event) override;

private:
    void arrange();
    void connectParts();
    void update();
    void showChoice();
    void showState();
    void paintSign();
    void record();
    void stop();

    QPointer<WorkChannel> m_channel;
    QComboBox* m_choice;
    QPushButton* m_record;
    QPushButton* m_stop;
    QLabel* m_sign;
    guiHelper::ElidedLabel* m_state;
    RecordingSettings* m_settings;
};

} // namespace ZelkoConsole
