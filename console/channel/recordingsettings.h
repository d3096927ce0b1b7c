#pragma once

#include <QPointer>
#include <QWidget>

class QLabel;
class QLineEdit;
class QSpinBox;

namespace ZelkoConsole {

class WorkChannel;

/// What the next recording of a channel is to be: its name, after how long and at which size it ends by itself. All who
/// work with the channel share these values: a change goes out when its editor is done with, and one of somebody else
/// is shown unless the user is typing.
class RecordingSettings : public QWidget
{
    Q_OBJECT

public:
    explicit RecordingSettings(QWidget* parent = nullptr);

    /// Begins its editors where `label`, above this, ends.
    void alignWith(QLabel* label);

    /// Null for none, and then nothing can be edited.
    void setChannel(WorkChannel* channel);

    /// Shows how the channel stands now.
    void update();

    /// Writes what was typed and has not gone out.
    void commit();

    QLineEdit* name() const { return m_name; }
    QSpinBox* timeout() const { return m_timeout; }
    QSpinBox* fileSize() const { return m_fileSize; }

private:
    void arrange();
    void connectParts();
    void writeName();
    void writeTimeout();
    void writeFileSize();

    QPointer<WorkChannel> m_channel;
    QLabel* m_label; // of the name
    QLineEdit* m_name;
    QSpinBox* m_timeout;
    QSpinBox* m_fileSize;
};

} // namespace ZelkoConsole
