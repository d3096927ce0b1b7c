#pragma once

#include <observerbase/errorhandler.h>

#include <QPointer>
#include <QStringList>

class QMessageBox;
class QWidget;

namespace ZelkoConsole {

/// Shows the messages for the user in a box of a window, one after the other, while the window goes on working behind
/// it. From its beginning to its end it is where ErrorHandler sends them; then it is again who it was before.
///
/// A message that stands in the box, or waits for it, is not shown a second time. What comes while `mostWaiting` wait
/// goes to the log: nobody reads on for so long. GUI thread.
class UserMessages
{
public:
    static constexpr int mostWaiting = 10;

    /// `window` outlives this object.
    explicit UserMessages(QWidget* window);
    ~UserMessages();
    UserMessages(const UserMessages&) = delete;
    UserMessages& operator=(const UserMessages&) = delete;

    /// Shows a message too.
    void show(const QString& text);

    /// The open box; null when there is none.
    QMessageBox* box() const;

private:
    void showNext();

    QWidget* const m_window;
    QPointer<QMessageBox> m_box;
    QStringList m_waiting; // without the one in the box
    ErrorHandler::MessageSink m_before;
};

} // namespace ZelkoConsole
