#pragma once

#include <QList>
#include <QObject>
#include <QPointer>

class QWidget;

namespace ZelkoConsole {

/// The windows on a record that are open beside a window of the console: those that its controller keeps in front of
/// it, for comments, bookmarks and copies, and the spectrum overviews. These are nobody's children, so all of the
/// process are taken for its own: a program has one window of the console. GUI thread.
class OpenRecordWindows : public QObject
{
    Q_OBJECT

public:
    /// `owner` is the dialog parent of the controller. It outlives this object.
    explicit OpenRecordWindows(QWidget* owner);

    /// Takes the overviews along: without a console they show what nobody follows, and keep the program running.
    ~OpenRecordWindows() override;

    /// What goes when windows are closed.
    enum class Leaving {
        Device,    ///< whose records they show; an overview goes on with the one that it has, which names its device
        Everything ///< the recorder that they talk to, the user who may do what they offer, or the console
    };

    /// Closes what goes with that. Each window may ask about what was changed in it, and so block as long as the user
    /// takes, with an event loop. False: he wants one to stay, or is being asked already.
    bool close(Leaving leaving);

    /// Whether a window is being closed, and the user perhaps asked. The device is not to be another one meanwhile.
    bool isClosing() const { return m_isClosing; }

Q_SIGNALS:
    /// What was held back while windows were being closed can be done.
    void answered();

private:
    using Windows = QList<QPointer<QWidget>>;

    Windows dialogs() const;
    static Windows overviews();
    bool closeThese(const Windows& windows);

    QWidget* const m_owner;
    bool m_isClosing = false;
};

} // namespace ZelkoConsole
